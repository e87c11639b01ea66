// Contours and points as they are read: fields over time, masters, curves.
#include <boost/make_shared.hpp>
#include <cassert>
#include <cmath>
#include <engine/stratum/by_id.h>
#include <engine/stratum/shapes.h>
#include <stratum/exception.h>

namespace Stratum {

namespace {

Knob::Value turned(const Knob::Value& value, double angle)
{
    if (angle == 0)
        return value;
    const double c = std::cos(angle), s = std::sin(angle);
    return {c * value.x - s * value.y, s * value.x + c * value.y};
}

void requireId(unsigned int id)
{
    if (id <= largestId)
        return;
    const QString message = QString::fromLatin1("the numbers of contours or points are used up");
    throw STRM_OutOfRange(__FILE__, __LINE__, message, message);
}

} // namespace

Knob::Value withMaster(PointField field, const Knob::Value& own, const Knob::Value& moved, double angle)
{
    switch (pointFieldTable[field].effect) {
    case MasterEffect::MovesX:
        return {own.x + moved.x, 0};
    case MasterEffect::MovesY:
        return {own.x + moved.y, 0};
    case MasterEffect::Turns:
        return turned(own, angle);
    case MasterEffect::None:
        break;
    }
    return own;
}

// ---- Points ----

PointModel::PointModel(ContourModel& contour, unsigned int id) : ControlPoint(&contour, id)
{
    for (std::size_t i = 0; i < fields.size(); ++i)
        fields[i].setRest(pointFieldTable[i].description.initial);
}

PointModel::~PointModel() = default;

ContourModel& PointModel::contourModel() const { return static_cast<ContourModel&>(*contour()); }

bool PointModel::present() const { return m_present.load(std::memory_order_acquire) && contourModel().present(); }

void PointModel::requireWritable() const { contourModel().requireWritable(); }

PointModel::Links& PointModel::makeLinks()
{
    if (!m_links)
        m_links = std::make_unique<Links>(*this);
    return *m_links;
}

void PointModel::exchangeMaster(PointModel* master, MasterLink& link) noexcept
{
    assert(m_links && (!master || master->m_links));
    std::swap(m_links->link, link);
    m_links->follow(master ? &master->m_links->followers : nullptr);
    m_master.store(master, std::memory_order_release);
}

Knob::Value PointModel::ownValue(PointField field, double time, int view) const
{
    return fields[field].at(time, view, contourModel().project().settings.heroView, description(field).interpolated());
}

Knob::Value PointModel::displacement(double time, int view) const
{
    Knob::Value moved;
    if (Knob::isUnanimated(time))
        return moved;
    const int hero = contourModel().project().settings.heroView;
    for (const PointModel* point = this; point->masterModel() && time >= point->link()->time;
         point = point->masterModel()) {
        const PointModel& master = *point->masterModel();
        const Knob::Value before = point->link()->position.at(time, view, hero, false);
        moved.x += master.ownValue(PointX, time, view).x - before.x;
        moved.y += master.ownValue(PointY, time, view).x - before.y;
    }
    return moved;
}

Knob::Value PointModel::position(double time, int view) const
{
    const Knob::Value moved = displacement(time, view);
    return {ownValue(PointX, time, view).x + moved.x, ownValue(PointY, time, view).x + moved.y};
}

double PointModel::ownAngle(double time, int view) const
{
    if (contourModel().type() != VX_CONTOUR_BEZIER)
        return 0;
    const Knob::Value forward = ownValue(PointHandleForward, time, view);
    if (forward.x != 0 || forward.y != 0)
        return std::atan2(forward.y, forward.x);
    const Knob::Value backward = ownValue(PointHandleBackward, time, view);
    return backward.x != 0 || backward.y != 0 ? std::atan2(-backward.y, -backward.x) : 0;
}

double PointModel::turn(double time, int view) const
{
    double angle = 0;
    if (Knob::isUnanimated(time))
        return angle;
    const int hero = contourModel().project().settings.heroView;
    for (const PointModel* point = this;
         point->masterModel() && point->link()->lockTangents && time >= point->link()->time;
         point = point->masterModel())
        angle += point->masterModel()->ownAngle(time, view) - point->link()->angle.at(time, view, hero, false).x;
    return angle;
}

PointState PointModel::state(double time, int view) const
{
    PointState state;
    const Knob::Value moved = displacement(time, view);
    const double angle = turn(time, view);
    for (const PointField field : pointFields(contourModel().type()))
        state[field] = withMaster(field, ownValue(field, time, view), moved, angle);
    return state;
}

// ---- Contours ----

Corners LayerModel::surface(int view) const
{
    Bounds box;
    for (const ContourModel& contour : contours) {
        const Bounds part = bounds(contour.curve(inPoint(), view));
        if (!part.empty) {
            box.add(part.left, part.top);
            box.add(part.right, part.bottom);
        }
    }
    return {{{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}}};
}

ContourModel* LayerModel::makeContour(int type, unsigned int id)
{
    if (id < nextContourId)
        return nullptr;
    requireId(id);
    allContours.push_back(boost::make_shared<ContourModel>(*this, type, id));
    allContours.back()->setPresent(false);
    nextContourId = id + 1;
    return allContours.back().get();
}

ContourModel* LayerModel::findContour(unsigned int id) const { return withId(allContours, id); }

ContourModel::ContourModel(LayerModel& layer, int type, unsigned int id) : Contour(type), m_layer(layer), m_id(id)
{
    settings[0].setRest({double(type), 0});
}

ContourModel::~ContourModel() = default;

PointModel* ContourModel::find(unsigned int id) const { return withId(allPoints, id); }

boost::shared_ptr<ControlPoint> ContourModel::pointByID(unsigned int id)
{
    const Reading lock(manager());
    PointModel* point = find(id);
    return point ? point->shared_from_this() : boost::shared_ptr<ControlPoint>();
}

PointModel& ContourModel::makePoint(unsigned int id)
{
    requireId(id);
    allPoints.push_back(boost::make_shared<PointModel>(*this, id));
    nextPointId = id + 1;
    return *allPoints.back();
}

Curve ContourModel::curve(double time, int view) const
{
    Curve curve;
    curve.type = type();
    curve.points.reserve(points.size());
    const double wider = settings[1].at(time, view, project().settings.heroView, true).x;
    for (const PointModel& point : points) {
        PointState state = point.state(time, view);
        if (!state.active())
            continue;
        state[PointEdgeWidth].x += wider;
        curve.points.push_back(state);
    }
    return curve;
}

} // namespace Stratum
