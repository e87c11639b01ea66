// Contours and points that come and go. A point that is put into an outline keeps the outline's shape.
#include "derived_keys.h"

#include <algorithm>
#include <engine/stratum/shapes.h>
#include <stratum/enumerations.h>
#include <utility>

namespace Stratum {

namespace {

// Puts a contour or a point into its order, or takes it out.
template <class Item>
void enter(Item& item, OrderedItems& order, std::size_t index)
{
    order.insert(item, index);
    item.setPresent(true);
}

template <class Item>
void leave(Item& item, OrderedItems& order)
{
    order.remove(item);
    item.setPresent(false);
}

template <class Item>
std::unique_ptr<Change> entering(Item& item, OrderedItems& order, std::size_t index)
{
    return change([&item, &order, index] { enter(item, order, index); }, [&item, &order] { leave(item, order); });
}

template <class Item>
std::unique_ptr<Change> leaving(Item& item, OrderedItems& order)
{
    const std::size_t index = order.index(item);
    return change([&item, &order] { leave(item, order); }, [&item, &order, index] { enter(item, order, index); });
}

// The values at a time, and at rest: other views, and the hero view should it become another, show the same.
void writeNewPoint(PointModel& point, const PointValues& values, double time, int view)
{
    for (const PointField field : pointFields(point.contourModel().type())) {
        point.fields[field].setRest(*values[field]);
        if (!Knob::isUnanimated(time))
            point.fields[field].setKey(time, view, *values[field]);
    }
}

} // namespace

// ---- Contours ----

ContourModel& addContour(Edit& edit, LayerModel& layer, int type, const std::vector<PointValues>& points, double time,
                         int view)
{
    ContourModel& contour = *layer.makeContour(type, layer.nextContourId);
    // Nobody sees the points before the contour is there: what undo takes back is the contour.
    for (const PointValues& values : points) {
        PointModel& point = contour.makePoint(contour.nextPointId);
        contour.points.append(point);
        writeNewPoint(point, completed(type, values), time, view);
    }
    edit.perform(entering(contour, layer.contours, layer.contours.size()));
    return contour;
}

void removeContour(Edit& edit, ContourModel& contour)
{
    for (PointModel& point : contour.points)
        releaseFollowers(edit, point, [&](const PointModel& other) { return &other.contourModel() == &contour; });
    edit.perform(leaving(contour, contour.layer().contours));
}

void removeLayer(Edit& edit, LayerModel& layer)
{
    for (ContourModel& contour : layer.contours)
        for (PointModel& point : contour.points)
            releaseFollowers(edit, point,
                             [&layer](const PointModel& other) { return &other.contourModel().layer() == &layer; });
    while (!layer.followers.empty())
        linkToTrack(edit, layer.followers.back(), nullptr);
    linkToTrack(edit, layer, nullptr);
    takeOut(edit, layer);
}

// ---- Points ----

namespace {

// Where a new point goes: the active points beside it and one further on each side, as many as there are, in order.
// They alone decide the shape there. Inactive points lie between the two.
struct Gap
{
    std::vector<PointModel*> around;
    std::vector<PointModel*> between;

    std::size_t segment() const { return around.size() > 2 ? 1 : 0; }
    PointModel& previous() const { return *around[segment()]; }
    PointModel& next() const { return *around[(segment() + 1) % around.size()]; }

    Curve curve(int type, double time, int view) const
    {
        Curve curve;
        curve.type = type;
        for (const PointModel* point : around)
            curve.points.push_back(point->state(time, view));
        return curve;
    }
    // Whether the same two points are neighbours in the outline.
    bool holds(double time, int view) const
    {
        const auto active = [&](const PointModel* point) { return point->ownValue(PointActive, time, view).x != 0; };
        return active(&previous()) && active(&next()) && std::none_of(between.begin(), between.end(), active);
    }
};

Gap gapAt(ContourModel& contour, std::size_t index, double time, int view)
{
    const std::size_t count = contour.points.size();
    Gap gap;
    const auto firstTwo = [&](std::size_t place, std::size_t step) {
        std::vector<PointModel*> found;
        for (std::size_t i = 0; i < count && found.size() < 2; ++i, place += step) {
            PointModel* const point = contour.points.at(place % count);
            if (point->ownValue(PointActive, time, view).x != 0)
                found.push_back(point);
            else if (found.empty())
                gap.between.push_back(point);
        }
        return found;
    };
    const std::vector<PointModel*> ahead = firstTwo(index, 1), back = firstTwo(index + count - 1, count - 1);
    if (back.empty())
        return {};
    if (back[0] == ahead[0])
        gap.around = {back[0]};
    else if (back[1] == ahead[0])
        gap.around = {back[0], ahead[0]};
    else if (back[1] == ahead[1])
        gap.around = {back[1], back[0], ahead[0]};
    else
        gap.around = {back[1], back[0], ahead[0], ahead[1]};
    return gap;
}

// A point that is put onto the curve, or beside it, keeps its place relative to the curve at all times: what a curve is
// cut into at a fixed parameter moves as linearly between keyframes as the curve's points do. While other points are
// neighbours there, it takes no part.
class Insertion
{
public:
    Insertion(ContourModel& contour, PointValues given, std::size_t index, double time, int view)
        : m_contour(contour), m_given(std::move(given)), m_gap(gapAt(contour, index, time, view)), m_time(time),
          m_view(view)
    {}

    void write(PointEdits& edits, PointModel& point)
    {
        const int type = m_contour.type();
        if (m_gap.around.empty()) {
            const PointValues values = completed(type, m_given);
            edits.write(point, values, Knob::unanimated, m_view);
            if (!Knob::isUnanimated(m_time))
                edits.write(point, values, m_time, m_view);
            return;
        }
        place();
        DerivedKeys keys = dependencies();
        keys.writeNew(
            edits, point, [this](double time, int view) { return valuesAt(time, view); }, m_time, m_view);
        if (type == VX_CONTOUR_BEZIER && !m_given[PointHandleBackward] && !m_given[PointHandleForward]) {
            shorten(edits, m_gap.previous(), PointHandleForward, m_parameter);
            shorten(edits, m_gap.next(), PointHandleBackward, 1 - m_parameter);
        }
    }

private:
    // Chooses where on the curve the point goes, and how far beside it.
    void place()
    {
        const Curve curve = m_gap.curve(m_contour.type(), m_time, m_view);
        if (m_given[PointX] && m_given[PointY])
            m_parameter = nearest(curve, m_gap.segment(), m_given[PointX]->x, m_given[PointY]->x);
        const PointState here = pointOn(curve, m_gap.segment(), m_parameter);
        for (const PointField field : {PointX, PointY})
            m_beside[field] = m_given[field] ? m_given[field]->x - here[field].x : 0;
        if (m_contour.type() == VX_CONTOUR_XSPLINE && !m_given[PointWeight])
            m_given[PointWeight] = Knob::Value{bestWeight(curve, m_gap.segment(), here), 0};
    }

    DerivedKeys dependencies() const
    {
        DerivedKeys keys(m_contour.project().settings.heroView);
        std::vector<PointField> fields;
        for (const PointField field : pointFields(m_contour.type()))
            if (description(field).interpolated())
                fields.push_back(field);
        for (const PointModel* point : m_gap.around) {
            keys.dependOn(*point, fields);
            keys.dependOnHeld(point->fields[PointCorner]);
        }
        dependOnNeighbours(keys);
        return keys;
    }

    void dependOnNeighbours(DerivedKeys& keys) const
    {
        for (const PointModel* point : {&m_gap.previous(), &m_gap.next()})
            keys.dependOnHeld(point->fields[PointActive]);
        for (const PointModel* point : m_gap.between)
            keys.dependOnHeld(point->fields[PointActive]);
    }

    PointValues valuesAt(double time, int view) const
    {
        const PointState state = pointOn(m_gap.curve(m_contour.type(), time, view), m_gap.segment(), m_parameter);
        PointValues values = m_given;
        for (const PointField field : pointFields(m_contour.type()))
            if (!values[field])
                values[field] = state[field];
        for (const PointField field : {PointX, PointY})
            values[field] = Knob::Value{state[field].x + m_beside[field], 0};
        if (!m_given[PointActive])
            values[PointActive] = Knob::Value{m_gap.holds(time, view) ? 1.0 : 0.0, 0};
        return values;
    }

    // The tangents beside the new point become shorter, which keeps the shape, for as long as it takes part.
    void shorten(PointEdits& edits, PointModel& point, PointField field, double factor) const
    {
        DerivedKeys keys(m_contour.project().settings.heroView);
        keys.dependOn(point.fields[field]);
        dependOnNeighbours(keys);
        keys.write(edits, point, [&](double time, int view) {
            const Knob::Value handle = point.ownValue(field, time, view);
            const double part = m_gap.holds(time, view) ? factor : 1;
            PointValues values;
            values[field] = Knob::Value{handle.x * part, handle.y * part};
            return values;
        });
    }

    ContourModel& m_contour;
    PointValues m_given;
    const Gap m_gap;
    const double m_time;
    const int m_view;
    double m_parameter = 0.5;
    std::array<double, PointFieldCount> m_beside{};
};

// A point that is not in its contour's order yet, and is dropped where its values are refused.
class NewPoint
{
public:
    explicit NewPoint(ContourModel& contour) : m_contour(contour), m_point(&contour.makePoint(contour.nextPointId))
    {
        m_point->setPresent(false);
    }
    NewPoint(const NewPoint&) = delete;
    NewPoint& operator=(const NewPoint&) = delete;
    ~NewPoint()
    {
        if (m_point) {
            m_contour.allPoints.pop_back();
            --m_contour.nextPointId;
        }
    }
    PointModel& get() { return *m_point; }
    PointModel& keep() { return *std::exchange(m_point, nullptr); }

private:
    ContourModel& m_contour;
    PointModel* m_point;
};

} // namespace

PointModel& insertPoint(Edit& edit, ContourModel& contour, const PointValues& values, std::size_t index, double time,
                        int view)
{
    index = std::min(index, contour.points.size());
    PointEdits edits;
    Insertion insertion(contour, values, index, time, view);
    NewPoint made(contour);
    insertion.write(edits, made.get());
    PointModel& point = made.keep();
    edits.perform(edit);
    edit.perform(entering(point, contour.points, index));
    return point;
}

void removePoint(Edit& edit, PointModel& point)
{
    releaseFollowers(edit, point, [](const PointModel&) { return false; });
    edit.perform(leaving(point, point.contourModel().points));
}

} // namespace Stratum
