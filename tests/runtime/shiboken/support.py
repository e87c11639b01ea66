# What the tests of the runtime share: leak counts, errors as text, and children that run a script.
import gc
import os
import subprocess
import sys
import unittest

import probe


class Case(unittest.TestCase):
    """Every test leaves as many C++ objects behind as it found."""

    def setUp(self):
        gc.collect()
        self.before = probe.alive()

    def tearDown(self):
        gc.collect()
        self.assertEqual(probe.alive(), self.before)

    def assertFails(self, error, text, function, *arguments, **keywords):
        with self.assertRaises(error) as caught:
            function(*arguments, **keywords)
        self.assertEqual(str(caught.exception), text)
        del caught
        sys.exc_clear()

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


def run(script):
    """Exit code and output of an interpreter of the same kind."""
    child = subprocess.Popen([sys.executable, '-B', '-c', script], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             env=os.environ)
    output = child.communicate()[0]
    return child.returncode, '\n'.join(line for line in output.splitlines() if not line.endswith(' refs]'))
