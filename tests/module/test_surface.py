"""Every class by the table: its names, its counts, its wrong arguments, and what its type can do."""

import copy
import re

from support import *
from surface import ENUMERATIONS


def public(names):
    return set(name for name in names if not name.startswith("__"))


class Names(ModuleTest):
    def test_the_module_holds_classes_enumerations_and_their_items(self):
        items = [item for names in ENUMERATIONS.values() for item in names]
        names = [name for name in vars(vp) if type(vars(vp)[name]).__name__ not in ("PyCapsule", "PyCObject")]
        self.assertEqual(public(names), set(CLASSES) | set(ENUMERATIONS) | set(items))

    def test_types_have_the_methods_and_properties_of_the_table(self):
        def check(name):
            one, cls = CLASSES[name], getattr(vp, name)
            self.assertEqual("%s.%s" % (cls.__module__, cls.__name__), "vireo.project." + name)
            self.assertEqual(repr(cls), "<type 'vireo.project.%s'>" % name)
            self.assertEqual(cls.__bases__[0].__name__, one.base)
            names = [method[0] for method in one.methods] + [row[0] for row in one.properties]
            own = public(vars(cls))
            signals = set(n for n in own if type(vars(cls)[n]).__name__ == "Signal")
            self.assertEqual(own - signals, public(names))
            self.assertEqual("__copy__" in vars(cls), one.copies)
            for row in one.properties:
                self.assertIs(type(vars(cls)[row[0]]), property)
                self.assertEqual(vars(cls)[row[0]].fset is not None, row[2] is not None, row[0])
                for accessor in filter(None, row[1:3]):
                    self.raises(AttributeError, None, getattr, cls, accessor)

        self.each(CLASSES, check)

    def test_the_signals_of_the_library_are_there(self):
        for name, signals in [
                ("Project", "settingChanged viewsChanged clipsChanged layersChanged historyChanged saved"),
                ("Clip", "settingChanged streamsChanged"), ("ColorParameters", "propertyChanged"),
                ("ProgressWatcher", "started progressChanged finished cancelled cancelRequested")]:
            for signal in signals.split():
                self.assertEqual(type(getattr(make(name), signal)).__name__, "SignalInstance")


class Arguments(ModuleTest):
    def refused(self, kind, text, name, method, arguments, keywords={}):
        """The call fails with that message, and the library hears nothing of it."""
        one = make(name) if method else None
        function = getattr(one, method) if method else getattr(vp, name)
        recording.clear()
        self.raises(kind, text, function, *arguments, **keywords)
        self.assertEqual(calls(), [])

    def test_each_argument_is_tested_by_position_and_by_keyword(self):
        def check(name, method, counted, signature, keywords, signatures):
            full = ".".join(filter(None, [name, method]))
            texts = signature.split(", ") if signature else []
            given = arguments(signature)
            required = [one for one, text in zip(given, texts) if " = " not in text]

            def wrong(arguments, keywords={}):
                text = signature_error(full, type_names(arguments), *signatures)
                self.refused(TypeError, text, name, method, arguments, keywords)

            for place, text in enumerate(texts):
                if text not in ("object", "QVariant"):
                    wrong(given[:place] + [Stranger()] + given[place + 1:])
            self.assertEqual(len(texts) - len(required), len(keywords))
            for place, keyword in enumerate(keywords, len(required)):
                wrong(required, {keyword: Stranger()})
                # Keywords count, so that the last of all is one too many before it is one beside its position.
                text = duplicate_error(full, keyword)
                if counted and place + 2 > counted[1]:
                    text = count_error(full, counted[0], place + 2)
                self.refused(TypeError, text, name, method, given[:place + 1], {keyword: given[place]})

        self.each(list(overloads()), check)

    def test_the_parameters_order_decides_which_of_several_mistakes_is_told(self):
        for code, keyword in [("a.relink(u'', path=u'', prefix=5)", "path"),
                              ("a.relink(u'', u'', start_frame=1, prefix=u'', end_frame='x')", "prefix")]:
            self.raises(TypeError, duplicate_error("Clip.relink", keyword), run, code, make("Clip"))

    def test_wrong_arguments_of_setters_name_the_setter(self):
        def check(name, prop, getter, set_name, text):
            one = make(name)
            recording.clear()
            error = signature_error("%s.%s" % (name, set_name), "Stranger", text)
            self.raises(TypeError, error, setattr, one, prop, Stranger())
            self.assertEqual(calls(), [])

        self.each([row for row in properties() if row[3] and row[4]], check)

    def test_counts_of_methods_with_keywords(self):
        def check(name, method, form, signatures):
            least, most = form
            full = "%s.%s" % (name, method)
            strangers = [None] * (most + 1)
            self.refused(TypeError, count_error(full, least, most + 1), name, method, strangers)
            # Unknown keywords count too, and keywords do not make up for required arguments.
            self.refused(TypeError, count_error(full, least, most + 1), name, method, strangers[1:], {"other": 1})
            if least:
                self.refused(TypeError, count_error(full, least, least - 1), name, method, strangers[:least - 1])
                self.refused(TypeError, count_error(full, least, least - 1), name, method, strangers[:least - 1],
                             {"view": 1})

        self.each(list(operations("keywords")), check)

    def test_counts_that_the_interpreter_makes(self):
        def check(name, method, form, signatures):
            if form == NONE:
                rows = [((1,), {}, "%s() takes no arguments (1 given)" % method),
                        ((), {"x": 1}, "%s() takes no keyword arguments" % method)]
            elif form == ONE:
                rows = [((), {}, "%s() takes exactly one argument (0 given)" % method),
                        ((1, 2), {}, "%s() takes exactly one argument (2 given)" % method),
                        ((1,), {"x": 1}, "%s() takes no keyword arguments" % method)]
            else:
                count = form[1]
                rows = [((1,) * given, {}, "%s expected %d arguments, got %d" % (method, count, given))
                        for given in (0, count - 1, count + 1)]
                rows.append(((1,) * count, {"x": 1}, "%s() takes no keyword arguments" % method))
            for given, keywords, text in rows:
                self.refused(TypeError, text, name, method, given, keywords)

        self.each([row for kind in (NONE, ONE, "exactly") for row in operations(kind)], check)

    def test_counts_of_constructors(self):
        def check(name):
            kind = CLASSES[name].constructor
            rows = []
            if kind == COPY:
                rows = [((None,) * n, {}, "%s expected 1 arguments, got %d" % (name, n)) for n in (0, 2)]
            elif kind == "view":
                rows = [((1, 2), {}, "View expected at most 1 arguments, got 2")]
            elif kind[0] == "total":
                most = kind[1]
                rows = [((1,) * (most + 1), {}, count_error(name, 0, most + 1)),
                        ((1,) * most, {"other": 1}, count_error(name, 0, most + 1))]
            else:
                most = kind[-1]
                rows = [((1,) * (most + 1), {}, "%s() takes at most %d argument%s (%d given)" % (
                    name, most, "s" * (most > 1), most + 1))]
                if kind[0] == "least":
                    rows += [((), {}, count_error(name, 1, 0)), ((), {"parent": None}, count_error(name, 1, 0))]
            for given, keywords, text in rows:
                self.refused(TypeError, text, name, None, given, keywords)

        self.each([name for name in CLASSES if CLASSES[name].constructor], check)

    def test_arguments_that_are_nearly_right(self):
        def check(name, code, given):
            member = re.match(r"a\.(\w+)", code)
            one = make(name) if member else None
            full, signatures = name, CLASSES[name].signatures or ["vireo.project." + name]
            if member:
                known = {row[0]: row[1:2] + row[2:] for row in CLASSES[name].methods}
                known.update((row[0], row[2:]) for row in CLASSES[name].properties)
                row = known[member.group(1)]
                full = "%s.%s" % (name, row[0] if " = " in code else member.group(1))
                signatures = row[1:]
            recording.clear()
            self.raises(TypeError, signature_error(full, given, *signatures), run, code, one)
            # Only what the row itself makes has reached the library.
            self.assertNotIn(full, [call[0] for call in calls()])

        self.each([
            ("Clip", "a.relink(5, path=u'')", "int"),
            ("Clip", "a.relink(StreamInfo(), 1, 2)", "vireo.project.StreamInfo, int, int"),
            ("Clip", "a.relink(None, None, None, None)", "NoneType, NoneType, NoneType, NoneType"),
            ("Clip", "a.apply(None)", "NoneType"),
            ("Clip", "a.add_stream('p', 1L, 1, 2)", "str, long, int, int"),
            ("Clip", "a.add_stream('p', View(1), 1, 2, validate='x')", "str, vireo.project.View, int, int"),
            ("Project", "a.track_layers(0, 1, [handle('Layer', 1), 5])", "int, int, list"),
            ("Project", "a.add_layer(Project(u'x'))", "vireo.project.Project"),
            ("Layer", "a.set_parent(handle('Layer', 1))", "vireo.project.Layer"),
            ("LayerGroup", "a.insert_child(None)", "NoneType"),
            ("BezierContour", "a.insert_point(0.0, XControlPointData())", "float, vireo.project.XControlPointData"),
            ("ViewInfo", "ViewInfo(u'L')", "unicode"),
            ("View", "View(None)", "NoneType"),
            ("View", "View('1')", "str"),
            ("Project", "Project(None, 1)", "NoneType, int"),
            ("Project", "Project(None, LogColorspace)", "NoneType, vireo.project.Colorspace"),
            ("Project", "Project(u'x', interlace_mode=1, parent=1)", "unicode"),
            ("Project", "Project(None, None)", "NoneType, NoneType"),
            ("Project", "Project(u'f', None, None)", "unicode, NoneType, NoneType"),
            ("BezierControlPointData", "BezierControlPointData(XControlPointData(), True)",
             "vireo.project.XControlPointData, bool"),
            ("Layer", "Layer(None)", "NoneType"),
            # A tuple that is the one argument is shown as the arguments.
            ("Project", "a.in_out_range = (10,)", "int"),
            ("Clip", "a.frame_size = (1, 2, 'x')", "int, int, str"),
            ("Layer", "a.matte_color = (0.25, 1)", "float, int"),
            ("Project", "a.views = (5,)", "int"),
            ("Project", "a.views = [5]", "list"),
        ], check)

    def test_a_pending_error_keeps_its_call_from_the_library(self):
        def check(name, code, kind):
            one = make(name)
            recording.clear()
            self.raises(kind, None, run, code, one)
            self.assertEqual(calls(), [])

        self.each([
            ("Project", "a.layer(-1)", OverflowError), ("Project", "a.layer(2 ** 32)", OverflowError),
            ("Project", "a.render(None, 2 ** 31, 1, [])", OverflowError),
            ("Layer", "a.get_surface_position(-1, 0.0)", OverflowError),
            ("Parameter", "a.set(2 ** 31)", OverflowError), ("Clip", "a.delete_stream(2 ** 40)", OverflowError),
            ("BezierControlPointData", "a.handle_offset_forward = (1.0,)", TypeError),
        ], check)


class Properties(ModuleTest):
    def test_read_only_properties_refuse_and_none_can_be_deleted(self):
        def check(name, prop, getter, set_name, text):
            one = make(name)
            recording.clear()
            if not set_name:
                self.raises(AttributeError, "can't set attribute", setattr, one, prop, 1)
            self.raises(AttributeError, "can't delete attribute", delattr, one, prop)
            self.assertEqual(calls(), [])

        self.each(list(properties()), check)


class TypeSlots(ModuleTest):
    def test_comparison_by_the_table(self):
        refusal = "operator not implemented."

        def check(name):
            slots = CLASSES[name].slots.split()
            one, other = make(name), make(name)
            if "==" not in slots:
                self.assertTrue(one == one and not one == other and one != other)
                return
            label = "%s.==" % name
            for answer in (True, False):
                recording.clear()
                recording.returns(label, answer)
                self.assertIs(one == other, answer)
                self.assertEqual([call[0] for call in recording.calls()], [label])
                self.assertEqual(dict(recording.locks()), {label: True})
            recording.throws(label, "STRM_BadState", "gone")
            self.raises(NotImplementedError, refusal, lambda: one == other)
            for stranger in (5.5, None, "x", Stranger()):
                recording.clear()
                self.assertIs(one == stranger, False)
                if "!=" in slots:
                    self.assertIs(one != stranger, True)
                self.assertEqual(recording.calls(), [])
            if "!=" in slots:
                recording.returns("%s.!=" % name, True)
                self.assertIs(one != one, True)
            else:
                self.raises(NotImplementedError, refusal, lambda: one != other)
                self.raises(NotImplementedError, refusal, lambda: one != 5.5)
            for compare in (lambda: one < other, lambda: one <= other, lambda: one > other, lambda: one >= other)[
                    1 if "<" in slots else 0:]:
                self.raises(NotImplementedError, refusal, compare)

        self.each([name for name in CLASSES if CLASSES[name].slots != "QObject"], check)

    def test_views_compare_with_integers(self):
        view = vp.View(3)
        for other, plain in [(3, 3), (True, 1), (vp.View(4), 4)]:
            recording.clear()
            self.assertIs(view == other, plain == 3)
            self.assertIs(view < other, plain > 3)
            self.assertEqual([call for call in recording.calls() if call[0] in ("View.==", "View.<")],
                             [("View.==", 3, plain), ("View.<", 3, plain)])
        self.assertIs(view == 3L, False)
        # An integer that is no view's id leaves the comparison without an answer.
        self.raises(NotImplementedError, "operator not implemented.", lambda: view == 2 ** 31)
        self.raises(NotImplementedError, "operator not implemented.", lambda: view < "3")
        self.assertEqual([one.id for one in sorted([vp.View(2), vp.View(0), vp.View(1)])], [0, 1, 2])
        self.assertEqual(len({vp.View(1), vp.View(1), vp.View(2)}), 2)

    def test_hash_by_the_table(self):
        def check(name):
            slots, one = CLASSES[name].slots.split(), make(name)
            if "hash" in slots:
                label = name + ".qHash"
                recording.returns(label, UINT_MAX)
                self.assertEqual(hash(one), UINT_MAX)
                self.assertEqual(recording.locks(), ((label, True),))
            elif "==" in slots:
                self.raises(TypeError, "unhashable type: 'vireo.project.%s'" % name, hash, one)
            else:
                self.assertEqual(len({one, one, make(name)}), 2)

        self.each(CLASSES, check)

    def test_truth_is_what_the_library_says_of_a_handle(self):
        def check(name):
            one = make(name)
            if "bool" not in CLASSES[name].slots.split():
                self.assertTrue(one)
                return
            label = name + ".isNull"
            for null in (True, False):
                recording.clear()
                recording.returns(label, null)
                self.assertIs(bool(one), not null)
                self.assertEqual(recording.locks(), ((label, False),))
            recording.throws(label, "STRM_BadState", "gone")
            self.raises(RuntimeError, "gone", bool, one)

        self.each(CLASSES, check)

    def test_copies_are_objects_of_their_own(self):
        def check(name):
            one = make(name)
            before = recording.counts(name)
            twin = copy.copy(one)
            after = recording.counts(name)
            self.assertIs(type(twin), type(one))
            self.assertIsNot(twin, one)
            if name != "View":
                self.assertEqual(after["alive"] - before["alive"], 1)
                self.assertEqual(after["copied unlocked"], before["copied unlocked"])
                del twin
                self.assertEqual(recording.counts(name)["alive"], before["alive"])
                recording.throws(name + "(copy)", "STRM_BadArgument", "no copy")
                self.raises(ValueError, "no copy", copy.copy, one)
                self.assertEqual(recording.counts(name)["alive"], before["alive"])

        self.each([name for name in CLASSES if CLASSES[name].copies], check)

    def test_copy_constructors_copy_without_the_lock(self):
        def check(name):
            one = make(name)
            before = recording.counts(name)
            twin = getattr(vp, name)(one)
            after = recording.counts(name)
            self.assertIsNot(twin, one)
            self.assertEqual(after["copied unlocked"] - before["copied unlocked"], 1)
            recording.throws(name + "(copy)", "STRM_OutOfRange", "no copy")
            self.raises(IndexError, "no copy", getattr(vp, name), one)
            del twin
            self.assertEqual(recording.counts(name)["alive"], before["alive"])

        self.each([name for name in CLASSES if CLASSES[name].copies and name != "View"], check)

    def test_text_forms(self):
        for name, form, function in [("View", "__repr__", repr), ("View", "__str__", str),
                                     ("ViewInfo", "__repr__", repr), ("StreamInfo", "__repr__", repr)]:
            one = make(name)
            recording.returns("%s.%s" % (name, form), u"text of it")
            self.assertEqual(function(one), "text of it")
            self.assertIn(("%s.%s" % (name, form), False), recording.locks())
        for name in CLASSES:
            if "repr" not in CLASSES[name].slots:
                self.assertRegexpMatches(repr(make(name)), r"^<vireo.project.\w+ object at 0x\w+>$")


class Enumerations(ModuleTest):
    def test_items_carry_their_values_and_sit_on_type_and_module(self):
        for name, items in ENUMERATIONS.items():
            kind = getattr(vp, name)
            self.assertEqual(repr(kind), "<type 'vireo.project.%s'>" % name)
            for value, item in enumerate(items):
                self.assertIs(getattr(kind, item), getattr(vp, item))
                self.assertIs(type(getattr(vp, item)), kind)
                self.assertEqual(int(getattr(vp, item)), value)
                self.assertEqual(repr(getattr(vp, item)), "vireo.project.%s.%s" % (name, item))


if __name__ == "__main__":
    main()
