"""The interactive prompt, on a terminal of its own."""
import os
import pty
import select
import shutil
import subprocess
import tempfile
import time
import unittest

from running import environment, program, run


class Prompt(unittest.TestCase):
    def setUp(self):
        self.terminal, other = pty.openpty()
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        shot = os.path.join(self.folder, "shot.vireo")
        run([program, "-c", "from vireo import project\nproject.Project(u'').save_as(%r)" % shot])
        self.process = subprocess.Popen([program, "--project", shot], stdin=other, stdout=other, stderr=other, close_fds=True,
                                        preexec_fn=self.own_terminal, env=environment(TERM="dumb"))
        os.close(other)
        self.seen = ""
        self.wait_for(">>> ")

    @staticmethod
    def own_terminal():
        os.setsid()
        os.close(os.open(os.ttyname(0), os.O_RDWR))

    def tearDown(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        os.close(self.terminal)

    def wait_for(self, text, seconds=30):
        end = time.time() + seconds
        while text not in self.seen:
            ready = select.select([self.terminal], [], [], max(0, end - time.time()))[0]
            self.assertTrue(ready, "%r did not come, but %r" % (text, self.seen))
            self.seen += os.read(self.terminal, 4096)
        self.seen = self.seen[self.seen.index(text) + len(text):]

    def type(self, text):
        os.write(self.terminal, text)

    def interrupt(self):
        # Between the prompt and the reading of a line Python notes Ctrl-C and acts on it at the next one only.
        for attempt in range(5):
            time.sleep(0.5)
            self.type("\x03")
            while "KeyboardInterrupt" not in self.seen and select.select([self.terminal], [], [], 5)[0]:
                self.seen += os.read(self.terminal, 4096)
            if "KeyboardInterrupt" in self.seen:
                return
        self.fail("Ctrl-C does not interrupt the prompt, which shows %r" % self.seen)

    def test_reads_prints_and_ends(self):
        self.type("6 * 7\n")
        self.wait_for("42")
        self.wait_for(">>> ")
        self.type("1 / 0\n")
        self.wait_for("ZeroDivisionError")
        self.wait_for(">>> ")
        self.interrupt()
        self.wait_for(">>> ")
        self.type("import sys; sys.argv\n")
        self.wait_for("['']")
        self.type("sys.exit(6)\n")
        self.assertEqual(self.process.wait(), 6)

    def test_has_the_project_and_completes_names(self):
        self.type("project.track_l\t")
        self.wait_for("project.track_layers(")
        self.type("stop=1), len(project.layers)\n")  # an unknown keyword is ignored
        self.wait_for("(None, 0)")

    def test_end_of_input(self):
        self.type("\x04")
        self.assertEqual(self.process.wait(), 0)


if __name__ == "__main__":
    unittest.main()
