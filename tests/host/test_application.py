"""The command line, exit codes and endings of the application; Python itself says what is right for a script."""
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from running import environment, program, run, vireo


class Folder(unittest.TestCase):
    def setUp(self):
        self.folder = os.path.realpath(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(text)
        return path


class AsPython(Folder):
    """The same arguments give the same exit code, output and traceback as with the interpreter."""

    def assertAsPython(self, *arguments, **options):
        code, printed, complaints = run((sys.executable,) + arguments, **options)
        self.assertEqual(vireo(*arguments, **options), (code, printed, complaints.replace(sys.executable, program)))

    def test_exit_codes(self):
        for ending in ("pass", "sys.exit()", "sys.exit(0)", "sys.exit(7)", "sys.exit('said at the end')",
                       "sys.exit(None)", "raise SystemExit", "raise SystemExit((1, 2))", "1 / 0",
                       "raise KeyboardInterrupt", "os._exit(3)", "syntax error", ""):
            self.assertAsPython("-c", "import os, sys; " + ending)

    def test_traceback_names_file_and_line(self):
        script = self.write("fails.py", "def inner():\n    raise ValueError(u'b\\xe4d')\n\ninner()\n")
        self.assertAsPython(script)

    def test_arguments_belong_to_the_script(self):
        script = self.write("says.py", "import sys\nprint sys.argv, __name__, __file__, sys.path[0]\n")
        self.assertAsPython(script, "a", "-c", "--project", "x", "--", "--help", "")
        self.assertAsPython("-c", "import sys; print sys.argv, sys.path[0] == ''", "-x", "--version", "-c")
        self.assertAsPython("-", "a", stdin="import sys; print sys.argv, __name__")
        self.assertAsPython(stdin="print 1\n1 / 0\n")
        self.write("-odd.py", "import sys\nprint sys.argv")
        self.assertAsPython("--", "-odd.py", "a", cwd=self.folder)

    def test_folder_or_archive_as_script(self):
        self.assertAsPython(self.folder)
        self.write("__main__.py", "import sys\nprint sys.argv[1:]")
        self.assertAsPython(self.folder, "a")

    def test_environment_of_python(self):
        self.write("chosen.py", "print 'from PYTHONPATH'")
        self.assertAsPython("-c", "import chosen", PYTHONPATH=self.folder)
        self.assertAsPython("-c", "import warnings; warnings.warn('seen')", PYTHONWARNINGS="error")
        self.assertAsPython("-c", "print hash('seed')", PYTHONHASHSEED="5")

    def test_threads_and_exit_functions_are_waited_for(self):
        self.assertAsPython("-c", "import atexit, sys, threading, time\n"
                                  "def late():\n    time.sleep(0.2)\n    print 'thread'\n"
                                  "def last():\n    print 'last'\n"
                                  "atexit.register(last)\nthreading.Thread(target=late).start()\nsys.exit(5)")


class CommandLine(Folder):
    def assertRefused(self, arguments, *named):
        code, printed, complaints = vireo(*arguments)
        self.assertEqual((code, printed, complaints.count("\n")), (2, "", 1), complaints)
        for name in ("vireo: ",) + named:
            self.assertIn(name, complaints)

    def test_refusals_are_one_line(self):
        missing = os.path.join(self.folder, "missing.py")
        self.assertRefused([missing], missing, "No such file")
        self.assertRefused(["-c"], "-c")
        self.assertRefused(["--project"], "--project")
        self.assertRefused(["--project=", "-c", ""], "--project")
        self.assertRefused(["--projects", "x"], "--projects")

    def test_no_project(self):
        foreign = self.write("foreign.txt", "{\n\"this\": \"is none\",\n")
        for file in (foreign, self.write("empty", ""), self.folder, os.path.join(self.folder, "missing")):
            self.assertRefused(["--project", file, "-c", "print 'never'"], file)
            self.assertRefused(["--project=" + file], file)

    def test_script_is_looked_for_before_a_project_is_opened(self):
        self.assertRefused(["--project", self.folder, "missing.py"], "missing.py")

    def test_help_and_version(self):
        code, printed, complaints = vireo("--help")
        self.assertEqual((code, complaints), (0, ""))
        for option in ("--project", "-c", "--version"):
            self.assertIn(option, printed)
        code, printed, complaints = vireo("--version")
        self.assertEqual((code, complaints), (0, ""))
        self.assertTrue(printed.startswith("vireo %s (Python 2.7." % os.environ["VIREO_VERSION"]), printed)

    def test_python_that_cannot_start(self):
        code, printed, complaints = vireo("-c", "print 'never'", PYTHONHOME=self.folder)
        self.assertEqual((code, printed, complaints.count("\n")), (1, "", 1), complaints)
        self.assertIn(self.folder, complaints)


class Surroundings(Folder):
    version = "import vireo, sys; print vireo.__version__, sys.executable"

    def test_finds_its_packages_from_anywhere(self):
        expected = "%s %s\n" % (os.environ["VIREO_VERSION"], program)
        self.assertEqual(vireo("-c", self.version, cwd="/"), (0, expected, ""))
        link = os.path.join(self.folder, "linked")
        os.symlink(program, link)
        self.assertEqual(run([link, "-c", self.version])[0], 0)
        by_path = os.path.dirname(program) + os.pathsep + os.environ["PATH"]
        self.assertEqual(run(["vireo", "-c", self.version], PATH=by_path), (0, expected, ""))

    def test_python_path_may_replace_the_packages(self):
        os.mkdir(os.path.join(self.folder, "vireo"))
        self.write("vireo/__init__.py", "__version__ = 'mine'")
        self.assertIn("mine", vireo("-c", self.version, PYTHONPATH=self.folder)[1])

    def test_numbers_are_written_the_c_way(self):
        script = "import ctypes; strtod = ctypes.CDLL(None).strtod; strtod.restype = ctypes.c_double; print strtod(b'1.5', None)"
        self.assertEqual(vireo("-c", script, LC_ALL="de_DE.UTF-8", LC_NUMERIC="de_DE.UTF-8")[1], "1.5\n")


class CurrentProject(Folder):
    look = "from vireo import project; current = project.get_current_project()\n"

    def test_there_is_none_without_the_option(self):
        self.assertEqual(vireo("-c", self.look + "print current"), (0, "None\n", ""))

    def test_is_the_one_that_was_opened(self):
        file = os.path.join(self.folder, "sh\xc3\xb6t.vireo")
        made = vireo("-c", "import sys; from vireo.project import Project; made = Project(None)\n"
                           "made.notes = 'kept'; made.save_as(sys.argv[1].decode('utf-8'))", file, LC_ALL="C.UTF-8")
        self.assertEqual(made, (0, "", ""))
        seen = vireo("--project", file, "-c", self.look + "print current.notes, current is project.get_current_project()\n"
                                              "print current.project_file.encode('utf-8')", LC_ALL="C.UTF-8")
        self.assertEqual(seen, (0, "kept True\n%s\n" % file, ""))

    def test_endings_with_objects_alive(self):
        file = os.path.join(self.folder, "shot.vireo")
        self.assertEqual(vireo("-c", "from vireo.project import Project; Project(None).save_as(%r)" % file)[0], 0)
        hold = self.look + "import sys, atexit; from PySide import QtCore\n" \
                           "layer = current.add_layer(None, 'held'); view = current.views[0]; mine = project.Project(None)\n" \
                           "child = QtCore.QObject(current); cycle = [current, mine]; cycle.append(cycle)\n" \
                           "current.destroyed.connect(lambda: None); atexit.register(lambda: layer.name)\n"
        for ending, code in (("", 0), ("sys.exit(3)", 3), ("1 / 0", 1), ("del sys.modules['vireo.project']", 0)):
            found, _, complaints = vireo("--project", file, "-c", hold + ending)
            self.assertEqual((found, complaints.count("\n")), (code, 3 if code == 1 else 0), complaints)
        look = self.look + "import shiboken; from PySide import QtCore; mine = project.Project(None)\n"
        for taking in ("shiboken.delete(current)", "owner = QtCore.QObject(); current.setParent(owner)",
                       "current.setParent(mine); shiboken.delete(mine)", "mine.setParent(current)",
                       "current.setParent(QtCore.QCoreApplication.instance())"):
            self.assertEqual(vireo("--project", file, "-c", look + taking), (0, "", ""), taking)

    def test_event_loop_runs(self):
        code = "from PySide.QtCore import *\napplication = QCoreApplication.instance()\n" \
               "QTimer.singleShot(0, application.quit); print application.exec_()"
        self.assertEqual(vireo("-c", code), (0, "0\n", ""))


class InterruptedOperation(Folder):
    """An export of a hundred thousand mattes, in the application and in a plain interpreter alike."""

    matte = ("from vireo.project import *\n"
             "project = Project(None); project.length = 100000\n"
             "clip = Clip(u'', width=8, height=6, length=100000)\n"
             "layer = project.add_layer(project.add_clip(clip, u'Plate'), u'layer')\n"
             "layer.add_bezier_contour(0.0, [BezierControlPointData(True, True, x, y) for x, y in [(1.0, 1.0), (7.0, 1.0), (4.0, 5.0)]])\n"
             "def export(last):\n"
             "    project.export_rendered_shapes([], Grayscale, u'Mattes', OUT, u'm.', u'.png', 0, last)\n")

    def interrupted(self, command, code, begun):
        out = os.path.join(self.folder, "out")
        surroundings = environment(PYTHONPATH=os.environ["PYTHONPATH"])
        process = subprocess.Popen(command + ["-c", "OUT = %r.decode('utf-8')\n" % out + self.matte + code],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=surroundings)
        while not begun(out) and process.poll() is None:
            time.sleep(0.01)
        start = time.time()
        process.send_signal(signal.SIGINT)
        printed, complaints = process.communicate()
        left = os.listdir(out) if os.path.exists(out) else []
        return process.returncode, printed, complaints, left, time.time() - start

    def test_is_cancelled_and_taken_back(self):
        staged = lambda out: os.path.exists(out) and os.listdir(out) and len(os.listdir(os.path.join(out, os.listdir(out)[0]))) > 3
        slot = "def slot(*arguments): pass\nproject.progress_watcher.progressChanged.connect(slot)\n"
        for command in ([program], [sys.executable]):
            for connected in ("", slot):
                code, printed, complaints, left, seconds = \
                    self.interrupted(command, connected + "export(99999)\nprint 'never'", staged)
                self.assertEqual((code, printed, left), (1, "", []), complaints)
                self.assertIn("\nKeyboardInterrupt: ", complaints)
                self.assertEqual(complaints.count("Traceback"), 1, complaints)
                self.assertLess(seconds, 10) # a second on a machine that does nothing else

    def test_is_not_lost_while_the_end_is_told(self):
        code = ("import os, time\n"
                "def slot():\n    os.mkdir(OUT + u'/told'); time.sleep(0.5); print 'to the end'\n"
                "project.progress_watcher.finished.connect(slot)\nexport(0)\nfor i in range(1000): pass\nprint 'never'")
        for command in ([program], [sys.executable]):
            found, printed, complaints, left, _ = \
                self.interrupted(command, code, lambda out: os.path.exists(out + "/told"))
            self.assertEqual((found, printed), (1, "to the end\n"), complaints)
            self.assertTrue(complaints.endswith("\nKeyboardInterrupt\n"), complaints)
            self.assertEqual(sorted(left), ["m.0.png", "told"])
            shutil.rmtree(os.path.join(self.folder, "out"))


class Interrupt(unittest.TestCase):
    def interrupted(self, code):
        ready = "import sys, time\ndef ready():\n    print 'ready'\n    sys.stdout.flush()\n"
        process = subprocess.Popen([program, "-c", ready + code],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
        self.assertEqual(process.stdout.readline(), "ready\n")
        process.send_signal(signal.SIGINT)
        printed, complaints = process.communicate()
        return process.returncode, printed, complaints

    def test_stops_a_script(self):
        for waiting in ("ready()\nwhile True: pass", "ready(); time.sleep(60)"):
            code, printed, complaints = self.interrupted(waiting)
            self.assertEqual((code, printed), (1, ""))
            self.assertTrue(complaints.endswith("KeyboardInterrupt\n"), complaints)

    def test_is_an_exception_that_a_script_may_catch(self):
        code = "try: ready(); time.sleep(60)\nexcept KeyboardInterrupt: print 'caught'; sys.exit(9)"
        self.assertEqual(self.interrupted(code), (9, "caught\n", ""))


if __name__ == "__main__":
    unittest.main()
