// The two kinds of control points, which differ in their records only.
#include "point_data.h"

#include <engine/handles/presence.h>
#include <orrery/bezier_control_point.h>
#include <orrery/x_control_point.h>

using namespace orrery;

namespace {

using EnginePoint = boost::shared_ptr<Stratum::ControlPoint>;

template <class Record>
Record readPoint(const EnginePoint& point, float time, const View& view)
{
    const double at = requireTime(time);
    Stratum::PointModel& model = Stratum::model(*point);
    Record record;
    const Stratum::Reading reading(model.contourModel().manager());
    write(reading.of(model).state(at, resolveView(*reading, view)), record);
    return record;
}

template <class Record>
void writePoint(const EnginePoint& point, float time, const Record& record, const View& view, bool whole)
{
    const double at = requireTime(time);
    const Stratum::PointValues values = valuesOf(record);
    Stratum::PointModel& model = Stratum::model(*point);
    Stratum::checkPointValues(model.contourModel().type(), values);
    Stratum::Edit edit(model.contourModel().manager());
    Stratum::writePoint(edit, edit.writable(model), values, whole, at, resolveView(*edit, view));
    edit.commit();
}

void removePoint(const EnginePoint& point)
{
    Stratum::PointModel& model = Stratum::model(*point);
    Stratum::Edit edit(model.contourModel().manager());
    Stratum::removePoint(edit, edit.writable(model));
    edit.commit();
}

Parameter pointParameter(const EnginePoint& point, const QStringList& path)
{
    Stratum::PointModel& model = Stratum::model(*point);
    return parameterAt(model, model.contourModel().manager(), path);
}

ParameterSet pointParameterSet(const EnginePoint& point, const QStringList& path)
{
    Stratum::PointModel& model = Stratum::model(*point);
    return parameterSetAt(model, model.contourModel().manager(), path);
}

} // namespace

BezierControlPoint::BezierControlPoint() = default;
BezierControlPoint::BezierControlPoint(const BezierControlPoint& other) = default;
BezierControlPoint::BezierControlPoint(boost::shared_ptr<Stratum::ControlPoint> point,
                                       boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(point, manager)
{}
BezierControlPoint& BezierControlPoint::operator=(const BezierControlPoint& other) = default;
BezierControlPoint::~BezierControlPoint() = default;

bool BezierControlPoint::isNull() const { return isGone(m_object, m_manager); }

boost::weak_ptr<STRM_ProjectManager> BezierControlPoint::projectManager() const { return m_manager; }

BezierControlPointData BezierControlPoint::get_point_data(float time, View view)
{
    return readPoint<BezierControlPointData>(handledObject(), time, view);
}

void BezierControlPoint::set_point_data(float time, BezierControlPointData data, View view)
{
    writePoint(handledObject(), time, data, view, true);
}

void BezierControlPoint::update_point_data(float time, BezierControlPointData data, View view)
{
    writePoint(handledObject(), time, data, view, false);
}

Parameter BezierControlPoint::parameter(const QStringList& name_components)
{
    return pointParameter(handledObject(), name_components);
}

ParameterSet BezierControlPoint::parameter_set(const QStringList& name_components)
{
    return pointParameterSet(handledObject(), name_components);
}

void BezierControlPoint::remove() { removePoint(handledObject()); }

bool BezierControlPoint::operator==(const BezierControlPoint& other) const { return refersToSame(other); }

XControlPoint::XControlPoint() = default;
XControlPoint::XControlPoint(const XControlPoint& other) = default;
XControlPoint::XControlPoint(boost::shared_ptr<Stratum::ControlPoint> point,
                             boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(point, manager)
{}
XControlPoint& XControlPoint::operator=(const XControlPoint& other) = default;
XControlPoint::~XControlPoint() = default;

bool XControlPoint::isNull() const { return isGone(m_object, m_manager); }

boost::weak_ptr<STRM_ProjectManager> XControlPoint::projectManager() const { return m_manager; }

XControlPointData XControlPoint::get_point_data(float time, View view)
{
    return readPoint<XControlPointData>(handledObject(), time, view);
}

void XControlPoint::set_point_data(float time, XControlPointData data, View view)
{
    writePoint(handledObject(), time, data, view, true);
}

void XControlPoint::update_point_data(float time, XControlPointData data, View view)
{
    writePoint(handledObject(), time, data, view, false);
}

Parameter XControlPoint::parameter(const QStringList& name_components)
{
    return pointParameter(handledObject(), name_components);
}

ParameterSet XControlPoint::parameter_set(const QStringList& name_components)
{
    return pointParameterSet(handledObject(), name_components);
}

void XControlPoint::remove() { removePoint(handledObject()); }

bool XControlPoint::operator==(const XControlPoint& other) const { return refersToSame(other); }
