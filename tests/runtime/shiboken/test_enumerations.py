# Enumerations and their items: names, identity, arithmetic, comparison, copies.
import copy
import cPickle
import pickle
import sys
import unittest

import probe
from probe import Grain, Shade, ShadeDark, ShadeLight, ShadeMinus
from counting import Case

NAN, INF = float('nan'), float('inf')


class WithInt(object):
    def __int__(self): return 5


class Types(Case):
    def test_names_and_attributes(self):
        self.assertEqual(repr(type(Shade)), "<type 'Shiboken.EnumType'>")
        self.assertEqual((repr(Shade), Shade.__name__, Shade.__module__, Shade.__bases__, Shade.__doc__),
                         ("<type 'probe.Shade'>", 'Shade', 'probe', (object,), None))
        level = probe.Node.Level
        self.assertEqual((level.__name__, level.__module__), ('Level', 'probe.Node'))
        self.assertIs(level.LevelOne, probe.Node.LevelOne)
        self.assertEqual(sorted(Shade.values), ['ShadeDark', 'ShadeLast', 'ShadeLight', 'ShadeMinus', 'ShadeNone'])
        self.assertIs(Shade.ShadeDark, ShadeDark)
        self.assertIs(Shade.values['ShadeDark'], ShadeDark)
        self.assertIs(ShadeDark.ShadeLight, ShadeLight)

    def test_what_cannot_be_done(self):
        self.assertFails(TypeError, "can't set attributes of built-in/extension type 'probe.Shade'", setattr, Shade, 'x', 1)
        self.assertFails(AttributeError, "attribute 'name' of 'probe.Shade' objects is not writable", setattr,
                         ShadeDark, 'name', 'x')
        self.assertFails(TypeError, "Error when calling the metaclass bases\n    type 'probe.Shade' is not an acceptable "
                         'base type', lambda: exec_('class S(Shade): pass'))
        self.assertRaises(TypeError, type(Shade), 'X', (), {})

    def test_construction(self):
        item = Shade(1)
        self.assertEqual((item, item.name, item is ShadeLight, hash(item)), (ShadeLight, 'ShadeLight', False, 1))
        self.assertEqual((repr(Shade()), repr(Shade(7)), Shade(7).name), ('probe.Shade.ShadeNone', 'probe.Shade(7)', None))
        self.assertEqual([int(Shade(each)) for each in (True, 5L, Grain.GrainB, WithInt(), 2 ** 40)], [1, 5, 1, 5, 2 ** 40])
        self.assertEqual(int(Shade(1, nothing=2)), 1)
        for value, error, text in [(1.5, TypeError, 'integer argument expected, got float'),
                                   (None, TypeError, 'an integer is required'), ('5', TypeError, 'an integer is required'),
                                   (2 ** 70, OverflowError, 'Python int too large to convert to C long')]:
            self.assertFails(error, text, Shade, value)
        self.assertFails(TypeError, '__new__() takes at most 1 argument (2 given)', Shade, 1, 2)
        self.assertIs(probe.newShade(5), ShadeDark)
        self.assertIsNot(probe.newShade(7), probe.newShade(7))


def exec_(code): exec code in {'Shade': Shade}


class Items(Case):
    def test_text(self):
        self.assertEqual((repr(ShadeDark), str(ShadeDark), '%d %x' % (ShadeDark, ShadeDark), repr(ShadeMinus)),
                         ('probe.Shade.ShadeDark', 'probe.Shade.ShadeDark', '5 5', 'probe.Shade.ShadeMinus'))

    def test_as_number(self):
        self.assertEqual([type(f(ShadeDark)) for f in (int, long)], [int, long])
        self.assertEqual([bool(each) for each in (probe.ShadeNone, ShadeMinus, ShadeLight)], [False, False, True])
        self.assertEqual((range(10)[ShadeDark], hash(ShadeDark), hash(ShadeMinus), {5: 'x'}[ShadeDark]), (5, 5, -2, 'x'))
        for function in (float, complex, hex, oct, abs, round):
            self.assertRaises(TypeError, function, ShadeDark)
        for operation in ('-x', '~x', 'x // 2', 'x % 2', 'x ** 2', 'x << 1', 'x >> 1'):
            self.assertRaises(TypeError, eval, operation, {'x': ShadeDark})

    def test_arithmetic(self):
        for text, expected in [('x + 1', 6), ('1 + x', 6), ('x - 7L', -2), ('7 - x', 2), ('x * x', 25), ('x & 4', 4),
                               ('x | 2', 7), ('2 | x', 7), ('x ^ 1', 4), ('x + 1.5', 6), ('1.5 + x', 6), ('+x', 5),
                               ('x / 2', 2L), ('11 / x', 2L), ('m / 2', 0L), ('x / m', -5L), ('x + 2 ** 70', 2 ** 70 + 5),
                               ('"a" * x', 'aaaaa'), ('x | g', 5)]:
            result = eval(text, {'x': ShadeDark, 'm': ShadeMinus, 'g': Grain.GrainB})
            self.assertEqual((type(result), result), (type(expected), expected), text)
        for text, error in [('x / 0', ZeroDivisionError), ('1 / n', ZeroDivisionError), ('x / 2 ** 70', OverflowError),
                            ('x + nan', ValueError), ('x + inf', OverflowError), ('x + "a"', TypeError),
                            ('"a" + x', TypeError), ('x + None', TypeError), ('x | None', TypeError), ('x + []', TypeError),
                            ('x | 1.5', TypeError), ('x + i', TypeError)]:
            names = {'x': ShadeDark, 'n': probe.ShadeNone, 'nan': NAN, 'inf': INF, 'i': WithInt()}
            self.assertRaises(error, eval, text, names)

    def test_comparison(self):
        for other, equal, less in [(5, True, False), (5L, True, False), (5.9, True, False), (6, False, True),
                                   (Shade(5), True, False), (Grain.GrainB, False, False), (2 ** 70, False, True),
                                   (-2 ** 70, False, False), (INF, False, True), (-INF, False, False), (NAN, False, False)]:
            self.assertEqual((ShadeDark == other, ShadeDark != other, ShadeDark < other, other > ShadeDark),
                             (equal, not equal, less, less), other)
        self.assertTrue(ShadeLight == Grain.GrainB)
        for other in (None, 'x', [], object(), WithInt(), 5j):
            self.assertEqual((ShadeDark == other, ShadeDark != other), (False, True))
        self.assertEqual(None < ShadeDark, not ShadeDark < None)

    def test_copies_keep_the_value(self):
        level = probe.Node.Level
        for item in (ShadeDark, Shade(7), level.LevelOne, level(77)):
            self.assertIs(copy.copy(item), item)
            self.assertIs(copy.deepcopy([item])[0], item)
            for module in (pickle, cPickle):
                for protocol in (0, 1, 2):
                    duplicate = module.loads(module.dumps(item, protocol))
                    self.assertEqual((type(duplicate), int(duplicate), duplicate.name), (type(item), int(item), item.name))
                    self.assertTrue(duplicate is item or not item.name)
        for kind in (Shade, level):
            self.assertIs(pickle.loads(pickle.dumps(kind)), kind)
            self.assertIs(copy.copy(kind), kind)

    def test_every_holder_has_its_reference(self):
        # The module and the interpreter's copy of it, the type, its values and the runtime, the import above, the call.
        self.assertEqual(sys.getrefcount(ShadeDark), 7)
        values = dict(Shade.values)
        try:
            Shade.values.clear()
            self.assertIs(probe.newShade(5), ShadeDark)
        finally:
            Shade.values.update(values)

    def test_no_leak(self):
        for text in ('Shade(1)', 'Shade(7)', 'x + 1', 'x / 2', 'x == 5', 'x == None', 'x | 2L', 'copy(x)', 'x.name',
                     'repr(x)', 'newShade(5)', 'newShade(8)', 'x + 1.5', 'x < nan'):
            code = compile(text, '', 'eval')
            names = {'x': ShadeDark, 'Shade': Shade, 'copy': copy.copy, 'nan': NAN, 'newShade': probe.newShade}
            self.assertNoLeak(lambda: eval(code, names))


if __name__ == '__main__':
    unittest.main()
