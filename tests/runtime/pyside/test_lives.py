# Who keeps whom, who deletes whom, and what is left of the other.
import gc
import itertools
import sys
import unittest
import weakref

import shiboken
from PySide import QtCore
from event_loop import application
from support import Case, run


class Own(QtCore.QObject):
    own = QtCore.Signal()


class Lives(Case):
    def test_parent_keeps_child(self):
        parent = Own()
        child = Own(parent)
        child.note = 'kept'
        alive = weakref.ref(child)
        del child
        gc.collect()
        child = parent.children()[0]
        self.assertEqual(child.note, 'kept')
        del parent, child
        self.assertIsNone(alive())

    def test_weak_reference_finds_no_dying_object(self):
        holder, o, got = Own(), Own(), []
        holder.setProperty('it', o)
        alive = weakref.ref(o, lambda _: got.append(holder.property('it')))
        del o
        self.assertEqual((alive(), shiboken.isValid(got[0]), holder.property('it')), (None, False, None))

    def test_a_deletion_that_was_asked_for_does_not_begin_another(self):
        application = QtCore.QCoreApplication.instance() or QtCore.QCoreApplication([])
        for make in (QtCore.QObject, Own, QtCore.QTimer):
            parent, child, told = QtCore.QObject(), make(), []
            child.deleteLater()
            child.setParent(parent)

            def run_events(_):
                told.append(make)
                QtCore.QTimer.singleShot(0, application.quit)
                application.exec_()

            watch = weakref.ref(child, run_events)
            del child, parent
            self.assertEqual((told, watch()), ([make], None))

    def test_nothing_finds_an_object_that_is_being_freed(self):
        class Looking(object):
            def __del__(self):
                found.append(shiboken.isValid(child) and child.parent())

        for depth in range(45, 55):  # at one of them the interpreter puts the parent aside, and frees it last
            found, parent = [], Own()
            child = Own(parent)
            for _ in range(depth):
                parent = (Looking(), parent)
            del parent
            self.assertEqual(len(found), depth)
            self.assertEqual(set(shiboken.isValid(o) for o in found if o) - set([shiboken.isValid(child)]), set())

    def test_what_runs_while_an_object_is_freed_may_delete_it(self):
        gone = []
        for _ in range(2):
            o = Own()
            o.destroyed.connect(lambda: gone.append(1))
            o.deleteLater()
            kept = weakref.ref(o, lambda _: application.sendPostedEvents(None, 52))
            del o
        self.assertEqual(gone, [1, 1])

    def test_who_is_told_of_a_new_parent_may_delete_both(self):
        class Parent(QtCore.QObject):
            def childEvent(self, event):
                while dying:
                    shiboken.delete(dying.pop())

        for both in (False, True):
            parent, child = Parent(), Own()
            dying = [parent, child] if both else [parent]
            child.setParent(parent)
            self.assertEqual((shiboken.isValid(parent), shiboken.isValid(child)), (False, False))

    def test_dying_child_is_not_listed(self):
        parent, got = Own(), []
        children = [Own(parent) for _ in range(3)]
        children[1].destroyed.connect(lambda: got.extend([parent.children(), parent.findChildren(Own)]))
        shiboken.delete(children.pop(1))
        self.assertEqual(got, [children, children])

    def test_delete_later(self):
        o, kept = Own(), []
        o.destroyed.connect(lambda: kept.append('destroyed'))
        o.deleteLater()
        self.assertTrue(shiboken.isValid(o))
        application.sendPostedEvents(None, 52)
        self.assertEqual(kept, ['destroyed'])
        self.assertDeleted('Own', o.objectName)
        self.assertFalse(shiboken.ownedByPython(o))
        shiboken.delete(Own())
        Own().deleteLater()  # the wrapper object goes first
        application.sendPostedEvents(None, 52)

    def test_dead_objects_as_arguments(self):
        dead, o = Own(), Own()
        shiboken.delete(dead)
        for call in (lambda: o.setParent(dead), lambda: o.installEventFilter(dead), lambda: o.setProperty('x', dead),
                     lambda: Own(dead), lambda: application.sendEvent(dead, QtCore.QEvent(QtCore.QEvent.User)),
                     lambda: QtCore.QTimer.singleShot(1, dead, QtCore.SLOT('deleteLater()')), dead.children,
                     lambda: dead.connect(QtCore.SIGNAL('destroyed()'), len)):
            self.assertDeleted('Own', call)
        self.assertEqual((bool(dead), dead == dead, shiboken.isValid(dead)), (True, True, False))
        for name, call in itertools.product(('destroyed', 'own'), ('connect', 'disconnect', 'emit')):
            self.assertDeleted('Own', getattr(getattr(dead, name), call), *([len] if call == 'connect' else []))

    def test_destroyed_gives_the_object(self):
        got = []
        o = QtCore.QTimer()
        o.destroyed[QtCore.QObject].connect(lambda gone: got.append(gone))
        o.start(1000)
        del o
        self.assertEqual(len(got), 1)
        self.assertFalse(shiboken.isValid(got[0]))

    def test_variants_do_not_keep(self):
        holder, held = Own(), Own()
        holder.setProperty('held', held)
        holder.setProperty('list', [held, {'a': held}])
        self.assertIs(holder.property('held'), held)
        self.assertEqual(holder.property('list'), [held, {u'a': held}])
        del held
        self.assertIsNone(holder.property('held'))
        self.assertEqual(holder.property('list'), [None, {u'a': None}])
        thing = Own
        count = sys.getrefcount(thing)
        holder.setProperty('thing', thing)
        self.assertEqual(sys.getrefcount(thing), count + 1)
        holder.setProperty('thing', None)
        self.assertEqual(sys.getrefcount(thing), count)

    def test_nothing_is_left_behind(self):
        def work():
            parent = Own()
            child = Own(parent)
            child.setParent(None)
            child.setParent(parent)
            parent.children(), parent.findChildren(Own), child.parent()
            parent.setProperty('x', [1, {'a': parent}, 2L, 2.5, u'x', object()])
            parent.property('x')
            child.destroyed.connect(lambda: None)
            timer = QtCore.QTimer(parent)
            timer.timeout.connect(child.deleteLater)
            event = QtCore.QEvent(QtCore.QEvent.User)
            application.sendEvent(parent, event)
            application.postEvent(child, event)
            application.sendPostedEvents()
            parent.cycle = parent
        self.assertNoLeak(work)

    def test_ends(self):
        for script, said in (
                ('def ensure():\n    QtCore.QCoreApplication.instance() or QtCore.QCoreApplication([])\n'
                 'ensure()\nprint type(QtCore.QCoreApplication.instance()).__name__', 'QCoreApplication\n'),
                ('QtCore.QCoreApplication([])\nthread = QtCore.QThread()\nthread.start()\ntimer = QtCore.QTimer()\n'
                 'timer.moveToThread(thread)', '')):
            self.assertEqual(run('from PySide import QtCore\n' + script), (0, said, ''))

    def test_classes_go_too(self):
        class Declared(QtCore.QObject):
            signal = QtCore.Signal(int)

            @QtCore.Slot(int)
            def slot(self, value): pass
        o = Declared()
        o.signal.connect(o.slot)
        o.signal.emit(1)
        alive = weakref.ref(Declared)
        del o, Declared
        gc.collect()
        self.assertIsNone(alive())


if __name__ == '__main__':
    unittest.main()
