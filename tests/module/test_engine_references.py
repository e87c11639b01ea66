"""What test_references.py does to the recording library, on the engine itself: every operation of every class, with
arguments that fit and that do not, leaves the interpreter's references and objects as they were."""

import gc
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from PySide import QtCore

import vireo.project as vp
from surface import CLASSES, COPY

ROUNDS, SLOW_ROUNDS = 25, 12
NOISE = 10  # of the counting itself
SLOW = ("render", "track_layers", "export", "export_rendered_shapes", "save", "save_as")
ENDS = {"__exit__": "(None, None, None)"}
FITTING = {
    "unicode": "u'name'", "bool": "True", "int": "1", "unsigned int": "1", "float": "0.5", "Color": "(0, 0.5, 1)",
    "OptionalBool": "True", "OptionalFloat": "0.5", "OptionalPoint": "(1, 2)", "QStringList": "[]", "QVariant": "0.5",
    "QPair": "(64, 48)", "list": "[]", "object": "None", "QObject": "None"}
BEFORE = """
clip = Clip(footage)
project = Project(clip)
clip = project.default_trackable_clip
layer, other = project.add_layer(clip, u'one', 0), project.add_layer(None, u'two')
layer.add_bezier_contour(0.0, [BezierControlPointData(x=float(x), y=float(y)) for x, y in corners])
other.add_xspline_contour(0.0, [XControlPointData(x=float(x), y=float(y)) for x, y in corners])
Project0, Clip0, Layer0, LayerGroup0 = project, clip, layer, project.add_group(u'group', [other])
BezierContour0, XSplineContour0 = layer.contours[0], other.contours[0]
BezierControlPoint0, XControlPoint0 = BezierContour0.control_points[0], XSplineContour0.control_points[0]
ParameterSet0, UndoGroup0, View0 = layer.parameter_set(), project.undo_group(), View(0)
Parameter0, StreamInfo0 = ParameterSet0.parameters[0], clip.get_info(View0)
ProgressWatcher0, RenderOperation0 = project.progress_watcher, RenderInsertOperation()
"""


class References(unittest.TestCase):
    def setUp(self):
        self.folder, back = tempfile.mkdtemp(), os.getcwd()
        self.addCleanup(shutil.rmtree, self.folder)
        self.addCleanup(os.chdir, back)
        os.chdir(self.folder)
        subprocess.check_call([os.environ["MAKE_FOOTAGE"], "--size", "64x48", "--frames", "3", "footage"])

    def names(self):
        names = dict(vars(vp), footage=u"footage/plate.####.png", corners=((5, 5), (40, 8), (20, 40)))
        exec BEFORE in names
        for name in CLASSES:
            if name + "0" not in names:
                names[name + "0"] = getattr(vp, name)()
        return names

    def fitting(self, text):
        kind = text.split(" = ")[0].split(".")[-1]
        return FITTING.get(kind, kind + "0" if kind in CLASSES else "%s.values.values()[0]" % kind)

    def operations(self, name):
        one = CLASSES[name]
        for row in one.methods:
            for signature in row[2:] or [""]:
                texts = [text for text in signature.split(", ") if text]
                for given in (texts, [text for text in texts if " = " not in text]):
                    arguments = ENDS.get(row[0], "(%s)" % ", ".join(map(self.fitting, given)))
                    yield row[0], "%s0.%s%s" % (name, row[0], arguments)
            for arguments in ("(object())", "(*[None] * 20)", "(other=5)"):
                yield row[0], "%s0.%s%s" % (name, row[0], arguments)
        for row in one.properties:
            yield row[0], "%s0.%s" % (name, row[0])
            if row[2]:
                yield row[0], "%s0.%s = %s0.%s" % (name, row[0], name, row[0])
                yield row[0], "%s0.%s = object()" % (name, row[0])
        for code in ["%s0 == %s0", "hash(%s0)", "repr(%s0)", "bool(%s0)", "%s0.__copy__()", "%s(object())"]:
            yield code, code.replace("%s", name)
        if one.constructor == COPY:
            yield name, "%s(%s0)" % (name, name)

    def test_every_operation(self):
        failures = []
        for name in sorted(CLASSES):
            names = self.names()
            for method, code in self.operations(name):
                program = compile(code, code, "exec")

                def work(rounds):
                    for _ in range(rounds):
                        try:
                            exec(program, names)
                        except Exception:
                            sys.exc_clear()
                    QtCore.QCoreApplication.sendPostedEvents(None, QtCore.QEvent.DeferredDelete)
                    gc.collect()
                    return sys.gettotalrefcount(), len(gc.get_objects())

                rounds = SLOW_ROUNDS if method in SLOW else ROUNDS
                work(3)
                before = work(0)
                grown = [now - then for now, then in zip(work(rounds), before)]
                if max(grown) > NOISE:
                    failures.append("%s: %s in %d rounds" % (code, grown, rounds))
        self.assertEqual(failures, [])


if __name__ == "__main__":
    unittest.main()
