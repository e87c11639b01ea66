"""Every converter by its name, from another extension module: what it accepts, what it makes of that, and the way
back."""

import shiboken

from support import *

PLACES = [
    ("OptionalBool", bool), ("Lum_Matrix33", tuple), ("Fundo::FSPercentEscapedString", str), ("Color", tuple),
    ("OptionalLayer", object), ("OptionalInterlaceMode", object), ("OptionalFloat", float), ("OptionalPoint", tuple),
    ("Knob::Context", tuple), ("QPair<View,double>", list), ("QVector<QPair<View,double>>", list),
    ("QVector<Parameter>", list), ("QVector<ParameterSet>", list), ("const QVector<BezierControlPointData>&", list),
    ("const QVector<XControlPointData>&", list), ("QList<float>", list), ("QVector<XControlPoint>", list),
    ("QVector<BezierControlPoint>", list), ("QVector<Layer>", list), ("const QList<QObject*>&", list),
    ("QList<QByteArray>", list), ("const QVector<View>&", list), ("QVector<LayerGroup>", list),
    ("QHash<QString,Clip*>", dict), ("QPair<uint,uint>", list), ("QVector<ViewInfo>", list), ("QMap<View,View>", dict),
    ("QList<QVariant>", list), ("QList<QString>", list), ("QMap<QString,QVariant>", dict),
]
ENGINE = ["VX_CONTOUR_TYPE", "VX_STEREO_MODE", "VX_CLIP_MODE", "VX_REMOVESOURCE_MODE", "VX_ILLUMINATION_MODEL",
          "VX_BlendMode", "VX_LUMINANCE_MODEL", "VX_FILL_ALGORITHM", "VX_INTERLACE_MODE", "TrackModel"]
INFINITE, NAN = float("inf"), float("nan")
NO = "not convertible"


class Real(float):
    pass


class Pair(tuple):
    pass


class Text(str):
    pass


class Names(dict):
    pass


class Sequence(object):
    def __init__(self, *items):
        self.items = items

    def __len__(self):
        return len(self.items)

    def __getitem__(self, index):
        return self.items[index]


class Name(str):
    """A text that a dict holds several times."""

    def __new__(cls, code):
        name = str.__new__(cls, "a")
        name.code = code
        return name

    def __hash__(self):
        return self.code

    def __eq__(self, other):
        return self is other


TWICE = {}
for code in (7, 15):  # two places of the same table: a copy has them the other way round
    TWICE[Name(code)] = code


class Failing(object):
    """Neither a number nor a list, as soon as one looks."""

    def __init__(self, error):
        self.error = error

    def __len__(self):
        return 3

    def __getitem__(self, index):
        raise self.error

    def __int__(self):
        raise self.error

    __float__ = __int__


def out_of_range(value, kind="unsigned int, 0 to 4294967295"):
    return OverflowError("%s is not in the range of %s" % (value, kind))


def red(value):
    return OverflowError("Red value '%s' must be between 0.0 and 1.0 values" % value)


L1, L2 = handle("Layer", 1), handle("Layer", 2)
CLIP = vp.Clip(u"plate")
QOBJECT = QtCore.QObject()
QOBJECT.setObjectName(u"thing")
DEAD = QtCore.QObject()
shiboken.delete(DEAD)

# converter: rows of (a Python object, the library value as plain data, NO, or the error)
FROM_PYTHON = {
    "OptionalBool": [(True, (True,)), (False, (False,)), (None, None), (1, NO), (0, NO), (0.0, NO), ("", NO)],
    "OptionalFloat": [(2.0, (2.0,)), (Real(2.5), (2.5,)), (None, None), (2, NO), (2L, NO), (True, NO), ("2", NO),
                      (0.1, (0.10000000149011612,)), (1e300, (INFINITE,))],
    "OptionalPoint": [((1.0, 2.0), ((1.0, 2.0),)), ((1, 2L), ((1.0, 2.0),)), ((1.0, 2.0, "x"), ((1.0, 2.0),)),
                      (Pair((1.0, 2.0)), ((1.0, 2.0),)), (None, None), ([1.0, 2.0], NO), ((1.0,), TypeError),
                      ((), TypeError), ((1.0, "x"), TypeError), ((None, 1.0), TypeError)],
    "OptionalInterlaceMode": [(None, None), (vp.LowerFieldFirst, (2,)), (2, (0,)), ("x", (0,)),
                              (vp.LogColorspace, (0,))],
    "OptionalLayer": [(None, None), (L2, (2,)), (5, (0,)), (handle("LayerGroup", 3), (0,))],
    "Color": [((1.0, 0.5, 0), (1.0, 0.5, 0.0)), ([0, 0, 1], (0.0, 0.0, 1.0)), (Pair((0, 0, 0)), (0.0, 0.0, 0.0)),
              ((1.5, 0, 0), red("1.5")), ((-0.25, 0, 0), red("-0.25")), (("x", 0, 0), red("-1")),
              ((Failing(LookupError("no")), 0, 0), red("-1")),
              ((None, 0, 0), red("-1")), ((1.00001, 0, 0), red("1.00001")), ((1.23456789, 0, 0), red("1.23457")),
              ((INFINITE, 0, 0), red("inf")), ((1e10, 0, 0), red("1e+10")),
              ((0.5, -0.25, 2.0), OverflowError("Green value '-0.25' must be between 0.0 and 1.0 values")),
              ((0.5, 0.25, 2), OverflowError("Blue value '2' must be between 0.0 and 1.0 values")),
              ((1.00000001, 0, 0), (1.0, 0.0, 0.0)), ((0.2, 0.3), NO), ((1, 1, 1, 1), NO), ({}, NO), (None, NO),
              (Sequence(0, 0, 0), NO), ("abc", NO)],
    "Lum_Matrix33": [(((1, 2, 3), (4, 5, 6), (7, 8, 9.5)), (1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.5)),
                     (((1, 2, 3), (4, 5, 6)), NO), ([(1, 2, 3)] * 3, NO), (((1, 2), (1, 2), (1, 2)), NO),
                     (([1, 2, 3],) * 3, NO), (None, NO)],
    "Knob::Context": [((1, 2.0), NO), (None, NO)],
    "QPair<uint,uint>": [((640, 480), (640, 480)), ([0, UINT_MAX], (0, UINT_MAX)), ((1.9, True), (1, 1)), ((640,), NO),
                         ((1, 2, 3), NO), ((1, "x"), NO), (None, NO), ("ab", NO), ((-1, 0), out_of_range("-1")),
                         ((0, 2 ** 32), out_of_range("4294967296"))],
    "QPair<View,double>": [((vp.View(2), 1.5), (2, 1.5)), ([3, 1], (3, 1.0)), ((2,), NO), (("x", 1.0), NO),
                           ((1, "x"), NO), (None, NO)],
    "QVector<QPair<View,double>>": [([(1, 2.5), [vp.View(0), 1]], ((1, 2.5), (0, 1.0))), ([], ()), ([(1,)], NO)],
    "Fundo::FSPercentEscapedString": [(u"plate", u"plate"), ("plate", u"plate"), (Text("plate"), u"plate"),
                                      ("\xe4", u"\xe4"), (None, None), (5, NO), ([], NO)],
    "QList<float>": [([1, 2.5], (1.0, 2.5)), ((), ()), (Sequence(1, 2), (1.0, 2.0)), (["x"], NO), (None, NO),
                     ([Failing(LookupError("no"))], LookupError("no")), ([10 ** 30], (1.0000000150474662e+30,)),
                     ({1.0}, NO), (iter([1.0]), NO)],
    "QVector<Layer>": [([L1, L2], (1, 2)), ((L2,), (2,)), ([], ()), ([handle("Layer", 0)], (0,)), ([L1, 5], NO),
                       ([None], NO), (L1, NO), (None, NO), ({L1}, NO), ((one for one in [L1]), NO),
                       (Sequence(L1), (1,))],
    "QVector<LayerGroup>": [([handle("LayerGroup", 4)], (4,)), ([L1], NO)],
    "QVector<Parameter>": [([handle("Parameter", 4)], (4,)), ([handle("ParameterSet", 4)], NO)],
    "QVector<ParameterSet>": [((handle("ParameterSet", 4),), (4,)), ([handle("Parameter", 4)], NO)],
    "QVector<XControlPoint>": [([handle("XControlPoint", 4)], (4,)), ([handle("BezierControlPoint", 4)], NO)],
    "QVector<BezierControlPoint>": [([handle("BezierControlPoint", 4)], (4,)), ([5], NO)],
    "const QVector<BezierControlPointData>&": [([vp.BezierControlPointData(x=1.0)], ((None, None, (1.0,)) +
                                                                                     (None,) * 5,)),
                                               ([vp.XControlPointData()], NO)],
    "const QVector<XControlPointData>&": [([vp.XControlPointData(x=1.0)], ((None, None, (1.0,)) + (None,) * 4,)),
                                          ([None], NO)],
    "const QVector<View>&": [([0, vp.View(1), True], (0, 1, 1)), ((), ()), ([1L], NO), ([1.0], NO),
                             ([2 ** 31], OverflowError)],
    "QVector<ViewInfo>": [([vp.ViewInfo(u"L", u"l", (0, 0, 1))], ((u"L", u"l", (0.0, 0.0, 1.0)),)), ([None], NO)],
    "const QList<QObject*>&": [([QOBJECT, CLIP], (u"thing", number(CLIP))), ([], ()), ([None], NO), ([L1], NO),
                               ([DEAD], RuntimeError)],
    "QList<QByteArray>": [([QtCore.QByteArray("ab")], (u"ab",)), ([], ()), ([5], NO), (None, NO)],
    "QList<QString>": [([u"a", "b", None], (u"a", u"b", None)), ([5], NO)],
    "QList<QVariant>": [([1, u"a", None], ((u"int", 1), (u"QString", u"a"), (None, None))), (5, NO)],
    "QHash<QString,Clip*>": [({u"a": CLIP}, ((u"a", number(CLIP)),)), ({}, ()),
                             (Names(a=CLIP), ((u"a", number(CLIP)),)),
                             ({u"a": None}, NO), ({5: CLIP}, NO), ([(u"a", CLIP)], NO), (None, NO)],
    "QMap<View,View>": [({2: 1, vp.View(0): vp.View(3)}, ((0, 3), (2, 1))), ({"x": 1}, NO), ([], NO)],
    "QMap<QString,QVariant>": [({u"b": 1, "a": True}, ((u"a", (u"bool", True)), (u"b", (u"int", 1)))), ({5: 1}, NO),
                              (TWICE, ((u"a", (u"int", TWICE.values()[-1])),))],
    "InterlaceMode": [(vp.LowerFieldFirst, 2), (vp.InvalidInterlaceMode, 13), (2, NO), (vp.LogColorspace, NO),
                      (None, NO)],
    "View": [(vp.View(3), 3), (3, 3), (True, 1), (-1, -1), (3L, NO), (3.0, NO), (None, NO), (vp.LogColorspace, NO),
             (2 ** 31, out_of_range("2147483648", "int, -2147483648 to 2147483647"))],
    "Layer": [(L2, 2), (None, NO), (2, NO)],
    "StreamInfo": [(vp.StreamInfo(u"a"), (u"a", u"", u"", UINT_MAX, UINT_MAX, 0)), (None, NO), (u"a", NO)],
}

# converter: rows of (plain data, the Python object)
TO_PYTHON = {
    "OptionalBool": [(None, None), ([True], True), ([False], False)],
    "OptionalFloat": [(None, None), ([2.0], 2.0)],
    "OptionalPoint": [(None, None), ([(1.5, -2.0)], (1.5, -2.0))],
    "OptionalInterlaceMode": [(None, None), ([2], vp.LowerFieldFirst)],
    "OptionalLayer": [(None, None), ([3], ("Layer", 3)), ([0], ("Layer", 0))],
    "Color": [((0.25, 0.5, 1.0), (0.25, 0.5, 1.0))],
    "Lum_Matrix33": [(range(9), ((0.0, 1.0, 2.0), (3.0, 4.0, 5.0), (6.0, 7.0, 8.0)))],
    "Knob::Context": [((2.5, -1, 3), (-1L, 2.5))],
    "QPair<uint,uint>": [((0, UINT_MAX), (0, UINT_MAX))],
    "QPair<View,double>": [((2, 1.5), (("View", 2), 1.5))],
    "QVector<QPair<View,double>>": [([(2, 1.5)], [(("View", 2), 1.5)])],
    "Fundo::FSPercentEscapedString": [(u"\xe4", u"\xe4")],
    "QList<float>": [([1, 2.5], [1.0, 2.5])],
    "const QVector<View>&": [([2, 0], [("View", 2), ("View", 0)])],
    "QVector<Layer>": [([], []), ([2, 0], [("Layer", 2), ("Layer", 0)])],
    "const QList<QObject*>&": [([number(CLIP), 0], [("Clip", number(CLIP)), None])],
    "QList<QString>": [([u"a", u"\xe4"], [u"a", u"\xe4"])],
    "QList<QVariant>": [([1, u"a", True, None], [1, u"a", True, None])],
    "QHash<QString,Clip*>": [([(u"a", number(CLIP))], {u"a": ("Clip", number(CLIP))})],
    "QMap<View,View>": [([(2, 1), (0, 3)], {("View", 0): ("View", 3), ("View", 2): ("View", 1)})],
    "QMap<QString,QVariant>": [([(u"a", 1.5)], {u"a": 1.5})],
    "InterlaceMode": [(2, vp.LowerFieldFirst)],
    "Colorspace": [(2, vp.PanalogColorspace)],
    "ViewInfo": [((u"L", u"l", (0, 0, 1)), ("ViewInfo", (u"L", u"l", (0.0, 0.0, 1.0))))],
}


class Conversions(ModuleTest):
    keep_engine = True

    def test_from_python(self):
        self.each([(name,) + row for name in sorted(FROM_PYTHON) for row in FROM_PYTHON[name]], self.check_from_python)

    def check_from_python(self, name, given, expected):
        if expected == NO:
            self.raises(ValueError, NO, second_extension.from_python, name, given)
        elif isinstance(expected, Exception):
            self.raises(type(expected), str(expected), second_extension.from_python, name, given)
        elif isinstance(expected, type):
            self.raises(expected, None, second_extension.from_python, name, given)
        else:
            self.assertEqual(second_extension.from_python(name, given), expected)

    def test_to_python(self):
        def check(name, plain, expected):
            result = second_extension.to_python(name, plain)
            self.assertEqual((shown(result), type(result)), (expected, type(result)))
            if name == "Knob::Context":
                self.assertIs(type(result[0]), long)
            if not isinstance(expected, tuple) or not isinstance(expected[0], str):
                self.assertIs(type(result), type(expected))

        self.each([(name,) + row for name in sorted(TO_PYTHON) for row in TO_PYTHON[name]], check)

    def test_a_colour_that_is_no_number_passes(self):
        # Compared as single precision, not-a-number is neither below nor above.
        red_part = second_extension.from_python("Color", (NAN, 0, 1))[0]
        self.assertNotEqual(red_part, red_part)

    def test_colour_messages_are_translated(self):
        recording.translate("py_color_conversion_error/Red value '%1' must be between 0.0 and 1.0 values",
                            u"Rot %1 geht nicht \xfcber")
        self.raises(OverflowError, u"Rot 1.5 geht nicht \xfcber".encode("utf-8"), setattr, handle("Layer", 1),
                    "matte_color", (1.5, 0, 0))
        self.assertEqual(calls(), [])

    def test_engine_enumerations_are_plain_integers(self):
        for name in ENGINE:
            result = second_extension.to_python(name, 2)
            self.assertEqual((result, type(result)), (2, int))
            for given, expected in [(2, 2), (True, 1), (2L, NO), (2.0, NO), (None, NO), (vp.LogColorspace, NO),
                                    (2 ** 31, out_of_range("2147483648", "int, -2147483648 to 2147483647"))]:
                self.check_from_python(name, given, expected)
            recording.returns("Parameter.get", (name, 2))
            value = handle("Parameter", 1).get()
            self.assertEqual((value, type(value)), (2, int), name)

    def test_places_and_python_types(self):
        for place, (name, kind) in enumerate(PLACES):
            self.assertTrue(second_extension.has_converter_at(place, name), name)
            self.assertIs(second_extension.type_of_converter(name), kind)
        for place, name in enumerate(sorted(set(CLASSES) | {"InterlaceMode", "Colorspace", "ColorizeOutput",
                                                            "ColorConversion"})):
            self.assertIs(second_extension.type_at(place), getattr(vp, name))
        self.assertIs(second_extension.type_at(14), vp.Project)

    def test_classes_are_found_by_all_their_names(self):
        for name in CLASSES:
            length = len(name)
            for known in (name, name + "*", name + "&", "%d%s" % (length, name), "%d%sWrapper" % (length + 7, name)):
                self.assertIs(second_extension.type_of_converter(known), getattr(vp, name))

    def test_the_runtime_s_own_way_by_name(self):
        self.assertEqual(second_extension.specific("OptionalFloat", 2.5), 2.5)
        self.assertIs(second_extension.specific("OptionalFloat", None), None)
        self.assertIs(second_extension.specific("NoSuchConverter", 2.5), None)

    def test_conversions_leave_no_values_behind(self):
        names = ("Layer", "BezierControlPointData", "ViewInfo", "StreamInfo")
        before = [recording.counts(name)["alive"] for name in names]
        layer = handle("Layer", 1)
        for points in ([vp.BezierControlPointData()] * 3, [vp.BezierControlPointData(), 5]):
            try:
                layer.add_bezier_contour(0.0, points)
            except TypeError:
                pass
        recording.throws("Layer.add_bezier_contour", "STRM_OperationFailed", "frame 12")
        self.raises(RuntimeError, "frame 12", layer.add_bezier_contour, 0.0, [vp.BezierControlPointData()])
        recording.returns("Project.get_layers", [1, 2, 3])
        recording.returns("Project.get_views", [(u"a", u"b", (0, 0, 0))] * 3)
        project = vp.Project(u"f")
        project.layers, project.views
        del layer, points
        self.assertEqual([recording.counts(name)["alive"] for name in names], before)


if __name__ == "__main__":
    main()
