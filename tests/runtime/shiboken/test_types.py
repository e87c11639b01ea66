# Wrapper types: what they look like, what a script may derive, and how a library object finds its type.
import gc
import unittest

import probe
import shiboken
from counting import Case

METACLASS = 'Error when calling the metaclass bases\n    '


class Types(Case):
    def test_names(self):
        class PO(probe.Node): pass
        metatype = type(probe.Node)
        self.assertEqual(repr(metatype), "<type 'Shiboken.ObjectType'>")
        self.assertEqual(repr(probe.Node), "<type 'probe.Node'>")
        self.assertEqual(repr(probe.Node.__mro__[1]), "<type 'Shiboken.Object'>")
        self.assertEqual((repr(PO), type(PO)), ("<class 'test_types.PO'>".replace('test_types', __name__), metatype))
        self.assertIsNone(probe.Node.__doc__)
        self.assertTrue(repr(probe.Node()).startswith('<probe.Node object at 0x'))
        self.assertFails(TypeError, "cannot create 'Shiboken.Object' instances", probe.Node.__mro__[1])

    def test_types_take_attributes(self):
        original = probe.Node.react
        node = probe.Node()
        probe.Node.extra = 3
        probe.Node.react = lambda self, value: 'replaced'
        self.assertEqual((node.extra, node.react(1)), (3, 'replaced'))
        probe.Node.react = original
        del probe.Node.extra
        self.assertEqual((node.react(1), hasattr(node, 'extra')), (2, False))

    def test_attributes_of_classes_change_for_all_who_have_looked(self):
        class Derived(probe.Node):
            pass
        node, derived = probe.Node(), Derived()

        def seen():
            return [getattr(one, 'added', None) for one in (node, derived, probe.Node, Derived)]
        self.assertEqual(seen(), [None] * 4)
        probe.Node.added = 1
        self.assertEqual(seen(), [1] * 4)
        Derived.added = 2
        self.assertEqual(seen(), [1, 2, 1, 2])
        del Derived.added
        self.assertEqual(seen(), [1] * 4)
        del probe.Node.added
        self.assertEqual(seen(), [None] * 4)

    def test_bases_that_are_refused(self):
        class Old: pass
        self.assertFails(TypeError, METACLASS + 'Invalid base class used in type Shiboken.ObjectType. PySide only support '
                         'multiple inheritance from python new style class.', self.derive, probe.Node, Old)
        self.assertFails(TypeError, METACLASS + 'a type made by Shiboken.ObjectType must derive from a wrapped class',
                         self.derive, probe.Node.__mro__[1])
        self.assertRaises(TypeError, type(probe.Node), 'X', (object,), {})
        self.assertRaises(TypeError, self.derive, probe.Node, int)

    def derive(self, *bases):
        names = dict(('base%d' % i, base) for i, base in enumerate(bases))
        exec 'class C(%s): pass' % ', '.join(sorted(names)) in names

    def test_classes_cannot_change_what_their_objects_hold(self):
        class ANode(probe.Node): pass
        class OtherNode(probe.Node): pass
        class ALabel(probe.Label): pass
        node = ANode()
        node.__class__ = OtherNode
        self.assertIs(node.__class__, OtherNode)
        self.assertRaises(TypeError, setattr, node, '__class__', ALabel)
        self.assertRaises(TypeError, setattr, node, '__class__', probe.Node)
        self.assertRaises(TypeError, setattr, OtherNode, '__bases__', (probe.Label,))
        class Further(ANode): pass
        further = Further()
        Further.__bases__ = (OtherNode,)
        self.assertEqual((further.react(1), isinstance(further, OtherNode)), (2, True))

    def test_metaclass_derived_from_the_metatype(self):
        class Meta(type(probe.Node)): pass
        made = Meta('Made', (probe.Node,), {'react': lambda self, value: 40})
        class Further(made): pass
        for each in (made, Further):
            node = each()
            self.assertEqual(probe.callReact(node, 1), 40)
            shiboken.delete(node)
            self.assertFails(RuntimeError, 'Internal C++ object (%s) already deleted.' % each.__name__,
                             probe.Node.react, node, 1)

    def test_classes_are_freed(self):
        def define():
            class Temporary(probe.Node): pass
            Temporary().react(1)
            del Temporary
            gc.collect()
        self.assertNoLeak(define, 30)


class Constructors(Case):
    def test_which_init_may_be_called(self):
        class Node(probe.Node): pass
        class Derived(probe.Tagged):
            def __init__(self): probe.Node.__init__(self)
        class Unrelated(probe.Node):
            def __init__(self): probe.Label.__init__(self)
        self.assertFails(TypeError, "probe.Node isn't a direct base class of Derived", Derived)
        self.assertFails(TypeError, "descriptor '__init__' requires a 'probe.Label' object but received a 'Unrelated'",
                         Unrelated)
        node = Node()
        self.assertFails(RuntimeError, "You can't initialize an object twice!", node.__init__)
        self.assertEqual(node.react(1), 2)
        shiboken.delete(node)
        self.assertFails(RuntimeError, "You can't initialize an object twice!", node.__init__)

    def test_two_wrapped_bases(self):
        class Both(probe.Node, probe.Label):
            def __init__(self, which=(probe.Node, probe.Label)):
                for each in which:
                    each.__init__(self)
        class Further(Both):
            def react(self, value): return 70
        both = Further()
        self.assertEqual((both.react(1), both.text(), probe.callReact(both, 1)), (70, 'label', 70))
        self.assertEqual((len(shiboken.getCppPointer(both)), probe.asLabel(both) is both), (2, True))
        half = Both((probe.Node,))
        self.assertEqual(half.react(1), 2)
        self.assertFails(RuntimeError, "'__init__' method of object's base class (Both) not called.", half.text)
        shiboken.delete(both)
        self.assertFails(RuntimeError, 'Internal C++ object (Further) already deleted.', both.text)

    def test_half_of_two_dies(self):
        class Both(probe.Node, probe.Label):
            def __init__(self):
                probe.Node.__init__(self)
                probe.Label.__init__(self)
        both = Both()
        probe.deleteInThread(both)
        self.assertFalse(shiboken.isValid(both))


class Discovery(Case):
    def test_library_objects_find_their_type(self):
        for make in (probe.makeTagged, probe.makeTaggedLabel):
            tagged = make()
            self.assertIs(type(tagged), probe.Tagged)
            self.assertEqual((tagged.react(1), tagged.text()), (2, 'label'))
            self.assertIs(probe.asLabel(tagged), tagged)
            shiboken.delete(tagged)

    def test_both_bases_know_the_object(self):
        tagged = probe.Tagged()
        self.assertIs(probe.asLabel(tagged), tagged)
        self.assertEqual(tagged.text(), 'label')
        probe.deleteInThread(tagged)
        self.assertFails(RuntimeError, 'Internal C++ object (probe.Tagged) already deleted.', tagged.text)


if __name__ == '__main__':
    unittest.main()
