// What the module's sources share: its tables, what each library type is in Python, and the registrations.
#ifndef VIREO_PROJECT_MODULE_H
#define VIREO_PROJECT_MODULE_H

#include "class_registration.h"

#include <QVariant>
#include <orrery/clip.h>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <orrery/project.h>
#include <orrery/render_operation.h>
#include <orrery/stream_info.h>
#include <vireo/project_types.h>

namespace vireo {

// The published tables; filled at start-up and never changed afterwards.
extern PyTypeObject* types[SBK_project_IDX_COUNT];
extern SbkConverter* converters[SBK_project_CONVERTERS_IDX_COUNT];

using binding::enumerationType;
using binding::objectType;
using binding::valueType;

// All types of the module, in the order in which they are registered. A base class comes before those derived from it,
// and the classes before the enumerations; beyond that the order is free, and fixed.
inline constexpr std::tuple typeRows{
    valueType<UndoGroup>(SBK_UNDOGROUP_IDX, "vireo.project.UndoGroup"),
    valueType<ParameterSet>(SBK_PARAMETERSET_IDX, "vireo.project.ParameterSet"),
    valueType<View>(SBK_VIEW_IDX, "vireo.project.View"),
    valueType<Parameter>(SBK_PARAMETER_IDX, "vireo.project.Parameter"),
    valueType<ViewInfo>(SBK_VIEWINFO_IDX, "vireo.project.ViewInfo"),
    objectType<RenderOperation>(SBK_RENDEROPERATION_IDX, "vireo.project.RenderOperation"),
    objectType<RenderRemoveOperation>(SBK_RENDERREMOVEOPERATION_IDX, "vireo.project.RenderRemoveOperation"),
    valueType<Layer>(SBK_LAYER_IDX, "vireo.project.Layer"),
    valueType<XControlPointData>(SBK_XCONTROLPOINTDATA_IDX, "vireo.project.XControlPointData"),
    valueType<XSplineContour>(SBK_XSPLINECONTOUR_IDX, "vireo.project.XSplineContour"),
    valueType<XControlPoint>(SBK_XCONTROLPOINT_IDX, "vireo.project.XControlPoint"),
    valueType<BezierControlPointData>(SBK_BEZIERCONTROLPOINTDATA_IDX, "vireo.project.BezierControlPointData"),
    valueType<BezierContour>(SBK_BEZIERCONTOUR_IDX, "vireo.project.BezierContour"),
    valueType<BezierControlPoint>(SBK_BEZIERCONTROLPOINT_IDX, "vireo.project.BezierControlPoint"),
    objectType<RenderStabilizeOperation>(SBK_RENDERSTABILIZEOPERATION_IDX, "vireo.project.RenderStabilizeOperation"),
    objectType<RenderInsertOperation>(SBK_RENDERINSERTOPERATION_IDX, "vireo.project.RenderInsertOperation"),
    valueType<LayerGroup>(SBK_LAYERGROUP_IDX, "vireo.project.LayerGroup"),
    valueType<StreamInfo>(SBK_STREAMINFO_IDX, "vireo.project.StreamInfo"),
    objectType<ProgressWatcher>(SBK_PROGRESSWATCHER_IDX, "vireo.project.ProgressWatcher"),
    objectType<Project>(SBK_PROJECT_IDX, "vireo.project.Project"),
    objectType<ColorParameters>(SBK_COLORPARAMETERS_IDX, "vireo.project.ColorParameters"),
    objectType<Clip>(SBK_CLIP_IDX, "vireo.project.Clip"),
    enumerationType<InterlaceMode>(SBK_INTERLACEMODE_IDX, "vireo.project.InterlaceMode"),
    enumerationType<Colorspace>(SBK_COLORSPACE_IDX, "vireo.project.Colorspace"),
    enumerationType<ColorizeOutput>(SBK_COLORIZEOUTPUT_IDX, "vireo.project.ColorizeOutput"),
    enumerationType<ColorConversion>(SBK_COLORCONVERSION_IDX, "vireo.project.ColorConversion")};
static_assert(std::tuple_size_v<decltype(typeRows)> == SBK_project_IDX_COUNT, "a place without a type");

// The table of a class, which its own file gives.
template <class T>
binding::ClassTable tableOf();

// Enter the module's own converters, and its enumerations (false when one cannot be made; the error stays pending).
void registerConverters();
bool registerEnumerations(PyObject* module);
void registerEngineEnumerations();

// The documentation of a class, or of one of its methods (null: of the class itself); null where there is none. A
// property has that of its getter.
const char* documentation(const char* className, const char* method);

// Sets the Python exception for a library exception, chosen by the exception's class; see error_translation.cpp.
void translateLibraryException(const std::exception& caught);

} // namespace vireo

namespace binding {

template <class T>
struct Wrapped<T, std::enable_if_t<isListed<T, decltype(vireo::typeRows)>>>
    : WrappedByRow<T, vireo::typeRows, vireo::types>
{};

template <>
struct Converter<QVariant> : QtConverter<QVariant, SBK_QVARIANT_IDX>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "QVariant"; }

    // The Qt binding passes instances of subclasses of float and long as mere objects; a library wants numbers.
    static FromPython accepts(PyObject* object)
    {
        return PyFloat_Check(object) ? &fromFloat : PyLong_Check(object) ? &fromLong : QtConverter::accepts(object);
    }

private:
    static void fromFloat(PyObject* object, void* value)
    {
        *static_cast<QVariant*>(value) = QVariant(PyFloat_AS_DOUBLE(object));
    }
    static void fromLong(PyObject* object, void* value)
    {
        const long long number = PyLong_AsLongLong(object);
        if (!errorPending())
            *static_cast<QVariant*>(value) = QVariant(static_cast<qlonglong>(number));
    }
};

// A Python int is taken wherever a view is.
template <>
struct Implicit<View>
{
    static bool isPlain(PyObject* object) { return PyInt_CheckExact(object); }
    static FromPython accepts(PyObject* object) { return PyInt_Check(object) ? &fromPython : nullptr; }
    static void fromPython(PyObject* integer, void* view)
    {
        int id = 0;
        Converter<int>::read(integer, id);
        if (!errorPending())
            *static_cast<View*>(view) = View(id);
    }
};

// A view that is given is converted into a plain one: the library's default view is asked for only where it is meant.
template <>
struct StartValue<View>
{
    static View make() { return View(0); }
};

} // namespace binding

#endif
