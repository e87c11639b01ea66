"""Who owns a library object, which Python object stands for it, and what is left when it goes."""

import gc
import weakref

import shiboken

from support import *

GONE = "Internal C++ object (vireo.project.%s) already deleted."

RECORDS = ("ViewInfo", "StreamInfo", "BezierControlPointData", "XControlPointData")  # made before they are converted


class Ownership(ModuleTest):
    def test_python_deletes_what_it_made(self):
        for name in sorted(CLASSES):
            if name in ("View", "RenderOperation"):
                continue
            one = make(name)
            self.assertTrue(shiboken.ownedByPython(one))
            self.assertTrue(shiboken.isValid(one))
            before = recording.counts(name)
            watch = weakref.ref(one)
            del one
            self.assertIs(watch(), None)
            after = recording.counts(name)
            self.assertEqual((before["alive"] - after["alive"], after["destroyed"] - before["destroyed"]), (1, 1), name)

    def test_whose_the_objects_are_that_the_library_hands_out(self):
        project, clip, layer = vp.Project(u"f"), vp.Clip(u"f"), handle("Layer", 1)
        operation = vp.RenderInsertOperation()

        def check(owner, code, function, name, library_s, python_s):
            """Whether Python owns the result afterwards, when the library had made it, and when Python had."""
            for by_python, owned in [(False, library_s), (True, python_s)]:
                one = derived(name) if by_python else made(name)[0]
                known, alive, watch = number(one), recording.counts(name)["alive"], weakref.ref(one)
                recording.returns(function, known)
                self.assertIs(run(code, owner), one)
                self.assertIs(second_extension.pointer_to_python(name + "*", known), one)
                self.assertEqual(shiboken.ownedByPython(one), owned)
                del one
                self.assertEqual(recording.counts(name)["alive"], alive - owned)
                if not owned:
                    # What Python made is held until its library object goes.
                    self.assertEqual(watch() is not None, by_python)
                    self.assertEqual(number(run(code, owner)), known)
                    recording.destroy(known)
                self.assertIs(watch(), None)
                recording.clear()

        self.each([
            (project, "a.add_clip(None, u'')", "Project.add_clip", "Clip", False, True),
            (project, "a.render(None, 1, 2, [])", "Project.render", "Clip", False, True),
            (project, "a.export_rendered_shapes([], Grayscale, '', '', '', '', 1, 2)",
             "Project.export_rendered_shapes", "Clip", True, True),
            (project, "a.default_trackable_clip", "Project.get_default_trackable_clip", "Clip", False, False),
            (project, "a.progress_watcher", "Project.get_progress_watcher", "ProgressWatcher", False, False),
            (clip, "a.progress_watcher", "Clip.get_progress_watcher", "ProgressWatcher", False, False),
            (operation, "a.progress_watcher", "RenderOperation.get_progress_watcher", "ProgressWatcher", False, False),
            (clip, "a.color_parameters", "Clip.get_color_parameters", "ColorParameters", False, True),
            (layer, "a.tracking_input_clip()", "Layer.tracking_input_clip", "Clip", False, True),
        ], check)

    def test_clips_of_a_project_keep_their_identity(self):
        project = vp.Project(u"f")
        first, second = recording.make("Clip"), recording.make("Clip")
        recording.returns("Project.get_clips", [(u"a", first), (u"b", second)])
        clips = project.clips
        self.assertEqual(sorted(clips), [u"a", u"b"])
        self.assertIs(project.clips[u"a"], clips[u"a"])
        self.assertEqual([number(clips[name]) for name in sorted(clips)], [first, second])
        recording.returns("Project.get_clips", [(u"none", 0)])
        self.assertEqual(project.clips, {u"none": None})
        recording.destroy(first)
        self.raises(RuntimeError, GONE % "Clip", lambda: clips[u"a"].name)
        recording.destroy(second)

    def test_colour_parameters_go_to_the_clip(self):
        clip, parameters = vp.Clip(u"f"), vp.ColorParameters()
        known, watch = number(parameters), weakref.ref(parameters)
        clip.color_parameters = parameters
        self.assertFalse(shiboken.ownedByPython(parameters))
        del parameters
        gc.collect()
        self.assertIsNot(watch(), None)  # made from Python, it lives until its library object goes
        recording.destroy(known)
        gc.collect()
        self.assertIs(watch(), None)

    def test_colour_parameters_stay_python_s_when_the_library_refuses_them(self):
        clip, parameters = vp.Clip(u"f"), vp.ColorParameters()
        recording.throws("Clip.set_color_parameters", "STRM_BadArgument", "no")
        self.raises(ValueError, "no", setattr, clip, "color_parameters", parameters)
        self.assertTrue(shiboken.ownedByPython(parameters))

    def test_a_parent_does_not_change_the_owner(self):
        project = vp.Project(u"f")
        clip = vp.Clip(u"f", parent=project)
        self.assertTrue(shiboken.ownedByPython(clip))
        alive = recording.counts("Clip")["alive"]
        del clip
        self.assertEqual(recording.counts("Clip")["alive"], alive - 1)
        clip = vp.Clip(u"f", parent=project)
        del project
        self.raises(RuntimeError, GONE % "Clip", getattr, clip, "name")

    def test_library_objects_that_go_take_their_wrappers_validity(self):
        for name, code in [("Clip", "a.name"), ("Project", "a.save()"), ("ColorParameters", "a.gamma"),
                           ("ProgressWatcher", "a.objectName()"), ("RenderRemoveOperation", "a.progress_watcher")]:
            for elsewhere in (False, True):
                one, known = made(name)
                run(code, one)
                recording.destroy(known, elsewhere)
                self.assertFalse(shiboken.isValid(one))
                self.raises(RuntimeError, GONE % name, run, code, one)
                # A new object at the old address is another object.
                for _ in range(10):
                    other, again = made(name)
                    self.assertIsNot(other, one)
                    self.assertFalse(shiboken.isValid(one))
                    recording.destroy(again)

    def test_the_library_s_children_come_as_their_own_class(self):
        project = vp.Project(u"f")
        known = recording.make("Clip", number(project))
        child = project.children()[0]
        self.assertIs(type(child), vp.Clip)
        self.assertEqual(number(child), known)
        parent = QtCore.QObject()
        watcher = vp.ProgressWatcher(parent)
        self.assertIs(parent.children()[0], watcher)
        recording.destroy(known)

    def test_results_are_new_objects_that_own_their_values(self):
        project = vp.Project(u"f")
        recording.returns("Project.get_layers", [1, 2])
        first, second = project.layers, project.layers
        self.assertIsNot(first, second)
        self.assertIsNot(first[0], second[0])
        self.assertTrue(shiboken.ownedByPython(first[0]))
        alive = recording.counts("Layer")["alive"]
        del first, second
        self.assertEqual(recording.counts("Layer")["alive"], alive - 4)


class Validity(ModuleTest):
    def test_every_member_of_a_dead_object_fails_and_the_library_hears_nothing(self):
        def check(name):
            one = make(name)
            shiboken.delete(one)
            recording.clear()
            if name == "RenderOperation":
                name = "RenderInsertOperation"
            for method, form in [row[:2] for row in CLASSES[name].methods]:
                self.raises(RuntimeError, GONE % name, getattr(one, method), *[None] * least(form))
            for row in CLASSES[name].properties:
                self.raises(RuntimeError, GONE % name, getattr, one, row[0])
                if row[2]:
                    self.raises(RuntimeError, GONE % name, setattr, one, row[0], None)
            slots = CLASSES[name].slots.split()
            for slot, code in [("==", "a == a"), ("!=", "a != a"), ("<", "a < a"), ("hash", "hash(a)"),
                               ("bool", "bool(a)"), ("repr", "repr(a)"), ("str", "str(a)")]:
                if slot in slots:
                    self.raises(RuntimeError, GONE % name, run, code, one)
            if CLASSES[name].copies:
                self.raises(RuntimeError, GONE % name, one.__copy__)
            self.assertEqual(recording.calls(), [])

        self.each(CLASSES, check)

    def test_dead_arguments_fail_before_the_library_is_called(self):
        def check(name, method, counted, signature, keywords, signatures):
            for place, text in enumerate(signature.split(", ")):
                if text.split(" = ")[0].rsplit(".")[-1] in CLASSES:
                    given = arguments(signature)
                    shiboken.delete(given[place])
                    one = make(name)
                    recording.clear()
                    self.raises(RuntimeError, GONE % type(given[place]).__name__,
                                getattr(one, method) if method else getattr(vp, name), *given)
                    self.assertEqual(calls(*RECORDS), [])

        self.each(list(overloads()), check)

    def test_dead_objects_within_arguments_and_in_operators(self):
        def check(name, code, dead):
            one, other = make(name), make(dead)
            shiboken.delete(other)
            recording.clear()
            self.raises(RuntimeError, GONE % dead, run, code, one, other)
            self.assertEqual(calls("BezierControlPoint.projectManager", *RECORDS), [])

        self.each([
            ("Clip", "a.relink(view=b)", "View"), ("Clip", "Clip('', parent=b)", "Clip"),
            ("Clip", "a.export(None, '', '', '', '', 1, 2, views=[b])", "View"),
            ("Clip", "a.color_parameters = b", "ColorParameters"), ("Project", "a.track_layers(0, 1, [b])", "Layer"),
            ("Project", "a.views = [b]", "ViewInfo"), ("Project", "a.default_hero_view = b", "View"),
            ("Layer", "a.parent = b", "LayerGroup"), ("Layer", "a.link_to_track = b", "Layer"),
            ("Layer", "a.add_bezier_contour(0.0, [b])", "BezierControlPointData"), ("Parameter", "a.set(b)", "Layer"),
            ("Layer", "a == b", "Layer"), ("Layer", "a != b", "Layer"), ("View", "a < b", "View"),
            ("BezierControlPoint", "a.set_master_point(b)", "BezierControlPoint"),
            ("BezierControlPoint", "a.set_master_point(b)", "XControlPoint"),
        ], check)

    def test_what_was_never_initialised(self):
        class Forgetful(vp.Clip):
            def __init__(self):
                pass

        self.raises(RuntimeError, "'__init__' method of object's base class (Forgetful) not called.",
                    lambda: Forgetful().name)
        self.raises(RuntimeError, "You can't initialize an object twice!", vp.Clip(u"f").__init__, u"g")
        layer = handle("Layer", 1)
        alive = recording.counts("Layer")["alive"]
        self.raises(RuntimeError, "You can't initialize an object twice!", layer.__init__, layer)
        self.assertEqual(recording.counts("Layer")["alive"], alive)
        self.raises(RuntimeError, GONE % "RenderOperation", lambda: vp.RenderOperation().progress_watcher)

    def test_bare_objects_and_cycles(self):
        for name in sorted(CLASSES):
            bare = getattr(vp, name).__new__(getattr(vp, name))
            member = [row[0] for row in CLASSES[name].properties + CLASSES[name].methods]
            member = member or ["objectName" if CLASSES[name].base == "QObject" else "progress_watcher"]
            self.raises(RuntimeError, None, lambda: getattr(bare, member[0])())
        clip = vp.Clip(u"f")
        clip.me, watch, alive = clip, weakref.ref(clip), recording.counts("Clip")["alive"]
        del clip
        gc.collect()
        self.assertIs(watch(), None)
        self.assertEqual(recording.counts("Clip")["alive"], alive - 1)

    def test_signals_of_a_python_class(self):
        for name in "Project", "Clip", "ProgressWatcher", "ColorParameters":
            class Own(getattr(vp, name)):
                told = QtCore.Signal(int)
                said = QtCore.Property(int, lambda self: 7)

            own, got = Own(*[u"f"] * (name in ("Project", "Clip"))), []
            own.told.connect(got.append)
            own.told.emit(4)
            self.assertEqual((got, own.property("said")), ([4], 7))
            shiboken.delete(own)
            self.raises(RuntimeError, "Internal C++ object (Own) already deleted.", own.destroyed.emit)

    def test_children_that_die_while_the_interpreter_ends(self):
        self.assertEqual(child("""if True:
            import vireo.project as vp
            class Last(vp.ProgressWatcher):
                def __del__(self):
                    try:
                        self.finished.emit()
                    except RuntimeError as error:
                        print error
            early, late = vp.ProgressWatcher(), None
            z_late = Last(early)
            """), (0, "Internal C++ object (Last) already deleted.\n", ""))

    def test_every_class_can_be_subclassed_beside_a_plain_one(self):
        class Plain(object):
            note = u"mine"

        for name in sorted(set(CLASSES) - {"RenderOperation"}):
            cls = type("Mine", (getattr(vp, name), Plain), {})
            copied = CLASSES[name].constructor == "copy"
            one = cls(make(name)) if copied else cls(u"f") if name in ("Clip", "Project") else cls()
            self.assertEqual(one.note, u"mine")
            self.assertTrue(shiboken.isValid(one))


if __name__ == "__main__":
    main()
