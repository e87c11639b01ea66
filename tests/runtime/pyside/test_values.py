# Text, lists and variants, beyond what the transcript has.
import collections
import datetime
import unittest

from PySide import QtCore
from support import Case


def there_and_back(value):
    o = QtCore.QObject()
    o.setProperty('v', value)
    return o.property('v')


class Sequence(object):
    def __getitem__(self, index): return [1, 'x'][index]

    def __len__(self): return 2


class Old: pass


class Broken(object):
    def __getitem__(self, index): raise IndexError

    def __len__(self): raise ValueError('broken')


class Values(Case):
    def test_text(self):
        o = QtCore.QObject()
        for text in (u'\U0001F600', u'a\U0001F600b', u'\ud800', u'\udc00\ud800', u'\ufeffa', u'a\0b', u''):
            o.setObjectName(text)
            self.assertEqual(o.objectName(), text)
            self.assertEqual(there_and_back([text]), [text])
        o.setObjectName('\xc3\xa9\0z')
        self.assertEqual(o.objectName(), u'\xc3\xa9\0z')

    def test_same_objects(self):
        class Long(long): pass

        class Float(float): pass
        for value in (Long(5), Float(2.5), 1j, datetime.date(2000, 1, 1), set([1]), Old(), Old, unittest, {1: 2},
                      iter([]), (x for x in ()), Broken()):
            self.assertIs(there_and_back(value), value)

    def test_copies(self):
        class Int(int): pass
        for value, back in ((Int(5), 5), (True, True), (-2 ** 31, -2 ** 31), (2L ** 62, 2L ** 62), (xrange(3), [0, 1, 2]),
                            (collections.deque([1]), [1]), (Sequence(), [1, u'x']), (bytearray('ab'), [97, 98]),
                            (['a', None], [u'a', u'']), ([None], [u'']), ([1, None], [1, None]), ({None: 1}, {u'': 1}),
                            (collections.OrderedDict([('b', 1), (u'a', [2L])]), {u'a': [2L], u'b': 1}),
                            ([QtCore.QByteArray('x')], [QtCore.QByteArray('x')])):
            result = there_and_back(value)
            self.assertEqual((type(result), result), (type(back), back))

    def test_errors(self):
        self_holding = []
        self_holding.append(self_holding)
        self_holding_dict = {}
        self_holding_dict['x'] = self_holding_dict
        for error, value in ((OverflowError, 2 ** 31), (OverflowError, [2 ** 40]), (OverflowError, {'a': [2L ** 70]}),
                             (RuntimeError, self_holding), (RuntimeError, self_holding_dict)):
            o = QtCore.QObject()
            o.setProperty('v', 'before')
            self.assertRaises(error, o.setProperty, 'v', value)
            self.assertEqual(o.property('v'), u'before')

    def test_converted_lists(self):
        class Source(QtCore.QObject):
            texts = QtCore.Signal('QStringList')
            values = QtCore.Signal('QVariantList')
            mapped = QtCore.Signal('QVariantMap')
            objects = QtCore.Signal('QObjectList')
            odd = QtCore.Signal('NoSuchType')
        source, got = Source(), []
        for signal, given, back in ((source.texts, 'ab', [u'a', u'b']), (source.texts, [1, 'x'], [u'', u'x']),
                                    (source.values, (1, 'x'), [1, u'x']), (source.mapped, {'a': 1}, {u'a': 1}),
                                    (source.mapped, None, {}), (source.texts, None, [])):
            note = lambda value: got.append(value)
            signal.connect(note)
            signal.emit(given)
            signal.disconnect(note)
            self.assertEqual(got.pop(), back)
        self.assertFails(TypeError, "a value of type 'QVariantMap' cannot be made from dict", source.mapped.emit, {1: 1})
        self.assertFails(TypeError, "Values of the C++ type 'NoSuchType' have no Python counterpart", source.odd.emit, 1)


if __name__ == '__main__':
    unittest.main()
