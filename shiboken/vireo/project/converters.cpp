// The module's own converters, entered in the converter table and registered under their names.
#include "defaults.h"
#include "value_converters.h"

#include <converter_rows.h>

namespace vireo {

namespace {

using binding::both;
using binding::ConverterRow;
using binding::toPythonOnly;

constexpr ConverterRow rows[] = {
    both<boost::optional<bool>>(SBK_PROJECT_OPTIONALBOOL_IDX, "OptionalBool", PyBool_Type),
    both<Lum_Matrix33>(SBK_PROJECT_LUM_MATRIX33_IDX, "Lum_Matrix33", PyTuple_Type),
    both<Fundo::FSPercentEscapedString>(SBK_PROJECT_FSPERCENTESCAPEDSTRING_IDX, "Fundo::FSPercentEscapedString",
                                        PyString_Type),
    both<Fundo::Colour3<float>>(SBK_PROJECT_COLOR_IDX, "Color", PyTuple_Type),
    both<boost::optional<Layer>>(SBK_PROJECT_OPTIONALLAYER_IDX, "OptionalLayer", PyBaseObject_Type),
    both<boost::optional<InterlaceMode>>(SBK_PROJECT_OPTIONALINTERLACEMODE_IDX, "OptionalInterlaceMode",
                                         PyBaseObject_Type),
    both<boost::optional<float>>(SBK_PROJECT_OPTIONALFLOAT_IDX, "OptionalFloat", PyFloat_Type),
    both<boost::optional<QPointF>>(SBK_PROJECT_OPTIONALPOINT_IDX, "OptionalPoint", PyTuple_Type),
    toPythonOnly<Knob::Context>(SBK_PROJECT_KNOB_CONTEXT_IDX, "Knob::Context", PyTuple_Type),
    both<QPair<View, double>>(SBK_PROJECT_QPAIR_VIEW_DOUBLE_IDX, "QPair<View,double>", PyList_Type),
    both<QVector<QPair<View, double>>>(SBK_PROJECT_QVECTOR_QPAIR_VIEW_DOUBLE_IDX, "QVector<QPair<View,double>>",
                                       PyList_Type),
    both<QVector<Parameter>>(SBK_PROJECT_QVECTOR_PARAMETER_IDX, "QVector<Parameter>", PyList_Type),
    both<QVector<ParameterSet>>(SBK_PROJECT_QVECTOR_PARAMETERSET_IDX, "QVector<ParameterSet>", PyList_Type),
    both<QVector<BezierControlPointData>>(SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINTDATA_IDX,
                                          "const QVector<BezierControlPointData>&", PyList_Type),
    both<QVector<XControlPointData>>(SBK_PROJECT_QVECTOR_XCONTROLPOINTDATA_IDX, "const QVector<XControlPointData>&",
                                     PyList_Type),
    both<QList<float>>(SBK_PROJECT_QLIST_FLOAT_IDX, "QList<float>", PyList_Type),
    both<QVector<XControlPoint>>(SBK_PROJECT_QVECTOR_XCONTROLPOINT_IDX, "QVector<XControlPoint>", PyList_Type),
    both<QVector<BezierControlPoint>>(SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINT_IDX, "QVector<BezierControlPoint>",
                                      PyList_Type),
    both<QVector<Layer>>(SBK_PROJECT_QVECTOR_LAYER_IDX, "QVector<Layer>", PyList_Type),
    both<QList<QObject*>>(SBK_PROJECT_QLIST_QOBJECTPTR_IDX, "const QList<QObject*>&", PyList_Type),
    both<QList<QByteArray>>(SBK_PROJECT_QLIST_QBYTEARRAY_IDX, "QList<QByteArray>", PyList_Type),
    both<QVector<View>>(SBK_PROJECT_QVECTOR_VIEW_IDX, "const QVector<View>&", PyList_Type),
    both<QVector<LayerGroup>>(SBK_PROJECT_QVECTOR_LAYERGROUP_IDX, "QVector<LayerGroup>", PyList_Type),
    both<QHash<QString, Clip*>>(SBK_PROJECT_QHASH_QSTRING_CLIPPTR_IDX, "QHash<QString,Clip*>", PyDict_Type),
    both<QPair<unsigned int, unsigned int>>(SBK_PROJECT_QPAIR_UINT_UINT_IDX, "QPair<uint,uint>", PyList_Type),
    both<QVector<ViewInfo>>(SBK_PROJECT_QVECTOR_VIEWINFO_IDX, "QVector<ViewInfo>", PyList_Type),
    both<QMap<View, View>>(SBK_PROJECT_QMAP_VIEW_VIEW_IDX, "QMap<View,View>", PyDict_Type),
    both<QList<QVariant>>(SBK_PROJECT_QLIST_QVARIANT_IDX, "QList<QVariant>", PyList_Type),
    both<QList<QString>>(SBK_PROJECT_QLIST_QSTRING_IDX, "QList<QString>", PyList_Type),
    both<QMap<QString, QVariant>>(SBK_PROJECT_QMAP_QSTRING_QVARIANT_IDX, "QMap<QString,QVariant>", PyDict_Type),
};

constexpr bool areInOrder()
{
    for (std::size_t i = 0; i < std::size(rows); ++i)
        if (rows[i].place != static_cast<int>(i))
            return false;
    return std::size(rows) == SBK_project_CONVERTERS_IDX_COUNT;
}
static_assert(areInOrder(), "a converter is missing, or is in the wrong place");

} // namespace

void registerConverters()
{
    for (const ConverterRow& row : rows)
        converters[row.place] = binding::registerConverter(row);
}

} // namespace vireo
