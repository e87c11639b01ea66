// The recorded handles: their life, and one line per operation.
#include "call.h"

#include <orrery/point_constraint.h>
#include <stratum/exception.h>

using namespace recording;

namespace {

constexpr const char* nameOf(const STRM_Layer*) { return "STRM_Layer.handledObject"; }
constexpr const char* nameOf(const Stratum::LayerGroup*) { return "LayerGroup.handledObject"; }
constexpr const char* nameOf(const Stratum::Contour*) { return "Contour.handledObject"; }
constexpr const char* nameOf(const Stratum::ControlPoint*) { return "ControlPoint.handledObject"; }
constexpr const char* nameOf(const Knob::ParameterSet*) { return "ParameterSet.handledObject"; }

} // namespace

template <class T>
PyHandle<T>::PyHandle() = default;

template <class T>
PyHandle<T>::PyHandle(boost::shared_ptr<T> object, boost::weak_ptr<STRM_ProjectManager> manager)
    : m_object(object), m_manager(manager)
{}

template <class T>
PyHandle<T>::~PyHandle() = default;

template <class T>
boost::shared_ptr<T> PyHandle<T>::handledObject() const
{
    const auto object = m_object.lock();
    if (Silence::now())
        return object;
    call(nameOf(static_cast<T*>(nullptr)), object);
    if (!object)
        throw STRM_BadState("recording", 1, "Invalid object", "Invalid object");
    return object;
}

template class PyHandle<STRM_Layer>;
template class PyHandle<Stratum::LayerGroup>;
template class PyHandle<Stratum::Contour>;
template class PyHandle<Stratum::ControlPoint>;
template class PyHandle<Knob::ParameterSet>;

// Eight classes live alike; their special members cannot be written once as a template.
#define RECORDED_HANDLE(Handle, Engine)                                                                                \
    Handle::Handle() { begin(this, #Handle); }                                                                         \
    Handle::Handle(const Handle& other) : PyHandle<Engine>(other) { beginCopy(this, #Handle); }                        \
    Handle::Handle(boost::shared_ptr<Engine> object, boost::weak_ptr<STRM_ProjectManager> manager)                     \
        : PyHandle<Engine>(object, manager)                                                                            \
    {                                                                                                                  \
        begin(this, #Handle);                                                                                          \
    }                                                                                                                  \
    Handle& Handle::operator=(const Handle& other)                                                                     \
    {                                                                                                                  \
        assigned(#Handle);                                                                                             \
        m_object = other.m_object;                                                                                     \
        m_manager = other.m_manager;                                                                                   \
        return *this;                                                                                                  \
    }                                                                                                                  \
    bool Handle::isNull() const { return answer(m_object.expired(), #Handle ".isNull", *this); }                       \
    bool Handle::operator==(const Handle& other) const                                                                 \
    {                                                                                                                  \
        return answer(m_object.lock() == other.m_object.lock(), #Handle ".==", *this, other);                          \
    }                                                                                                                  \
    Handle::~Handle() { end(this, #Handle); }

RECORDED_HANDLE(Layer, STRM_Layer)
RECORDED_HANDLE(LayerGroup, Stratum::LayerGroup)
RECORDED_HANDLE(BezierContour, Stratum::Contour)
RECORDED_HANDLE(XSplineContour, Stratum::Contour)
RECORDED_HANDLE(BezierControlPoint, Stratum::ControlPoint)
RECORDED_HANDLE(XControlPoint, Stratum::ControlPoint)
RECORDED_HANDLE(Parameter, Knob::ParameterSet)
RECORDED_HANDLE(ParameterSet, Knob::ParameterSet)

#undef RECORDED_HANDLE

boost::weak_ptr<STRM_ProjectManager> Layer::projectManager() const
{
    call("Layer.projectManager", *this);
    return m_manager;
}

BezierContour Layer::add_bezier_contour(float time, const QVector<BezierControlPointData>& points, View view)
{
    return call("Layer.add_bezier_contour", *this, time, points, view);
}

XSplineContour Layer::add_xspline_contour(float time, const QVector<XControlPointData>& points, View view)
{
    return call("Layer.add_xspline_contour", *this, time, points, view);
}

QList<boost::shared_ptr<Stratum::Contour>> Layer::getAllContours() const { return call("Layer.getAllContours", *this); }

QList<float> Layer::get_surface_position(unsigned int corner, float time, View view)
{
    return call("Layer.get_surface_position", *this, corner, time, view);
}

Lum_Matrix33 Layer::get_transform_matrix(float time, View view)
{
    return call("Layer.get_transform_matrix", *this, time, view);
}

unsigned int Layer::in_point(View view) const { return call("Layer.in_point", *this, view); }

unsigned int Layer::out_point(View view) const { return call("Layer.out_point", *this, view); }

Parameter Layer::parameter(const QStringList& name_components)
{
    return call("Layer.parameter", *this, name_components);
}

ParameterSet Layer::parameter_set(const QStringList& name_components)
{
    return call("Layer.parameter_set", *this, name_components);
}

void Layer::remove() { call("Layer.remove", *this); }

void Layer::set_parent(LayerGroup* group, unsigned int index) { call("Layer.set_parent", *this, group, index); }

Clip* Layer::tracking_input_clip(bool use_linked_layer)
{
    return call("Layer.tracking_input_clip", *this, use_linked_layer);
}

QString Layer::get_name() { return call("Layer.get_name", *this); }

void Layer::set_name(const QString& name) { call("Layer.set_name", *this, name); }

bool Layer::get_visibility() const { return call("Layer.get_visibility", *this); }

void Layer::set_visibility(bool visible) { call("Layer.set_visibility", *this, visible); }

Fundo::Colour3<float> Layer::get_matte_color() { return call("Layer.get_matte_color", *this); }

void Layer::set_matte_color(Fundo::Colour3<float> color) { call("Layer.set_matte_color", *this, color); }

Fundo::Colour3<float> Layer::get_stroke_color() { return call("Layer.get_stroke_color", *this); }

void Layer::set_stroke_color(Fundo::Colour3<float> color) { call("Layer.set_stroke_color", *this, color); }

bool Layer::get_locked() const { return call("Layer.get_locked", *this); }

void Layer::set_locked(bool locked) { call("Layer.set_locked", *this, locked); }

boost::optional<Layer> Layer::get_link_to_track() { return call("Layer.get_link_to_track", *this); }

void Layer::set_link_to_track(const boost::optional<Layer>& layer) { call("Layer.set_link_to_track", *this, layer); }

int Layer::get_z_order() const { return call("Layer.get_z_order", *this); }

void Layer::set_z_order(int z_order) { call("Layer.set_z_order", *this, z_order); }

bool Layer::get_selected() const { return call("Layer.get_selected", *this); }

void Layer::set_selected(bool selected) { call("Layer.set_selected", *this, selected); }

bool Layer::operator!=(const Layer& other) const
{
    return answer(m_object.lock() != other.m_object.lock(), "Layer.!=", *this, other);
}

unsigned int qHash(const Layer& layer) { return answer(made<unsigned int>(plain(layer)), "Layer.qHash", layer); }

void LayerGroup::insert_child(Layer layer, unsigned int index) { call("LayerGroup.insert_child", *this, layer, index); }

QVector<Layer> LayerGroup::find_layers(const QString& text) { return call("LayerGroup.find_layers", *this, text); }

Parameter LayerGroup::parameter(const QStringList& name_components)
{
    return call("LayerGroup.parameter", *this, name_components);
}

ParameterSet LayerGroup::parameter_set(const QStringList& name_components)
{
    return call("LayerGroup.parameter_set", *this, name_components);
}

QString LayerGroup::get_name() { return call("LayerGroup.get_name", *this); }

void LayerGroup::set_name(const QString& name) { call("LayerGroup.set_name", *this, name); }

QVector<Layer> LayerGroup::get_layers() { return call("LayerGroup.get_layers", *this); }

bool LayerGroup::get_visibility() const { return call("LayerGroup.get_visibility", *this); }

void LayerGroup::set_visibility(bool visible) { call("LayerGroup.set_visibility", *this, visible); }

Fundo::Colour3<float> LayerGroup::get_matte_color() { return call("LayerGroup.get_matte_color", *this); }

void LayerGroup::set_matte_color(Fundo::Colour3<float> color) { call("LayerGroup.set_matte_color", *this, color); }

Fundo::Colour3<float> LayerGroup::get_stroke_color() { return call("LayerGroup.get_stroke_color", *this); }

void LayerGroup::set_stroke_color(Fundo::Colour3<float> color) { call("LayerGroup.set_stroke_color", *this, color); }

bool LayerGroup::get_locked() const { return call("LayerGroup.get_locked", *this); }

void LayerGroup::set_locked(bool locked) { call("LayerGroup.set_locked", *this, locked); }

int LayerGroup::get_z_order() const { return call("LayerGroup.get_z_order", *this); }

void LayerGroup::set_z_order(int z_order) { call("LayerGroup.set_z_order", *this, z_order); }

BezierControlPoint BezierContour::control_point(unsigned int index)
{
    return call("BezierContour.control_point", *this, index);
}

QVector<BezierControlPoint> BezierContour::get_control_points()
{
    return call("BezierContour.get_control_points", *this);
}

QList<float> BezierContour::get_bounding_rect(float time, View view)
{
    return call("BezierContour.get_bounding_rect", *this, time, view);
}

BezierControlPoint BezierContour::insert_point(float time, const BezierControlPointData& data, unsigned int index,
                                               View view)
{
    return call("BezierContour.insert_point", *this, time, data, index, view);
}

Parameter BezierContour::parameter(const QStringList& name_components)
{
    return call("BezierContour.parameter", *this, name_components);
}

ParameterSet BezierContour::parameter_set(const QStringList& name_components)
{
    return call("BezierContour.parameter_set", *this, name_components);
}

void BezierContour::remove() { call("BezierContour.remove", *this); }

unsigned int qHash(const BezierContour& contour)
{
    return answer(made<unsigned int>(plain(contour)), "BezierContour.qHash", contour);
}

XControlPoint XSplineContour::control_point(unsigned int index)
{
    return call("XSplineContour.control_point", *this, index);
}

QVector<XControlPoint> XSplineContour::get_control_points() { return call("XSplineContour.get_control_points", *this); }

QList<float> XSplineContour::get_bounding_rect(float time, View view)
{
    return call("XSplineContour.get_bounding_rect", *this, time, view);
}

XControlPoint XSplineContour::insert_point(float time, const XControlPointData& data, unsigned int index, View view)
{
    return call("XSplineContour.insert_point", *this, time, data, index, view);
}

Parameter XSplineContour::parameter(const QStringList& name_components)
{
    return call("XSplineContour.parameter", *this, name_components);
}

ParameterSet XSplineContour::parameter_set(const QStringList& name_components)
{
    return call("XSplineContour.parameter_set", *this, name_components);
}

void XSplineContour::remove() { call("XSplineContour.remove", *this); }

unsigned int qHash(const XSplineContour& contour)
{
    return answer(made<unsigned int>(plain(contour)), "XSplineContour.qHash", contour);
}

boost::weak_ptr<STRM_ProjectManager> BezierControlPoint::projectManager() const
{
    call("BezierControlPoint.projectManager", *this);
    return m_manager;
}

BezierControlPointData BezierControlPoint::get_point_data(float time, View view)
{
    return call("BezierControlPoint.get_point_data", *this, time, view);
}

void BezierControlPoint::set_point_data(float time, BezierControlPointData data, View view)
{
    call("BezierControlPoint.set_point_data", *this, time, data, view);
}

void BezierControlPoint::update_point_data(float time, BezierControlPointData data, View view)
{
    call("BezierControlPoint.update_point_data", *this, time, data, view);
}

Parameter BezierControlPoint::parameter(const QStringList& name_components)
{
    return call("BezierControlPoint.parameter", *this, name_components);
}

ParameterSet BezierControlPoint::parameter_set(const QStringList& name_components)
{
    return call("BezierControlPoint.parameter_set", *this, name_components);
}

void BezierControlPoint::remove() { call("BezierControlPoint.remove", *this); }

boost::weak_ptr<STRM_ProjectManager> XControlPoint::projectManager() const
{
    call("XControlPoint.projectManager", *this);
    return m_manager;
}

XControlPointData XControlPoint::get_point_data(float time, View view)
{
    return call("XControlPoint.get_point_data", *this, time, view);
}

void XControlPoint::set_point_data(float time, XControlPointData data, View view)
{
    call("XControlPoint.set_point_data", *this, time, data, view);
}

void XControlPoint::update_point_data(float time, XControlPointData data, View view)
{
    call("XControlPoint.update_point_data", *this, time, data, view);
}

Parameter XControlPoint::parameter(const QStringList& name_components)
{
    return call("XControlPoint.parameter", *this, name_components);
}

ParameterSet XControlPoint::parameter_set(const QStringList& name_components)
{
    return call("XControlPoint.parameter_set", *this, name_components);
}

void XControlPoint::remove() { call("XControlPoint.remove", *this); }

QVariant Parameter::get(double time, View view) { return call("Parameter.get", *this, time, view); }

void Parameter::set(const QVariant& value, double time, View view) { call("Parameter.set", *this, value, time, view); }

void Parameter::delete_keyframe(double time, View view) { call("Parameter.delete_keyframe", *this, time, view); }

QStringList Parameter::get_name_components() { return call("Parameter.get_name_components", *this); }

QVector<QPair<View, double>> Parameter::get_keyframes() { return call("Parameter.get_keyframes", *this); }

bool Parameter::operator!=(const Parameter& other) const
{
    return answer(m_object.lock() != other.m_object.lock(), "Parameter.!=", *this, other);
}

unsigned int qHash(const Parameter& parameter)
{
    return answer(made<unsigned int>(plain(parameter)), "Parameter.qHash", parameter);
}

QStringList ParameterSet::get_name_components() { return call("ParameterSet.get_name_components", *this); }

QVector<Parameter> ParameterSet::get_parameters() { return call("ParameterSet.get_parameters", *this); }

QVector<ParameterSet> ParameterSet::get_subsets() { return call("ParameterSet.get_subsets", *this); }

QVector<QPair<View, double>> ParameterSet::get_keyframes() { return call("ParameterSet.get_keyframes", *this); }

QString ParameterSet::get_display_name() { return call("ParameterSet.get_display_name", *this); }

QString ParameterSet::get_script_name() { return call("ParameterSet.get_script_name", *this); }

bool ParameterSet::operator!=(const ParameterSet& other) const
{
    return answer(m_object.lock() != other.m_object.lock(), "ParameterSet.!=", *this, other);
}

unsigned int qHash(const ParameterSet& set)
{
    return answer(made<unsigned int>(plain(set)), "ParameterSet.qHash", set);
}

void Python::setPointConstraint(boost::shared_ptr<Stratum::ControlPoint> master,
                                boost::shared_ptr<Stratum::ControlPoint> point, STRM_ProjectManager* manager,
                                const Knob::Context& context, bool lock_tangents)
{
    call("Python.setPointConstraint", master, point, manager, context, lock_tangents);
}
