# What the tests of PySide share: the application, errors as text, what goes to stderr, and child processes.
import contextlib
import gc
import StringIO
import subprocess
import sys
import unittest

from PySide import QtCore

application = QtCore.QCoreApplication.instance() or QtCore.QCoreApplication(['tests'])


@contextlib.contextmanager
def standard_error():
    text = StringIO.StringIO()
    before, sys.stderr = sys.stderr, text
    try:
        yield text
    finally:
        sys.stderr = before


class Case(unittest.TestCase):
    def assertFails(self, error, text, function, *arguments, **keywords):
        """The first line of the message counts."""
        try:
            function(*arguments, **keywords)
        except error as caught:
            self.assertEqual(str(caught).split('\n')[0], text)
        else:
            self.fail('no ' + error.__name__)
        finally:
            sys.exc_clear()

    def assertDeleted(self, name, function, *arguments):
        self.assertFails(RuntimeError, 'Internal C++ object (%s) already deleted.' % name, function, *arguments)

    def assertNoLeak(self, function, repetitions=200):
        """Reference counts of a debug interpreter are exact; a release one only shows what gc can see."""
        count = getattr(sys, 'gettotalrefcount', lambda: len(gc.get_objects()))
        for _ in range(3):
            function()
        gc.collect()
        before = count()
        for _ in range(repetitions):
            function()
        gc.collect()
        self.assertLess(count() - before, repetitions / 2)

    def wait_until(self, condition, milliseconds=10000):
        """Runs the event loop meanwhile."""
        clock = QtCore.QTimer()
        clock.setSingleShot(True)
        clock.start(milliseconds)
        while not condition() and clock.isActive():
            application.processEvents()
        self.assertTrue(condition())

    def run_script(self, script):
        """(exit code, stdout, stderr) of a child that runs it."""
        child = subprocess.Popen([sys.executable, '-B', '-c', script], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        out, error = child.communicate()
        return child.returncode, out, error
