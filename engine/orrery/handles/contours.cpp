// The two kinds of contours, which differ in the records of their points only.
#include "point_data.h"

#include <engine/handles/presence.h>
#include <orrery/bezier_contour.h>
#include <orrery/x_spline_contour.h>

using namespace orrery;

namespace {

using EngineContour = boost::shared_ptr<Stratum::Contour>;

template <class Point>
Point handleOf(const Stratum::PointModel& point)
{
    return Point(referred(point).shared_from_this(), point.contourModel().manager().shared_from_this());
}

template <class Point>
Point pointAt(const EngineContour& contour, unsigned int index)
{
    Stratum::ContourModel& model = Stratum::model(*contour);
    const Stratum::Reading reading(model.manager());
    const Stratum::PointModel* const point = reading.of(model).points.at(index);
    return point ? handleOf<Point>(*point) : Point();
}

template <class Point>
QVector<Point> pointsOf(const EngineContour& contour)
{
    Stratum::ContourModel& model = Stratum::model(*contour);
    const Stratum::Reading reading(model.manager());
    const auto& outline = reading.of(model).points;
    QVector<Point> points;
    points.reserve(static_cast<int>(outline.size()));
    for (const Stratum::PointModel& point : outline)
        points.append(handleOf<Point>(point));
    return points;
}

QList<float> boundsOf(const EngineContour& contour, float time, const View& view)
{
    const double at = requireTime(time);
    Stratum::ContourModel& model = Stratum::model(*contour);
    Stratum::Curve curve;
    {
        const Stratum::Reading reading(model.manager());
        curve = reading.of(model).curve(at, resolveView(*reading, view));
    }
    const Stratum::Bounds box = Stratum::bounds(curve);
    QList<float> rectangle;
    if (!box.empty)
        for (const double side : {box.left, box.top, box.right, box.bottom})
            rectangle.append(static_cast<float>(side));
    return rectangle;
}

template <class Point, class Record>
Point insert(const EngineContour& contour, float time, const Record& record, unsigned int index, const View& view)
{
    const double at = requireTime(time);
    const Stratum::PointValues values = valuesOf(record);
    Stratum::ContourModel& model = Stratum::model(*contour);
    Stratum::checkPointValues(model.type(), values);
    Stratum::Edit edit(model.manager());
    edit.writable(model);
    const int id = resolveView(*edit, view);
    const Point point = handleOf<Point>(Stratum::insertPoint(edit, model, values, index, at, id));
    edit.commit();
    return point;
}

void removeContour(const EngineContour& contour)
{
    Stratum::ContourModel& model = Stratum::model(*contour);
    Stratum::Edit edit(model.manager());
    Stratum::removeContour(edit, edit.writable(model));
    edit.commit();
}

Parameter contourParameter(const EngineContour& contour, const QStringList& path)
{
    Stratum::ContourModel& model = Stratum::model(*contour);
    return parameterAt(model, model.manager(), path);
}

ParameterSet contourParameterSet(const EngineContour& contour, const QStringList& path)
{
    Stratum::ContourModel& model = Stratum::model(*contour);
    return parameterSetAt(model, model.manager(), path);
}

} // namespace

BezierContour::BezierContour() = default;
BezierContour::BezierContour(const BezierContour& other) = default;
BezierContour::BezierContour(boost::shared_ptr<Stratum::Contour> contour, boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(contour, manager)
{}
BezierContour& BezierContour::operator=(const BezierContour& other) = default;
BezierContour::~BezierContour() = default;

bool BezierContour::isNull() const { return isGone(m_object, m_manager); }

BezierControlPoint BezierContour::control_point(unsigned int index)
{
    return pointAt<BezierControlPoint>(handledObject(), index);
}

QVector<BezierControlPoint> BezierContour::get_control_points()
{
    return pointsOf<BezierControlPoint>(handledObject());
}

QList<float> BezierContour::get_bounding_rect(float time, View view) { return boundsOf(handledObject(), time, view); }

BezierControlPoint BezierContour::insert_point(float time, const BezierControlPointData& data, unsigned int index,
                                               View view)
{
    return insert<BezierControlPoint>(handledObject(), time, data, index, view);
}

Parameter BezierContour::parameter(const QStringList& name_components)
{
    return contourParameter(handledObject(), name_components);
}

ParameterSet BezierContour::parameter_set(const QStringList& name_components)
{
    return contourParameterSet(handledObject(), name_components);
}

void BezierContour::remove() { removeContour(handledObject()); }

bool BezierContour::operator==(const BezierContour& other) const { return refersToSame(other); }

unsigned int qHash(const BezierContour& contour) { return hashOf(contour); }

XSplineContour::XSplineContour() = default;
XSplineContour::XSplineContour(const XSplineContour& other) = default;
XSplineContour::XSplineContour(boost::shared_ptr<Stratum::Contour> contour,
                               boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(contour, manager)
{}
XSplineContour& XSplineContour::operator=(const XSplineContour& other) = default;
XSplineContour::~XSplineContour() = default;

bool XSplineContour::isNull() const { return isGone(m_object, m_manager); }

XControlPoint XSplineContour::control_point(unsigned int index)
{
    return pointAt<XControlPoint>(handledObject(), index);
}

QVector<XControlPoint> XSplineContour::get_control_points() { return pointsOf<XControlPoint>(handledObject()); }

QList<float> XSplineContour::get_bounding_rect(float time, View view) { return boundsOf(handledObject(), time, view); }

XControlPoint XSplineContour::insert_point(float time, const XControlPointData& data, unsigned int index, View view)
{
    return insert<XControlPoint>(handledObject(), time, data, index, view);
}

Parameter XSplineContour::parameter(const QStringList& name_components)
{
    return contourParameter(handledObject(), name_components);
}

ParameterSet XSplineContour::parameter_set(const QStringList& name_components)
{
    return contourParameterSet(handledObject(), name_components);
}

void XSplineContour::remove() { removeContour(handledObject()); }

bool XSplineContour::operator==(const XSplineContour& other) const { return refersToSame(other); }

unsigned int qHash(const XSplineContour& contour) { return hashOf(contour); }
