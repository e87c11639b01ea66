"""tools/set-up on a machine that is made up: dpkg-query, apt-get and sudo note what they are asked and change nothing."""
import os
import re
import shutil
import sys
import tempfile
import unittest

from running import run

set_up = os.path.join(os.path.dirname(__file__), "..", "..", "tools", "set-up")
python_packages = ["python2.7-dev", "python2.7-dbg"]


def wanted():
    with open(set_up) as file:
        lines = re.search(r"wanted=\((.*?)\n\)", file.read(), re.S).group(1).strip().splitlines()
    return [package for line in lines for package in line.strip().strip('"').split(": ")[1].split()] + python_packages


def release():
    with open("/etc/os-release") as file:
        return dict(line.strip().replace('"', "").split("=", 1) for line in file if "=" in line)


@unittest.skipUnless((release().get("ID"), release().get("VERSION_ID")) == ("debian", "12"), "installs on Debian 12")
class SetUp(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.log = os.path.join(self.folder, "log")
        open(self.log, "w").close()
        self.stand_in("id", "echo 1000")
        self.stand_in("apt-get", "echo 'bookworm cdrom:[disc]/'; echo 'bookworm-updates http://updates/'; "
                                 "echo 'bookworm http://mirror/debian/'; echo 'bookworm http://second/'")
        self.root_does("true")

    def stand_in(self, name, code):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n%s\n" % code)
        os.chmod(path, 0o755)

    def root_does(self, code):
        self.stand_in("sudo", "echo \"$@\" >>'%s'; case \"$*\" in *tee*) cat >>'%s';; esac; %s" % (self.log, self.log, code))

    def run_without(self, missing, *options, **environment):
        """Returns the exit code, what was said, and what was done as root."""
        there = [package for package in wanted() if package not in missing]
        self.stand_in("dpkg-query", "".join("echo installed %s\n" % package for package in there) + "false")
        path = os.pathsep.join([self.folder, "/usr/bin", "/bin"])
        code, printed, complaints = run((set_up,) + options, PATH=path, **environment)
        with open(self.log) as file:
            return code, printed + complaints, file.read()

    def test_what_is_there_is_left_alone(self):
        self.assertEqual(self.run_without([]), (0, "", ""))
        self.assertEqual(self.run_without(python_packages, PYTHON2=sys.executable), (0, "", ""))
        self.assertIn("slurmctld", self.run_without([], "--farm")[2])

    def test_installs_what_is_missing_and_says_why(self):
        code, said, done = self.run_without(["clang-format"])
        self.assertEqual((code, said), (0, "set-up: installing clang-format for the format check\n"))
        self.assertRegexpMatches(done, r"(?s)update.*install .*--no-remove clang-format\n$")
        self.assertNotIn("python", done)

    def test_python_comes_through_a_configuration_of_its_own(self):
        code, said, done = self.run_without(["python2.7-dbg"])
        self.assertEqual(code, 0, said)
        self.assertIn("http://mirror/debian/ bullseye main", done)
        self.assertIn("Pin-Priority: 100", done)
        self.assertNotIn("/etc/apt", done)
        for line in done.splitlines():
            if " apt-get " in line:
                for own in ("Dir::Etc::SourceList=/dev/null", "Dir::Etc::SourceParts=/var/cache", "Dir::State::Lists=/var/cache"):
                    self.assertIn(own, line)
        self.assertRegexpMatches(done, r"--no-remove python2.7-dbg\n$")

    def test_failures_say_what_to_do(self):
        self.root_does("case \"$*\" in *Dir::State*update*) exit 100;; esac")
        code, said, _ = self.run_without(["python2.7-dev"])
        self.assertEqual(code, 1)
        for named in ("http://mirror/debian/", "bullseye", "PYTHON2="):
            self.assertIn(named, said)
        self.root_does("exit 100")
        code, said, _ = self.run_without(["cmake"])
        self.assertEqual((code, "apt-get update failed" in said), (1, True), said)

    def test_refuses_a_python_that_is_none_before_it_changes_anything(self):
        for wrong in ("/bin/false", "/nowhere/python2.7"):
            code, said, done = self.run_without(["cmake"], PYTHON2=wrong)
            self.assertEqual((code, done), (1, ""))
            self.assertIn("PYTHON2=" + wrong, said)


if __name__ == "__main__":
    unittest.main()
