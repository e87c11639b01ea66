"""Every operation by the table: what the library receives for each form, default and keyword, and what comes back."""

from support import *

EMPTY = (None,) * 8
X1 = (None, None, (1.0,)) + (None,) * 5

FUNCTIONS = {"export": "exportClip", "__enter__": "begin"}  # of the library, where a method has another name
VALUES = ("View", "ViewInfo", "StreamInfo", "ColorParameters", "BezierControlPointData", "XControlPointData")

# What the library receives where a default has that text.
DEFAULTS = {
    "false": False, "0": 0, "1": 1, "-1": UINT_MAX, "UINT_MAX": UINT_MAX, "double( UINT_MAX )": float(UINT_MAX),
    "0.f": 0.0, "1.f": 1.0, "685.f": 685.0, '""': u"", '"NewClip"': u"NewClip", "NULL": None,
    'Project.tr( "New layer" )': u"New layer", 'Project.tr( "New group" )': u"New group", "View()": LIBRARY_VIEW,
    "View( 0 )": 0, "View(0)": 0, "QStringList()": (), "QVector< View >()": (), "QVector< Layer >()": (),
    "OptionalBool()": None, "OptionalFloat()": None, "OptionalPoint()": None, "NotInterlaced": 0,
    "LinearColorspace": 0, "NoneConversion": 0, "Color()": (0.0, 0.0, 0.0),
}
# Properties of these types have the same value on both sides.
PLAIN = {"unicode": u"B\xe4r", "bool": True, "float": -2.5, "int": -2, "unsigned int": long(UINT_MAX),
         "QPair": (10, UINT_MAX), "Color": (0.25, 0.5, 1.0)}


def plain(text, value):
    """What the library receives of a fitting argument."""
    kind = text.split(" = ")[0]
    if kind in ("OptionalBool", "OptionalFloat", "OptionalPoint", "Color"):
        return second_extension.from_python(kind, value)
    if kind == "QVariant":
        return (unicode(type(value).__name__), value)
    name = type(value).__name__
    if name in CLASSES:
        return number(value) if name in HANDLES or CLASSES[name].base != "Object" else \
            second_extension.from_python(name, value)
    return tuple(value) if isinstance(value, list) else value if isinstance(value, (unicode, float)) else int(value)


# Of each class, where what the library receives takes more than a look at the signature: (function, code with the
# object as a, what it receives after the object).
RECEIVED = {
    "BezierContour": [
        ("get_bounding_rect", "a.get_bounding_rect(extra=3)", (0.0, 0)),
        ("get_bounding_rect", "a.get_bounding_rect(1, View(3))", (1.0, 3)),
        ("insert_point", "a.insert_point(2, BezierControlPointData(x=1.0), view=0, index=3)", (2.0, X1, 3, 0)),
    ],
    "XControlPoint": [
        ("set_point_data", "a.set_point_data(1.5, XControlPointData(x=1.0))", (1.5, X1[:7], 7)),
    ],
    "Layer": [
        ("parameter", "a.parameter(('p', u'x'))", ((u"p", u"x"),)),
        ("add_bezier_contour", "a.add_bezier_contour(12, [BezierControlPointData(x=1.0), BezierControlPointData()])",
         (12.0, (X1, EMPTY), 7)),
        ("add_xspline_contour", "a.add_xspline_contour(12.0, (XControlPointData(x=1.0),), 2)", (12.0, (X1[:7],), 2)),
        ("set_parent", "a.set_parent(None)", (None, 0)),
        ("set_parent", "a.parent = handle('LayerGroup', 6)", (6, 0)),
        ("set_parent", "a.parent = None", (None, 0)),
        ("set_link_to_track", "a.link_to_track = None", (None,)),
        ("set_link_to_track", "a.link_to_track = handle('Layer', 5)", ((5,),)),
    ],
    "Parameter": [
        ("set", "a.set(True, 3.0)", ((u"bool", True), 3.0, 0)),
        ("set", "a.set(1.5, time=3, view=2)", ((u"double", 1.5), 3.0, 2)),
        ("set", "a.set([u'a', u'b'])", ((u"QStringList", (u"a", u"b")), float(UINT_MAX), 0)),
    ],
    "UndoGroup": [
        ("commit", "a.__exit__(None, None, None)", ()),
        ("commit", "a.__exit__(ValueError, None, None)", ()),
        ("rollback", "a.__exit__(ValueError, ValueError(), None)", ()),
        ("rollback", "a.__exit__(None, 0, None)", ()),
    ],
    "Clip": [
        ("relink", "a.relink(u'/n', u'p', u's', 1, end_frame=2, view=0)", (u"/n", u"p", u"s", 1, 2, 0)),
        ("relink", "a.relink(None)", (None, u"", u"", UINT_MAX, UINT_MAX, 7)),
        ("relink", "a.relink(StreamInfo(u'/a', u'', u'', 1, 2, 3), view=0, path=5)", ((u"/a", u"", u"", 1, 2, 3), 0)),
        ("exportClip", "a.export(None, 'a', 'b', 'c', 'd', 1, 2)", (None, u"a", u"b", u"c", u"d", 1, 2, 1, (), False)),
        ("exportClip", "a.export(a, 'a', 'b', 'c', 'd', 1, 2, separate_streams=True, views=[View(1), 2])",
         ("self", u"a", u"b", u"c", u"d", 1, 2, 1, (1, 2), True)),
        ("set_color_parameters", "a.color_parameters = None", (None,)),
    ],
    "Project": [
        ("add_group", "a.add_group(layers=(handle('Layer', 2), handle('Layer', 0)))", (u"New group", (2, 0))),
        ("track_layers", "a.track_layers(1, layers=[handle('Layer', 2)], views=[0, View(3)])",
         (1, UINT_MAX, (2,), (0, 3))),
        ("set_notes", "a.notes = '\\xe4'", (u"\xe4",)),
        ("set_frame_rate", "a.frame_rate = 24", (24.0,)),
        ("set_length", "a.length = 2.9", (2,)),
        ("set_views", "a.views = [ViewInfo(u'Left', u'L', (1, 0, 0))]", (((u"Left", u"L", (1.0, 0.0, 0.0)),),)),
        ("set_default_hero_view", "a.default_hero_view = 3", (3,)),
    ],
}

STREAM = (u"/a", u"a.", u".b", 1, 2, 3)
CONTOUR = [("get_bounding_rect", [1.0, 2.0, 3.0, 4.0], [1.0, 2.0, 3.0, 4.0]), ("get_bounding_rect", None, []),
           ("isNull", True, True)]
PARAMETERS = [("parameter", 3, ("Parameter", 3)), ("parameter", 0, ("Parameter", 0)),
              ("parameter_set", 3, ("ParameterSet", 3)), ("parameter_set", 0, ("ParameterSet", 0))]

# Of each class, beside properties of plain types: (method or property, what the library says, what Python then has). An
# object is told, and expected, by its class.
RESULTS = {
    "BezierContour": CONTOUR + PARAMETERS + [
        ("control_points", [2, 1], [("BezierControlPoint", 2), ("BezierControlPoint", 1)]),
        ("insert_point", 4, ("BezierControlPoint", 4)), ("insert_point", 0, ("BezierControlPoint", 0))],
    "XSplineContour": CONTOUR + PARAMETERS + [
        ("control_points", [2, 1], [("XControlPoint", 2), ("XControlPoint", 1)]),
        ("insert_point", 4, ("XControlPoint", 4))],
    "BezierControlPoint": PARAMETERS + [("get_point_data", X1, ("BezierControlPointData", X1))],
    "XControlPoint": PARAMETERS + [("get_point_data", X1[:7], ("XControlPointData", X1[:7]))],
    "Layer": PARAMETERS + [
        ("add_bezier_contour", 4, ("BezierContour", 4)), ("add_xspline_contour", 4, ("XSplineContour", 4)),
        ("get_surface_position", [1.0, 2.0], [1.0, 2.0]),
        ("get_transform_matrix", range(9), ((0.0, 1.0, 2.0), (3.0, 4.0, 5.0), (6.0, 7.0, 8.0))),
        ("in_point", UINT_MAX, long(UINT_MAX)), ("out_point", 9, 9L), ("isNull", False, False),
        ("tracking_input_clip", "Clip", "Clip"), ("tracking_input_clip", None, None),
        ("link_to_track", None, None), ("link_to_track", [5], ("Layer", 5))],
    "LayerGroup": PARAMETERS + [
        ("find_layers", [3, 2], [("Layer", 3), ("Layer", 2)]), ("layers", [2, 3], [("Layer", 2), ("Layer", 3)]),
        ("isNull", True, True)],
    "Parameter": [
        ("get", 1.5, 1.5), ("get", u"text", u"text"), ("get", None, None), ("isNull", True, True),
        ("name_components", [u"a", u"b"], [u"a", u"b"]), ("keyframes", None, []),
        ("keyframes", [(2, 1.5), (0, 3)], [(("View", 2), 1.5), (("View", 0), 3.0)])],
    "ParameterSet": [
        ("name_components", [u"a"], [u"a"]), ("display_name", u"Edge", u"Edge"), ("script_name", u"edge", u"edge"),
        ("parameters", [3], [("Parameter", 3)]), ("subsets", [4, 3], [("ParameterSet", 4), ("ParameterSet", 3)]),
        ("keyframes", [(1, 2.5)], [(("View", 1), 2.5)]), ("isNull", False, False)],
    "Clip": PARAMETERS + [
        ("get_info", STREAM, ("StreamInfo", STREAM)), ("base_parameter_set", 3, ("ParameterSet", 3)),
        ("name", u"plate", u"plate"), ("id", 12, 12L), ("views", [0, 2], [("View", 0), ("View", 2)]),
        ("view_mapping", [(1, 0), (2, 1)], {("View", 1): ("View", 0), ("View", 2): ("View", 1)}),
        ("color_parameters", "ColorParameters", "ColorParameters"), ("progress_watcher", None, None),
        ("progress_watcher", "ProgressWatcher", "ProgressWatcher")],
    "RenderOperation": [("progress_watcher", "ProgressWatcher", "ProgressWatcher")],
    "Project": PARAMETERS + [
        ("get_output_dir", u"/out", u"/out"), ("add_clip", "Clip", "Clip"), ("render", "Clip", "Clip"),
        ("render", None, None), ("export_rendered_shapes", None, None), ("add_layer", 3, ("Layer", 3)),
        ("add_layer", 0, ("Layer", 0)), ("add_group", 3, ("LayerGroup", 3)), ("find_layers", [3], [("Layer", 3)]),
        ("find_groups", [3], [("LayerGroup", 3)]), ("layers", [1, 2], [("Layer", 1), ("Layer", 2)]),
        ("groups", [], []), ("project_file", u"f", u"f"), ("clips", [], {}), ("interlace_mode", 2, vp.LowerFieldFirst),
        ("views", [(u"Left", u"L", (1, 0, 0))], [("ViewInfo", (u"Left", u"L", (1.0, 0.0, 0.0)))]),
        ("default_hero_view", 3, ("View", 3)), ("progress_watcher", "ProgressWatcher", "ProgressWatcher"),
        ("default_trackable_clip", "Clip", "Clip"), ("default_trackable_clip", None, None)],
}


def asked(name, member):
    """The library's function behind a method or property, and how to call it on an object."""
    for row in CLASSES[name].properties:
        if row[0] == member:
            return "%s.%s" % (name, row[1]), lambda one: getattr(one, member)
    for row in overloads():
        if row[:2] == (name, member):
            given = arguments(", ".join(text for text in row[3].split(", ") if " = " not in text))
            return "%s.%s" % (name, member), lambda one: getattr(one, member)(*given)


# What constructors receive where that takes more than a look at the signature.
CONSTRUCTORS = [
    ("Project('f', None)", ("Project", u"f", None)),
    ("Project(None)", ("Project", None, 0, None)),
    ("Clip(u'a', length=3, clip_name='n', width=1, height=2, validate=True)",
     ("Clip", u"a", u"n", True, 1, 2, 3, None)),
    ("Clip(u'a', u'n', 1, 1, 2, 3, None)", ("Clip", u"a", u"n", True, 1, 2, 3, None)),
    # Keywords of another overload, or of none, are not looked at, nor counted here.
    ("Project(u'f', interlace_mode=5)", ("Project", u"f", None)),
    ("Clip(u'a', a=1, b=2, c=3, d=4, e=5, f=6, g=7, h=8)", ("Clip", u"a", u"NewClip", False, 0, 0, 0, None)),
    ("ProgressWatcher(other=5)", ("ProgressWatcher", None)),
    ("ColorParameters(other=5)", ("ColorParameters", 0, 0, 0.0, 0.0, 685.0, 0.0, 1.0)),
    ("RenderInsertOperation()", ("RenderInsertOperation",)),
    ("RenderRemoveOperation(1, 2)", ("RenderRemoveOperation",)),
    ("RenderStabilizeOperation(1, x=2)", ("RenderStabilizeOperation",)),
    ("ViewInfo(color=5)", ("ViewInfo",)),
    ("BezierControlPointData(handle_offset_forward=(1, 2), edge_width=3.0, unknown=5)",
     ("BezierControlPointData", None, None, None, None, (3.0,), None, None, ((1.0, 2.0),))),
]


class Calls(ModuleTest):
    def test_every_argument_in_its_place_and_every_default(self):
        def check(name, method, counted, signature, keywords, signatures):
            label = "%s.%s" % (name, FUNCTIONS.get(method, method)) if method else name
            texts = signature.split(", ") if signature else []
            given = arguments(signature)
            received = [plain(text, value) for text, value in zip(texts, given)]
            least = len(texts) - len(keywords)
            expected = received[:least] + [DEFAULTS[text.split(" = ")[1]] for text in texts[least:]]

            def reaches(expected, positional, keywords={}):
                one = make(name) if method else None
                recording.clear()
                kept = getattr(one, method)(*positional, **keywords) if method else getattr(vp, name)(
                    *positional, **keywords)
                subject = [number(one)] if method else []
                noted = zip(recording.calls(), recording.locks())
                self.assertEqual([(call, lock[1]) for call, lock in noted if call[0] == label],
                                 [(tuple([label] + subject + expected), False)])

            reaches(received, given)
            reaches(expected, given[:least])
            for place, keyword in enumerate(keywords, least):
                reaches(expected[:place] + [received[place]] + expected[place + 1:], given[:least],
                        {keyword: given[place]})

        by_hand = ("set_master_point", "undo_group")
        self.each([row for row in overloads() if row[1] not in by_hand and row[0] != "View" and
                   (row[1] or row[3] != "vireo.project." + row[0])], check)

    def test_arguments_that_need_a_closer_look(self):
        def check(name, function, code, received):
            one = make(name)
            run(code, one)
            received = tuple(number(one) if item == "self" else item for item in received)
            label = "%s.%s" % (name, function)
            noted = [call for call in recording.calls() if call[0] == label]
            self.assertEqual(noted, [(label, number(one)) + received])

        self.each([(name,) + row for name in sorted(RECEIVED) for row in RECEIVED[name]], check)

    def test_properties_of_plain_types(self):
        def check(name, prop, getter, set_name, text):
            one = make(name)
            recording.returns("%s.%s" % (name, getter), PLAIN[text])
            self.assertEqual((getattr(one, prop), type(getattr(one, prop))), (PLAIN[text], type(PLAIN[text])))
            setattr(one, prop, PLAIN[text])
            self.assertEqual(recording.calls()[-1], ("%s.%s" % (name, set_name), number(one), PLAIN[text]))
            self.assertEqual(set(locked for _, locked in recording.locks()), {False})

        self.each([row for row in properties() if row[0] not in VALUES and row[4] in PLAIN], check)

    def test_results(self):
        def check(name, member, told, expected):
            one, (label, ask) = make(name), asked(name, member)
            if isinstance(told, str):
                keep, told = made(told)
                expected = (expected, told)
            recording.returns(label, told)
            result = ask(one)
            self.assertIn((label, False), recording.locks())
            self.assertEqual(shown(result), expected)
            if not isinstance(expected, tuple):
                self.assertIs(type(result), type(expected))

        self.each([(name,) + row for name in sorted(RESULTS) for row in RESULTS[name]], check)

    def test_text_of_a_clip(self):
        for name, text in [(u"Pl\xe4te", u"'Pl\xe4te' clip object".encode("utf-8")), (u"%1", "'%1' clip object")]:
            recording.returns("Clip.get_name", name)
            self.assertEqual(str(make("Clip")), text)

    def test_every_property_has_a_row(self):
        by_hand = {"master_point", "contours", "parent"}
        for name, prop, getter, set_name, text in properties():
            if name not in VALUES and text not in PLAIN and prop not in by_hand:
                self.assertIn(prop, [row[0] for row in RESULTS[name]])
                self.assertIn(set_name, [None] + [row[0] for row in RECEIVED.get(name, [])])

    def test_constructors(self):
        def check(code, received):
            one = run(code)
            self.assertEqual([call for call in recording.calls() if call[0] == received[0]], [received])
            self.assertEqual(dict(recording.locks())[received[0]], False)
            self.assertIs(type(one), getattr(vp, received[0]))

        self.each(CONSTRUCTORS, check)

    def test_parents_are_handed_to_the_library(self):
        parent = QtCore.QObject()
        parent.setObjectName(u"boss")
        for code in ("Project(u'f', a)", "Project(None, parent=a)", "Clip(u'f', parent=a)", "ProgressWatcher(a)"):
            recording.clear()
            one = run(code, parent)
            self.assertEqual(recording.calls()[-1][-1], u"boss")
            self.assertIs(one.parent(), parent)

    def test_the_default_view_is_asked_at_each_call_and_the_first_view_never(self):
        layer = handle("Layer", 1)
        for default in (7, 3, -1):
            recording.clear()
            recording.returns("Knob::View.defaultViewId", default)
            layer.get_transform_matrix(0.0)
            self.assertEqual(calls(), [("Layer.get_transform_matrix", 1, 0.0, default)])
            self.assertEqual(vp.View().id, default & UINT_MAX)
        for code in ("a.get_transform_matrix(0.0, view=1)", "a.in_point()", "View(2)", "View(View(2))"):
            recording.clear()
            run(code, layer)
            self.assertNotIn(("Knob::View.defaultViewId",), recording.calls())

    def test_views_are_made_from_what_converts_to_an_integer(self):
        for code, view in [("View()", 7), ("View(id=5)", 7), ("View(3)", 3), ("View(True)", 1), ("View(-1)", -1),
                           ("View(3L)", 3), ("View(2.9)", 2), ("View(View(4))", 4), ("View(LowerFieldFirst)", 2)]:
            self.assertEqual(run(code).id, view & UINT_MAX, code)
        self.raises(OverflowError, None, vp.View, 2 ** 31)

    def test_default_names_are_translated_at_each_call(self):
        project = vp.Project(u"f")
        for word in (u"Neue", u"Andere"):
            recording.clear()
            recording.translate("Project/New layer", word + u" Ebene")
            recording.translate("Project/New group", word + u" Gruppe")
            project.add_layer(None)
            project.add_group()
            self.assertEqual(calls(), [("Project.add_layer", number(project), None, word + u" Ebene", 0, 0),
                                       ("Project.add_group", number(project), word + u" Gruppe", ())])

    def test_a_reference_argument_is_used_in_place(self):
        clip, info = vp.Clip(u"f"), vp.StreamInfo()
        before = recording.counts("StreamInfo")
        clip.apply(info)
        clip.relink(info)
        self.assertEqual(recording.counts("StreamInfo")["copied"], before["copied"])


class Values(ModuleTest):
    """Records hold what they are given, and only they do."""

    def test_fields_of_records(self):
        for name in ("BezierControlPointData", "XControlPointData"):
            data = getattr(vp, name)()
            for field, _, _, text in CLASSES[name].properties:
                value = {"OptionalBool": False, "OptionalFloat": -2.5, "OptionalPoint": (1.5, -2.0)}[text]
                self.assertIs(getattr(data, field), None)
                for given in (value, None, value):
                    recording.clear()
                    setattr(data, field, given)
                    self.assertEqual(getattr(data, field), given)
                    self.assertEqual([call[0] for call in calls()],
                                     ["%s.%s_%s" % (name, kind, field) for kind in ("set", "get")])
                    self.assertEqual(set(locked for _, locked in recording.locks()), {False})
            twin = getattr(vp, name)(data, x=5.0)
            twin.x = None
            self.assertEqual((data.x, twin.y), (-2.5, -2.5))

    def test_fields_of_stream_and_view_descriptions(self):
        info = vp.StreamInfo(u"/a", u"a.", u".x", 1, 100, 4)
        twin = vp.StreamInfo(info)
        for field, value in [("path", u"/b"), ("prefix", u"b."), ("suffix", u".y"), ("start_frame", 2),
                             ("end_frame", UINT_MAX), ("index_width", 0)]:
            setattr(twin, field, value)
            self.assertEqual(getattr(twin, field), value)
            self.assertNotEqual(getattr(info, field), value)
            if isinstance(value, int):
                self.raises(OverflowError, None, setattr, twin, field, -1)
                self.assertEqual(getattr(twin, field), value)
        view = vp.ViewInfo(u"Left", u"L", (1, 0, 0))
        for field, value in [("name", u"R"), ("abbr", u"r"), ("color", (0.0, 0.5, 1.0))]:
            setattr(view, field, value)
            self.assertEqual(getattr(view, field), value)
        self.raises(OverflowError, None, setattr, view, "color", (2, 0, 0))
        self.assertEqual(view.color, (0.0, 0.5, 1.0))

    def test_copy_forms_look_at_no_keywords(self):
        for code in ("ViewInfo(a, color=5)", "StreamInfo(a, path=5)", "Layer(a, other=5)", "UndoGroup(a, x=1)",
                     "XControlPointData(a, x='x')", "View(a, id=5)"):
            one = make(code.split("(")[0])
            recording.clear()
            run(code, one)
            self.assertEqual(calls(), [])

    def test_fields_of_colour_parameters_tell_each_change(self):
        parameters = vp.ColorParameters()
        told = []
        parameters.propertyChanged.connect(lambda: told.append(1))
        for field, value in [("colorspace", vp.PanalogColorspace), ("conversion", vp.FloatConversion),
                             ("offset", 0.5), ("softclip", 1.5), ("log_reference_white", 700.0),
                             ("log_reference_black", 95.0), ("gamma", 1.0)]:
            recording.clear()
            setattr(parameters, field, value)
            self.assertEqual(getattr(parameters, field), value)
            self.assertEqual(recording.locks(), (("ColorParameters.propertyChanged", False),))
        self.assertEqual(len(told), 7)
        self.raises(TypeError, None, setattr, parameters, "gamma", "x")
        self.assertEqual((len(told), parameters.gamma), (7, 1.0))
        self.assertEqual(repr(parameters), "vireo.project.ColorParameters(2, 1, 0.500000, 1.500000, 700.000000, "
                                           "95.000000, 1.000000)")
        recording.throws("ColorParameters.propertyChanged", "STRM_BadArgument", "no such gamma")
        self.raises(ValueError, "no such gamma", setattr, parameters, "gamma", 2.0)
        self.assertEqual(repr(derived("ColorParameters"))[:24], "MyColorParameters(0, 0, ")


if __name__ == "__main__":
    main()
