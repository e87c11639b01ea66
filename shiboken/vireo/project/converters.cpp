// The module's own converters, entered in the converter table and registered under their names.
#include "defaults.h"
#include "value_converters.h"

namespace vireo {

namespace {

using binding::Converter;

template <class T>
PyObject* toPython(const void* value)
{
    return Converter<T>::toPython(*static_cast<const T*>(value));
}

// The runtime pairs each test with one conversion: those of one converter are told apart by the conversion that its
// test gives.
template <class T>
binding::FromPython accepts(PyObject* object)
{
    return Converter<T>::accepts(object);
}

template <class T>
void fromPython(PyObject* object, void* value)
{
    if (const binding::FromPython convert = Converter<T>::accepts(object))
        convert(object, value);
}

template <class T>
SbkConverter* enter(ConverterPlace place, const char* name, PyTypeObject& type)
{
    SbkConverter* const converter = Shiboken::Conversions::createConverter(&type, &toPython<T>);
    Shiboken::Conversions::registerConverterName(converter, name);
    converters[place] = converter;
    return converter;
}

// A type with conversions in both directions.
template <class T>
void enterBoth(ConverterPlace place, const char* name, PyTypeObject& type)
{
    Shiboken::Conversions::addPythonToCppValueConversion(enter<T>(place, name, type), &fromPython<T>, &accepts<T>);
}

} // namespace

void registerConverters()
{
    enterBoth<boost::optional<bool>>(SBK_PROJECT_OPTIONALBOOL_IDX, "OptionalBool", PyBool_Type);
    enterBoth<Lum_Matrix33>(SBK_PROJECT_LUM_MATRIX33_IDX, "Lum_Matrix33", PyTuple_Type);
    enterBoth<Fundo::FSPercentEscapedString>(SBK_PROJECT_FSPERCENTESCAPEDSTRING_IDX, "Fundo::FSPercentEscapedString",
                                             PyString_Type);
    enterBoth<Fundo::Colour3<float>>(SBK_PROJECT_COLOR_IDX, "Color", PyTuple_Type);
    enterBoth<boost::optional<Layer>>(SBK_PROJECT_OPTIONALLAYER_IDX, "OptionalLayer", PyBaseObject_Type);
    enterBoth<boost::optional<InterlaceMode>>(SBK_PROJECT_OPTIONALINTERLACEMODE_IDX, "OptionalInterlaceMode",
                                              PyBaseObject_Type);
    enterBoth<boost::optional<float>>(SBK_PROJECT_OPTIONALFLOAT_IDX, "OptionalFloat", PyFloat_Type);
    enterBoth<boost::optional<QPointF>>(SBK_PROJECT_OPTIONALPOINT_IDX, "OptionalPoint", PyTuple_Type);
    enter<Knob::Context>(SBK_PROJECT_KNOB_CONTEXT_IDX, "Knob::Context", PyTuple_Type);
    enterBoth<QPair<View, double>>(SBK_PROJECT_QPAIR_VIEW_DOUBLE_IDX, "QPair<View,double>", PyList_Type);
    enterBoth<QVector<QPair<View, double>>>(SBK_PROJECT_QVECTOR_QPAIR_VIEW_DOUBLE_IDX, "QVector<QPair<View,double>>",
                                            PyList_Type);
    enterBoth<QVector<Parameter>>(SBK_PROJECT_QVECTOR_PARAMETER_IDX, "QVector<Parameter>", PyList_Type);
    enterBoth<QVector<ParameterSet>>(SBK_PROJECT_QVECTOR_PARAMETERSET_IDX, "QVector<ParameterSet>", PyList_Type);
    enterBoth<QVector<BezierControlPointData>>(SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINTDATA_IDX,
                                               "const QVector<BezierControlPointData>&", PyList_Type);
    enterBoth<QVector<XControlPointData>>(SBK_PROJECT_QVECTOR_XCONTROLPOINTDATA_IDX,
                                          "const QVector<XControlPointData>&", PyList_Type);
    enterBoth<QList<float>>(SBK_PROJECT_QLIST_FLOAT_IDX, "QList<float>", PyList_Type);
    enterBoth<QVector<XControlPoint>>(SBK_PROJECT_QVECTOR_XCONTROLPOINT_IDX, "QVector<XControlPoint>", PyList_Type);
    enterBoth<QVector<BezierControlPoint>>(SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINT_IDX, "QVector<BezierControlPoint>",
                                           PyList_Type);
    enterBoth<QVector<Layer>>(SBK_PROJECT_QVECTOR_LAYER_IDX, "QVector<Layer>", PyList_Type);
    enterBoth<QList<QObject*>>(SBK_PROJECT_QLIST_QOBJECTPTR_IDX, "const QList<QObject*>&", PyList_Type);
    enterBoth<QList<QByteArray>>(SBK_PROJECT_QLIST_QBYTEARRAY_IDX, "QList<QByteArray>", PyList_Type);
    enterBoth<QVector<View>>(SBK_PROJECT_QVECTOR_VIEW_IDX, "const QVector<View>&", PyList_Type);
    enterBoth<QVector<LayerGroup>>(SBK_PROJECT_QVECTOR_LAYERGROUP_IDX, "QVector<LayerGroup>", PyList_Type);
    enterBoth<QHash<QString, Clip*>>(SBK_PROJECT_QHASH_QSTRING_CLIPPTR_IDX, "QHash<QString,Clip*>", PyDict_Type);
    enterBoth<QPair<unsigned int, unsigned int>>(SBK_PROJECT_QPAIR_UINT_UINT_IDX, "QPair<uint,uint>", PyList_Type);
    enterBoth<QVector<ViewInfo>>(SBK_PROJECT_QVECTOR_VIEWINFO_IDX, "QVector<ViewInfo>", PyList_Type);
    enterBoth<QMap<View, View>>(SBK_PROJECT_QMAP_VIEW_VIEW_IDX, "QMap<View,View>", PyDict_Type);
    enterBoth<QList<QVariant>>(SBK_PROJECT_QLIST_QVARIANT_IDX, "QList<QVariant>", PyList_Type);
    enterBoth<QList<QString>>(SBK_PROJECT_QLIST_QSTRING_IDX, "QList<QString>", PyList_Type);
    enterBoth<QMap<QString, QVariant>>(SBK_PROJECT_QMAP_QSTRING_QVARIANT_IDX, "QMap<QString,QVariant>", PyDict_Type);
}

} // namespace vireo
