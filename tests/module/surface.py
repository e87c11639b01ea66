"""What scripts see of the module: every class with its methods, properties, signature texts and type slots.

A method is (name, form, signature texts...), and its form one of: NONE, ONE, exactly(n), (least, most). A property is
(name, getter, setter or None, signature text of the setter).
"""

NONE, ONE = "none", "one"

VIEW = "vireo.project.View"
PARENT = "PySide.QtCore.QObject = NULL"
NAMES = "QStringList = QStringList()"


def exactly(count):
    return ("exactly", count)


class Class(object):
    def __init__(self, methods, properties, constructor=None, signatures=None, slots="", base="Object", copies=True):
        self.methods = methods          # without __copy__
        self.properties = properties
        self.constructor = constructor  # COPY, VIEW, (least, most, form) or None for a class that takes anything
        self.signatures = signatures
        self.slots = slots              # of "== != < hash repr str bool"
        self.base = base
        self.copies = copies


COPY = "copy"
PARAMETERS = [("parameter", ONE, "QStringList"), ("parameter_set", (0, 1), NAMES)]


def both(name, text):
    return (name, "get_" + name, "set_" + name, text)


def read(name):
    return (name, "get_" + name, None, None)


def contour(insert_point):
    return Class(
        [("control_point", ONE, "unsigned int"),
         ("get_bounding_rect", (0, 2), "float = 0.f, vireo.project.View = View( 0 )"),
         insert_point, ("isNull", NONE), ("remove", NONE)] + PARAMETERS,
        [read("control_points")], COPY, slots="== hash bool")


def point(data, master_point):
    record = "float, vireo.project.%s, vireo.project.View = View()" % data
    return Class(
        [("get_point_data", (1, 2), "float, vireo.project.View = View()"),
         ("set_point_data", (2, 3), record), ("update_point_data", (2, 3), record),
         master_point, ("remove", NONE)] + PARAMETERS,
        [read("master_point")], COPY, slots="== bool")


def record(name, fields):
    return Class([], [both(field, text) for field, text in fields], ("total", len(fields)),
                 [", ".join("%s = %s()" % (text, text) for _, text in fields), "vireo.project." + name], slots="==")


def operation(base="RenderOperation"):
    return Class([], [], None, base=base, copies=False)


# What layers and groups share, each in its own order.
SHARED = {name: both(name, kind) for name, kind in [
    ("name", "unicode"), ("visibility", "bool"), ("matte_color", "Color"), ("stroke_color", "Color"),
    ("locked", "bool"), ("z_order", "int")]}
FLAGS = [("active", "OptionalBool"), ("corner", "OptionalBool"), ("x", "OptionalFloat"), ("y", "OptionalFloat")]
EDGES = [("edge_width", "OptionalFloat"), ("edge_angle_ratio", "OptionalFloat")]
LIST_OF_VIEWS = "list = QVector< View >()"
LIST_OF_LAYERS = "list = QVector< Layer >()"

CLASSES = {
    "BezierContour": contour((
        "insert_point", (2, 4),
        "float, vireo.project.BezierControlPointData, unsigned int = UINT_MAX, vireo.project.View = View()")),
    "XSplineContour": contour((
        "insert_point", (3, 4), "float, vireo.project.XControlPointData, unsigned int, vireo.project.View = View()")),
    "BezierControlPoint": point("BezierControlPointData", (
        "set_master_point", (1, 4), "object, float = 0.f, vireo.project.View = View(0), bool = false")),
    "XControlPoint": point("XControlPointData", (
        "set_master_point", (1, 3), "object, float = 0.f, vireo.project.View = View(0)")),
    "BezierControlPointData": record("BezierControlPointData", FLAGS + EDGES + [
        ("handle_offset_backward", "OptionalPoint"), ("handle_offset_forward", "OptionalPoint")]),
    "XControlPointData": record("XControlPointData", FLAGS + [("weight", "OptionalFloat")] + EDGES),
    "Layer": Class(
        [("add_bezier_contour", (2, 3), "float, list, vireo.project.View = View()"),
         ("add_xspline_contour", (2, 3), "float, list, vireo.project.View = View()"),
         ("get_surface_position", (2, 3), "unsigned int, float, vireo.project.View = View( 0 )"),
         ("get_transform_matrix", (1, 2), "float, vireo.project.View = View()"),
         ("in_point", (0, 1), "vireo.project.View = View( 0 )"),
         ("out_point", (0, 1), "vireo.project.View = View( 0 )"),
         ("isNull", NONE), ("remove", NONE),
         ("set_parent", (1, 2), "vireo.project.LayerGroup, unsigned int = 0"),
         ("tracking_input_clip", (0, 1), "bool = false")] + PARAMETERS,
        [SHARED["name"], read("contours"), ("parent", "get_parent_group", "set_parent_group",
                                            "vireo.project.LayerGroup"),
         SHARED["visibility"], SHARED["matte_color"], SHARED["stroke_color"], SHARED["locked"],
         both("link_to_track", None), SHARED["z_order"], both("selected", "bool")],
        COPY, slots="== != hash bool"),
    "LayerGroup": Class(
        [("insert_child", (1, 2), "vireo.project.Layer, unsigned int = 0"), ("find_layers", ONE, "unicode"),
         ("isNull", NONE)] + PARAMETERS,
        [SHARED["name"], read("layers"), SHARED["visibility"], SHARED["matte_color"], SHARED["stroke_color"],
         SHARED["locked"], SHARED["z_order"]],
        COPY, slots="== bool"),
    "Parameter": Class(
        [("get", (0, 2), "float = double( UINT_MAX ), vireo.project.View = View( 0 )"),
         ("set", (1, 3), "QVariant, float = double( UINT_MAX ), vireo.project.View = View( 0 )"),
         ("delete_keyframe", exactly(2), "float, vireo.project.View"), ("isNull", NONE)],
        [read("name_components"), read("keyframes")], COPY, slots="== != hash bool"),
    "ParameterSet": Class(
        [("isNull", NONE)],
        [read("name_components"), read("parameters"), read("subsets"), read("keyframes"), read("display_name"),
         read("script_name")], COPY, slots="== != hash bool"),
    "View": Class([], [read("id")], "view", ["", VIEW, "int"], slots="== < hash repr str"),
    "ViewInfo": Class([], [both("name", "unicode"), both("abbr", "unicode"), both("color", "Color")], ("total", 3),
                      ["", "unicode, unicode, Color = Color()", "vireo.project.ViewInfo"], slots="== repr"),
    "StreamInfo": Class(
        [], [both(name, "unicode") for name in ("path", "prefix", "suffix")] +
        [both(name, "unsigned int") for name in ("start_frame", "end_frame", "index_width")], ("total", 6),
        ['unicode = "", unicode = "", unicode = "", unsigned int = -1, unsigned int = -1, unsigned int = 0',
         "vireo.project.StreamInfo"], slots="repr"),
    "UndoGroup": Class(
        [("__enter__", NONE), ("__exit__", exactly(3), "object, object, object"), ("commit", NONE),
         ("rollback", NONE), ("undo", NONE), ("redo", NONE)], [], COPY),
    "ColorParameters": Class(
        [], [both("colorspace", "vireo.project.Colorspace"), both("conversion", "vireo.project.ColorConversion")] +
        [both(name, "float") for name in ("offset", "softclip", "log_reference_white", "log_reference_black",
                                          "gamma")], ("parser", 7),
        ["vireo.project.Colorspace = LinearColorspace, vireo.project.ColorConversion = NoneConversion, float = 0.f, "
         "float = 0.f, float = 685.f, float = 0.f, float = 1.f"], slots="== != repr", base="QObject", copies=False),
    "ProgressWatcher": Class([], [], ("parser", 1), [PARENT], slots="QObject", base="QObject", copies=False),
    "RenderOperation": Class([], [read("progress_watcher")], None, copies=False),
    "RenderInsertOperation": operation(),
    "RenderRemoveOperation": operation(),
    "RenderStabilizeOperation": operation(),
    "Clip": Class(
        [("add_stream", (4, 5), "unicode, vireo.project.View, unsigned int, unsigned int, bool = false"),
         ("apply", (1, 2), "vireo.project.StreamInfo, vireo.project.View = View()"),
         ("assign_project_view", exactly(2), "vireo.project.View, vireo.project.View"),
         ("delete_stream", ONE, VIEW), ("get_info", ONE, VIEW),
         ("relink", (0, 6), 'unicode = "", unicode = "", unicode = "", unsigned int = UINT_MAX, unsigned int = '
          'UINT_MAX, vireo.project.View = View()', "vireo.project.StreamInfo, vireo.project.View = View()"),
         ("export", (7, 10), "vireo.project.Clip, unicode, unicode, unicode, unicode, unsigned int, unsigned int, "
          "unsigned int = 1, list = QVector< View >(), bool = false"),
         ("base_parameter_set", (0, 1), NAMES)] + PARAMETERS,
        [read("name"), read("views"), both("frame_size", "QPair"), both("frame_rate", "float"),
         both("first_frame_offset", "int"), both("color_parameters", "vireo.project.ColorParameters"),
         read("view_mapping"), read("progress_watcher"), read("id")],
        ("least", 1, 7),
        ['unicode, unicode = "NewClip", bool = false, unsigned int = 0, unsigned int = 0, unsigned int = 0, ' + PARENT],
        slots="== != str", base="QObject", copies=False),
    "Project": Class(
        [("get_output_dir", NONE), ("set_output_dir", (1, 2), "unicode, bool = false"), ("save", NONE),
         ("save_as", ONE, "unicode"), ("undo_group", NONE),
         ("add_clip", exactly(2), "vireo.project.Clip, unicode"),
         ("add_layer", (1, 4),
          'vireo.project.Clip, unicode = Project.tr( "New layer" ), unsigned int = 0, unsigned int = 0'),
         ("add_group", (0, 2), 'unicode = Project.tr( "New group" ), ' + LIST_OF_LAYERS),
         ("layer", ONE, "unsigned int"), ("find_layers", ONE, "unicode"), ("find_groups", ONE, "unicode"),
         ("track_layers", (0, 4),
          "unsigned int = 0, unsigned int = UINT_MAX, %s, %s" % (LIST_OF_LAYERS, LIST_OF_VIEWS)),
         ("render", (4, 5), "vireo.project.RenderOperation, int, int, list, vireo.project.View = View(0)"),
         ("export_rendered_shapes", (8, 11),
          "list, vireo.project.ColorizeOutput, unicode, unicode, unicode, unicode, unsigned int, unsigned int, "
          "unsigned int = 1, %s, bool = false" % LIST_OF_VIEWS)] + PARAMETERS,
        [both("notes", "unicode"), read("project_file"), read("clips"), both("in_out_range", "QPair"),
         both("frame_rate", "float"), read("interlace_mode"), read("layers"), read("groups"),
         both("first_frame_offset", "int"), both("length", "unsigned int"), both("views", "list"),
         both("default_hero_view", VIEW), both("playback_in_point", "unsigned int"),
         both("playback_out_point", "unsigned int"), read("progress_watcher"), read("default_trackable_clip")],
        ("least", 1, 3),
        ["vireo.project.Clip, vireo.project.InterlaceMode = NotInterlaced, " + PARENT, "unicode, " + PARENT],
        slots="== !=", base="QObject", copies=False),
}

# The keywords of each operation, which are its arguments with defaults in their order; for overloads, one list each.
KEYWORDS = {
    "parameter_set": "name_components", "base_parameter_set": "name_components", "get_bounding_rect": "time view",
    "BezierContour.insert_point": "index view", "XSplineContour.insert_point": "view", "get_point_data": "view",
    "set_point_data": "view", "update_point_data": "view", "BezierControlPoint.set_master_point":
    "time view lock_tangents", "XControlPoint.set_master_point": "time view", "add_bezier_contour": "view",
    "add_xspline_contour": "view", "get_surface_position": "view", "get_transform_matrix": "view", "in_point": "view",
    "out_point": "view", "set_parent": "index", "tracking_input_clip": "use_linked_layer", "insert_child": "index",
    "get": "time view", "set": "time view", "add_stream": "validate", "apply": "view",
    "relink": "path prefix suffix start_frame end_frame view, view", "export": "index_width views separate_streams",
    "set_output_dir": "validate", "add_layer": "name frame_number view", "add_group": "name layers",
    "track_layers": "start_index stop_index layers views", "render": "view",
    "export_rendered_shapes": "index_width views separate_streams",
    "Clip": "clip_name validate width height length parent", "Project": "interlace_mode parent, parent",
    "ColorParameters": "colorspace conversion offset softclip log_reference_white log_reference_black gamma",
    "ProgressWatcher": "parent", "StreamInfo": "path prefix suffix start_frame end_frame index_width",
    "ViewInfo": ", color", "BezierControlPointData": "active corner x y edge_width edge_angle_ratio "
    "handle_offset_backward handle_offset_forward",
    "XControlPointData": "active corner x y weight edge_width edge_angle_ratio",
}

ENUMERATIONS = {
    "InterlaceMode": ["NotInterlaced", "UpperFieldFirst", "LowerFieldFirst"] +
    ["_32Pulldown%sFirst%s" % (first, pair) for first in ("Up", "Lo") for pair in ("AA", "BB", "BC", "CD", "DD")] +
    ["InvalidInterlaceMode"],
    "Colorspace": ["LinearColorspace", "LogColorspace", "PanalogColorspace"],
    "ColorizeOutput": ["Grayscale", "ByMatteColor", "ByLayer"],
    "ColorConversion": ["NoneConversion", "FloatConversion", "_8BitConversion"],
}
