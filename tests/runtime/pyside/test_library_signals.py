# Signals of a QObject class that a library declares, on objects that it made and on objects that Python made.
import gc
import unittest
import weakref

import shiboken
from nodes import Node
from PySide import QtCore
from support import Case

calls = []


def note(*values): calls.append(values)


class LibrarySignals(Case):
    def setUp(self): del calls[:]

    def tearDown(self): Node.deleteRoot()

    def test_types_of_arguments(self):
        for node in (Node(), Node.root()):
            del calls[:]
            expected = [('fired', ()), ('levelChanged', (-3,)), ('over', (4,)), ('counted', (4000000000L,)),
                        ('measured', (0.25,)), ('scaled', (0.5,)), ('switched', (True,)), ('named', (u'name', 7)),
                        ('related', (node,)), ('valued', ([1, u'two'],)), ('listed', ([u'a', u'b'],)),
                        ('changedMode', (1,))]
            for name, _ in expected:
                self.assertIs(getattr(node, name).connect(note), True)
            node.over[str].connect(note)
            node.emitAll()
            self.assertEqual(calls[:3] + calls[4:], [values for _, values in expected])
            self.assertEqual(calls[3], (u'text',))
            self.assertEqual([type(calls[i][0]) for i in (1, 4, 7, 12)], [int, long, bool, int])

    def test_emission_from_python(self):
        for node in (Node(), Node.root()):
            for name, values in (('fired', ()), ('counted', (5,)), ('measured', (1,)), ('named', ('x', 3)),
                                 ('related', (None,)), ('valued', ({'a': 1},)), ('listed', (['a'],))):
                signal = getattr(node, name)
                signal.connect(note)
                self.assertIs(signal.emit(*values), True)
                self.assertEqual(calls.pop(), values)
                self.assertIs(signal.disconnect(note), True)
                signal.emit(*values)
                self.assertEqual(calls, [])

    def test_unknown_argument(self):
        node = Node()
        node.mysterious.connect(note)
        node.emitAll()  # prints that there is no such value in Python
        self.assertEqual(calls, [])
        self.assertIs(node.mysterious.emit(None), True)

    def test_temporary_wrapper_objects(self):
        Node.root().levelChanged.connect(note)
        gc.collect()
        Node.root().levelChanged.emit(4)
        self.assertEqual(calls, [(4,)])
        bound = Node.root().levelChanged
        Node.deleteRoot()
        self.assertDeleted('nodes.Node', bound.emit, 1)

    def test_receivers_of_the_library(self):
        source, target = Node(), Node()
        levels = []
        target.levelChanged.connect(lambda level: levels.append(level))
        self.assertTrue(QtCore.QObject.connect(source, QtCore.SIGNAL('levelChanged(int)'), target,
                                               QtCore.SLOT('raiseLevel(int)')))
        source.levelChanged.emit(5)
        source.emit(QtCore.SIGNAL('levelChanged(int)'), 6)
        self.assertEqual((levels, target.property('level')), ([5, 11], 11))
        self.assertFalse(QtCore.QObject.connect(source, QtCore.SIGNAL('unknown()'), note))

    def test_subclasses(self):
        class Own(Node): pass
        own = Own()
        own.fired.connect(note)
        own.emitAll()
        self.assertEqual(calls, [()])
        self.assertEqual([own.setProperty('level', value) for value in (3, 'x')], [True, False])
        own.setModeProperty()  # found by the name of its meta-type
        self.assertEqual([own.property(name) for name in ('level', 'mode')], [3, 1])
        self.assertIs(type(own.property('mode')), int)


class LibraryObjects(Case):
    def tearDown(self): Node.deleteRoot()

    def test_identity_and_end(self):
        root = Node.root()
        self.assertIs(root, Node.root())
        child = Node.makeChild()
        self.assertIs(type(child), Node)
        self.assertEqual(root.children(), [child])
        self.assertIs(child.parent(), root)
        self.assertEqual(child.dynamicPropertyNames(), [])
        child.note = 'kept'
        del child
        gc.collect()
        child = root.children()[0]
        self.assertEqual(child.note, 'kept')
        Node.deleteRoot()
        self.assertDeleted('nodes.Node', child.objectName)
        self.assertFalse(shiboken.isValid(child))

    def test_python_child_of_a_library_object(self):
        class Own(QtCore.QObject): pass
        child = Own(Node.root())
        gone = weakref.ref(child)
        del child
        gc.collect()
        self.assertIs(Node.root().findChild(Own), gone())
        Node.deleteRoot()
        gc.collect()
        self.assertIsNone(gone())


if __name__ == '__main__':
    unittest.main()
