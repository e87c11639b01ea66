"""The interpreter's lock: released while the library works, held where it must be, and never waited for in vain."""

import threading

from support import *
from test_errors import WAYS

HELD = ("Layer.getAllContours", "Layer.qHash", "Layer(copy)", "Knob::View.defaultViewId")


class Lock(ModuleTest):
    def test_released_around_calls(self):
        def check(name, code, function):
            one = make(name)
            recording.block(function)
            errors = []

            def work():
                try:
                    run(code, one)
                except KeyError:  # what a subscript does not find
                    pass
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

        self.each([row for row in WAYS if row[2] not in HELD], check)

    def test_held_where_it_must_be(self):
        recording.contour(4, 1)
        recording.returns("Layer.getAllContours", [4])
        run("a.contours, a != a, b < b", handle("Layer", 1), vp.View(1))
        held = set(function for function, locked in recording.locks() if locked)
        self.assertLessEqual({"Layer.getAllContours", "Layer.projectManager", "Layer.!=", "View.<"}, held)

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
        failures, alive = [], recording.counts("Layer")["alive"]

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
        self.assertEqual(recording.counts("Layer")["alive"], alive)


if __name__ == "__main__":
    main()
