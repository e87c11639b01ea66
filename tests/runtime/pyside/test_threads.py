# Signals and events across threads. A test that fails to end is stopped by ctest, and has found a deadlock.
import gc
import sys
import threading
import unittest

import shiboken
from nodes import Node
from PySide import QtCore
from event_loop import application, wait_until
from support import Case, in_threads, run


def here(): return threading.current_thread().ident


class Threads(Case):
    def setUp(self): self.node, self.got = Node(), []

    def note(self, value): self.got.append((here(), value))

    def test_emission_from_a_library_thread(self):
        node, here_now = self.node, [(here(), 0), (here(), 1), (here(), 2)]
        node.levelChanged.connect(self.note, QtCore.Qt.DirectConnection)
        node.emitFromThread(3)
        self.assertEqual([value for _, value in self.got], [0, 1, 2])
        self.assertNotIn(here(), [ident for ident, _ in self.got])
        node.levelChanged.disconnect()

        del self.got[:]
        node.levelChanged.connect(self.note)
        node.emitFromThread(3)
        self.assertEqual(self.got, [])
        wait_until(lambda: len(self.got) == 3)
        self.assertEqual(self.got, here_now)

        del self.got[:]
        node.named.connect(lambda name, place: self.note(place), QtCore.Qt.BlockingQueuedConnection)
        node.startEmitting(3)
        wait_until(lambda: len(self.got) == 3)
        node.finishEmitting()
        node.named.emit('same thread', 4)  # must not wait for itself
        self.assertEqual(self.got, here_now + [(here(), 4)])

    def test_queued_connections_in_one_thread(self):
        node, got, gone = self.node, [], QtCore.QObject()
        node.related.connect(lambda other: got.append(other), QtCore.Qt.QueuedConnection)
        node.related.emit(gone)
        node.related.emit(node)
        shiboken.delete(gone)
        self.assertEqual(got, [])
        application.processEvents()
        self.assertEqual(got, [None, node])

        node.related.emit(None)
        node.related.disconnect()
        application.processEvents()
        self.assertEqual(len(got), 2)

        node.fired.connect(lambda: got.append('sent'), QtCore.Qt.QueuedConnection)
        node.fired.emit()
        shiboken.delete(node)
        application.processEvents()
        self.assertEqual(got[2:], ['sent'])

    def test_emission_while_connections_change(self):
        named, got = self.node.named, []
        named.connect(lambda *values: got.append(values), QtCore.Qt.DirectConnection)
        self.node.startEmitting(300)
        for _ in range(100):
            function = lambda *values: None
            named.connect(function, QtCore.Qt.DirectConnection)
            named.disconnect(function)
        self.node.finishEmitting()
        self.assertEqual(len(got), 300)

    def test_no_event_loop_to_wait_for(self):
        got = []

        def work():
            self.node.fired.connect(lambda: got.append(here()))
            self.node.fired.emit()
            got.append(here())
        in_threads(work)
        self.assertEqual((len(got), got[0]), (2, got[1]))
        code, out, _ = run('''
import sys
sys.path[:0] = %r
from nodes import Node
node = Node()
def say(value): print value
node.levelChanged.connect(say)
node.emitFromThread(2)
''' % sys.path)
        self.assertEqual((code, out), (0, '0\n1\n'))

    def test_qthreads(self):
        class Worker(QtCore.QThread):
            result = QtCore.Signal(object)

            def run(self):
                self.ident = here()
                self.result.emit({'made in': here()})

        worker = Worker()
        worker.result.connect(self.note)
        worker.start()
        self.assertTrue(worker.wait())
        wait_until(lambda: self.got)
        self.assertEqual(self.got, [(here(), {'made in': worker.ident})])
        self.assertNotEqual(worker.ident, here())
        code, _, error = run('''
from PySide import QtCore
class Failing(QtCore.QThread):
    def run(self): raise ValueError('in a thread')
f = Failing()
f.start()
f.wait()
''')
        self.assertEqual(code, 0)
        self.assertIn('ValueError: in a thread', error)

    def test_objects_in_other_threads(self):
        class Worker(QtCore.QObject):
            asked = QtCore.Signal(int)
            answered = QtCore.Signal(int, object)

            def work(self, value): self.answered.emit(value * value, here())

        thread, worker, got = QtCore.QThread(), Worker(), []
        worker.moveToThread(thread)
        worker.asked.connect(worker.work)
        worker.answered.connect(lambda value, ident: got.append((value, ident != here())))
        thread.start()
        for value in range(3):
            worker.asked.emit(value)
        wait_until(lambda: len(got) == 3)
        self.assertEqual(got, [(0, True), (1, True), (4, True)])
        gone = []
        worker.destroyed.connect(lambda: gone.append(1), QtCore.Qt.DirectConnection)
        del worker
        gc.collect()
        wait_until(lambda: gone)
        thread.quit()
        self.assertTrue(thread.wait())
        self.assertFails(RuntimeError, "a QObject's parent must live in the same thread", in_threads,
                         lambda: QtCore.QObject().setParent(application))

    def test_python_runs_while_qt_works(self):
        thread = QtCore.QThread()
        thread.start()
        del thread  # while it runs
        done = threading.Event()
        threading.Thread(target=done.set).start()
        timer = QtCore.QTimer()
        timer.timeout.connect(lambda: done.is_set() and application.quit())
        timer.start(0)
        self.assertEqual(application.exec_(), 0)
        QtCore.QThread.msleep(1)

    def test_what_lives_in_another_thread_is_gone_at_once(self):
        thread, parent = QtCore.QThread(), QtCore.QObject()
        child, gone = QtCore.QTimer(parent), []
        for o in (parent, child):
            o.destroyed.connect(lambda: gone.append(here() != main), QtCore.Qt.DirectConnection)
        main, emit = here(), child.timeout.emit
        parent.moveToThread(thread)
        thread.start()
        shiboken.delete(parent)
        self.assertDeleted('PySide.QtCore.QTimer', child.objectName)
        self.assertDeleted('PySide.QtCore.QTimer', emit)
        wait_until(lambda: len(gone) == 2)
        self.assertEqual(gone, [True, True])

    def test_no_thread_is_deleted_by_what_lives_in_it(self):
        class Worker(QtCore.QObject): pass
        for delete in (Worker.deleteLater, shiboken.delete):
            worker, gone = Worker(), []
            thread = QtCore.QThread(worker)
            thread.start()
            thread.destroyed.connect(lambda: gone.append(here()), QtCore.Qt.DirectConnection)
            worker.moveToThread(thread)
            self.assertEqual((thread.parent(), worker.thread()), (None, thread))
            del thread
            delete(worker)
            del worker
            wait_until(lambda: gone)
            self.assertEqual(gone, [here()])
        thread = QtCore.QThread()
        thread.start()
        worker = QtCore.QObject()
        for o in (worker, thread):
            o.moveToThread(thread)
        self.assertFails(RuntimeError, 'a QThread that lives in itself cannot have a parent', thread.setParent, worker)

    def test_the_main_thread_is_not_deleted(self):
        for delete in (QtCore.QThread.deleteLater, shiboken.delete):
            delete(application.thread())
            application.sendPostedEvents(None, int(QtCore.QEvent.DeferredDelete))
            self.assertTrue(application.thread().isRunning())

    def test_a_thread_may_drop_itself(self):
        self.assertEqual(run('''
from PySide import QtCore
class Own(QtCore.QThread):
    def run(self):
        threads.pop()
        done.append(1)
threads, done = [Own()], []
threads[0].finished.connect(lambda: done.append(2), QtCore.Qt.DirectConnection)
threads[0].start()
while len(done) < 2: QtCore.QThread.msleep(1)
print done
'''), (0, '[1, 2]\n', ''))

    def test_a_thread_that_lives_in_itself_ends_elsewhere(self):
        thread, gone = QtCore.QThread(), []
        thread.destroyed.connect(lambda: gone.append(here()), QtCore.Qt.DirectConnection)
        thread.start()
        thread.moveToThread(thread)
        thread.deleteLater()
        wait_until(thread.isFinished)
        application.sendPostedEvents(thread, int(QtCore.QEvent.DeferredDelete))
        self.assertEqual(gone, [here()])

    def test_events_from_threads(self):
        class Receiver(QtCore.QObject):
            def customEvent(receiver, event): self.note(int(event.type()))
        receiver = Receiver()
        in_threads(lambda: application.postEvent(receiver, QtCore.QEvent(QtCore.QEvent.User)))
        wait_until(lambda: self.got)
        in_threads(lambda: application.sendPostedEvents(None, 0))
        self.assertEqual(self.got, [(here(), 1000)])


if __name__ == '__main__':
    unittest.main()
