"""What each exception of the library becomes, and that nothing is left behind by it."""

from support import *

TRANSLATIONS = [
    ("STRM_Exception", Exception), ("STRM_AssertionFailed", AssertionError), ("STRM_OperationFailed", RuntimeError),
    ("STRM_OperationCancelledByUser", KeyboardInterrupt), ("STRM_BadAlloc", MemoryError),
    ("STRM_OutOfRange", IndexError), ("STRM_BadSize", BufferError), ("STRM_BadState", RuntimeError),
    ("STRM_BadArgument", ValueError), ("STRM_BadFile", IOError), ("STRM_NotImplemented", NotImplementedError),
    ("STRM_UnexpectedException", RuntimeError), ("STRM_LumenError", RuntimeError),
    ("STRM_ExternalException", EnvironmentError), ("STRM_OperationInProgress", RuntimeError),
    ("PyTypeError", TypeError),
    # Not in the table: a subclass of a class that is, and the standard library's own.
    ("STRM_PickyArgument", RuntimeError), ("runtime_error", RuntimeError),
]

# One way into the library of each kind: forms of methods, a getter, a setter, a constructor, a copy, a text...
WAYS = [
    ("Layer", "a.remove()", "Layer.remove"), ("Layer", "a.name", "Layer.get_name"),
    ("Layer", "a.name = u'x'", "Layer.set_name"), ("Layer", "bool(a)", "Layer.isNull"),
    ("Layer", "a.in_point(view=1)", "Layer.in_point"), ("Layer", "a.parent = None", "Layer.set_parent"),
    ("Layer", "a.contours", "Layer.getAllContours"),
    ("Layer", "a.parent", "STRM_Layer.handledObject"), ("Layer", "Layer(a)", "Layer(copy)"),
    ("Layer", "a.__copy__()", "Layer(copy)"), ("Layer", "hash(a)", "Layer.qHash"),
    ("Clip", "str(a)", "Clip.get_name"),
    ("Clip", "a.relink()", "Clip.relink"), ("Clip", "Clip(u'x')", "Clip"), ("Project", "Project(None)", "Project"),
    ("Project", "a.undo_group()", "Project.undo_group"), ("Project", "a.layer(1)", "Project.layer"),
    ("ProgressWatcher", "ProgressWatcher()", "ProgressWatcher"),
    ("RenderOperation", "RenderInsertOperation()", "RenderInsertOperation"),
    ("RenderOperation", "a.progress_watcher", "RenderOperation.get_progress_watcher"),
    ("View", "a.id", "View.get_id"), ("View", "repr(a)", "View.__repr__"), ("View", "str(a)", "View.__str__"),
    ("ViewInfo", "repr(a)", "ViewInfo.__repr__"), ("ViewInfo", "ViewInfo(u'a', u'b')", "ViewInfo"),
    ("StreamInfo", "StreamInfo(u'a')", "StreamInfo"), ("UndoGroup", "a.__enter__()", "UndoGroup.begin"),
    ("BezierControlPoint", "a.master_point", "Stratum::ControlPoint.handledObject"),
    ("BezierControlPoint", "a.set_master_point(None)", "Python.setPointConstraint"),
    ("ParameterSet", "a['x']", "ParameterSet.get_subsets"), ("Parameter", "a.keyframes", "Parameter.get_keyframes"),
    ("Parameter", "a.delete_keyframe(1, 1)", "Parameter.delete_keyframe"),
    ("BezierControlPoint", "bool(a)", "BezierControlPoint.isNull"),
    ("Project", "a.render(None, 1, 2, [])", "Project.render"),
    ("Project", "a.export_rendered_shapes([], Grayscale, '', '', '', '', 1, 2)", "Project.export_rendered_shapes"),
    ("Layer", "a.get_transform_matrix(1.0)", "Knob::View.defaultViewId"),
]


class Errors(ModuleTest):
    def test_each_class_becomes_its_exception(self):
        layer = handle("Layer", 1)
        for kind, expected in TRANSLATIONS:
            recording.throws("Layer.remove", kind, "because of %s" % kind)
            try:
                layer.remove()
            except BaseException as error:
                self.assertIs(type(error), expected, kind)
                self.assertEqual(error.args, ("because of %s" % kind,))
                self.assertIs(type(error.args[0]), str)
        recording.throws("Layer.remove", "STRM_BadArgument", u"B\xe4r")
        self.raises(ValueError, "B\xc3\xa4r", layer.remove)
        recording.throws("Layer.remove", "bad_alloc")
        self.raises(RuntimeError, "std::bad_alloc", layer.remove)
        recording.throws("Layer.remove", "int")
        self.raises(RuntimeError, "Unknown error", layer.remove)

    def test_every_way_into_the_library_translates(self):
        def check(name, code, function):
            one = make(name)
            alive = [recording.counts(each)["alive"] for each in CLASSES]
            for kind, expected, text in [("STRM_BadFile", IOError, "x"), ("int", RuntimeError, "Unknown error")]:
                recording.throws(function, kind, "x")
                self.raises(expected, text, run, code, one)
            self.assertEqual([recording.counts(each)["alive"] for each in CLASSES], alive)
            recording.clear()
            if name in HANDLES:
                one = make(name)
            if not code.startswith("a["):
                run(code, one)  # the next call works normally

        self.each(WAYS, check)


if __name__ == "__main__":
    main()
