"""What changes while a call is under way: by the conversion of its arguments, by another thread, by what it calls."""

import threading
import weakref

import shiboken

from support import *

GONE = "Internal C++ object (vireo.project.%s) already deleted."


class Acting(object):
    """A number whose conversion does something first."""

    def __init__(self, action, value=3):
        self.action, self.value = action, value

    def __int__(self):
        self.action()
        return self.value

    def __float__(self):
        return float(int(self))


def parented():
    """A clip that a Qt parent owns, and what drops the parent."""
    owner = [QtCore.QObject()]
    clip = vp.Clip(u"f")
    clip.setParent(owner[0])
    return clip, owner.pop


class Conversions(ModuleTest):
    def test_the_values_of_a_script_s_own_dict_are_held(self):
        def check(name, function, received, *arguments, **given):
            for value in given.values():
                if isinstance(value, Acting):
                    value.action = given.clear
            one = make(name)
            recording.clear()
            getattr(one, function)(*arguments, **given)
            self.assertEqual(given, {})
            self.assertEqual([call[2:] for call in calls() if call[0].endswith(function)], [received])

        check("Project", "track_layers", (3, 9, (2,), (1,)), start_index=Acting(None), stop_index=Acting(None, 9),
              layers=[handle("Layer", 2)], views=[vp.View(1)])
        check("BezierContour", "insert_point", (0.5, (None,) * 8, 3, 2), 0.5, vp.BezierControlPointData(),
              index=Acting(None), view=vp.View(2))

    def test_what_a_conversion_destroys_does_not_reach_the_library(self):
        def check(name, code):
            thing, kill = parented() if name == "owned Clip" else (make(name), None)
            number = Acting(kill or functools.partial(shiboken.delete, thing))
            names = names_for(thing, number, vp.Project(u"f"), vp.Clip(u"f"), handle("BezierContour", 1))
            recording.clear()
            self.raises(RuntimeError, GONE % type(thing).__name__, eval, code, names)
            self.assertEqual(calls(), [])

        self.each([
            ("owned Clip", "setattr(a, 'first_frame_offset', b)"),
            ("Clip", "setattr(a, 'frame_rate', b)"),
            ("Clip", "a.export(None, 'a', 'b', 'c', 'd', b, 2)"),
            ("Clip", "d.export(a, 'a', 'b', 'c', 'd', b, 2)"),
            ("RenderInsertOperation", "c.render(a, b, 2, [])"),
            ("BezierControlPointData", "e.insert_point(1.0, a, index=b)"),
            ("StreamInfo", "setattr(a, 'start_frame', b)"),
        ], check)


    def test_what_must_reach_the_caller_does(self):
        class Failing(Acting):
            def __len__(self):
                return 2

            def __getitem__(self, index):
                self.action()

        def fail():
            raise errors[0]

        def check(code):
            project, view, dictionary = vp.Project(u"f"), vp.View(1), {1: Failing(fail)}
            for errors[0] in (KeyboardInterrupt("stop"), SystemExit(3), MemoryError()):
                self.raises(type(errors[0]), None, run, code, project, Failing(fail), handle("ParameterSet", 1),
                            vp.Clip(u"f"), handle("Layer", 1))

        errors = [None]
        self.each(["a.track_layers(layers=b)", "a.track_layers(b)", "a.in_out_range = (1, b)",
                   "a.views = b", "c[b]", "d.relink(u'', u'', u'', b)", "e.matte_color = (b, 0, 0)",
                   "BezierControlPointData(handle_offset_forward=(b, 1))", "e.parameter_set(b)"], check)

    def test_a_list_of_names_has_names_only(self):
        for given in ([1], [handle("Layer", 1)], "layers", u"layers", {u"a": 1}, [u"a", ["b"]]):
            self.raises(TypeError, None, handle("Layer", 1).parameter_set, given)


class Threads(ModuleTest):
    def in_call(self, function, code, one):
        """Runs code in another thread until the library is in the function; gives what ends it and takes its result."""
        results = []

        def work():
            try:
                results.append(run(code, one))
            except Exception as error:
                results.append(error)

        recording.block(function)
        thread = threading.Thread(target=work)
        thread.start()
        self.assertTrue(recording.await(function))

        def end():
            recording.release(function)
            thread.join()
            QtCore.QCoreApplication.sendPostedEvents(None, QtCore.QEvent.DeferredDelete)  # of what lives in this one
            return results[0]
        return end

    def test_owners_outlive_the_calls_that_run(self):
        clip, known = made("Clip")
        project, other = vp.Project(u"f"), vp.Project(u"g")
        alive = recording.counts("Project")["alive"]
        recording.returns("Clip.get_name", u"plate")
        end = self.in_call("Clip.get_name", "a.name", clip)
        del project
        shiboken.delete(other)
        self.assertEqual(recording.counts("Project")["alive"], alive)  # either may own the clip
        self.assertEqual(end(), u"plate")
        self.assertEqual(recording.counts("Project")["alive"], alive - 2)
        recording.destroy(known)

    def test_a_qt_parent_outlives_the_calls_that_run(self):
        clip, drop = parented()
        alive = recording.counts("Clip")["alive"]
        end = self.in_call("Clip.get_name", "a.name", clip)
        drop()
        self.assertEqual(recording.counts("Clip")["alive"], alive)
        end()
        self.assertEqual(recording.counts("Clip")["alive"], alive - 1)

    def test_what_is_deleted_outlives_the_calls_that_run(self):
        def check(name, delete, function, code):
            thing = make(name)
            alive = recording.counts(name)["alive"]
            end = self.in_call(function, code, thing)
            delete(thing)
            self.assertEqual(recording.counts(name)["alive"], alive)
            end()
            del thing
            self.assertEqual(recording.counts(name)["alive"], alive - 1)

        def later(thing):
            thing.deleteLater()
            QtCore.QCoreApplication.sendPostedEvents(thing, QtCore.QEvent.DeferredDelete)

        self.each([("Layer", shiboken.delete, "Layer.remove", "a.remove()"),
                   ("Clip", shiboken.delete, "Clip.get_id", "a.id"),
                   ("Project", later, "Project.save", "a.save()")], check)

    def test_later_calls_keep_nothing(self):
        first, second = vp.Clip(u"a"), vp.Clip(u"b")
        project = vp.Project(u"f")
        alive = recording.counts("Project")["alive"]
        end_first = self.in_call("Clip.get_name", "a.name", first)
        del project
        end_second = self.in_call("Clip.get_id", "a.id", second)
        end_first()
        self.assertEqual(recording.counts("Project")["alive"], alive - 1)
        end_second()


if __name__ == "__main__":
    main()
