"""Every operation by the table: what the library receives for each form, default and keyword, and what comes back."""

from support import *

EMPTY = (None,) * 8
EMPTY_X = (None,) * 7
X1 = (None, None, (1.0,)) + (None,) * 5

# function of the library: rows of (code with the object as a, what the library receives after the object, and, where
# there is a result, what the library says and what Python then has).
PARAMETERS = [
    ("parameter", "a.parameter(['p', u'x'])", ((u"p", u"x"),), 3, ("Parameter", 3)),
    ("parameter", "a.parameter(())", ((),), 0, ("Parameter", 0)),
    ("parameter_set", "a.parameter_set()", ((),), 3, ("ParameterSet", 3)),
    ("parameter_set", "a.parameter_set(name_components=['p'])", ((u"p",),), 0, ("ParameterSet", 0)),
]


def of_contour(kind, other, empty):
    return PARAMETERS + [
        ("get_bounding_rect", "a.get_bounding_rect()", (0.0, 0), [1.0, 2.0, 3.0, 4.0], [1.0, 2.0, 3.0, 4.0]),
        ("get_bounding_rect", "a.get_bounding_rect(time=5.0)", (5.0, 0), None, []),
        ("get_bounding_rect", "a.get_bounding_rect(extra=3)", (0.0, 0), None, []),
        ("get_bounding_rect", "a.get_bounding_rect(1, View(3))", (1.0, 3), None, []),
        ("get_control_points", "a.control_points", (), [2, 1], [(kind, 2), (kind, 1)]),
        ("remove", "a.remove()", ()),
        ("isNull", "a.isNull()", (), True, True),
    ]


def of_point(kind, data, x):
    empty = (None,) * len(x)
    return PARAMETERS + [
        ("get_point_data", "a.get_point_data(3.0)", (3.0, 7), x, (data, x)),
        ("get_point_data", "a.get_point_data(3, view=2)", (3.0, 2), None, (data, empty)),
        ("set_point_data", "a.set_point_data(1.5, %s(x=1.0))" % data, (1.5, x, 7)),
        ("set_point_data", "a.set_point_data(1.5, %s(), View(2))" % data, (1.5, empty, 2)),
        ("update_point_data", "a.update_point_data(1.5, %s(x=1.0))" % data, (1.5, x, 7)),
        ("update_point_data", "a.update_point_data(0, %s(), view=True)" % data, (0.0, empty, 1)),
        ("remove", "a.remove()", ()),
    ]


def of_drawing(setters=()):
    return [
        ("get_name", "a.name", (), u"B\xe4r", u"B\xe4r"),
        ("set_name", "a.name = u'B\\xe4r'", (u"B\xe4r",)),
        ("get_visibility", "a.visibility", (), True, True),
        ("set_visibility", "a.visibility = False", (False,)),
        ("get_matte_color", "a.matte_color", (), (0.25, 0.5, 1), (0.25, 0.5, 1.0)),
        ("set_matte_color", "a.matte_color = [0.25, 0.5, 1]", ((0.25, 0.5, 1.0),)),
        ("get_stroke_color", "a.stroke_color", (), (1, 0, 0), (1.0, 0.0, 0.0)),
        ("set_stroke_color", "a.stroke_color = (1, 0, 0)", ((1.0, 0.0, 0.0),)),
        ("get_locked", "a.locked", (), False, False),
        ("set_locked", "a.locked = True", (True,)),
        ("get_z_order", "a.z_order", (), -2, -2),
        ("set_z_order", "a.z_order = -2", (-2,)),
    ]


CALLS = {
    "BezierContour": of_contour("BezierControlPoint", "X", EMPTY) + [
        ("insert_point", "a.insert_point(0.0, BezierControlPointData(x=1.0))", (0.0, X1, UINT_MAX, 7), 4,
         ("BezierControlPoint", 4)),
        ("insert_point", "a.insert_point(2, BezierControlPointData(), view=0, index=3)", (2.0, EMPTY, 3, 0), 0,
         ("BezierControlPoint", 0)),
        ("insert_point", "a.insert_point(2, BezierControlPointData(), 3, 4)", (2.0, EMPTY, 3, 4), 0,
         ("BezierControlPoint", 0)),
    ],
    "XSplineContour": of_contour("XControlPoint", "Bezier", EMPTY_X) + [
        ("insert_point", "a.insert_point(0.0, XControlPointData(x=1.0), 2)", (0.0, X1[:7], 2, 7), 4,
         ("XControlPoint", 4)),
        ("insert_point", "a.insert_point(0.0, XControlPointData(), 2, view=0)", (0.0, EMPTY_X, 2, 0), 4,
         ("XControlPoint", 4)),
    ],
    "BezierControlPoint": of_point("BezierControlPoint", "BezierControlPointData", X1),
    "XControlPoint": of_point("XControlPoint", "XControlPointData", X1[:7]),
    "Layer": PARAMETERS + of_drawing() + [
        ("add_bezier_contour", "a.add_bezier_contour(12.0, [BezierControlPointData(x=1.0), BezierControlPointData()])",
         (12.0, (X1, EMPTY), 7), 4, ("BezierContour", 4)),
        ("add_bezier_contour", "a.add_bezier_contour(12, (), view=View(0))", (12.0, (), 0), 4, ("BezierContour", 4)),
        ("add_xspline_contour", "a.add_xspline_contour(12.0, [XControlPointData(x=1.0)], 2)", (12.0, (X1[:7],), 2), 4,
         ("XSplineContour", 4)),
        ("get_surface_position", "a.get_surface_position(3, 1.5)", (3, 1.5, 0), [1.0, 2.0], [1.0, 2.0]),
        ("get_surface_position", "a.get_surface_position(3, 1.5, view=5)", (3, 1.5, 5), None, []),
        ("get_transform_matrix", "a.get_transform_matrix(10.0)", (10.0, 7), range(9),
         ((0.0, 1.0, 2.0), (3.0, 4.0, 5.0), (6.0, 7.0, 8.0))),
        ("in_point", "a.in_point()", (0,), UINT_MAX, UINT_MAX),
        ("in_point", "a.in_point(view=View(3))", (3,), 0, 0),
        ("out_point", "a.out_point(3)", (3,), 9, 9),
        ("isNull", "a.isNull()", (), False, False),
        ("remove", "a.remove()", ()),
        ("set_parent", "a.set_parent(None)", (None, 0)),
        ("set_parent", "a.set_parent(handle('LayerGroup', 6), index=3)", (6, 3)),
        ("set_parent", "a.parent = handle('LayerGroup', 6)", (6, 0)),
        ("set_parent", "a.parent = None", (None, 0)),
        ("tracking_input_clip", "a.tracking_input_clip()", (False,), None, None),
        ("tracking_input_clip", "a.tracking_input_clip(use_linked_layer=True)", (True,), "Clip", "Clip"),
        ("get_link_to_track", "a.link_to_track", (), None, None),
        ("get_link_to_track", "a.link_to_track", (), [5], ("Layer", 5)),
        ("set_link_to_track", "a.link_to_track = None", (None,)),
        ("set_link_to_track", "a.link_to_track = handle('Layer', 5)", ((5,),)),
        ("set_link_to_track", "a.link_to_track = 5", ((0,),)),
        ("get_selected", "a.selected", (), True, True),
        ("set_selected", "a.selected = True", (True,)),
    ],
    "LayerGroup": PARAMETERS + of_drawing() + [
        ("insert_child", "a.insert_child(handle('Layer', 4))", (4, 0)),
        ("insert_child", "a.insert_child(handle('Layer', 4), index=3)", (4, 3)),
        ("find_layers", "a.find_layers(u'name')", (u"name",), [3, 2], [("Layer", 3), ("Layer", 2)]),
        ("get_layers", "a.layers", (), [2, 3], [("Layer", 2), ("Layer", 3)]),
        ("isNull", "a.isNull()", (), True, True),
    ],
    "Parameter": [
        ("get", "a.get()", (float(UINT_MAX), 0), 1.5, 1.5),
        ("get", "a.get(10.0)", (10.0, 0), u"text", u"text"),
        ("get", "a.get(view=View(3))", (float(UINT_MAX), 3), None, None),
        ("set", "a.set(1.5)", ((u"double", 1.5), float(UINT_MAX), 0)),
        ("set", "a.set(True, 3.0)", ((u"bool", True), 3.0, 0)),
        ("set", "a.set(5, time=3, view=2)", ((u"int", 5), 3.0, 2)),
        ("set", "a.set([u'a', u'b'])", ((u"QStringList", (u"a", u"b")), float(UINT_MAX), 0)),
        ("delete_keyframe", "a.delete_keyframe(3, 2)", (3.0, 2)),
        ("get_name_components", "a.name_components", (), [u"a", u"b"], [u"a", u"b"]),
        ("get_keyframes", "a.keyframes", (), [(2, 1.5), (0, 3)], [(("View", 2), 1.5), (("View", 0), 3.0)]),
        ("get_keyframes", "a.keyframes", (), None, []),
        ("isNull", "a.isNull()", (), True, True),
    ],
    "ParameterSet": [
        ("get_name_components", "a.name_components", (), [u"a"], [u"a"]),
        ("get_parameters", "a.parameters", (), [3], [("Parameter", 3)]),
        ("get_subsets", "a.subsets", (), [4, 3], [("ParameterSet", 4), ("ParameterSet", 3)]),
        ("get_keyframes", "a.keyframes", (), [(1, 2.5)], [(("View", 1), 2.5)]),
        ("get_display_name", "a.display_name", (), u"Edge", u"Edge"),
        ("get_script_name", "a.script_name", (), u"edge", u"edge"),
        ("isNull", "a.isNull()", (), False, False),
    ],
    "UndoGroup": [
        (name, "a.%s()" % name, ()) for name in ("commit", "rollback", "undo", "redo")] + [
        ("begin", "a.__enter__()", ()),
        ("commit", "a.__exit__(None, None, None)", ()),
        ("commit", "a.__exit__(ValueError, None, None)", ()),
        ("rollback", "a.__exit__(ValueError, ValueError(), None)", ()),
        ("rollback", "a.__exit__(None, 0, None)", ()),
    ],
    "Clip": PARAMETERS + [
        ("add_stream", "a.add_stream(u'/p', 1, 1, 100)", (u"/p", 1, 1, 100, False)),
        ("add_stream", "a.add_stream('/p', View(), 1, 100, validate=True)", (u"/p", 7, 1, 100, True)),
        ("apply", "a.apply(StreamInfo(u'/a', u'a.', u'.b', 1, 2, 3))", ((u"/a", u"a.", u".b", 1, 2, 3), 7)),
        ("apply", "a.apply(StreamInfo(), view=0)", ((u"", u"", u"", UINT_MAX, UINT_MAX, 0), 0)),
        ("assign_project_view", "a.assign_project_view(1, View(2))", (1, 2)),
        ("delete_stream", "a.delete_stream(-1)", (-1,)),
        ("get_info", "a.get_info(2)", (2,), (u"/a", u"a.", u".b", 1, 2, 3),
         ("StreamInfo", (u"/a", u"a.", u".b", 1, 2, 3))),
        ("relink", "a.relink()", (u"", u"", u"", UINT_MAX, UINT_MAX, 7)),
        ("relink", "a.relink(path=u'/new', prefix=u'a.')", (u"/new", u"a.", u"", UINT_MAX, UINT_MAX, 7)),
        ("relink", "a.relink(u'/n', u'p', u's', 1, end_frame=2, view=0)", (u"/n", u"p", u"s", 1, 2, 0)),
        ("relink", "a.relink(None)", (None, u"", u"", UINT_MAX, UINT_MAX, 7)),
        ("relink", "a.relink(u'/n', u'p', u's', 1, 2, View(3))", (u"/n", u"p", u"s", 1, 2, 3)),
        ("relink", "a.relink(StreamInfo(u'/a', u'', u'', 1, 2, 3))", ((u"/a", u"", u"", 1, 2, 3), 7)),
        ("relink", "a.relink(StreamInfo(u'/a', u'', u'', 1, 2, 3), view=0, path=5)", ((u"/a", u"", u"", 1, 2, 3), 0)),
        ("exportClip", "a.export(None, 'a', 'b', 'c', 'd', 1, 2)", (None, u"a", u"b", u"c", u"d", 1, 2, 1, (), False)),
        ("exportClip", "a.export(a, 'a', 'b', 'c', 'd', 1, 2, separate_streams=True, views=[View(1), 2])",
         ("self", u"a", u"b", u"c", u"d", 1, 2, 1, (1, 2), True)),
        ("base_parameter_set", "a.base_parameter_set()", ((),), 3, ("ParameterSet", 3)),
        ("base_parameter_set", "a.base_parameter_set(['a'])", ((u"a",),), 3, ("ParameterSet", 3)),
        ("get_name", "a.name", (), u"plate", u"plate"),
        ("get_name", "str(a)", (), u"Pl\xe4te", u"'Pl\xe4te' clip object".encode("utf-8")),
        ("get_name", "str(a)", (), u"%1", "'%1' clip object"),
        ("get_id", "a.id", (), 12, 12),
        ("get_views", "a.views", (), [0, 2], [("View", 0), ("View", 2)]),
        ("get_view_mapping", "a.view_mapping", (), [(1, 0), (2, 1)],
         {("View", 1): ("View", 0), ("View", 2): ("View", 1)}),
        ("get_frame_size", "a.frame_size", (), (640, 480), (640, 480)),
        ("set_frame_size", "a.frame_size = [640, 480]", ((640, 480),)),
        ("get_frame_rate", "a.frame_rate", (), 23.5, 23.5),
        ("set_frame_rate", "a.frame_rate = 25", (25.0,)),
        ("get_first_frame_offset", "a.first_frame_offset", (), -3, -3),
        ("set_first_frame_offset", "a.first_frame_offset = -3", (-3,)),
        ("get_color_parameters", "a.color_parameters", (), "ColorParameters", "ColorParameters"),
        ("set_color_parameters", "a.color_parameters = None", (None,)),
        ("get_progress_watcher", "a.progress_watcher", (), "ProgressWatcher", "ProgressWatcher"),
        ("get_progress_watcher", "a.progress_watcher", (), None, None),
    ],
    "RenderOperation": [
        ("get_progress_watcher", "a.progress_watcher", (), "ProgressWatcher", "ProgressWatcher"),
    ],
    "Project": PARAMETERS + [
        ("get_output_dir", "a.get_output_dir()", (), u"/out", u"/out"),
        ("set_output_dir", "a.set_output_dir(u'/out')", (u"/out", False)),
        ("set_output_dir", "a.set_output_dir('/out', validate=True)", (u"/out", True)),
        ("set_output_dir", "a.set_output_dir(None, True)", (None, True)),
        ("save", "a.save()", ()),
        ("save_as", "a.save_as(u'f.vireo')", (u"f.vireo",)),
        ("add_clip", "a.add_clip(None, u'A')", (None, u"A"), "Clip", "Clip"),
        ("add_layer", "a.add_layer(None)", (None, u"New layer", 0, 0), 3, ("Layer", 3)),
        ("add_layer", "a.add_layer(None, u'A', view=2)", (None, u"A", 0, 2), 0, ("Layer", 0)),
        ("add_layer", "a.add_layer(None, frame_number=5)", (None, u"New layer", 5, 0), 3, ("Layer", 3)),
        ("add_group", "a.add_group()", (u"New group", ()), 3, ("LayerGroup", 3)),
        ("add_group", "a.add_group(layers=(handle('Layer', 2),))", (u"New group", (2,)), 3, ("LayerGroup", 3)),
        ("add_group", "a.add_group(u'G', [handle('Layer', 2), handle('Layer', 0)])", (u"G", (2, 0)), 3,
         ("LayerGroup", 3)),
        ("find_layers", "a.find_layers(u'x')", (u"x",), [3], [("Layer", 3)]),
        ("find_groups", "a.find_groups(u'x')", (u"x",), [3], [("LayerGroup", 3)]),
        ("get_layers", "a.layers", (), [1, 2], [("Layer", 1), ("Layer", 2)]),
        ("get_groups", "a.groups", (), [], []),
        ("track_layers", "a.track_layers()", (0, UINT_MAX, (), ())),
        ("track_layers", "a.track_layers(1, layers=(handle('Layer', 2),), views=[0, View(3)])",
         (1, UINT_MAX, (2,), (0, 3))),
        ("render", "a.render(None, 1, -10, [handle('Layer', 2)])", (None, 1, -10, (2,), 0), "Clip", "Clip"),
        ("render", "a.render(None, 1, 10, [], view=3)", (None, 1, 10, (), 3), None, None),
        ("export_rendered_shapes", "a.export_rendered_shapes([], ByMatteColor, 'a', 'b', 'c', 'd', 1, 2)",
         ((), 1, u"a", u"b", u"c", u"d", 1, 2, 1, (), False), None, None),
        ("export_rendered_shapes", "a.export_rendered_shapes([handle('Layer', 2)], ByLayer, 'a', 'b', 'c', 'd', 1, 2,"
         " views=[1], separate_streams=True, index_width=4)",
         ((2,), 2, u"a", u"b", u"c", u"d", 1, 2, 4, (1,), True), None, None),
        ("get_notes", "a.notes", (), u"n", u"n"),
        ("set_notes", "a.notes = '\\xe4'", (u"\xe4",)),
        ("get_project_file", "a.project_file", (), u"f", u"f"),
        ("get_clips", "a.clips", (), [], {}),
        ("get_in_out_range", "a.in_out_range", (), (10, UINT_MAX), (10, UINT_MAX)),
        ("set_in_out_range", "a.in_out_range = (10, 20)", ((10, 20),)),
        ("get_frame_rate", "a.frame_rate", (), 24, 24.0),
        ("set_frame_rate", "a.frame_rate = 24", (24.0,)),
        ("get_interlace_mode", "a.interlace_mode", (), 2, vp.LowerFieldFirst),
        ("get_first_frame_offset", "a.first_frame_offset", (), 1001, 1001),
        ("set_first_frame_offset", "a.first_frame_offset = -1", (-1,)),
        ("get_length", "a.length", (), 100, 100),
        ("set_length", "a.length = 100", (100,)),
        ("get_views", "a.views", (), [(u"Left", u"L", (1, 0, 0))], [("ViewInfo", (u"Left", u"L", (1.0, 0.0, 0.0)))]),
        ("set_views", "a.views = [ViewInfo(u'Left', u'L', (1, 0, 0))]", (((u"Left", u"L", (1.0, 0.0, 0.0)),),)),
        ("get_default_hero_view", "a.default_hero_view", (), 3, ("View", 3)),
        ("set_default_hero_view", "a.default_hero_view = 3", (3,)),
        ("get_playback_in_point", "a.playback_in_point", (), 1, 1),
        ("set_playback_in_point", "a.playback_in_point = 1", (1,)),
        ("get_playback_out_point", "a.playback_out_point", (), 2, 2),
        ("set_playback_out_point", "a.playback_out_point = 2.9", (2,)),
        ("get_progress_watcher", "a.progress_watcher", (), "ProgressWatcher", "ProgressWatcher"),
        ("get_default_trackable_clip", "a.default_trackable_clip", (), "Clip", "Clip"),
        ("get_default_trackable_clip", "a.default_trackable_clip", (), None, None),
    ],
}

# What constructors receive.
EMPTY_RECORD = "BezierControlPointData"
CONSTRUCTORS = [
    ("Project(u'f')", ("Project", u"f", None)),
    ("Project('f', None)", ("Project", u"f", None)),
    ("Project(None)", ("Project", None, 0, None)),
    ("Project(None, UpperFieldFirst)", ("Project", None, 1, None)),
    ("Project(None, interlace_mode=LowerFieldFirst)", ("Project", None, 2, None)),
    ("Clip(u'a')", ("Clip", u"a", u"NewClip", False, 0, 0, 0, None)),
    ("Clip(u'a', length=3, clip_name='n', width=1, height=2, validate=True)",
     ("Clip", u"a", u"n", True, 1, 2, 3, None)),
    ("Clip(u'a', u'n', 1, 1, 2, 3, None)", ("Clip", u"a", u"n", True, 1, 2, 3, None)),
    # Keywords of another overload, or of none, are not looked at, nor counted here.
    ("Project(u'f', interlace_mode=5)", ("Project", u"f", None)),
    ("Clip(u'a', a=1, b=2, c=3, d=4, e=5, f=6, g=7, h=8)", ("Clip", u"a", u"NewClip", False, 0, 0, 0, None)),
    ("ProgressWatcher(other=5)", ("ProgressWatcher", None)),
    ("ColorParameters(other=5)", ("ColorParameters", 0, 0, 0.0, 0.0, 685.0, 0.0, 1.0)),
    ("ProgressWatcher()", ("ProgressWatcher", None)),
    ("ProgressWatcher(parent=None)", ("ProgressWatcher", None)),
    ("ColorParameters()", ("ColorParameters", 0, 0, 0.0, 0.0, 685.0, 0.0, 1.0)),
    ("ColorParameters(gamma=2.5)", ("ColorParameters", 0, 0, 0.0, 0.0, 685.0, 0.0, 2.5)),
    ("ColorParameters(LogColorspace, _8BitConversion, 1, 2, 3, 4, 5)",
     ("ColorParameters", 1, 2, 1.0, 2.0, 3.0, 4.0, 5.0)),
    ("RenderInsertOperation()", ("RenderInsertOperation",)),
    ("RenderRemoveOperation(1, 2)", ("RenderRemoveOperation",)),
    ("RenderStabilizeOperation(1, x=2)", ("RenderStabilizeOperation",)),
    ("StreamInfo()", ("StreamInfo", u"", u"", u"", UINT_MAX, UINT_MAX, 0)),
    ("StreamInfo(u'/a', u'a.', u'.x', 1, 100, 4)", ("StreamInfo", u"/a", u"a.", u".x", 1, 100, 4)),
    ("StreamInfo(u'/a', index_width=4, end_frame=5)", ("StreamInfo", u"/a", u"", u"", UINT_MAX, 5, 4)),
    ("ViewInfo()", ("ViewInfo",)),
    ("ViewInfo(color=5)", ("ViewInfo",)),
    ("ViewInfo(u'L', u'l', (1, 0, 0))", ("ViewInfo", u"L", u"l", (1.0, 0.0, 0.0))),
    ("ViewInfo(u'L', u'l', color=[1, 0, 0])", ("ViewInfo", u"L", u"l", (1.0, 0.0, 0.0))),
    ("BezierControlPointData()", ("BezierControlPointData",) + EMPTY),
    ("BezierControlPointData(True, False, 1.0, 2.0)",
     ("BezierControlPointData", (True,), (False,), (1.0,), (2.0,)) + (None,) * 4),
    ("BezierControlPointData(handle_offset_forward=(1, 2), edge_width=3.0, unknown=5)",
     ("BezierControlPointData", None, None, None, None, (3.0,), None, None, ((1.0, 2.0),))),
    ("XControlPointData(True, True, 0.0, 0.0, 2.0)",
     ("XControlPointData", (True,), (True,), (0.0,), (0.0,), (2.0,), None, None)),
]


class Calls(ModuleTest):
    def test_methods_and_properties(self):
        rows = [(name,) + row for name in sorted(CALLS) for row in CALLS[name]]
        self.each(rows, self.check_call)

    def check_call(self, name, function, code, received, *answer):
        one = make(name)
        function = "%s.%s" % (name, function)
        expected = None
        if answer:
            told, expected = answer
            if isinstance(told, str):
                keep, told = made(told)
                expected = (expected, told)
            recording.returns(function, told)
        result = run(code, one)
        received = tuple(number(one) if item == "self" else item for item in received)
        noted = [(call, locked) for call, (_, locked) in zip(recording.calls(), recording.locks())
                 if call[0] == function]
        self.assertEqual(noted, [((function, number(one)) + received, False)])
        if isinstance(expected, str):
            self.assertEqual((result, type(result)), (expected, str))
        self.assertEqual(shown(result), expected)

    def test_every_operation_has_a_row(self):
        by_hand = {"control_point", "set_master_point", "get_master_point", "get_contours", "get_parent_group",
                   "set_parent_group", "layer", "undo_group", "__enter__", "__exit__", "export"}
        values = ("View", "ViewInfo", "StreamInfo", "ColorParameters", "BezierControlPointData", "XControlPointData")
        for name in set(CLASSES) - set(values):
            operations = [method[0] for method in CLASSES[name].methods]
            for row in CLASSES[name].properties:
                operations += filter(None, row[1:3])
            missing = set(operations) - by_hand - set(row[0] for row in CALLS.get(name, []))
            self.assertEqual(missing, set(), name)

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
        project = vp.Project(u"f")
        clip = vp.Clip(u"f", parent=project)
        self.assertEqual(recording.calls()[-1][-1], number(project))

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
        recording.translate("Project/New layer", u"Neue Ebene")
        recording.translate("Project/New group", u"Neue Gruppe")
        try:
            project.add_layer(None)
            project.add_group()
        finally:
            recording.translate("Project/New layer")
            recording.translate("Project/New group")
        project.add_layer(None)
        names = [call[-3] for call in calls() if call[0] == "Project.add_layer"]
        self.assertEqual(names, [u"Neue Ebene", u"New layer"])
        self.assertIn(u"Neue Gruppe", [call for call in calls() if call[0] == "Project.add_group"][0])

    def test_a_reference_argument_is_used_in_place(self):
        clip, info = vp.Clip(u"f"), vp.StreamInfo()
        before = recording.counts("StreamInfo")
        clip.apply(info)
        clip.relink(info)
        self.assertEqual(recording.counts("StreamInfo")["copied"], before["copied"])

    def test_objects_reach_the_library_as_pointers(self):
        project, clip, other = vp.Project(u"f"), vp.Clip(u"f"), vp.Clip(u"g")
        operation = vp.RenderRemoveOperation()
        recording.returns("Project.add_clip", number(clip))
        recording.returns("Project.render", number(clip))
        self.assertIs(project.add_clip(other, u"n"), clip)
        self.assertIs(project.render(operation, 1, 2, []), clip)
        clip.export(other, "", "", "", "", 1, 2)
        given = [call[2] for call in calls() if "." in call[0]]
        self.assertEqual(given, [number(other), number(operation), number(other)])


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

    def test_a_colour_left_out_is_always_the_same(self):
        colours = set(vp.ViewInfo(u"a", u"b").color for _ in range(5))
        self.assertEqual(len(colours), 1)
        self.assertTrue(all(0 <= part <= 1 for part in colours.pop()))

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

    def test_text_of_colour_parameters_of_a_subclass(self):
        class Grade(vp.ColorParameters):
            pass

        self.assertEqual(repr(Grade(vp.LogColorspace, gamma=0.5))[:13], "Grade(1, 0, 0")


if __name__ == "__main__":
    main()
