# What the tests of the runtime share: errors as text, leak counts, what goes to stderr, and child processes.
import contextlib
import gc
import StringIO
import subprocess
import sys
import threading
import unittest


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
        """The first line of the message counts when `text` has no more."""
        with self.assertRaises(error) as caught:
            function(*arguments, **keywords)
        message = str(caught.exception)
        self.assertEqual(message if '\n' in text else message.split('\n')[0], text)
        del caught
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


def in_threads(function, count=1):
    """An exception in one of them is the caller's."""
    errors = []

    def work():
        try:
            function()
        except Exception as error:
            errors.append(error)
    threads = [threading.Thread(target=work) for _ in range(count)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if errors:
        raise errors[0]


def run(script):
    """Exit code, stdout and stderr of an interpreter of the same kind."""
    child = subprocess.Popen([sys.executable, '-B', '-c', script], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    out, errors = child.communicate()
    return child.returncode, out, '\n'.join(line for line in errors.splitlines() if not line.endswith(' refs]'))
