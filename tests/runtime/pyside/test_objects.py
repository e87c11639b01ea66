# QObject's own methods, its constructors, and what is refused.
import sys
import unittest

import shiboken
from nodes import Node
from PySide import QtCore
from event_loop import application
from support import Case, run, standard_error


class Named(QtCore.QObject):
    def __init__(self, name, parent=None):
        QtCore.QObject.__init__(self, parent)
        self.setObjectName(name)


class Objects(Case):
    def test_constructor(self):
        parent = QtCore.QObject(objectName='parent')
        self.assertEqual(parent.objectName(), u'parent')
        self.assertIs(QtCore.QObject(parent=parent).parent(), parent)
        self.assertIsNone(QtCore.QObject(None).parent())
        name = 'PySide.QtCore.QObject'
        self.assertFails(TypeError, "PySide.QtCore.QObject(): got multiple values for keyword argument 'parent'.",
                         QtCore.QObject, parent, parent=parent)
        called = []
        QtCore.QObject(destroyed=lambda: called.append(1))
        self.assertEqual(called, [1])

        class Wrong(QtCore.QTimer):
            def __init__(self): QtCore.QObject.__init__(self)
        self.assertFails(TypeError, "PySide.QtCore.QObject isn't a direct base class of Wrong", Wrong)
        self.assertRaises(RuntimeError, parent.__init__)
        self.assertEqual(parent.objectName(), u'parent')

    def test_family(self):
        root = Named('root')
        branch, twig = Named('branch', root), QtCore.QTimer()
        leaf = Named('leaf', branch)
        twig.setParent(branch)
        self.assertEqual(root.children(), [branch])
        self.assertEqual(root.findChildren(QtCore.QObject), [branch, leaf, twig])
        self.assertEqual(root.findChildren(Named, 'leaf'), [leaf])
        self.assertIs(root.findChild(QtCore.QTimer), twig)
        self.assertIsNone(root.findChild(QtCore.QTimer, 'none'))
        self.assertRaises(TypeError, root.findChild, 5)
        for ancestor in (root, branch):
            self.assertFails(ValueError, 'a QObject cannot become its own ancestor', ancestor.setParent, leaf)
        self.assertFails(ValueError, 'a QObject cannot become its own ancestor', root.setParent, root)
        leaf.setParent(None)
        self.assertTrue(shiboken.ownedByPython(leaf))
        shiboken.delete(root)
        self.assertEqual([shiboken.isValid(o) for o in (branch, twig, leaf)], [False, False, True])

    def test_properties(self):
        o = QtCore.QObject()
        self.assertIs(o.setProperty('own', 5), False)
        self.assertIs(o.setProperty('objectName', 5), True)
        self.assertEqual((o.property('own'), o.objectName(), o.property('none')), (5, u'5', None))
        self.assertEqual([str(name) for name in o.dynamicPropertyNames()], ['own'])
        o.setProperty('own', None)
        self.assertEqual(o.dynamicPropertyNames(), [])
        for call in (lambda: o.setProperty(u'x', 1), lambda: o.property(u'x'), lambda: o.inherits(u'QObject')):
            self.assertRaises(TypeError, call)

    def test_declared_properties(self):
        class Base(QtCore.QObject):
            _level, changed, other_changed, _thing = 1, QtCore.Signal(int), QtCore.Signal(), None

            def set_level(self, level):
                if level < 0:
                    raise ValueError('negative')
                self._level = level
                self.changed.emit(level)

            level = QtCore.Property(int, lambda self: self._level, set_level, notify=changed)
            thing = QtCore.Property(object, lambda self: self._thing, lambda self, thing: setattr(self, '_thing', thing))
            other = QtCore.Property(QtCore.QObject, lambda self: self._thing,
                                    lambda self, thing: setattr(self, '_thing', thing), notify=other_changed)

        class Own(Base):
            @QtCore.Property(str)
            def fixed(self): return 'fixed'
        own, seen = Own(level=4), []
        own.changed.connect(lambda level: seen.append(level))
        own.level = 5
        self.assertEqual([own.setProperty('level', level) for level in ('6', 'x', 7)], [True, False, True])
        self.assertEqual((seen, own._level, own.property('level')), ([5, 6, 7], 7, 7))
        self.assertFails(AttributeError, 'Attibute read only', setattr, own, 'fixed', 'x')
        self.assertEqual((own.setProperty('fixed', 'x'), own.fixed, own.property('fixed')), (False, 'fixed', u'fixed'))
        for name, values in (('thing', (5, 'x', None, {1: 2}, own, Own)), ('other', (own, QtCore.QTimer(), None))):
            for value in values:
                self.assertIs(own.setProperty(name, value), True)
                self.assertEqual((own.property(name), own._thing), (value, value))
        self.assertFails(ValueError, 'negative', Own, level=-1)
        with standard_error() as error:
            own.setProperty('level', -1)
        self.assertIn('ValueError: negative', error.getvalue())
        own.connect(QtCore.SIGNAL('made_later()'), len)
        self.assertEqual((own.property('level'), own.dynamicPropertyNames()), (7, []))
        self.assertEqual([Node.notifierOf(own, name) for name in ('level', 'other', 'thing')],
                         ['changed(int)', 'other_changed()', ''])
        self.assertEqual((own.setProperty('objectName', 'n'), own.objectName()), (True, u'n'))

    def test_arity(self):
        o = QtCore.QObject()
        for text, call in (
                ('objectName() takes no arguments (1 given)', lambda: o.objectName(1)),
                ('setProperty expected 2 arguments, got 1', lambda: o.setProperty('x')),
                ('startTimer() takes no keyword arguments', lambda: o.startTimer(interval=5)),
                ('PySide.QtCore.QObject.findChild(): not enough arguments', lambda: o.findChild()),
                ('PySide.QtCore.QTimer.start(): too many arguments', lambda: QtCore.QTimer().start(1, 2)),
                ('singleShot expected at least 2 arguments, got 0', lambda: QtCore.QTimer.singleShot()),
                ("descriptor 'objectName' requires a 'PySide.QtCore.QObject' object but received a 'int'",
                 lambda: QtCore.QObject.objectName(5))):
            self.assertFails(TypeError, text, call)

    def test_others(self):
        o = QtCore.QObject()
        self.assertEqual((o.blockSignals(True), o.signalsBlocked(), o.blockSignals(False)), (False, True, True))
        self.assertEqual((o.inherits('QObject'), o.inherits('QTimer')), (True, False))
        self.assertEqual((o.tr('text'), o.receivers(QtCore.SIGNAL('destroyed()'))), (u'text', 0))
        self.assertEqual(o.thread(), application.thread())
        self.assertEqual((o.trUtf8('text'), application.translate('here', 'text', None, application.UnicodeUTF8)),
                         (u'text', u'text'))
        thread = QtCore.QThread()
        thread.start(QtCore.QThread.LowPriority)
        thread.quit()
        self.assertTrue(thread.wait() and thread.currentThreadId() != 0)
        self.assertEqual(thread.priority(), QtCore.QThread.InheritPriority)
        self.assertEqual([int(value) for value in (QtCore.Qt.Vertical, QtCore.Qt.Checked, QtCore.Qt.UTC)], [2, 2, 1])
        self.assertFails(TypeError, "cannot create 'PySide.QtCore.Qt' instances", QtCore.Qt)
        self.assertFails(RuntimeError, 'A QCoreApplication instance already exists.', QtCore.QCoreApplication, [])
        self.assertEqual(application.argv(), [u'tests'])
        self.assertIs(QtCore.QCoreApplication.instance(), application)

    def test_byte_arrays(self):
        b = QtCore.QByteArray('a\0b')
        self.assertEqual((len(b), str(b), b[1], b.data(), repr(b)),
                         (3, 'a\0b', '\0', 'a\0b', "PySide.QtCore.QByteArray('a\\x00b')"))
        self.assertEqual((b, b, QtCore.QByteArray()), ('a\0b', QtCore.QByteArray(b), bytearray()))
        self.assertTrue(b < 'b' and b != 5 and b + 'c' == 'a\0bc' and 'c' + b == 'ca\0b')
        self.assertEqual(str(b.append('c').toHex()), '61006263')
        self.assertEqual(QtCore.QByteArray.fromHex('6162'), 'ab')
        self.assertEqual([c for c in QtCore.QByteArray(3, 'x')], ['x', 'x', 'x'])
        self.assertRaises(IndexError, lambda: b[9])
        c = QtCore.QByteArray('abcabc')
        for got, expected in (
                (c[1:3], 'bc'), (c[-2:], 'bc'), (c[9:], ''), (c * 2, 'abcabcabcabc'), ('ca' in c, True), ('x' in c, False),
                (str(buffer(c)), 'abcabc'), (c.at(1), 'b'), (c.count('bc'), 2), (c.count(), 6), (c.indexOf('c', 3), 5),
                (c.lastIndexOf('a'), 3), (c.split('b'), ['a', 'ca', 'c']), (c.leftJustified(8, '.'), 'abcabc..'),
                (QtCore.QByteArray.number(255, 16), 'ff'), (QtCore.QByteArray.number(0.5), '0.5'),
                (QtCore.QByteArray('ff').toInt(16), (255, True)), (QtCore.QByteArray('x').toDouble(), (0.0, False)),
                (QtCore.QByteArray('12').toLongLong(), (12, True)), (QtCore.QByteArray(' a  b ').simplified(), 'a b')):
            self.assertEqual(got, expected)
        c[0], c[1:3] = 'x', 'yyy'
        c += 'z'
        del c[-2]
        self.assertEqual(c, 'xyyyabz')
        for change, after in ((lambda: c.insert(1, 'i'), 'xiyyyabz'), (lambda: c.remove(2, 3), 'xiabz'),
                              (lambda: c.replace('ab', 'q'), 'xiqz'), (lambda: c.replace(0, 2, ''), 'qz'),
                              (lambda: c.prepend('p'), 'pqz'), (lambda: c.fill('f', 2), 'ff'),
                              (lambda: c.setNum(-3), '-3')):
            self.assertIs(change(), c)
            self.assertEqual(c, after)
        self.assertRaises(TypeError, c.__setitem__, 0, 'ab')
        self.assertRaises(TypeError, QtCore.QByteArray.number, 'x')
        self.assertRaises(OverflowError, lambda: c * 2 ** 31)
        self.assertRaises(TypeError, QtCore.QByteArray, u'x')
        self.assertFails(NotImplementedError, 'operator not implemented.', lambda: b < 5)


class Modules(Case):
    def test_versions(self):
        import PySide
        from PySide import QtGui
        self.assertEqual((PySide.__version__, QtCore.__version__), ('1.2.4', QtCore.qVersion()))
        self.assertTrue(QtGui)

    def test_two_interpreters(self):
        self.assertEqual(run('''
import sys
sys.path[:0] = paths = %r
import probe
from nodes import Node
from PySide import QtCore
app = QtCore.QCoreApplication([])
kept = QtCore.QObject(objectName='kept')
print probe.runInOtherInterpreter("""
import sys
sys.path[:0] = %%r
import probe
from nodes import Node
from PySide import QtCore
got = []
class Own(QtCore.QObject):
    changed = QtCore.Signal(int)
    def customEvent(self, event): got.append('event')
class Reacting(probe.Node):
    def react(self, value): return value + 10
own, node, reacting = Own(), Node(), Reacting()
own.thing = own.child = Own(own)
own.destroyed.connect(lambda: got.append('gone'))
for signal in (own.changed, node.levelChanged): signal.connect(lambda value: got.append(value))
own.changed.emit(4)
node.emitFromThread(2)
QtCore.QCoreApplication.instance().sendEvent(own, QtCore.QEvent(QtCore.QEvent.User))
QtCore.QCoreApplication.processEvents()
got += [probe.callReact(reacting, 1), probe.callReact(reacting, 1, True)]
probe.deleteInThread(reacting)
left = Own(objectName='left to the end')
own.setProperty('left', [left, node])
del own, node
print got
""" %% paths)
print kept.objectName()
''' % sys.path), (0, "[4, 'event', 0, 1, 11, 11, 'gone']\n0\nkept\n", ''))

    def test_end_of_the_process(self):
        code, out, error = run('''
from PySide import QtCore
import atexit, threading
app = QtCore.QCoreApplication([])
def say(text): print text
class Own(QtCore.QObject):
    def event(self, e): return QtCore.QObject.event(self, e)
    def __del__(self): print 'gone'
kept = Own(app)
loose = Own()
loose.cycle = loose
loose.destroyed.connect(lambda: say('never'))
held = QtCore.QTimer()
held.timeout.connect(lambda only=held: None)
del held
timer = QtCore.QTimer()
timer.timeout.connect(lambda: app.quit())
timer.start(1)
app.exec_()
timer.start(0)
atexit.register(say, 'exit')
''')
        self.assertEqual((code, error), (0, ''))
        self.assertEqual(sorted(out.split()), ['exit', 'gone'] if out.count('gone') == 1 else ['exit', 'gone', 'gone'])


if __name__ == '__main__':
    unittest.main()
