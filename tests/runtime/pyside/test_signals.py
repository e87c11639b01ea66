# Signals that Python classes declare, and callables of every kind that are connected to them.
import functools
import gc
import unittest
import weakref

import event_loop  # without one, timers do not start
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
    def take(self, *values): calls.append(values)
    def take_sender(self): calls.append(self.sender() is not None and self.sender().objectName())
    @QtCore.Slot(int)
    def declared(self, value): calls.append((value,))
    @staticmethod
    def fixed(*values): calls.append(values)
    @classmethod
    def of_class(cls, *values): calls.append(values)


class Callable(object):
    def __call__(self, value): calls.append((value,))


calls = []
SIGNAL, SLOT = QtCore.SIGNAL, QtCore.SLOT
WRONG = "'PySide.QtCore.QObject.%s' called with wrong argument types:"


def note(*values): calls.append(values)


class SignalCase(Case):
    def setUp(self):
        del calls[:]
        self.source, self.sink = Source(), Sink()

    def assertCalls(self, *expected):
        """Since the last look."""
        self.assertEqual(calls, list(expected))
        del calls[:]


class Signals(SignalCase):
    def test_what_can_be_connected(self):
        sink, one = self.sink, self.source.one
        for slot in (note, lambda *v: calls.append(v), functools.partial(note), Callable(), Sink.fixed, sink.fixed,
                     sink.of_class, sink.take, sink.declared):
            for arguments in ((), (slot,)):
                self.assertIs(one.connect(slot), True)
                self.assertIs(one.emit(5), True)
                self.assertCalls((5,))
                self.assertIs(one.disconnect(*arguments), True)
                one.emit(5)
                self.assertCalls()

    def test_unhashable_owner(self):
        one = self.source.one
        for _ in range(2 ** 16):  # more than there are numbers for connections at one time
            one.connect(calls.append)
            one.disconnect(calls.append)
        one.connect(calls.append)
        one.emit(5)
        self.assertCalls(5)

    def test_what_cannot(self):
        failed, source = 'Failed to %s signal one(int).', self.source
        for slot, error, text in ((5, TypeError, WRONG), ('x', RuntimeError, failed), (note, RuntimeError, failed)):
            self.assertFails(error, text % 'disconnect', source.one.disconnect, slot)
        for error, text, call, argument in (
                (RuntimeError, failed % 'connect', source.one.connect, None),
                (RuntimeError, failed % 'connect', source.one.connect, source.related),
                (TypeError, "a value of type 'int' cannot be made from str", source.one.emit, 'x'),
                (TypeError, 'native Qt signal is not callable', Source.one, 5),
                (IndexError, 'Signature over(double) not found for signal: over', source.over.__getitem__, float),
                (AttributeError, "'PySide.QtCore.Signal' object has no attribute 'connect'",
                 lambda name: getattr(Source.one, name), 'connect')):
            self.assertFails(error, text, call, argument)
        self.assertFails(TypeError, 'emit() takes no keyword arguments', source.one.emit, value=5)

    def test_arguments(self):
        two = self.source.two
        for wanted, given in ((lambda: calls.append(()), ()), (lambda a: calls.append((a,)), (1,)),
                              (lambda a, b=9: calls.append((a, b)), (1, u'x')), (note, (1, u'x'))):
            two.connect(wanted)
            two.emit(1, 'x')
            self.assertCalls(given)
            two.disconnect(wanted)
        two.connect(lambda a, b, c: None)
        with standard_error() as error:
            self.assertIs(two.emit(1, 'x'), True)
        self.assertIn('takes exactly 3 arguments (2 given)', error.getvalue())
        for count, said in (0, 1), (1, 1), (3, 4):  # one more than there are, but never what would be right
            self.assertFails(TypeError, 'two(int,QString) only accepts 2 arguments, %d given!' % said, two.emit,
                             *range(count))

    def test_conversion_of_arguments(self):
        source = self.source
        for signal in (source.one, source.thing, source.related):
            signal.connect(note)
        for given, got in ((None, 0), (1.9, 1), (True, 1), (QtCore.QEvent.User, 1000)):
            source.one.emit(given)
            self.assertCalls((got,))
        with standard_error() as error:
            source.one.emit(2 ** 40)
        self.assertEqual((calls.pop(), error.getvalue()), ((0,), 'OverflowError\n'))
        for signal, given in ((source.thing, {1: 2}), (source.thing, None), (source.thing, note),
                              (source.related, source), (source.related, None)):
            signal.emit(given)
            self.assertIs(calls.pop()[0], given)
        self.assertRaises(TypeError, source.related.emit, 5)
        shiboken.delete(self.sink)
        self.assertDeleted('Sink', source.related.emit, self.sink)
        self.assertCalls()

    def test_overloads_and_names(self):
        source = self.source
        self.assertEqual([str(s) for s in (Source.plain, Source.over, Source.spelled)],
                         ['plain()', 'over(int)', 'otherName(QString)'])
        for signal in (source.over[int, float], source.over, source.spelled):
            signal.connect(note)
        source.over[str].emit('unheard')
        source.over[int, float].emit(1, 2)
        source.over.emit(3)
        source.spelled.emit('x')
        self.assertCalls((1, 2.0), (3,), (u'x',))
        self.assertIs(source.one, source.one)

    def test_declarations(self):
        class Mixin(object): mixed = QtCore.Signal(str)

        class Derived(Mixin, Source):
            more, kind, raw = QtCore.Signal(), QtCore.Signal(QtCore.QEvent.Type), QtCore.Signal(QtCore.QByteArray)

        derived = Derived()
        for signal, values in ((derived.more, ()), (derived.plain, ()), (derived.mixed, (u'x',)),
                               (derived.kind, (QtCore.QEvent.User,)), (derived.raw, (QtCore.QByteArray('x'),))):
            signal.connect(note)
            signal.emit(*values)
            self.assertCalls(values)
        self.assertEqual([derived.inherits(name) for name in ('Derived', 'Source', 'QObject', 'Mixin')], [True] * 3 + [False])
        Derived.late = QtCore.Signal()
        self.assertEqual([type(Mixin().mixed), type(derived.late)], [QtCore.Signal] * 2)
        self.assertFails(TypeError, 'Value types used on meta functions (including signals) need to be registered on '
                         'meta type: PySide.QtCore.QThread.Priority', QtCore.Signal, QtCore.QThread.Priority)
        self.assertRaises(TypeError, QtCore.Signal, 5)
        self.assertRaises(TypeError, QtCore.Signal, int, nothing=1)

    def test_receivers_of_c(self):
        middle, timer = Source(), QtCore.QTimer()
        self.source.one.connect(middle.one)
        self.source.one.connect(timer.start)
        middle.one.connect(note)
        self.source.one.emit(100000)
        self.assertEqual((timer.isActive(), timer.interval()), (True, 100000))
        self.source.one.disconnect(middle.one)
        self.source.one.disconnect(timer.start)
        self.source.one.emit(6)
        self.assertEqual(timer.interval(), 100000)
        self.assertCalls((100000,))

    def test_counting_connections(self):
        plain = self.source.plain
        for change, count in ((plain.connect, 1), (plain.connect, 2), (plain.disconnect, 1)):
            change(note)
            plain.emit()
            self.assertCalls(*[()] * count)
        self.assertFails(RuntimeError, 'Failed to connect signal plain().', plain.connect, note,
                         QtCore.Qt.UniqueConnection)
        self.source.blockSignals(True)
        plain.emit()
        self.assertCalls()

    def test_slots_that_change_connections(self):
        def once():
            calls.append('once')
            self.source.plain.disconnect(once)
            self.source.plain.connect(note)
        self.source.plain.connect(once)
        self.source.plain.emit()
        self.source.plain.emit()
        self.assertCalls('once', ())

        timer = QtCore.QTimer()
        timer.timeout.connect(lambda: shiboken.delete(timer))
        timer.timeout.connect(note)
        timer.timeout.emit()
        self.assertFalse(shiboken.isValid(timer))

    def test_exceptions_in_slots(self):
        def fail(): raise ValueError('in a slot')
        self.source.plain.connect(fail)
        self.source.plain.connect(note)
        with standard_error() as error:
            self.assertIs(self.source.plain.emit(), True)
        self.assertIn('ValueError: in a slot', error.getvalue())
        self.assertCalls(())
        self.assertEqual(run('from PySide import QtCore\nt = QtCore.QTimer()\nt.timeout.connect(lambda: exit(3))\n'
                             't.timeout.emit()\nprint "not reached"')[:2], (3, ''))

    def test_lives(self):
        plain, one = self.source.plain, self.source.one
        plain.connect(self.sink.take)  # methods are held weakly, functions are not
        function, other = lambda: calls.append('function'), lambda *a: None
        plain.connect(function)
        one.connect(other)
        alive, other_alive = weakref.ref(function), weakref.ref(other)
        self.sink = function = other = None
        gc.collect()
        plain.emit()
        self.assertCalls('function')
        plain.disconnect()
        gc.collect()
        self.assertEqual((alive(), other_alive() is None), (None, False))
        self.source = None
        gc.collect()
        self.assertIsNone(other_alive())
        self.assertDeleted('Source', one.emit, 1)
        self.assertDeleted('Source', one.connect, note)
        self.assertDeleted('PySide.QtCore.QTimer', lambda: QtCore.QTimer().timeout.connect(note))

    def test_sender(self):
        self.source.setObjectName('it')
        self.source.plain.connect(self.sink.take_sender)
        self.source.plain.emit()
        self.sink.take_sender()
        self.assertCalls(u'it', False)

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


class OldStyle(SignalCase):
    def test_forms(self):
        signal, static, source, sink = SIGNAL('one(int)'), QtCore.QObject, self.source, self.sink
        self.assertEqual((signal, SLOT('a()')), ('2one(int)', '1a()'))
        for owner, arguments in ((static, (source, signal, note)), (source, (signal, note)),
                                 (static, (source, signal, sink, SLOT('declared(int)'))),
                                 (source, (signal, sink, SLOT('take(int)'))),
                                 (sink, (source, signal, SLOT('declared(int)')))):
            self.assertIs(owner.connect(*arguments), True)
            source.emit(signal, 5)
            self.assertCalls((5,))
            self.assertIs(owner.disconnect(*arguments), True)
            self.assertIs(owner.disconnect(*arguments), False)
            source.emit(signal, 5)
            self.assertCalls()
        self.assertIs(static.connect(source, signal, source, SIGNAL('thing(PyObject)')), False)

    def test_what_is_made_on_demand(self):
        signal, source, sink = SIGNAL('fresh(int, QString)'), self.source, self.sink
        self.assertIs(source.connect(signal, note), True)
        self.assertIs(source.emit(signal, 5, 'x'), True)
        self.assertIs(source.emit(SIGNAL('unheard()')), False)
        source.one.connect(note)
        source.one.emit(1)
        self.assertCalls((5, u'x'), (1,))
        self.assertIs(QtCore.QObject.connect(source, signal, sink, SLOT('later()')), True)
        sink.later = lambda *values: calls.append('later')
        source.emit(signal, 5, 'x')
        self.assertEqual(calls[-1], 'later')

    def test_signals_of_any_arguments(self):
        signal, source = SIGNAL('anything'), self.source
        self.assertIs(source.emit(signal, 1), False)
        self.assertIs(source.connect(signal, note), True)
        for arguments in ((), (1, 'x', source), ((1, 2),), (None, [3])):
            self.assertIs(source.emit(signal, *arguments), True)
            self.assertCalls(arguments)
        self.assertIs(source.disconnect(signal, note), True)
        self.assertIs(source.emit(signal, 1), True)
        self.assertCalls()

    def test_what_cannot_be_connected(self):
        marked, wrong, signal = 'Use the function PySide.QtCore.%s on %s', WRONG % 'connect', SIGNAL('one(int)')
        source, sink, connect = self.source, self.sink, QtCore.QObject.connect
        for text, arguments in (
                (marked % ('SIGNAL', 'signals'), (source, 'one(int)', note)),
                (marked % ('SLOT', 'slots'), (source, signal, sink, 'declared(int)')), (wrong, ()), (wrong, (source,)),
                (wrong, (source, 5, note)), (wrong, (source, signal, 5)), (wrong, (5, signal, note)),
                (wrong, (source, signal, note, 'x')), (wrong, (source, signal, note, QtCore.Qt.AutoConnection, 1))):
            self.assertFails(TypeError, text, connect, *arguments)
        shiboken.delete(sink)
        self.assertDeleted('Sink', connect, source, signal, sink, SLOT('take(int)'))
        shiboken.delete(source)
        self.assertDeleted('Source', connect, source, signal, note)


if __name__ == '__main__':
    unittest.main()
