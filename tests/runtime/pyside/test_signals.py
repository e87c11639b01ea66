# Signals that Python classes declare, and callables of every kind that are connected to them.
import functools
import gc
import sys
import unittest
import weakref

import shiboken
from PySide import QtCore
from support import Case, run, standard_error


class Source(QtCore.QObject):
    plain = QtCore.Signal()
    one = QtCore.Signal(int)
    two = QtCore.Signal(int, str)
    over = QtCore.Signal((int,), (str,), (int, float))
    thing = QtCore.Signal(object)
    related = QtCore.Signal(QtCore.QObject)
    spelled = QtCore.Signal('QString', name='otherName')


class Sink(QtCore.QObject):
    def __init__(self):
        QtCore.QObject.__init__(self)
        self.got = []

    def take(self, *values):
        self.got.append(values)

    def take_sender(self):
        self.got.append(self.sender() is not None and self.sender().objectName())

    @QtCore.Slot(int)
    def declared(self, value):
        self.got.append(value)

    @staticmethod
    def fixed(*values):
        calls.append(values)

    @classmethod
    def of_class(cls, *values):
        calls.append(values)


calls = []


def note(*values):
    calls.append(values)


class Callable(object):
    def __call__(self, value):
        calls.append((value,))


class Signals(Case):
    def setUp(self):
        del calls[:]
        self.source = Source()

    def test_what_can_be_connected(self):
        sink = Sink()
        for slot in (note, lambda *v: calls.append(v), functools.partial(note), Callable(), Sink.fixed, sink.fixed,
                     sink.of_class):
            del calls[:]
            self.assertIs(self.source.one.connect(slot), True)
            self.assertIs(self.source.one.emit(5), True)
            self.assertEqual(calls, [(5,)])
            self.assertIs(self.source.one.disconnect(), True)
        for slot, got in ((sink.take, (5,)), (sink.declared, 5)):
            self.source.one.connect(slot)
            self.source.one.emit(5)
            self.assertEqual(sink.got.pop(), got)
            self.assertIs(self.source.one.disconnect(slot), True)
        self.source.one.emit(5)
        self.assertEqual(sink.got, [])

    def test_what_cannot(self):
        wrong = "'PySide.QtCore.QObject.%s' called with wrong argument types:"
        failed = 'Failed to %s signal one(int).'
        for slot, error, text in ((5, TypeError, wrong), ('x', RuntimeError, failed), (note, RuntimeError, failed)):
            if slot is not note:
                self.assertFails(error, text % 'connect', self.source.one.connect, slot)
            self.assertFails(error, text % 'disconnect', self.source.one.disconnect, slot)
        self.assertFails(RuntimeError, failed % 'connect', self.source.one.connect, None)
        self.assertFails(RuntimeError, failed % 'connect', self.source.one.connect, self.source.related)
        self.assertFails(TypeError, "unhashable type: 'list'", self.source.one.connect, [].append)
        self.assertFails(TypeError, 'emit() takes no keyword arguments', self.source.one.emit, value=5)
        self.assertFails(TypeError, 'native Qt signal is not callable', Source.one)
        self.assertFails(AttributeError, "'PySide.QtCore.Signal' object has no attribute 'connect'",
                         getattr, Source.one, 'connect')

    def test_arguments(self):
        for wanted, given in ((lambda: calls.append(()), ()), (lambda a: calls.append((a,)), (1,)),
                              (lambda a, b=9: calls.append((a, b)), (1, u'x')), (note, (1, u'x'))):
            self.source.two.connect(wanted)
            self.source.two.emit(1, 'x')
            self.assertEqual(calls.pop(), given)
            self.source.two.disconnect(wanted)
        self.source.two.connect(lambda a, b, c: None)
        with standard_error() as error:
            self.assertIs(self.source.two.emit(1, 'x'), True)
        self.assertIn('takes exactly 3 arguments (2 given)', error.getvalue())
        for count in (0, 1, 3):
            self.assertFails(TypeError, 'two(int,QString) only accepts 2 arguments, %d given!' % (count + 1),
                             self.source.two.emit, *range(count))

    def test_conversion_of_arguments(self):
        self.source.one.connect(note)
        self.source.thing.connect(note)
        self.source.related.connect(note)
        for given, got in (('x', 0), (None, 0), (1.9, 1), (True, 1), (QtCore.QEvent.User, 1000)):
            self.source.one.emit(given)
            self.assertEqual(calls.pop(), (got,))
        with standard_error() as error:
            self.source.one.emit(2 ** 40)
        self.assertEqual((calls.pop(), error.getvalue()), ((0,), 'OverflowError\n'))
        for thing in (calls, {1: 2}, None, note):
            self.source.thing.emit(thing)
            self.assertIs(calls.pop()[0], thing)
        for related in (self.source, None):
            self.source.related.emit(related)
            self.assertIs(calls.pop()[0], related)
        self.assertRaises(TypeError, self.source.related.emit, 5)
        self.assertEqual(calls, [])

    def test_overloads_and_names(self):
        self.assertEqual([str(s) for s in (Source.plain, Source.over, Source.spelled)],
                         ['plain()', 'over(int)', 'otherName(QString)'])
        self.source.over[int, float].connect(note)
        self.source.over.connect(note)
        self.source.over[str].emit('unheard')
        self.source.over[int, float].emit(1, 2)
        self.source.over.emit(3)
        self.source.spelled.connect(note)
        self.source.spelled.emit('x')
        self.assertEqual(calls, [(1, 2.0), (3,), (u'x',)])
        self.assertFails(IndexError, 'Signature over(double) not found for signal: over',
                         lambda: self.source.over[float])
        self.assertIs(self.source.one, self.source.one)

    def test_declarations(self):
        class Mixin(object):
            mixed = QtCore.Signal(str)

        class Mixed(Mixin, QtCore.QObject):
            pass

        class Derived(Source):
            more = QtCore.Signal()

        mixed, derived = Mixed(), Derived()
        mixed.mixed.connect(note)
        mixed.mixed.emit('x')
        for signal in (derived.more, derived.plain):
            signal.connect(note)
            signal.emit()
        self.assertEqual(calls, [(u'x',), (), ()])
        self.assertTrue(derived.inherits('Derived') and derived.inherits('Source') and derived.inherits('QObject'))
        self.assertFalse(derived.inherits('Mixed'))
        self.assertIs(type(Mixin().mixed), QtCore.Signal)
        Derived.late = QtCore.Signal()
        self.assertIs(type(derived.late), QtCore.Signal)
        self.assertFails(TypeError, 'Value types used on meta functions (including signals) need to be registered on '
                         'meta type: PySide.QtCore.QEvent.Type', QtCore.Signal, QtCore.QEvent.Type)
        self.assertRaises(TypeError, QtCore.Signal, 5)
        self.assertRaises(TypeError, QtCore.Signal, int, nothing=1)

    def test_chains_of_signals(self):
        middle = Source()
        self.source.one.connect(middle.one)
        middle.one.connect(note)
        self.source.one.emit(5)
        self.assertEqual(calls, [(5,)])
        self.source.one.disconnect(middle.one)
        self.source.one.emit(6)
        self.assertEqual(calls, [(5,)])

    def test_cpp_slots(self):
        timer = QtCore.QTimer()
        self.source.one.connect(timer.start)
        self.source.one.emit(100000)
        self.assertEqual((timer.isActive(), timer.interval()), (True, 100000))
        self.source.plain.connect(timer.stop)
        self.source.plain.emit()
        self.assertFalse(timer.isActive())
        self.source.plain.disconnect(timer.stop)

    def test_counting_connections(self):
        for _ in range(2):
            self.source.plain.connect(note)
        self.source.plain.emit()
        self.assertEqual(len(calls), 2)
        self.source.plain.disconnect(note)
        self.source.plain.emit()
        self.assertEqual(len(calls), 3)
        self.assertFails(RuntimeError, 'Failed to connect signal plain().', self.source.plain.connect, note,
                         QtCore.Qt.UniqueConnection)
        self.source.blockSignals(True)
        self.source.plain.emit()
        self.assertEqual(len(calls), 3)

    def test_slots_that_change_connections(self):
        def once():
            calls.append('once')
            self.source.plain.disconnect(once)
            self.source.plain.connect(note)
        self.source.plain.connect(once)
        self.source.plain.emit()
        self.source.plain.emit()
        self.assertEqual(calls, ['once', ()])

        timer = QtCore.QTimer()
        timer.timeout.connect(lambda: shiboken.delete(timer))
        timer.timeout.connect(note)
        timer.timeout.emit()
        self.assertFalse(shiboken.isValid(timer))

    def test_exceptions_in_slots(self):
        def fail():
            raise ValueError('in a slot')
        self.source.plain.connect(fail)
        self.source.plain.connect(note)
        with standard_error() as error:
            self.assertIs(self.source.plain.emit(), True)
        self.assertIn('ValueError: in a slot', error.getvalue())
        self.assertEqual(calls, [()])
        code, out, _ = run('''
from PySide import QtCore
import sys
t = QtCore.QTimer()
t.timeout.connect(lambda: sys.exit(3))
t.timeout.emit()
print 'not reached'
''')
        self.assertEqual((code, out), (3, ''))

    def test_lives(self):
        class Plain(object):
            def method(self):
                calls.append('method')

        plain, sink = Plain(), Sink()
        self.source.plain.connect(plain.method)
        self.source.plain.connect(sink.take)
        kept = weakref.ref(plain)
        function = lambda: calls.append('function')
        alive = weakref.ref(function)
        self.source.plain.connect(function)
        del plain, sink, function
        gc.collect()
        self.source.plain.emit()
        self.assertEqual((kept(), calls), (None, ['function']))
        self.assertIsNotNone(alive())
        self.source.plain.disconnect()
        gc.collect()
        self.assertIsNone(alive())

        bound = self.source.one
        function = lambda *a: None
        alive = weakref.ref(function)
        bound.connect(function)
        self.source = function = None
        gc.collect()
        self.assertIsNone(alive())
        self.assertDeleted('Source', bound.emit, 1)
        self.assertDeleted('Source', bound.connect, note)
        self.assertDeleted('PySide.QtCore.QTimer', lambda: QtCore.QTimer().timeout.connect(note))

    def test_sender(self):
        self.source.setObjectName('it')
        sink = Sink()
        self.source.plain.connect(sink.take_sender)
        self.source.plain.emit()
        sink.take_sender()
        self.assertEqual(sink.got, [u'it', False])
        self.assertIsNone(sink.sender())

    def test_no_leaks(self):
        def work():
            source, sink = Source(), Sink()
            source.one.connect(sink.take)
            source.one.connect(lambda v: None)
            source.thing.connect(note)
            source.one.emit(5)
            source.thing.emit(source)
            del calls[:]
            source.one.disconnect(sink.take)
        self.assertNoLeak(work)


class OldStyle(Case):
    def setUp(self):
        del calls[:]
        self.source, self.sink = Source(), Sink()

    def test_forms(self):
        signal = QtCore.SIGNAL('one(int)')
        self.assertEqual((signal, QtCore.SLOT('a()')), ('2one(int)', '1a()'))
        static, source, sink = QtCore.QObject, self.source, self.sink
        forms = [(static, (source, signal, note)), (source, (signal, note)),
                 (static, (source, signal, sink, QtCore.SLOT('declared(int)'))),
                 (source, (signal, sink, QtCore.SLOT('take(int)'))),
                 (sink, (source, signal, QtCore.SLOT('declared(int)'))),
                 (static, (source, signal, source, QtCore.SIGNAL('thing(PyObject)')))]
        for owner, arguments in forms[:-1]:
            self.assertIs(owner.connect(*arguments), True)
            source.emit(signal, 5)
            self.assertEqual(len(calls) + len(sink.got), 1)
            self.assertIs(owner.disconnect(*arguments), True)
            self.assertIs(owner.disconnect(*arguments), False)
            source.emit(signal, 5)
            self.assertEqual(len(calls) + len(sink.got), 1)
            del calls[:], sink.got[:]
        self.assertIs(forms[-1][0].connect(*forms[-1][1]), False)

    def test_what_is_made_on_demand(self):
        signal = QtCore.SIGNAL('fresh(int, QString)')
        self.assertIs(self.source.connect(signal, note), True)
        self.assertIs(self.source.emit(signal, 5, 'x'), True)
        self.assertEqual(calls, [(5, u'x')])
        self.assertIs(self.source.emit(QtCore.SIGNAL('unheard()')), True)
        self.source.one.connect(note)
        self.source.one.emit(1)
        self.assertEqual(calls[1:], [(1,)])

        self.assertIs(QtCore.QObject.connect(self.source, signal, self.sink, QtCore.SLOT('later()')), True)
        self.sink.later = lambda *values: calls.append('later')
        self.source.emit(signal, 5, 'x')
        self.assertEqual(calls[-1], 'later')

    def test_what_cannot_be_connected(self):
        marked = 'Use the function PySide.QtCore.%s on %s'
        wrong = "'PySide.QtCore.QObject.connect' called with wrong argument types:"
        signal = QtCore.SIGNAL('one(int)')
        for error, text, arguments in (
                (TypeError, marked % ('SIGNAL', 'signals'), (self.source, 'one(int)', note)),
                (TypeError, marked % ('SLOT', 'slots'), (self.source, signal, self.sink, 'declared(int)')),
                (TypeError, wrong, ()), (TypeError, wrong, (self.source,)), (TypeError, wrong, (self.source, 5, note)),
                (TypeError, wrong, (self.source, signal, 5)), (TypeError, wrong, (5, signal, note)),
                (TypeError, wrong, (self.source, signal, note, 'x')),
                (TypeError, wrong, (self.source, signal, note, QtCore.Qt.AutoConnection, 1))):
            self.assertFails(error, text, QtCore.QObject.connect, *arguments)
        shiboken.delete(self.sink)
        self.assertDeleted('Sink', QtCore.QObject.connect, self.source, signal, self.sink, QtCore.SLOT('take(int)'))
        shiboken.delete(self.source)
        self.assertDeleted('Source', QtCore.QObject.connect, self.source, signal, note)


if __name__ == '__main__':
    unittest.main()
