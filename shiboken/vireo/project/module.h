// What the module's sources share: its tables, what each library type is in Python, and the registrations.
#ifndef VIREO_PROJECT_MODULE_H
#define VIREO_PROJECT_MODULE_H

#include "class_registration.h"

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

template <TypePlace typePlace, binding::Kind typeKind>
struct AtPlace
{
    static constexpr binding::Kind kind = typeKind;
    static constexpr PyTypeObject** place() { return &types[typePlace]; }
    static PyTypeObject* type() { return types[typePlace]; }
};
template <TypePlace place>
using ValueAt = AtPlace<place, binding::Kind::Value>;
template <TypePlace place>
using ObjectAt = AtPlace<place, binding::Kind::Object>;
template <TypePlace place>
using EnumerationAt = AtPlace<place, binding::Kind::Enumeration>;

// Each enters its class in the module: its type, converter, names and properties.
void registerBezierContour(PyObject* module);
void registerBezierControlPoint(PyObject* module);
void registerBezierControlPointData(PyObject* module);
void registerClip(PyObject* module);
void registerColorParameters(PyObject* module);
void registerLayer(PyObject* module);
void registerLayerGroup(PyObject* module);
void registerParameter(PyObject* module);
void registerParameterSet(PyObject* module);
void registerProgressWatcher(PyObject* module);
void registerProject(PyObject* module);
void registerRenderInsertOperation(PyObject* module);
void registerRenderOperation(PyObject* module);
void registerRenderRemoveOperation(PyObject* module);
void registerRenderStabilizeOperation(PyObject* module);
void registerStreamInfo(PyObject* module);
void registerUndoGroup(PyObject* module);
void registerView(PyObject* module);
void registerViewInfo(PyObject* module);
void registerXControlPoint(PyObject* module);
void registerXControlPointData(PyObject* module);
void registerXSplineContour(PyObject* module);

// Enter the module's own converters, and its enumerations (false when one cannot be made; the error stays pending).
void registerConverters();
bool registerEnumerations(PyObject* module);
void registerEngineEnumerations();

// Sets the Python exception for a library exception, chosen by the exception's class; see error_translation.cpp.
void translateLibraryException(const std::exception& caught);

} // namespace vireo

namespace binding {

template <>
struct Wrapped<BezierContour> : vireo::ValueAt<vireo::SBK_BEZIERCONTOUR_IDX>
{
    static constexpr const char* name = "vireo.project.BezierContour";
};
template <>
struct Wrapped<BezierControlPoint> : vireo::ValueAt<vireo::SBK_BEZIERCONTROLPOINT_IDX>
{
    static constexpr const char* name = "vireo.project.BezierControlPoint";
};
template <>
struct Wrapped<BezierControlPointData> : vireo::ValueAt<vireo::SBK_BEZIERCONTROLPOINTDATA_IDX>
{
    static constexpr const char* name = "vireo.project.BezierControlPointData";
};
template <>
struct Wrapped<Clip> : vireo::ObjectAt<vireo::SBK_CLIP_IDX>
{
    static constexpr const char* name = "vireo.project.Clip";
};
template <>
struct Wrapped<ColorConversion> : vireo::EnumerationAt<vireo::SBK_COLORCONVERSION_IDX>
{
    static constexpr const char* name = "vireo.project.ColorConversion";
};
template <>
struct Wrapped<ColorParameters> : vireo::ObjectAt<vireo::SBK_COLORPARAMETERS_IDX>
{
    static constexpr const char* name = "vireo.project.ColorParameters";
};
template <>
struct Wrapped<ColorizeOutput> : vireo::EnumerationAt<vireo::SBK_COLORIZEOUTPUT_IDX>
{
    static constexpr const char* name = "vireo.project.ColorizeOutput";
};
template <>
struct Wrapped<Colorspace> : vireo::EnumerationAt<vireo::SBK_COLORSPACE_IDX>
{
    static constexpr const char* name = "vireo.project.Colorspace";
};
template <>
struct Wrapped<InterlaceMode> : vireo::EnumerationAt<vireo::SBK_INTERLACEMODE_IDX>
{
    static constexpr const char* name = "vireo.project.InterlaceMode";
};
template <>
struct Wrapped<Layer> : vireo::ValueAt<vireo::SBK_LAYER_IDX>
{
    static constexpr const char* name = "vireo.project.Layer";
};
template <>
struct Wrapped<LayerGroup> : vireo::ValueAt<vireo::SBK_LAYERGROUP_IDX>
{
    static constexpr const char* name = "vireo.project.LayerGroup";
};
template <>
struct Wrapped<Parameter> : vireo::ValueAt<vireo::SBK_PARAMETER_IDX>
{
    static constexpr const char* name = "vireo.project.Parameter";
};
template <>
struct Wrapped<ParameterSet> : vireo::ValueAt<vireo::SBK_PARAMETERSET_IDX>
{
    static constexpr const char* name = "vireo.project.ParameterSet";
};
template <>
struct Wrapped<ProgressWatcher> : vireo::ObjectAt<vireo::SBK_PROGRESSWATCHER_IDX>
{
    static constexpr const char* name = "vireo.project.ProgressWatcher";
};
template <>
struct Wrapped<Project> : vireo::ObjectAt<vireo::SBK_PROJECT_IDX>
{
    static constexpr const char* name = "vireo.project.Project";
};
template <>
struct Wrapped<RenderInsertOperation> : vireo::ObjectAt<vireo::SBK_RENDERINSERTOPERATION_IDX>
{
    static constexpr const char* name = "vireo.project.RenderInsertOperation";
};
template <>
struct Wrapped<RenderOperation> : vireo::ObjectAt<vireo::SBK_RENDEROPERATION_IDX>
{
    static constexpr const char* name = "vireo.project.RenderOperation";
};
template <>
struct Wrapped<RenderRemoveOperation> : vireo::ObjectAt<vireo::SBK_RENDERREMOVEOPERATION_IDX>
{
    static constexpr const char* name = "vireo.project.RenderRemoveOperation";
};
template <>
struct Wrapped<RenderStabilizeOperation> : vireo::ObjectAt<vireo::SBK_RENDERSTABILIZEOPERATION_IDX>
{
    static constexpr const char* name = "vireo.project.RenderStabilizeOperation";
};
template <>
struct Wrapped<StreamInfo> : vireo::ValueAt<vireo::SBK_STREAMINFO_IDX>
{
    static constexpr const char* name = "vireo.project.StreamInfo";
};
template <>
struct Wrapped<UndoGroup> : vireo::ValueAt<vireo::SBK_UNDOGROUP_IDX>
{
    static constexpr const char* name = "vireo.project.UndoGroup";
};
template <>
struct Wrapped<View> : vireo::ValueAt<vireo::SBK_VIEW_IDX>
{
    static constexpr const char* name = "vireo.project.View";
};
template <>
struct Wrapped<ViewInfo> : vireo::ValueAt<vireo::SBK_VIEWINFO_IDX>
{
    static constexpr const char* name = "vireo.project.ViewInfo";
};
template <>
struct Wrapped<XControlPoint> : vireo::ValueAt<vireo::SBK_XCONTROLPOINT_IDX>
{
    static constexpr const char* name = "vireo.project.XControlPoint";
};
template <>
struct Wrapped<XControlPointData> : vireo::ValueAt<vireo::SBK_XCONTROLPOINTDATA_IDX>
{
    static constexpr const char* name = "vireo.project.XControlPointData";
};
template <>
struct Wrapped<XSplineContour> : vireo::ValueAt<vireo::SBK_XSPLINECONTOUR_IDX>
{
    static constexpr const char* name = "vireo.project.XSplineContour";
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
