# Events, and the virtual operations that Python classes override.
import unittest
import warnings

import shiboken
from PySide import QtCore
from event_loop import application, wait_until
from support import Case, run, standard_error

User = QtCore.QEvent.User


class Receiver(QtCore.QObject):
    def __init__(self):
        QtCore.QObject.__init__(self)
        self.seen = []

    def customEvent(self, event): self.seen.append(event)
    def childEvent(self, event): self.seen.append((event.type(), event.child()))
    def connectNotify(self, signal): self.seen.append(('connected', signal))
    def disconnectNotify(self, signal): self.seen.append(('disconnected', signal))

    def timerEvent(self, event):
        self.seen.append(event.timerId())
        QtCore.QObject.timerEvent(self, event)
        if len(self.seen) == 2:
            raise ValueError('in a timer')


class Answering(QtCore.QObject):
    def event(self, event): return self.answer()

    def eventFilter(self, watched, event):
        self.last = (watched, event)
        return self.answer()


class Own(QtCore.QEvent):
    def __init__(self, text):
        QtCore.QEvent.__init__(self, QtCore.QEvent.Type(1100))
        self.text = text


class Events(Case):
    def test_python_events(self):
        receiver, sent = Receiver(), Own('sent')
        application.sendEvent(receiver, sent)
        self.assertIs(receiver.seen.pop(), sent)
        self.assertTrue(shiboken.isValid(sent))
        application.postEvent(receiver, Own('posted'))
        self.assertEqual(receiver.seen, [])
        application.processEvents()
        self.assertIs(type(receiver.seen[0]), Own)
        self.assertDeleted('Own', receiver.seen[0].type)
        application.postEvent(receiver, sent, -1)
        self.assertFails(RuntimeError, 'an event can be posted once, and only one that Python made',
                         application.postEvent, receiver, sent)
        shiboken.delete(receiver)
        self.assertDeleted('Own', sent.type)

    def test_event_types(self):
        timer_event = QtCore.QTimerEvent(4)
        self.assertEqual((timer_event.type(), timer_event.timerId()), (QtCore.QEvent.Timer, 4))
        o = QtCore.QObject()
        child_event = QtCore.QChildEvent(QtCore.QEvent.ChildAdded, o)
        self.assertEqual((child_event.added(), child_event.removed(), child_event.child()), (True, False, o))
        event = QtCore.QEvent(User)
        event.ignore()
        self.assertFalse(event.isAccepted())
        self.assertTrue(1000 <= QtCore.QEvent.registerEventType() <= 65535)
        refused, count = "'PySide.QtCore.QEvent' called with wrong argument types:", 'QEvent expected 1 arguments, got %d'
        for arguments, text in (((), count % 0), ((5,), refused), ((None,), refused), ((User, 5), count % 2)):
            self.assertFails(TypeError, text, QtCore.QEvent, *arguments)

    def test_overrides(self):
        receiver = Receiver()
        child = QtCore.QObject(receiver)
        self.assertEqual(receiver.seen.pop(), (QtCore.QEvent.ChildAdded, child))
        child.setParent(None)
        self.assertEqual(receiver.seen.pop(), (QtCore.QEvent.ChildRemoved, child))
        function = lambda: None
        receiver.destroyed.connect(function)
        receiver.destroyed.disconnect(function)
        self.assertEqual(receiver.seen, [('connected', '2destroyed(QObject*)'), ('disconnected', '2destroyed(QObject*)')])
        receiver.seen = []
        timer = receiver.startTimer(0)
        with standard_error() as error:
            wait_until(lambda: len(receiver.seen) > 2)
        receiver.killTimer(timer)
        self.assertEqual(set(receiver.seen), set([timer]))
        self.assertIn('ValueError: in a timer', error.getvalue())

    def test_answers(self):
        o, watched, event = Answering(), QtCore.QObject(), QtCore.QEvent(QtCore.QEvent.Show)
        watched.installEventFilter(o)
        for name, target in (('event', o), ('eventFilter', watched)):
            for answer, got, kind in ((True, True, None), (0, False, None), (2.5, True, None), (None, False, 'NoneType'),
                                      ('x', False, 'str')):
                o.answer = lambda: answer
                with warnings.catch_warnings(record=True) as caught:
                    warnings.simplefilter('always')
                    self.assertIs(application.sendEvent(target, event), got)
                text = 'Invalid return value in function QObject.%s, expected bool, got %s.' % (name, kind)
                self.assertEqual([str(w.message) for w in caught], [text] if kind else [])
            o.answer = lambda: 1 / 0
            with standard_error() as error:
                self.assertIs(application.sendEvent(target, event), False)
            self.assertIn('ZeroDivisionError', error.getvalue())
        self.assertEqual((o.last[0] is watched, o.last[1] is event), (True, True))
        with warnings.catch_warnings(), standard_error() as error:
            warnings.simplefilter('error')
            o.answer = lambda: None
            self.assertIs(application.sendEvent(o, event), False)
        self.assertIn('RuntimeWarning: Invalid return value', error.getvalue())
        o.answer = lambda: True
        watched.removeEventFilter(o)

    def test_base_class_operations(self):
        class Through(QtCore.QTimer):
            depth = 0

            def event(self, event):
                self.depth += 1
                return QtCore.QTimer.event(self, event)

            def eventFilter(self, watched, event): return QtCore.QTimer.eventFilter(self, watched, event)
        timer, ticks = Through(), []
        timer.timeout.connect(lambda: ticks.append(1))
        timer.installEventFilter(timer)
        timer.start(0)
        wait_until(lambda: len(ticks) > 2)
        timer.stop()
        self.assertTrue(timer.depth >= 3)
        o = QtCore.QObject()
        self.assertEqual((o.event(QtCore.QEvent(User)), o.eventFilter(o, QtCore.QEvent(User))), (True, False))
        for operation in (o.timerEvent, o.childEvent, o.event, o.customEvent):
            self.assertRaises(TypeError, operation, None)

    def test_timers(self):
        calls = []
        QtCore.QTimer.singleShot(0, lambda: calls.append('function'))
        gone = QtCore.QObject()
        gone.destroyed.connect(lambda: calls.append('slot'))
        QtCore.QTimer.singleShot(0, gone, QtCore.SLOT('deleteLater()'))
        clock = QtCore.QTimer()
        clock.timeout.connect(lambda: calls.append('signal'))
        QtCore.QTimer.singleShot(0, clock.timeout)
        wait_until(lambda: len(calls) == 3)
        self.assertFalse(shiboken.isValid(gone))
        for arguments in ((1, 5), ('x', len), (1, gone), (1, len, 'x')):
            self.assertFails(TypeError, "'PySide.QtCore.QTimer.singleShot' called with wrong argument types:",
                             QtCore.QTimer.singleShot, *arguments)
        self.assertEqual((QtCore.QTimer(interval=7).interval(), QtCore.QTimer(singleShot=True).isSingleShot()), (7, True))

    def test_loops_go_on_after_exceptions(self):
        code, out, error = run('''
from PySide import QtCore
app = QtCore.QCoreApplication([])
def fail(): raise ValueError('slot')
QtCore.QTimer.singleShot(0, fail)
QtCore.QTimer.singleShot(1, lambda: app.exit(3))
print app.exec_()
''')
        self.assertEqual((code, out), (0, '3\n'))
        self.assertIn('ValueError: slot', error)

    def test_notify(self):
        self.assertEqual(run('''
from PySide import QtCore
class Application(QtCore.QCoreApplication):
    def notify(self, receiver, event):
        if event.type() == QtCore.QEvent.User:
            print receiver.objectName()
            return receiver.objectName() == 'taken'
        return QtCore.QCoreApplication.notify(self, receiver, event)
app = Application([])
for name in ('taken', 'left'):
    print app.sendEvent(QtCore.QObject(objectName=name), QtCore.QEvent(QtCore.QEvent.User))
print app.notify(QtCore.QObject(), QtCore.QEvent(QtCore.QEvent.Type(1001)))
'''), (0, 'taken\nTrue\nleft\nFalse\nTrue\n', ''))


if __name__ == '__main__':
    unittest.main()
