"""The interpreter's lock: released while the library works, held where it must be, and never waited for in vain."""

import threading

from support import *

# Every form of operation, with the function that it reaches.
RELEASING = [
    ("Layer", "a.remove()", "Layer.remove"), ("Layer", "a.name", "Layer.get_name"),
    ("Layer", "a.name = u'x'", "Layer.set_name"), ("Layer", "bool(a)", "Layer.isNull"),
    ("Layer", "a.isNull()", "Layer.isNull"), ("Layer", "a.in_point(view=1)", "Layer.in_point"),
    ("Layer", "a.parent", "STRM_Layer.handledObject"), ("Layer", "a.parent = None", "Layer.set_parent"),
    ("Parameter", "a.delete_keyframe(1, 1)", "Parameter.delete_keyframe"),
    ("BezierControlPoint", "a.master_point", "ControlPoint.handledObject"),
    ("BezierControlPoint", "a.set_master_point(None)", "Python.setPointConstraint"),
    ("BezierControlPoint", "bool(a)", "BezierControlPoint.isNull"),
    ("UndoGroup", "a.__exit__(None, None, None)", "UndoGroup.commit"),
    ("View", "a.id", "View.get_id"), ("View", "repr(a)", "View.__repr__"), ("Clip", "str(a)", "Clip.get_name"),
    ("Clip", "Clip(u'x')", "Clip"), ("Project", "Project(u'x')", "Project"), ("Project", "StreamInfo()", "StreamInfo"),
    ("Project", "RenderInsertOperation()", "RenderInsertOperation"),
    ("Project", "a.track_layers()", "Project.track_layers"), ("Project", "a.render(None, 1, 2, [])", "Project.render"),
    ("Project", "a.export_rendered_shapes([], Grayscale, '', '', '', '', 1, 2)", "Project.export_rendered_shapes"),
]
HOLDING = [
    ("Layer", "a == a", ["Layer.=="]), ("Layer", "a != a", ["Layer.!="]), ("Layer", "hash(a)", ["Layer.qHash"]),
    ("View", "a < a", ["View.<"]), ("Clip", "a == a", ["Clip.=="]), ("ViewInfo", "a == a", ["ViewInfo.=="]),
    ("Layer", "a.contours", ["Layer.getAllContours", "Layer.projectManager"]),
]


class Lock(ModuleTest):
    def test_released_around_calls(self):
        def check(name, code, function):
            one = make(name)
            recording.clear()
            one = make(name) if name in HANDLES else one
            recording.block(function)
            errors = []

            def work():
                try:
                    run(code, one)
                except Exception as error:
                    errors.append(error)

            thread = threading.Thread(target=work)
            thread.start()
            came = recording.await(function)
            ran = sum(range(1000))  # this thread runs while that call is in the library
            recording.release(function)
            thread.join()
            self.assertTrue(came and ran)
            self.assertEqual(errors, [])
            self.assertEqual(set(locked for called, locked in recording.locks() if called == function), {False})
            self.assertNotIn("blocked too long", [call[0] for call in recording.calls()])

        self.each(RELEASING, check)

    def test_held_where_it_must_be(self):
        def check(name, code, functions):
            one = make(name)
            recording.contour(4, 1)
            recording.returns("Layer.getAllContours", [4])
            run(code, one)
            noted = dict(recording.locks())
            self.assertEqual([noted[function] for function in functions], [True] * len(functions))

        self.each(HOLDING, check)

    def test_every_other_function_is_called_without_it(self):
        layer, point = handle("Layer", 1), handle("XControlPoint", 1)
        recording.layer(1, 3)
        recording.point(2, 20, 0)
        recording.point(1, 20, 0, 2)
        layer.parent
        point.master_point
        point.set_master_point(point)
        held = set(function for function, locked in recording.locks() if locked)
        self.assertEqual(held - {"View.get_id", "Knob::View.defaultViewId"}, set())

    def test_threads_share_a_project(self):
        project = vp.Project(u"f")
        recording.returns("Project.get_layers", [1, 2, 3])
        recording.returns("Project.get_views", [(u"a", u"b", (0, 0, 0))])
        failures = []

        def work():
            try:
                for _ in range(100):
                    layers = project.layers
                    set(layers), layers[0] == layers[1], layers[0].contours
                    project.views = project.views
                    project.undo_group().commit()
            except Exception as error:
                failures.append(error)

        threads = [threading.Thread(target=work) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])


if __name__ == "__main__":
    main()
