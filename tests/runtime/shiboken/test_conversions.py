# Numbers, characters, C strings and containers: what is accepted, what arrives, and how a refusal reads.
import decimal
import fractions
import sys
import unittest

import probe
from counting import Case


class WithInt(object):
    def __int__(self): return 7


class WithFloat(object):
    def __float__(self): return 2.5


class WithIndex(object):
    def __index__(self): return 3


class Raising(object):
    def __int__(self): raise KeyError('from __int__')


class OldTrunc:
    def __trunc__(self): return 4


class OldInt:
    def __int__(self): return 4


NAN, INF = float('nan'), float('inf')
SIGNED = ['short', 'int', 'long']
UNSIGNED = ['unsigned int', 'unsigned long']
NUMBERS = SIGNED + UNSIGNED + ['bool', 'long long', 'unsigned long long', 'float', 'double', 'unsigned short']

VALUES = [
    (['short', 'int', 'long'], [(True, 1), (5, 5), (5L, 5), (-5, -5), (1.9, 1), (-0.5, 0), (-1.9, -1), (WithInt(), 7),
                                (OldTrunc(), 4), (decimal.Decimal('2.7'), 2), (probe.ShadeDark, 5)]),
    (['short'], [(32767, 32767), (-32768.9, -32768)]),
    (['int'], [(2 ** 31 - 1, 2 ** 31 - 1), (-2 ** 31, -2 ** 31)]),
    (['long'], [(2 ** 63 - 1, sys.maxint), (-2.0 ** 63, -sys.maxint - 1)]),
    (UNSIGNED, [(5, 5L), (1.9, 1L), (-0.5, 0L), (True, 1L), (WithInt(), 7L)]),
    (['unsigned int'], [(2 ** 32 - 1, 2L ** 32 - 1)]),
    (['unsigned long'], [(2 ** 63 - 1, 2 ** 63 - 1)]),
    (['long long'], [(5, 5L), (-2 ** 63, -2L ** 63), (1.9, 1L)]),
    (['unsigned long long'], [(5, 5L), (2 ** 64 - 1, 2L ** 64 - 1), (True, 1L)]),
    (['float', 'double'], [(1, 1.0), (2.5, 2.5), (True, 1.0), (5L, 5.0), (decimal.Decimal('2.5'), 2.5), (INF, INF),
                           (fractions.Fraction(1, 2), 0.5), (WithFloat(), 2.5)]),
    (['float'], [(3.5e38, INF), (-1e300, -INF)]),
    (['bool'], [(True, True), (0, False), (2 ** 32, True), (2 ** 70, True), (0L, False), (0.0, False), (0.5, True),
                (NAN, True), (1j, False), (probe.ShadeNone, False), (probe.ShadeMinus, True), (WithInt(), True),
                (WithFloat(), True), (OldTrunc(), True)]),
    (['char'], [('a', 'a'), (65, 'A'), (66.9, 'B'), (-1, '\xff'), ('\0', '\0')]),
    (['signed char'], [('a', 97), (-128, -128)]),
    (['unsigned char'], [('\xff', 255), (255, 255)]),
    (['const char*'], [('abc', 'abc'), ('', ''), ('a\0b', 'a'), (None, None)]),
    (['std::string'], [('abc', 'abc'), ('a\0b', 'a\0b'), (None, '')]),
]

TOO_BIG = 'long too big to convert'
ERRORS = [
    (SIGNED, OverflowError, '', [NAN, INF, -INF, 1e300]),
    (['short'], OverflowError, '', [32768, -32769, 32768.0, 2 ** 40]),
    (['int'], OverflowError, '', [2 ** 31, -2 ** 31 - 1, 2 ** 40, 2.0 ** 31]),
    (['long'], OverflowError, '', [2.0 ** 63]),
    (SIGNED, OverflowError, TOO_BIG, [2 ** 70, -2 ** 70]),
    (SIGNED + UNSIGNED, TypeError, 'an integer is required', [WithFloat()]),
    (SIGNED + UNSIGNED, TypeError, "can't convert complex to int", [1j]),
    (SIGNED + UNSIGNED, KeyError, "'from __int__'", [Raising()]),
    (UNSIGNED, OverflowError, '', [-1, -1.9, 2 ** 70, NAN]),
    (['unsigned int'], OverflowError, '', [2 ** 32, 2.0 ** 32]),
    (['unsigned long'], OverflowError, '', [2 ** 63]),
    (['long long'], OverflowError, TOO_BIG, [2 ** 63]),
    (['long long'], ValueError, 'cannot convert float NaN to integer', [NAN]),
    (['long long'], OverflowError, 'cannot convert float infinity to integer', [INF]),
    (['unsigned long long'], TypeError, 'Invalid type for unsigned long long conversion', [1.5, probe.ShadeDark]),
    (['unsigned long long'], OverflowError, '', [-1]),
    (['unsigned long long'], OverflowError, "can't convert negative long to unsigned", [-1L]),
    (['unsigned long long'], OverflowError, TOO_BIG, [2 ** 64]),
    (['float', 'double'], OverflowError, 'long int too large to convert to float', [2 ** 2000]),
    (['float', 'double'], TypeError, 'a float is required', [probe.ShadeDark, WithInt()]),
    (['bool'], KeyError, "'from __int__'", [Raising()]),
    (['char'], OverflowError, '', [128, 255, -129]),
    (['unsigned char'], OverflowError, '', [256, -1]),
]

NO_NUMBERS = [None, '5', u'5', bytearray('5'), [], (), {}, set(), int, object(), WithIndex(), OldInt(), buffer('5')]
REFUSED = [
    (NUMBERS, NO_NUMBERS),
    (['char', 'signed char', 'unsigned char'], [None, '', 'ab', u'a', []]),
    (['const char*', 'std::string'], [u'abc', 5, bytearray('abc'), ['abc'], buffer('abc')]),
]


class Primitives(Case):
    def test_values(self):
        for names, cases in VALUES:
            for name in names:
                for given, expected in cases:
                    result = probe.convert(name, given)
                    self.assertEqual((type(result), result), (type(expected), expected), (name, given))

    def test_errors(self):
        for names, error, text, cases in ERRORS:
            for name in names:
                for given in cases:
                    with self.assertRaises(error) as caught:
                        probe.convert(name, given)
                    self.assertEqual((str(caught.exception), name, given), (text, name, given))

    def test_refusals(self):
        for names, cases in REFUSED:
            for name in names:
                for given in cases:
                    self.assertFails(TypeError, "'convert' called with wrong argument types:\n  convert(%s)\n"
                                     'Supported signatures:\n  convert(%s)' % (
                                         'instance' if isinstance(given, OldInt) else type(given).__name__, name),
                                     probe.convert, name, given)

    def test_no_leak(self):
        for name, value in [('int', 10 ** 6), ('double', 2.5), ('std::string', 'x' * 50), ('bool', WithFloat())]:
            self.assertNoLeak(lambda: probe.convert(name, value))


class Containers(Case):
    def test_which_are_accepted(self):
        class Broken(object):
            def __len__(self): return 2
            def __getitem__(self, index): raise RuntimeError('unreadable')

        class Unsized(Broken):
            def __len__(self): raise RuntimeError('no length')

        # As a sequence, as a pair whose second item must be of the converter's own type, as a dictionary.
        for given, expected in [([], (1, 0, 0)), ([1, 2], (1, 1, 0)), ((1, 2.5), (1, 0, 0)), ([1, 'x'], (0, 0, 0)),
                                ({1: 2}, (0, 0, 1)), ({'x': 2}, (0, 0, 0)), (5, (0, 0, 0)), (None, (0, 0, 0)),
                                ('ab', (0, 0, 0)), (xrange(2), (1, 1, 0)), (Broken(), (0, 0, 0)),
                                (Unsized(), (0, 0, 0))]:
            self.assertEqual(probe.sequenceOf('int', given), expected, given)


class Values(Case):
    def test_value_in_place_or_converted(self):
        class Sub(probe.Pt): pass
        self.assertEqual(probe.ptValue(probe.Pt()), (0, 0))
        self.assertEqual(probe.ptValue(Sub()), (0, 0))
        self.assertEqual(probe.ptValue(9), (9, 1))
        for other in (None, 'x', probe.Node(), probe.Pt):
            self.assertIsNone(probe.ptValue(other))


class WrongArguments(Case):
    def test_layout(self):
        head = "'mod.Cls.meth' called with wrong argument types:"
        class PO(probe.Node): pass
        class Tup(tuple): pass
        table = [
            ((), ('int',), head + '\n  mod.Cls.meth()\nSupported signatures:\n  mod.Cls.meth(int)'),
            (None, ('int',), head + '\n  mod.Cls.meth()\nSupported signatures:\n  mod.Cls.meth(int)'),
            ((5, u''), ('int, unicode', ''), head + '\n  mod.Cls.meth(int, unicode)\nSupported signatures:'
             '\n  mod.Cls.meth(int, unicode)\n  mod.Cls.meth()'),
            ((5,), (), head + '\n  mod.Cls.meth(int)\nSupported signatures:'),
            ((5, ''), None, head + ' int, str'),
            ((), None, head + ' '),
            (5, None, head + ' int'),
            ([], None, head + ' list'),
            (Tup((1, 2)), None, head + ' int, int'),
            ((None, OldInt(), OldInt, int, probe.Node, probe.Node(), PO(), probe.ShadeDark, len, unittest), None,
             head + ' NoneType, instance, classobj, type, Shiboken.ObjectType, probe.Node, PO, probe.Shade, '
             'builtin_function_or_method, module'),
        ]
        for given, signatures, text in table:
            self.assertFails(TypeError, text, probe.wrongArguments, given, signatures)
        self.assertNoLeak(lambda: self.assertRaises(TypeError, probe.wrongArguments, (1, ''), ('int', 'str')))


if __name__ == '__main__':
    unittest.main()
