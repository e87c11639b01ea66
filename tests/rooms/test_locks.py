"""What the model lock guards cannot be reached without a guard, and not be written through a guard for reading."""

import itertools
import os
import subprocess
import unittest

from distutils.spawn import find_executable
from test_rooms import SOURCE, commands

ENGINE = "#include <engine/stratum/tree.h>\nusing namespace Stratum;\n"
LOCKED = "class Sample { ModelLock lock; int value VIREO_GUARDED_BY(lock); int read() { %s return value; } };"

# What is compiled with Clang, and what it says; nothing where it has nothing to refuse.
ROWS = [
    ("void f(STRM_ProjectManager& m) { Exclusive(m)->settings.length = 1 + Reading(m)->settings.length; }", None),
    ("void f(STRM_ProjectManager& m) { Reading(m)->settings.length = 1; }", "const"),
    ("void f(STRM_ProjectManager& m, LayerModel& l) { Reading(m).of(l).locked = true; }", "const"),
    ("void f(STRM_ProjectManager& m) { (*Reading(m)->root().items.begin()).locked = true; }", "const"),
    ("void f(STRM_ProjectManager& m, const LayerModel& l) { Exclusive(m).of(l).locked = true; }", None),
    ("unsigned f(STRM_ProjectManager& m) { return m.m_model.settings.length; }", "private member"),
    ("unsigned f(STRM_ProjectManager& m) { return m.settings.length; }", "no member named 'settings'"),
    (LOCKED % "", "requires holding model lock 'lock'"),
    (LOCKED % "lock.lock();", "still held"),
]


@unittest.skipUnless(find_executable("clang++"), "no clang++")
class Locks(unittest.TestCase):
    command = ["clang++", "-fsyntax-only", "-Werror=thread-safety"] + [
        word for word in itertools.dropwhile(lambda word: word[:1] != "-", commands()["engine/stratum"]) if word != "-E"]

    def errors(self, code):
        process = subprocess.Popen(self.command, stdin=subprocess.PIPE, stderr=subprocess.PIPE)
        text = process.communicate(code)[1]
        return text if process.returncode else None

    def test_the_compiler_holds_the_lock_to_its_rules(self):
        for code, refusal in ROWS:
            found = self.errors(ENGINE + code)
            self.assertTrue(found is None if refusal is None else refusal in (found or ""), (code, found))

    def test_the_engine_keeps_them(self):
        with open(os.path.join(SOURCE, "engine/stratum/manager.cpp")) as source: # the one that sees the lock itself
            self.assertIs(self.errors(source.read()), None)


if __name__ == "__main__":
    unittest.main()
