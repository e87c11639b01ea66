"""What an import does, in interpreters of its own: the order of its steps, embedded or not, and how it fails."""

import os
import shutil
import tempfile

from support import *

LIBRARY_STEPS = ["STRM_ErrorDetector.init", "STRM_ErrorDetector.setFullErrorDetection", "pyBootstrap", "isEmbedded"]

PREAMBLE = """
import sys, recording
def steps():
    return [call[0] for call in recording.calls()]
def project():
    number = recording.make("Project")
    recording.returns("getCurrentProject", number)
    return number
"""


class ChildTest(ModuleTest):
    def child(self, code, **environment):
        status, output, errors = child(PREAMBLE + code, **environment)
        self.assertEqual((status, errors), (0, ""))
        return output.splitlines()


class StartUp(ChildTest):
    def test_what_the_library_sees(self):
        output = self.child("""
import vireo.project
print steps()
print recording.calls()[1], recording.locks()[2]
import vireo.project, imp
__import__("vireo.project")
print len(steps())
""")
        self.assertEqual(eval(output[0]), LIBRARY_STEPS)
        self.assertEqual(output[1], "(u'STRM_ErrorDetector.setFullErrorDetection', True, False) (u'pyBootstrap', True)")
        self.assertEqual(output[2], "4")

    def test_stand_alone_there_is_no_current_project(self):
        output = self.child("""
import vireo.project
try:
    vireo.project.get_current_project
except AttributeError as error:
    print error
print "getCurrentProject" in steps()
""")
        self.assertEqual(output, ["'module' object has no attribute 'get_current_project'", "False"])

    def test_embedded_the_current_project_keeps_its_identity(self):
        output = self.child("""
recording.returns("isEmbedded", True)
import gc, weakref, shiboken, vireo.project as vp
print vp.get_current_project()
number = project()
first = vp.get_current_project()
print first is vp.get_current_project(), type(first) is vp.Project, shiboken.ownedByPython(first)
watch = weakref.ref(first)
del first
print watch(), recording.counts("Project")["destroyed"], type(vp.get_current_project())
print recording.locks()[-1]
print vp.get_current_project.__doc__, steps().count("isEmbedded")
try:
    vp.get_current_project(1)
except TypeError as error:
    print error
for kind in ("STRM_BadState", "int"):
    recording.throws("getCurrentProject", kind, "closed")
    try:
        vp.get_current_project()
    except RuntimeError as error:
        print error
recording.clear()
mine = vp.Project(u"f")
recording.returns("getCurrentProject", recording.newest("Project"))
print vp.get_current_project() is mine, shiboken.ownedByPython(mine)
""")
        self.assertEqual(output, [
            "None", "True True False", "None 0 <type 'vireo.project.Project'>", "(u'getCurrentProject', False)",
            "None 1", "get_current_project() takes no arguments (1 given)", "closed", "Unknown error", "True False"])

    def test_another_extension_finds_types_and_converters(self):
        output = self.child("""
import second_extension, sys
print "vireo.project" in sys.modules
import vireo.project as vp
print second_extension.type_at(14) is vp.Project, second_extension.has_converter_at(29, "QMap<QString,QVariant>")
""")
        self.assertEqual(output, ["True", "True True"])

    def test_from_a_thread(self):
        output = self.child("""
import threading
def work():
    import vireo.project
    print len(dir(vireo.project)) > 22
thread = threading.Thread(target=work)
thread.start()
thread.join()
import vireo.project
print len(steps())
""")
        self.assertEqual(output, ["True", "4"])

    def test_in_another_interpreter(self):
        status, output, errors = child("""
import ctypes
api = ctypes.PyDLL(None)
for name in ("PyThreadState_Get", "Py_NewInterpreter"):
    getattr(api, name).restype = ctypes.c_void_p
api.PyThreadState_Swap.argtypes = [ctypes.c_void_p]
first = api.PyThreadState_Get()
api.Py_NewInterpreter()
api.PyRun_SimpleString("import vireo.project")
api.PyThreadState_Swap(first)
import vireo.project
print vireo.project.__name__
""")
        self.assertEqual(output.splitlines(), ["vireo.project"])
        self.assertIn("ImportError: vireo.project can be used in the process's first interpreter only", errors)

    def test_the_library_is_told_when_the_interpreter_ends(self):
        output = self.child("""
import atexit
def last():
    print steps()[-1]
atexit.register(last)
import vireo.project as vp
clip = vp.Clip(u"f")
""")
        self.assertEqual(output, ["pyCleanup"])


class Files(ModuleTest):
    site = os.path.dirname(os.path.dirname(os.path.realpath(vp.__file__)))

    def test_only_the_start_is_exported(self):
        for path, name in [(vp.__file__, "initproject"), (QtCore.__file__, "initQtCore")]:
            listed = subprocess.check_output(["nm", "-D", "--defined-only", path]).splitlines()
            self.assertEqual([line.split()[-1] for line in listed], [name])

    def test_no_library_is_looked_for_in_the_current_folder(self):
        binaries = [os.path.join(folder, name) for root in (self.site, os.path.join(self.site, "..", "lib"))
                    for folder, _, names in os.walk(root) for name in names if name.endswith(".so")]
        self.assertIn(os.path.realpath(vp.__file__), [os.path.realpath(path) for path in binaries])
        for path in binaries:
            for line in subprocess.check_output(["readelf", "-d", path]).splitlines():
                if "RUNPATH" in line or "RPATH" in line:
                    self.assertNotIn("", line.split("[")[1].split("]")[0].split(":"), path)


class FailingStartUp(ChildTest):
    """The import fails with the error that was met, and the interpreter goes on."""

    attempts = """
for _ in range(2):
    try:
        import vireo.project
    except BaseException as error:
        print type(error).__name__, "|", error
    print "vireo.project" in sys.modules
print steps()
"""

    def outcome(self, **modules):
        """Of the import, twice, with PySide's modules as told: None for a real one, or the text of a file."""
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        real, site = os.path.dirname(os.path.abspath(QtCore.__file__)), os.path.join(folder, "PySide")
        shutil.copytree(real, site, ignore=shutil.ignore_patterns("*.so"))
        for name, text in modules.items():
            if text is None:
                os.symlink(os.path.join(real, name + ".so"), os.path.join(site, name + ".so"))
            else:
                with open(os.path.join(site, name + (".py" if "\n" in text else ".so")), "w") as stream:
                    stream.write(text)
        status, output, errors = child(PREAMBLE + self.attempts,
                                       PYTHONPATH=folder + os.pathsep + os.environ["PYTHONPATH"])
        self.assertEqual((status, errors), (0, ""), output)
        lines = output.splitlines()
        self.assertEqual(lines[1:4:2], ["False", "False"])
        return lines[0], eval(lines[-1])

    def test_a_second_start_is_refused(self):
        output = self.child("""
import imp, os, shutil, tempfile, vireo.project
folder = tempfile.mkdtemp()
path = os.path.join(folder, "project.so")
os.symlink(os.path.abspath(vireo.project.__file__), path)
try:
    imp.load_dynamic("project", path)
except ImportError as error:
    print error
shutil.rmtree(folder)
print "project" in sys.modules, type(vireo.project.View(1)) is vireo.project.View
""")
        self.assertEqual(output, ["vireo.project can be started once in a process", "False True"])

    def test_exceptions_of_the_library(self):
        for function in ("STRM_ErrorDetector.init", "pyBootstrap", "isEmbedded"):
            for kind, text in [("STRM_BadState", "no licence"), ("int", "Unknown error")]:
                output = self.child("""
recording.throws("%s", "%s", "no licence")
for _ in range(2):
    try:
        import vireo.project
    except ImportError as error:
        print error
    print "vireo.project" in sys.modules
    recording.clear()
""" % (function, kind))
                self.assertEqual(output, [text, "False", "True"])

    def test_without_the_gui_module(self):
        error, steps = self.outcome(QtCore=None)
        self.assertEqual(error, "ImportError | No module named QtGui")
        self.assertEqual(steps[:4], LIBRARY_STEPS)

    def test_with_a_gui_module_that_fails(self):
        self.assertEqual(self.outcome(QtCore=None, QtGui="raise ValueError('no display')\n")[0],
                         "ValueError | no display")

    def test_without_a_core_module_or_with_something_else(self):
        self.assertEqual(self.outcome()[0], "ImportError | No module named QtCore")
        for text in ("no library at all", "class QObject(object): pass\n"):
            error = self.outcome(QtGui=None, QtCore=text)[0]
            self.assertTrue(error.startswith("ImportError | ") and "QtCore" in error, error)


if __name__ == "__main__":
    main()
