# Wrapper objects: validity, attributes, overrides, and what the module `shiboken` tells of them.
import copy
import gc
import pickle
import re
import sys
import unittest
import warnings
import weakref

import probe
import shiboken
from counting import Case
from support import run

DELETED = 'Internal C++ object (%s) already deleted.'
TYPE_ERROR = 'You need a shiboken-based type.'


class Forget(probe.Node):
    def __init__(self): pass


class PO(probe.Node): pass


class Validity(Case):
    def test_errors(self):
        dead, dead_sub = probe.Node(), PO()
        for node in (dead, dead_sub):
            shiboken.delete(node)
        for node, text in [(dead, DELETED % 'probe.Node'), (dead_sub, DELETED % 'PO'),
                           (Forget(), "'__init__' method of object's base class (Forget) not called."),
                           (probe.Node.__new__(probe.Node), DELETED % 'probe.Node')]:
            self.assertFails(RuntimeError, text, node.react, 1)
            self.assertFails(RuntimeError, text, shiboken.delete, node)
            self.assertFalse(shiboken.isValid(node))

    def test_what_works_on_the_dead(self):
        node = PO()
        node.attribute = [1]
        shiboken.delete(node)
        self.assertEqual((node.attribute, node == node, node != 5, bool(node), hash(node) == hash(node)),
                         ([1], True, True, True, True))
        self.assertTrue(repr(node) and str(node) and node.react)

    def test_module_functions(self):
        node, made = probe.Node(), probe.makeNode()
        table = [(node, True, True, True), (made, True, False, False), (Forget(), False, True, False)]
        for each, valid, owned, created in table:
            self.assertEqual((shiboken.isValid(each), shiboken.ownedByPython(each), shiboken.createdByPython(each)),
                             (valid, owned, created))
        for other in (5, None, 'x', probe.Node, probe.ShadeDark):
            self.assertTrue(shiboken.isValid(other))
            self.assertIsNone(shiboken.invalidate(other))
            self.assertEqual(shiboken.dump(other), 'Ordinary Python type.')
            for function in (shiboken.delete, shiboken.ownedByPython, shiboken.createdByPython, shiboken.getCppPointer):
                self.assertFails(TypeError, TYPE_ERROR, function, other)
        self.assertEqual(shiboken.getCppPointer(Forget()), (0,))
        shiboken.delete(made)
        self.assertFails(RuntimeError, DELETED % 'probe.Node', shiboken.getCppPointer, made)
        self.assertEqual((shiboken.__version__, shiboken.__version_info__), ('1.2.4', (1, 2, 4, 'final', 0)))

    def test_dump(self):
        parent, child = probe.Node(), probe.Node()
        probe.adopt(parent, child)
        probe.keepReference(parent, 'key', [1])
        self.assertTrue(re.match(r'C\+\+ address\.{7} probe.Node/0x\w+ \nhasOwnership\.{6} 1\ncontainsCppWrapper 1\n'
                                 r'validCppObject\.{4} 1\nwasCreatedByPython 1\nchildren\.{10} <probe.Node object at \w+> \n'
                                 r'referred objects\.\. "key" => \[1\] \n$', shiboken.dump(parent)), shiboken.dump(parent))
        self.assertIn('\nparent............ <probe.Node object at ', shiboken.dump(child))
        shiboken.delete(parent)
        self.assertTrue(shiboken.dump(child).startswith('C++ address....... <<Deleted>>\nhasOwnership...... 0\n'))

    def test_wrap_instance(self):
        node = probe.Node()
        address = shiboken.getCppPointer(node)[0]
        other = shiboken.wrapInstance(address, probe.Node)
        self.assertIsNot(other, node)
        self.assertEqual((other.react(1), shiboken.ownedByPython(other), type(other)), (2, False, probe.Node))
        del other
        self.assertIs(probe.callReact(node, 1), 2)
        self.assertFails(TypeError, TYPE_ERROR, shiboken.wrapInstance, address, int)
        self.assertFails(ValueError, 'wrapInstance() needs the address of an object, not 0', shiboken.wrapInstance, 0,
                         probe.Node)
        self.assertFails(TypeError, "'wrapInstance' called with wrong argument types:\n  wrapInstance(str, int)\n"
                         'Supported signatures:\n  wrapInstance(unsigned long, type)', shiboken.wrapInstance, 'x', 5)


class Instances(Case):
    def test_attributes(self):
        class Slotted(probe.Node): __slots__ = ['one']
        for node in (probe.Node(), PO(), Slotted(), probe.makeNode()):
            self.assertEqual(node.__dict__, {})
            node.anything = 5
            node.one = 6
            self.assertEqual((node.anything, node.one), (5, 6))
            self.assertRaises(AttributeError, setattr, node, '__dict__', {})
            node.react = 5
            self.assertEqual(node.react, 5)
            if not shiboken.createdByPython(node):
                shiboken.delete(node)
        self.assertRaises(AttributeError, getattr, probe.Node(), '__module__')

    def test_weak_references(self):
        died = []
        node = probe.Node()
        reference = weakref.ref(node, died.append)
        proxy = weakref.proxy(node)
        self.assertEqual(proxy.react(1), 2)
        del node
        self.assertEqual((reference(), died), (None, [reference]))

    def test_copies(self):
        pt = probe.Pt()
        duplicate = copy.copy(pt)
        self.assertIsNot(duplicate, pt)
        self.assertEqual((type(duplicate), shiboken.ownedByPython(duplicate), shiboken.createdByPython(duplicate)),
                         (probe.Pt, True, False))
        self.assertFails(TypeError, "can't pickle Node objects", pickle.dumps, probe.Node(), 0)
        self.assertFails(TypeError, "can't pickle Node objects", copy.copy, probe.Node())
        self.assertFails(TypeError, "can't pickle Pt objects", copy.deepcopy, [pt])

    def test_no_leak(self):
        for function in (probe.Node, PO, Forget, lambda: copy.copy(probe.Pt()), lambda: probe.Node().react(1),
                         lambda: setattr(PO(), 'x', 1), lambda: shiboken.delete(PO()), lambda: shiboken.dump(PO()),
                         lambda: shiboken.delete(probe.makeNode()), lambda: shiboken.getCppPointer(probe.Node()),
                         lambda: self.assertRaises(RuntimeError, Forget().react, 1)):
            self.assertNoLeak(function)

    def test_cycles_are_collected(self):
        def tangle():
            one, two = PO(), PO()
            one.other, two.other = two, one
            probe.keepReference(one, 'key', one)
            return weakref.ref(one)
        reference = tangle()
        gc.collect()
        self.assertIsNone(reference())

    def test_long_chains_are_freed(self):
        first = None
        for _ in xrange(50000):
            node = PO()
            node.previous = first
            first = node
        del node, first

    def test_pending_error_survives_a_destructor(self):
        class Noisy(probe.Node):
            def __del__(self):
                try:
                    raise KeyError
                except KeyError:
                    pass
        def fail():
            node = Noisy()
            raise ValueError('kept')
        self.assertFails(ValueError, 'kept', fail)


class Overrides(Case):
    def test_what_counts(self):
        class Method(probe.Node):
            def react(self, value): return value + 10
        class Inherited(Method): pass
        class CallsBase(Method):
            def react(self, value): return probe.Node.react(self, value) + 100
        class Static(probe.Node): react = staticmethod(lambda value: 10)
        class OfClass(probe.Node): react = classmethod(lambda cls, value: 10)
        class Object(object):
            def __call__(self, value): return 10
        class Callable(probe.Node): react = Object()
        class Unreadable(probe.Node):
            @property
            def react(self): raise KeyError
        for cls, expected in [(Method, 11), (Inherited, 11), (CallsBase, 102), (Static, 2), (OfClass, 2), (Callable, 2),
                              (Unreadable, 2), (PO, 2), (probe.Node, 2)]:
            node = cls()
            for _ in range(2):
                self.assertEqual(probe.callReact(node, 1), expected, cls)
            self.assertEqual(probe.callReact(node, 1, True), expected, cls)
            self.assertNoLeak(lambda: probe.callReact(node, 1))

    def test_an_attribute_of_the_object_is_none(self):
        class Method(probe.Node):
            def react(self, value): return 10 + value
        for cls, expected in [(probe.Node, 3), (PO, 3), (Method, 12)]:
            node = cls()
            for attribute in (lambda value: value * 7, 5, PO().react, None):
                node.react = attribute
                self.assertEqual(probe.callReact(node, 2), expected)

    def test_library_objects_have_none(self):
        node = probe.makeNode()
        node.react = lambda value: 99
        self.assertEqual(probe.callReact(node, 1), 2)
        shiboken.delete(node)

    def test_raising_override(self):
        code, output, errors = run('import probe\nclass N(probe.Node):\n  def react(self, v): raise KeyError(v)\n'
                           'print probe.callReact(N(), 3)')
        self.assertEqual((code, output, errors.splitlines()[-1]), (0, '0\n', 'KeyError: 3'))

    def test_warning(self):
        with warnings.catch_warnings(record=True) as seen:
            warnings.simplefilter('always')
            probe.warn('Thing.react')
            self.assertEqual([(str(each.message), each.category) for each in seen],
                             [('Invalid return value in function Thing.react.', RuntimeWarning)])
            warnings.simplefilter('error')
            self.assertRaises(RuntimeWarning, probe.warn, 'x')
        sys.exc_clear()


if __name__ == '__main__':
    unittest.main()
