"""What the tests of the module share: objects of every class, and the exact messages."""

import functools
import os
import re
import subprocess
import sys
import unittest

import recording
from PySide import QtCore

import vireo.project as vp
import second_extension

from surface import CLASSES, COPY, KEYWORDS, NONE, ONE

application = QtCore.QCoreApplication.instance() or QtCore.QCoreApplication([])

UINT_MAX = 4294967295
LIBRARY_VIEW = 7  # the recording library's default view
HANDLES = ("Layer", "LayerGroup", "BezierContour", "XSplineContour", "BezierControlPoint", "XControlPoint",
           "Parameter", "ParameterSet")

# What reaches the library beside the call in question: default views, comparisons of views in containers, the ids of
# views, and the makings of values that a call needs.
ASIDE = ("Knob::View.defaultViewId", "View.qHash", "View.==", "View.<", "View.get_id")


class Stranger(object):
    """Converts to nothing but an object."""


def handle(name, number):
    """A handle of that class on the engine object with that number; 0 for a null one."""
    return second_extension.to_python(name, number)


def make(name):
    """An object of that class made by Python."""
    if name in HANDLES:
        return handle(name, 1)
    makers = {
        "Project": lambda: vp.Project(u"shot"), "Clip": lambda: vp.Clip(u"plate"),
        "UndoGroup": lambda: handle("UndoGroup", 1), "View": lambda: vp.View(1),
        "ViewInfo": lambda: vp.ViewInfo(u"Left", u"L", (1.0, 0.0, 0.5)), "RenderOperation": vp.RenderInsertOperation,
    }
    return makers.get(name, getattr(vp, name))()


FITTING = {
    "unicode": [u"name", u"", "text"], "bool": [True, False], "int": [0, -5, 9], "unsigned int": [0, 1, UINT_MAX],
    "float": [0.5, 0, -1e30, float("nan")], "Color": [(0, 0.5, 1), [1, 1, 1]], "OptionalBool": [True, None],
    "OptionalFloat": [0.5, None], "OptionalPoint": [(1, 2), None], "QStringList": [["a"], [], (u"a", u"b")],
    "QVariant": [1, None, u"a", [1, "x"], {u"a": 2}], "QPair": [(1, 2), [3, 4]],
    "PySide.QtCore.QObject": [vp.ProgressWatcher(), None],
    "vireo.project.InterlaceMode": [vp.UpperFieldFirst], "vireo.project.Colorspace": [vp.LogColorspace],
    "vireo.project.ColorConversion": [vp.FloatConversion], "vireo.project.ColorizeOutput": [vp.ByLayer],
    "list": [[]], "object": [None],
}


def arguments(signature):
    """What a signature takes, each argument unlike its neighbours."""
    return [fitting(text, place) for place, text in enumerate(signature.split(", ")) if text]


def fitting(text, place=0):
    kind = text.split(" = ")[0]
    values = {"unicode": u"name %d" % place, "int": -1 - place, "unsigned int": 1 + place, "float": 0.5 + place}
    if kind in FITTING:
        return values.get(kind, FITTING[kind][0])
    return vp.View(1 + place) if kind == "vireo.project.View" else make(kind.rsplit(".")[-1])


def derived(name, **members):
    """An object of a subclass with these members."""
    cls = type("My" + name, (getattr(vp, name),), members)
    if name in HANDLES:
        return cls(make(name))
    return cls(u"f") if name in ("Clip", "Project") else cls()


def number(thing):
    """The number by which the library's notes name an object."""
    name = type(thing).__name__
    if name in HANDLES:
        return second_extension.from_python(name, thing)
    return 1 if name == "UndoGroup" else second_extension.number_of(thing)


def shown(result):
    """A result as plain data: wrapped objects by class and number, or by class and value."""
    if isinstance(result, dict):
        return {shown(key): shown(value) for key, value in result.items()}
    if isinstance(result, (list, tuple)):
        return type(result)(shown(item) for item in result)
    name = type(result).__name__
    if isinstance(result, QtCore.QObject):
        return (name, number(result))
    if name in CLASSES and name != "UndoGroup":
        return (name, second_extension.from_python(name, result))
    return result


def made(name):
    """A library object as Python sees it, and its number."""
    known = recording.make(name)
    return second_extension.pointer_to_python(name + "*", known), known


def calls(*aside):
    """The library's notes without what is beside the point."""
    return [call for call in recording.calls() if call[0] not in ASIDE + aside]


def type_names(arguments):
    names = [(type(one).__module__ + ".", type(one).__name__) for one in arguments]
    return ", ".join((module if module == "vireo.project." else "") + name for module, name in names)


def signature_error(name, given, *signatures):
    name = "vireo.project." + name
    lines = ["'%s' called with wrong argument types:" % name, "  %s(%s)" % (name, given), "Supported signatures:"]
    return "\n".join(lines + ["  %s(%s)" % (name, text) for text in signatures])


def count_error(name, least, given):
    return "vireo.project.%s(): takes at least %d arguments (%d given)" % (name, least, given)


def duplicate_error(name, keyword):
    return "vireo.project.%s(): got multiple values for keyword argument '%s'." % (name, keyword)


def operations(form=None):
    """(class, method, form, signatures) of all methods, or those of one form."""
    for name in sorted(CLASSES):
        for method in CLASSES[name].methods:
            shape = method[1][0] if isinstance(method[1], tuple) and method[1][0] == "exactly" else method[1]
            kind = shape if isinstance(shape, str) else "keywords"
            if form in (None, kind):
                yield name, method[0], method[1], method[2:]


def least(form):
    """The number of arguments that a method of that form needs."""
    return {NONE: 0, ONE: 1}.get(form) if isinstance(form, str) else form[1] if form[0] == "exactly" else form[0]


def overloads():
    """(class, method or None for its constructor, (least, most) where keywords are counted, signature, its keywords,
    all signatures) of all methods and constructors."""
    rows = [row for row in operations() if row[1] != "__exit__"]
    for name in sorted(CLASSES):
        one = CLASSES[name]
        if one.constructor:
            form = (0, one.constructor[1]) if one.constructor[0] == "total" else None
            rows.append((name, None, form, one.signatures or ["vireo.project." + name]))
    for name, method, form, signatures in rows:
        keywords = KEYWORDS.get("%s.%s" % (name, method), KEYWORDS.get(method or name, "")).split(", ")
        counted = form if isinstance(form, tuple) and form[0] != "exactly" else None
        for place, signature in enumerate(signatures or [""]):
            known = keywords[place].split() if place < len(keywords) else []
            yield name, method, counted, signature, known, signatures


def properties():
    for name in sorted(CLASSES):
        for row in CLASSES[name].properties:
            yield (name,) + row


class ModuleTest(unittest.TestCase):
    keep_engine = False  # whether handles outlive a test

    def setUp(self):
        recording.clear()
        if not self.keep_engine:
            recording.forget_engine()

    def tearDown(self):
        self.assertIs(recording.take_error(), None)
        recording.clear()

    def raises(self, kind, text, function, *arguments, **keywords):
        """Holds the exception's very class and message; a text of None is any."""
        try:
            result = function(*arguments, **keywords)
        except BaseException as error:
            self.assertIs(type(error), kind, "%s: %s" % (type(error).__name__, error))
            if text is not None:
                self.assertEqual(str(error), text)
        else:
            self.fail("%r came instead of %s: %s" % (result, kind.__name__, text))

    def each(self, rows, check):
        """Runs a check for every row of a table and reports all that fail."""
        failures = []
        for row in rows:
            self.setUp()
            try:
                check(*row if isinstance(row, tuple) else [row])
                self.assertIs(recording.take_error(), None)
            except Exception as error:
                failures.append("%r\n    %s: %s" % (row, type(error).__name__, error))
        if failures:
            self.fail("%d of %d rows:\n%s" % (len(failures), len(rows), "\n".join(failures)))


def names_for(*values):
    """What code may use: the values as a, b, c... and all of the module's names."""
    names = dict(vars(vp), QtCore=QtCore, UINT_MAX=UINT_MAX, Stranger=Stranger, handle=handle)
    names.update(zip("abcdefgh", values))
    return names


def run(code, *values):
    """Evaluates an expression, or runs a statement."""
    try:
        program = compile(code, code, "eval")
    except SyntaxError:
        program = compile(code, code, "exec")
    return eval(program, names_for(*values))


def child(code, *arguments, **environment):
    """Runs code in an interpreter of its own; gives its exit status and both outputs."""
    process = subprocess.Popen([sys.executable, "-B", "-c", code] + list(arguments), stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, env=dict(os.environ, **environment))
    output, errors = process.communicate()
    errors = re.sub(r"\[\d+ refs\]\n", "", errors)  # the debug interpreter's last word
    return process.returncode, output.decode("utf-8"), errors.decode("utf-8")


def setter(thing, name):
    return functools.partial(setattr, thing, name)


def main():
    unittest.main(module="__main__")
