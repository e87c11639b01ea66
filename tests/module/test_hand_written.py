"""The operations with steps of their own: contours, parents, master points, subscripts and undo groups."""

from support import *


class Contours(ModuleTest):
    def test_the_engine_s_type_chooses_the_class(self):
        for number_, kind in [(4, 1), (5, 0), (6, 2), (7, -1), (8, 1)]:
            recording.contour(number_, kind)
        recording.returns("Layer.getAllContours", [8, 6, 5, 7, 4])
        layer = handle("Layer", 1)
        contours = layer.contours
        self.assertEqual(shown(contours), [("BezierContour", 8), ("XSplineContour", 5), ("BezierContour", 4)])
        self.assertIsNot(layer.contours[0], contours[0])
        recording.returns("Layer.getAllContours", [])
        self.assertEqual(layer.contours, [])

    def test_a_failure_gives_no_list(self):
        recording.returns("Layer.getAllContours", [4, 5])
        layer = handle("Layer", 1)
        alive = recording.counts("BezierContour")["alive"]
        recording.throws("BezierContour(copy)", "STRM_OutOfRange", "none left")
        self.raises(IndexError, "none left", lambda: layer.contours)
        self.assertEqual(recording.counts("BezierContour")["alive"], alive)


class Parents(ModuleTest):
    def test_the_group_or_none(self):
        layer = handle("Layer", 1)
        for parent, expected in [(None, None), ("root", None), (6, ("LayerGroup", 6))]:
            recording.layer(1, parent)
            self.assertEqual(shown(layer.parent), expected)
        self.assertIsNot(layer.parent, layer.parent)
        self.assertEqual(calls("Layer.projectManager")[0], ("STRM_Layer.handledObject", 1))
        self.raises(RuntimeError, "Invalid object", lambda: handle("Layer", 0).parent)


class NullResults(ModuleTest):
    def test_become_none_where_a_place_is_asked_for(self):
        project, layers = vp.Project(u"f"), recording.counts("Layer")["alive"]
        for owner, code, function, kind in [
                (project, "a.layer(3)", "Project.layer", "Layer"),
                (handle("BezierContour", 1), "a.control_point(3)", "BezierContour.control_point", "BezierControlPoint"),
                (handle("XSplineContour", 1), "a.control_point(3)", "XSplineContour.control_point", "XControlPoint")]:
            self.assertIs(run(code, owner), None)
            recording.returns(function, 2)
            self.assertEqual(shown(run(code, owner)), (kind, 2))
            self.assertIn((function, number(owner), 3), recording.calls())
            self.assertIn((kind + ".isNull", 2), recording.calls())
        # What the library itself calls null counts.
        recording.returns("Project.layer", 2)
        recording.returns("Layer.isNull", True)
        self.assertIs(project.layer(0), None)
        self.assertEqual(recording.counts("Layer")["alive"], layers)

    def test_stay_objects_everywhere_else(self):
        layer = handle("Layer", 1)
        for one in (layer.parameter([]), layer.parameter_set(), layer.add_bezier_contour(0.0, [])):
            self.assertFalse(one)


class MasterPoints(ModuleTest):
    def test_reading(self):
        recording.point(1, 20, 1)
        bezier, xspline = handle("BezierControlPoint", 1), handle("XControlPoint", 3)
        self.assertIs(bezier.master_point, None)
        recording.point(2, 21, 0)
        recording.point(4, 22, 1)
        for point, contour, kind, master, expected in [
                (bezier, 20, 1, 2, ("XControlPoint", 2)), (bezier, 20, 1, 4, ("BezierControlPoint", 4)),
                (xspline, 23, 0, 4, ("BezierControlPoint", 4)), (xspline, 23, 0, 2, ("XControlPoint", 2))]:
            recording.point(number(point), contour, kind, master)
            self.assertEqual(shown(point.master_point), expected)
            self.assertIn(("Contour.pointByID", {2: 21, 4: 22}[master], master), recording.calls())
        self.assertIsNot(bezier.master_point, bezier.master_point)
        for name in ("BezierControlPoint", "XControlPoint"):
            self.raises(RuntimeError, "Invalid object", lambda: handle(name, 0).master_point)

    def test_setting(self):
        class Mine(vp.XControlPoint):
            pass

        view = vp.View(3)
        bezier, xspline = handle("BezierControlPoint", 1), handle("XControlPoint", 2)
        recording.returns("Knob::Time.fromDouble", 99.5)
        for point, code, master, time, view_id, lock in [
                (bezier, "a.set_master_point(None)", None, 0.0, 0, False),
                (bezier, "a.set_master_point(b)", 2, 0.0, 0, False),
                (bezier, "a.set_master_point(a, 12.5, lock_tangents=True)", 1, 12.5, 0, True),
                (bezier, "a.set_master_point(b, time=1, view=c)", 2, 1.0, 3, False),
                (bezier, "a.set_master_point(b, 1.5, 2, True)", 2, 1.5, 2, True),
                (xspline, "a.set_master_point(b, 12.5, lock_tangents=True)", 2, 12.5, 0, False),
                (xspline, "a.set_master_point(b, 1.0, c)", 2, 1.0, 3, False)]:
            run(code, point, Mine(xspline), view)
            self.assertEqual(recording.calls()[-1], ("Python.setPointConstraint", master, number(point), True,
                                                     (99.5, view_id, 3), lock), code)
            self.assertIn(("Knob::Time.fromDouble", time), recording.calls())

    def test_a_wrong_master_is_reported_and_counts_as_none(self):
        for name, line in [("BezierControlPoint", 610), ("XControlPoint", 594)]:
            for wrong in ("x", 5, handle("Layer", 1), vp.View(1)):
                recording.clear()
                point = handle(name, 1)
                point.set_master_point(wrong)
                report = ("STRM_ErrorDetector.reportAssertion", 0,
                          u"shiboken/vireo/project/%s_wrapper" % name.lower(), line, u"false", u"Wrong argument type")
                self.assertIn(report, recording.calls())
                self.assertEqual(recording.calls()[-1][:3], ("Python.setPointConstraint", None, 1))
            recording.throws("STRM_ErrorDetector.reportAssertion", "STRM_AssertionFailed", "Wrong argument type")
            self.raises(AssertionError, "Wrong argument type", point.set_master_point, "x")

    def test_order_of_effects(self):
        point, master = handle("BezierControlPoint", 1), handle("XControlPoint", 2)
        point.set_master_point(master)
        self.assertEqual([call[:2] for call in calls("BezierControlPoint.isNull")], [
            ("BezierControlPoint.projectManager", 1), ("Stratum::ControlPoint.handledObject", 2),
            ("Stratum::ControlPoint.handledObject", 1), ("Knob::Time.fromDouble", 0.0),
            ("Python.setPointConstraint", 2)])

    def test_without_a_project_nothing_is_changed(self):
        for name in ("BezierControlPoint", "XControlPoint"):
            recording.clear()
            point = handle(name, 1)
            recording.manager(False)
            for master in (None, point, "x"):
                self.raises(RuntimeError, "Invalid object", point.set_master_point, master)
            self.assertEqual([call[0] for call in calls()], [name + ".projectManager"] * 3)
            recording.manager(True)
        recording.translate("PyHandle/Invalid object", u"Ung\xfcltig")
        point = handle(name, 1)
        recording.manager(False)
        self.raises(RuntimeError, u"Ung\xfcltig".encode("utf-8"), point.set_master_point, None)


class Subscripts(ModuleTest):
    """The set 1 has the subsets a (2) and x (3) and the parameters x (10) and p (11); a has the parameter b (12) and
    the subset c (4), whose subset d is 5; one subset has no name at all."""

    def setUp(self):
        super(Subscripts, self).setUp()
        self.set = handle("ParameterSet", 1)
        for one, path in [(1, []), (2, [u"r", u"a"]), (3, [u"x"]), (4, [u"r", u"a", u"c"]), (5, [u"d"]), (6, [])]:
            recording.returns("ParameterSet.get_name_components#%d" % one, path)
        for one, path in [(10, [u"x"]), (11, [u"q", u"p"]), (12, [u"b"]), (13, [u"p"])]:
            recording.returns("Parameter.get_name_components#%d" % one, path)
        recording.returns("ParameterSet.get_subsets#1", [6, 2, 3])
        recording.returns("ParameterSet.get_subsets#2", [4])
        recording.returns("ParameterSet.get_subsets#4", [5])
        recording.returns("ParameterSet.get_parameters#1", [10, 11, 13])
        recording.returns("ParameterSet.get_parameters#2", [12])

    def test_found(self):
        def check(key, expected):
            self.assertEqual(shown(self.set[key]), expected)

        self.each([
            ("a", ("ParameterSet", 2)), (u"a", ("ParameterSet", 2)), (["a"], ("ParameterSet", 2)),
            (("a", u"c"), ("ParameterSet", 4)), (["a", "c", "d"], ("ParameterSet", 5)),
            (["a", "b"], ("Parameter", 12)), ("p", ("Parameter", 11)), ("x", ("ParameterSet", 3)),
            ([], ("ParameterSet", 1)), ((), ("ParameterSet", 1)),
        ], check)

    def test_missing(self):
        def check(key):
            with self.assertRaises(KeyError) as caught:
                self.set[key]
            self.assertIs(caught.exception.args[0], key)

        self.each(["b", "A", ["a", "x"], ["a", "b", "c"], ["p", "x"], 5, None, {}, 1.5, "", "a c", [5], [["a"]]], check)

    def test_subscripts_only(self):
        self.raises(TypeError, None, len, self.set)
        self.raises(TypeError, None, run, "a['x'] = 1", self.set)
        self.raises(TypeError, None, run, "del a['x']", self.set)

    def test_failures_of_the_library(self):
        recording.throws("ParameterSet.get_subsets", "STRM_BadState", "gone")
        self.raises(RuntimeError, "gone", lambda: self.set["a"])
        recording.clear()
        recording.throws("ParameterSet.get_parameters", "int")
        self.raises(RuntimeError, "Unknown error", lambda: self.set["a"])


class UndoGroups(ModuleTest):
    def setUp(self):
        super(UndoGroups, self).setUp()
        self.project = vp.Project(u"f")
        recording.clear()
        recording.returns("Project.undo_group", 5)

    def steps(self):
        return [call for call in recording.calls() if call[0].startswith("UndoGroup.")]

    def test_a_block_that_ends_commits(self):
        with self.project.undo_group() as bound:
            self.assertIs(bound, None)
            self.assertEqual(self.steps(), [("UndoGroup.begin", 5)])
        self.assertEqual(self.steps(), [("UndoGroup.begin", 5), ("UndoGroup.commit", 5)])
        for _ in range(1):
            with self.project.undo_group():
                break
        self.assertEqual(self.steps()[2:], [("UndoGroup.begin", 5), ("UndoGroup.commit", 5)])

    def test_a_block_that_raises_rolls_back(self):
        error = ValueError("in the block")
        with self.assertRaises(ValueError) as caught:
            with self.project.undo_group():
                raise error
        self.assertIs(caught.exception, error)
        self.assertEqual(self.steps(), [("UndoGroup.begin", 5), ("UndoGroup.rollback", 5)])

    def test_the_library_s_own_failures(self):
        def block():
            with self.project.undo_group():
                entered.append(1)
                raise ValueError

        for function, entries in [("begin", 0), ("rollback", 1)]:
            entered = []
            recording.throws("UndoGroup." + function, "STRM_BadState", "no " + function)
            self.raises(RuntimeError, "no " + function, block)
            self.assertEqual(len(entered), entries)
            recording.clear()

    def test_each_call_gives_a_group_of_its_own(self):
        first, second = self.project.undo_group(), self.project.undo_group()
        self.assertIsNot(first, second)
        vp.UndoGroup(first).commit()
        self.assertEqual(self.steps(), [("UndoGroup.commit", 5)])


if __name__ == "__main__":
    main()
