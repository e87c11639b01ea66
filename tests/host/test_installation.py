"""`cmake --install` into a prefix, and what runs from there without the build tree."""
import os
import shutil
import sys
import tempfile
import unittest

from running import run

look = "import vireo.project, PySide.QtCore, PySide.QtGui\n" \
       "print [line.split()[-1] for line in open('/proc/self/maps') if '.so' in line]"


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = os.path.realpath(tempfile.mkdtemp())
        code, _, complaints = run([os.environ["VIREO_CMAKE"], "--install", os.environ["VIREO_BUILD"], "--prefix", cls.prefix])
        assert code == 0, complaints
        cls.site = os.path.join(cls.prefix, os.environ["VIREO_INSTALL_SITE"])
        cls.program = os.path.join(cls.prefix, os.environ["VIREO_INSTALL_BIN"], "vireo")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.prefix)

    def assertStandsAlone(self, arguments, **environment):
        code, printed, complaints = run(arguments + ["-c", look], **environment)
        self.assertEqual((code, complaints), (0, ""))
        self.assertNotIn(os.environ["VIREO_BUILD"] + "/", printed)
        self.assertIn(self.prefix, printed)

    def test_packages_in_an_interpreter(self):
        self.assertStandsAlone([sys.executable], PYTHONPATH=self.site + os.pathsep + os.environ["VIREO_INSTALLED_PYSIDE"])

    def test_application(self):
        self.assertStandsAlone([self.program])

    def test_the_prefix_may_move(self):
        moved = self.prefix + "-moved"
        shutil.copytree(self.prefix, moved, symlinks=True)
        self.addCleanup(shutil.rmtree, moved)
        code, printed, complaints = run([self.program.replace(self.prefix, moved), "-c", look])
        self.assertEqual((code, complaints), (0, ""))
        self.assertNotIn(self.prefix + "/", printed)


if __name__ == "__main__":
    unittest.main()
