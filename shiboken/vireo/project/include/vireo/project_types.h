// Finds the types and converters of vireo.project from another extension module, by their published places.
//
//     PyTypeObject** types = vireo::projectTypes();  // null, with a Python error pending, when it cannot be imported
//     if (Shiboken::Object::checkType(object) && PyObject_TypeCheck(object, types[vireo::SBK_LAYER_IDX])) ...
//
// A type's place is that of its Python name in the ascending order of all names. Converters are also found by name,
// with Shiboken::Conversions::getConverter; the names stand beside their places.
#ifndef VIREO_PROJECT_TYPES_H
#define VIREO_PROJECT_TYPES_H

#include <sbkpython.h>
#include <shiboken.h>

namespace vireo {

enum TypePlace {
    SBK_BEZIERCONTOUR_IDX = 0,
    SBK_BEZIERCONTROLPOINT_IDX = 1,
    SBK_BEZIERCONTROLPOINTDATA_IDX = 2,
    SBK_CLIP_IDX = 3,
    SBK_COLORCONVERSION_IDX = 4,
    SBK_COLORPARAMETERS_IDX = 5,
    SBK_COLORIZEOUTPUT_IDX = 6,
    SBK_COLORSPACE_IDX = 7,
    SBK_INTERLACEMODE_IDX = 8,
    SBK_LAYER_IDX = 9,
    SBK_LAYERGROUP_IDX = 10,
    SBK_PARAMETER_IDX = 11,
    SBK_PARAMETERSET_IDX = 12,
    SBK_PROGRESSWATCHER_IDX = 13,
    SBK_PROJECT_IDX = 14,
    SBK_RENDERINSERTOPERATION_IDX = 15,
    SBK_RENDEROPERATION_IDX = 16,
    SBK_RENDERREMOVEOPERATION_IDX = 17,
    SBK_RENDERSTABILIZEOPERATION_IDX = 18,
    SBK_STREAMINFO_IDX = 19,
    SBK_UNDOGROUP_IDX = 20,
    SBK_VIEW_IDX = 21,
    SBK_VIEWINFO_IDX = 22,
    SBK_XCONTROLPOINT_IDX = 23,
    SBK_XCONTROLPOINTDATA_IDX = 24,
    SBK_XSPLINECONTOUR_IDX = 25,
    SBK_project_IDX_COUNT = 26
};

enum ConverterPlace {
    SBK_PROJECT_OPTIONALBOOL_IDX = 0,                    // "OptionalBool"
    SBK_PROJECT_LUM_MATRIX33_IDX = 1,                    // "Lum_Matrix33"
    SBK_PROJECT_FSPERCENTESCAPEDSTRING_IDX = 2,          // "Fundo::FSPercentEscapedString"
    SBK_PROJECT_COLOR_IDX = 3,                           // "Color"
    SBK_PROJECT_OPTIONALLAYER_IDX = 4,                   // "OptionalLayer"
    SBK_PROJECT_OPTIONALINTERLACEMODE_IDX = 5,           // "OptionalInterlaceMode"
    SBK_PROJECT_OPTIONALFLOAT_IDX = 6,                   // "OptionalFloat"
    SBK_PROJECT_OPTIONALPOINT_IDX = 7,                   // "OptionalPoint"
    SBK_PROJECT_KNOB_CONTEXT_IDX = 8,                    // "Knob::Context"
    SBK_PROJECT_QPAIR_VIEW_DOUBLE_IDX = 9,               // "QPair<View,double>"
    SBK_PROJECT_QVECTOR_QPAIR_VIEW_DOUBLE_IDX = 10,      // "QVector<QPair<View,double>>"
    SBK_PROJECT_QVECTOR_PARAMETER_IDX = 11,              // "QVector<Parameter>"
    SBK_PROJECT_QVECTOR_PARAMETERSET_IDX = 12,           // "QVector<ParameterSet>"
    SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINTDATA_IDX = 13, // "const QVector<BezierControlPointData>&"
    SBK_PROJECT_QVECTOR_XCONTROLPOINTDATA_IDX = 14,      // "const QVector<XControlPointData>&"
    SBK_PROJECT_QLIST_FLOAT_IDX = 15,                    // "QList<float>"
    SBK_PROJECT_QVECTOR_XCONTROLPOINT_IDX = 16,          // "QVector<XControlPoint>"
    SBK_PROJECT_QVECTOR_BEZIERCONTROLPOINT_IDX = 17,     // "QVector<BezierControlPoint>"
    SBK_PROJECT_QVECTOR_LAYER_IDX = 18,                  // "QVector<Layer>"
    SBK_PROJECT_QLIST_QOBJECTPTR_IDX = 19,               // "const QList<QObject*>&"
    SBK_PROJECT_QLIST_QBYTEARRAY_IDX = 20,               // "QList<QByteArray>"
    SBK_PROJECT_QVECTOR_VIEW_IDX = 21,                   // "const QVector<View>&"
    SBK_PROJECT_QVECTOR_LAYERGROUP_IDX = 22,             // "QVector<LayerGroup>"
    SBK_PROJECT_QHASH_QSTRING_CLIPPTR_IDX = 23,          // "QHash<QString,Clip*>"
    SBK_PROJECT_QPAIR_UINT_UINT_IDX = 24,                // "QPair<uint,uint>"
    SBK_PROJECT_QVECTOR_VIEWINFO_IDX = 25,               // "QVector<ViewInfo>"
    SBK_PROJECT_QMAP_VIEW_VIEW_IDX = 26,                 // "QMap<View,View>"
    SBK_PROJECT_QLIST_QVARIANT_IDX = 27,                 // "QList<QVariant>"
    SBK_PROJECT_QLIST_QSTRING_IDX = 28,                  // "QList<QString>"
    SBK_PROJECT_QMAP_QSTRING_QVARIANT_IDX = 29,          // "QMap<QString,QVariant>"
    SBK_project_CONVERTERS_IDX_COUNT = 30
};

// The module's type table; imports the module first.
inline PyTypeObject** projectTypes()
{
    Shiboken::AutoDecRef module(Shiboken::Module::import("vireo.project"));
    return module.isNull() ? nullptr : Shiboken::Module::getTypes(module);
}

// The module's converter table; imports the module first.
inline SbkConverter** projectConverters()
{
    Shiboken::AutoDecRef module(Shiboken::Module::import("vireo.project"));
    return module.isNull() ? nullptr : Shiboken::Module::getTypeConverters(module);
}

} // namespace vireo

#endif
