// Changes of contours, points and values; all as parts of an edit.
#include "key_edits.h"

#include <algorithm>
#include <cmath>
#include <engine/stratum/shapes.h>
#include <set>
#include <stratum/exception.h>
#include <utility>

namespace Stratum {

namespace {

constexpr double beforeAllTimes = -4294967295.0;
constexpr double shortestTime = 1.0 / 4096; // frames; between two keyframes

using Place = std::pair<int, double>; // view and time

bool isZero(const Knob::Value& value) { return value.x == 0 && value.y == 0; }

void putAll(KeyEdits& edits, PointModel& point, const PointValues& values, double time, int view)
{
    const int type = point.contourModel().type();
    for (std::size_t i = 0; i < pointFieldCount(type); ++i)
        if (values.fields[i])
            addValue(edits, point.fields[i], time, view, *values.fields[i]);
}

PointValues completed(int type, PointValues values)
{
    for (std::size_t i = 0; i < pointFieldCount(type); ++i)
        if (!values.fields[i])
            values.fields[i] = pointDescriptions(type)[i].initial;
    return values;
}

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

void refuseValue(const Knob::Description& description, double value)
{
    const QString name = QString::fromLatin1(description.name);
    if (!std::isfinite(value)) {
        const QString message = QString::fromLatin1("%1: %2 is not a finite number").arg(name).arg(value);
        throw STRM_BadArgument(__FILE__, __LINE__, message, message);
    }
    if (value < description.lowest || value > description.highest) {
        const QString message = QString::fromLatin1("%1: %2 is not from %3 to %4")
                                    .arg(name)
                                    .arg(value)
                                    .arg(description.lowest)
                                    .arg(description.highest);
        throw STRM_OutOfRange(__FILE__, __LINE__, message, message);
    }
}

} // namespace

void checkValue(const Knob::Description& description, const Knob::Value& value)
{
    refuseValue(description, value.x);
    if (description.kind == Knob::Kind::Point)
        refuseValue(description, value.y);
}

void checkPointValues(int contourType, const PointValues& values)
{
    for (std::size_t i = 0; i < pointFieldCount(contourType); ++i)
        if (values.fields[i])
            checkValue(pointDescriptions(contourType)[i], *values.fields[i]);
}

// ---- Contours ----

ContourModel& addContour(Edit& edit, LayerModel& layer, int type, const std::vector<PointValues>& points, double time,
                         int view)
{
    ContourModel& contour = *layer.makeContour(type, layer.nextContourId);
    KeyEdits first;
    for (const PointValues& values : points) {
        PointModel& point = contour.makePoint(contour.nextPointId);
        contour.points.append(point);
        putAll(first, point, completed(type, values), time, view);
    }
    // Nobody sees the points before the contour is there: what undo takes back is the contour.
    first.make();
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

// When a point moves: its own keyframes and its masters'.
void collectPlaces(const PointModel& point, std::initializer_list<PointField> fields, std::set<Place>& places)
{
    for (const PointModel* part = &point; part; part = part->masterModel())
        for (const PointField field : fields)
            part->fields[field].forEachKey([&places](const Knob::Key& key) { places.insert({key.view, key.time}); });
}

// Views without keyframes of their own for one of several values answer the hero view's: whatever is written for such a
// view is written at the hero view's times as well.
void addHeroTimes(std::set<Place>& places, int hero)
{
    std::set<int> views;
    std::vector<double> times;
    for (const Place& place : places) {
        views.insert(place.first);
        if (place.first == hero)
            times.push_back(place.second);
    }
    for (const int view : views)
        for (const double time : times)
            places.insert({view, time});
}

std::set<Place> placesOf(const std::vector<const PointModel*>& points, bool bezier)
{
    std::set<Place> places;
    for (const PointModel* point : points) {
        if (bezier)
            collectPlaces(*point, {PointX, PointY, PointHandleBackward, PointHandleForward}, places);
        else
            collectPlaces(*point, {PointX, PointY, PointWeight}, places);
    }
    addHeroTimes(places, points.front()->contourModel().manager().settings.heroView);
    return places;
}

// Where a new point goes: the active points beside it and one further on each side, as many as there are, in order.
// They alone decide the shape there.
struct Gap
{
    std::vector<const PointModel*> around;

    std::size_t segment() const { return around.size() > 2 ? 1 : 0; }
    Curve curve(int type, double time, int view) const
    {
        Curve curve;
        curve.type = type;
        for (const PointModel* point : around)
            curve.points.push_back(point->state(time, view));
        return curve;
    }
};

Gap gapAt(const ContourModel& contour, std::size_t index, double time, int view)
{
    const std::size_t count = contour.points.size();
    const auto firstTwo = [&](std::size_t place, std::size_t step) {
        std::vector<const PointModel*> found;
        for (std::size_t i = 0; i < count && found.size() < 2; ++i, place += step) {
            const PointModel* const point = contour.points.at(place % count);
            if (point->ownValue(PointActive, time, view).x != 0)
                found.push_back(point);
        }
        return found;
    };
    const std::vector<const PointModel*> ahead = firstTwo(index, 1), back = firstTwo(index + count - 1, count - 1);
    if (back.empty())
        return {};
    if (back[0] == ahead[0])
        return {{back[0]}};
    if (back[1] == ahead[0])
        return {{back[0], ahead[0]}};
    if (back[1] == ahead[1])
        return {{back[1], back[0], ahead[0]}};
    return {{back[1], back[0], ahead[0], ahead[1]}};
}

// The values of a new point at one time, as they follow from the curve.
void putOnCurve(PointValues& values, const CurvePoint& point, bool bezier)
{
    const auto choose = [&values](PointField field, Knob::Value value) {
        if (!values.fields[field])
            values.fields[field] = value;
    };
    choose(PointActive, {1, 0});
    choose(PointCorner, {0, 0});
    choose(PointX, {point.x, 0});
    choose(PointY, {point.y, 0});
    choose(PointEdgeWidth, {point.edgeWidth, 0});
    choose(PointEdgeAngleRatio, {point.edgeAngleRatio, 0});
    if (bezier) {
        choose(PointHandleBackward, point.backward);
        choose(PointHandleForward, point.forward);
    } else {
        choose(PointWeight, {point.weight, 0});
    }
}

// The tangents beside a new point become shorter at all times, which keeps the shape at all times: what a curve is cut
// into at a fixed parameter moves as linearly between keyframes as the curve's points do.
void shorten(KeyEdits& edits, PointModel& point, PointField field, double factor)
{
    Knob::Animation& handle = point.fields[field];
    const auto shorter = [factor](const Knob::Value& value) { return Knob::Value{value.x * factor, value.y * factor}; };
    if (!isZero(handle.rest()))
        edits.setRest(handle, shorter(handle.rest()));
    handle.forEachKey([&](const Knob::Key& key) {
        if (!isZero(key.value))
            edits.set(handle, key.time, key.view, shorter(key.value));
    });
}

class Insertion
{
public:
    Insertion(ContourModel& contour, PointValues given, std::size_t index, double time, int view)
        : m_contour(contour), m_given(std::move(given)), m_gap(gapAt(contour, index, time, view)), m_time(time),
          m_view(view), m_bezier(contour.type() == VX_CONTOUR_BEZIER)
    {}

    // Writes the new point's keyframes, and what its neighbours need.
    void write(KeyEdits& edits, PointModel& point)
    {
        if (m_gap.around.empty()) {
            putAll(edits, point, completed(m_contour.type(), m_given), m_time, m_view);
            return;
        }
        const Curve curve = m_gap.curve(m_contour.type(), m_time, m_view);
        if (m_given.fields[PointX] && m_given.fields[PointY])
            m_parameter = nearest(curve, m_gap.segment(), m_given.fields[PointX]->x, m_given.fields[PointY]->x);
        writeAlong(edits, point, split(curve, m_gap.segment(), m_parameter));
        if (m_bezier && !m_given.fields[PointHandleBackward] && !m_given.fields[PointHandleForward])
            shortenNeighbours(edits);
    }

private:
    // A point that is put beside the curve keeps its distance from it while the curve moves.
    void writeAlong(KeyEdits& edits, PointModel& point, const CurvePoint& here)
    {
        PointValues now = m_given;
        putOnCurve(now, here, m_bezier);
        const double offsetX = now.fields[PointX]->x - here.x, offsetY = now.fields[PointY]->x - here.y;
        for (const auto& [view, time] : placesOf(m_gap.around, m_bezier)) {
            const Curve curve = m_gap.curve(m_contour.type(), time, view);
            const CurveVertex place = evaluate(curve, m_gap.segment(), m_parameter);
            edits.set(point.fields[PointX], time, view, Knob::Value{place.x + offsetX, 0});
            edits.set(point.fields[PointY], time, view, Knob::Value{place.y + offsetY, 0});
            if (!m_bezier)
                continue;
            const CurvePoint there = split(curve, m_gap.segment(), m_parameter);
            if (!m_given.fields[PointHandleBackward])
                edits.set(point.fields[PointHandleBackward], time, view, there.backward);
            if (!m_given.fields[PointHandleForward])
                edits.set(point.fields[PointHandleForward], time, view, there.forward);
        }
        putAll(edits, point, now, m_time, m_view);
    }

    void shortenNeighbours(KeyEdits& edits)
    {
        auto& previous = const_cast<PointModel&>(*m_gap.around[m_gap.segment()]);
        auto& next = const_cast<PointModel&>(*m_gap.around[(m_gap.segment() + 1) % m_gap.around.size()]);
        shorten(edits, previous, PointHandleForward, m_parameter);
        shorten(edits, next, PointHandleBackward, 1 - m_parameter);
    }

    ContourModel& m_contour;
    const PointValues m_given;
    const Gap m_gap;
    const double m_time;
    const int m_view;
    const bool m_bezier;
    double m_parameter = 0.5;
};

} // namespace

PointModel& insertPoint(Edit& edit, ContourModel& contour, const PointValues& values, std::size_t index, double time,
                        int view)
{
    index = std::min(index, contour.points.size());
    auto edits = std::make_unique<KeyEdits>();
    Insertion insertion(contour, values, index, time, view);
    PointModel& point = contour.makePoint(contour.nextPointId);
    point.setPresent(false);
    insertion.write(*edits, point);
    edit.perform(std::move(edits));
    edit.perform(entering(point, contour.points, index));
    return point;
}

void removePoint(Edit& edit, PointModel& point)
{
    releaseFollowers(edit, point, [](const PointModel&) { return false; });
    edit.perform(leaving(point, point.contourModel().points));
}

namespace {

// A tangent that is not set turns to stay in line with the one that is, and keeps its length.
void keepInLine(const PointModel& point, PointValues& values, double time, int view)
{
    const auto& corner = values.fields[PointCorner];
    if (corner ? corner->x != 0 : point.ownValue(PointCorner, time, view).x != 0)
        return;
    auto &backward = values.fields[PointHandleBackward], &forward = values.fields[PointHandleForward];
    if (bool(backward) == bool(forward))
        return;
    const Knob::Value set = backward ? *backward : *forward;
    const Knob::Value other = point.ownValue(backward ? PointHandleForward : PointHandleBackward, time, view);
    const double length = std::hypot(set.x, set.y), otherLength = std::hypot(other.x, other.y);
    if (length == 0 || otherLength == 0)
        return;
    (backward ? forward : backward) = Knob::Value{-set.x / length * otherLength, -set.y / length * otherLength};
}

} // namespace

void writePoint(Edit& edit, PointModel& point, PointValues values, bool whole, double time, int view)
{
    const int type = point.contourModel().type();
    if (whole)
        values = completed(type, values);
    // What is written is where the point shall be; its own values leave out what the master adds.
    if (!Knob::isUnanimated(time)) {
        const Knob::Value moved = point.displacement(time, view);
        if (values.fields[PointX])
            values.fields[PointX]->x -= moved.x;
        if (values.fields[PointY])
            values.fields[PointY]->x -= moved.y;
        if (type == VX_CONTOUR_BEZIER) {
            const double angle = point.turn(time, view), c = std::cos(angle), s = std::sin(angle);
            for (const PointField field : {PointHandleBackward, PointHandleForward})
                if (angle != 0 && values.fields[field])
                    values.fields[field] = Knob::Value{c * values.fields[field]->x + s * values.fields[field]->y,
                                                       c * values.fields[field]->y - s * values.fields[field]->x};
        }
    }
    if (type == VX_CONTOUR_BEZIER && !whole)
        keepInLine(point, values, time, view);
    auto edits = std::make_unique<KeyEdits>();
    putAll(*edits, point, values, time, view);
    if (!edits->empty())
        edit.perform(std::move(edits));
}

// ---- Masters ----

namespace {

// Both sides of a link.
class Relink : public Change
{
public:
    Relink(PointModel& point, PointModel* master, MasterLink link) : m_point(point), m_master(master), m_link(link) {}

    void make() override
    {
        PointModel* const former = m_point.masterModel();
        const MasterLink formerLink = m_point.link() ? *m_point.link() : MasterLink();
        m_point.setMaster(m_master, m_link);
        m_master = former;
        m_link = formerLink;
    }
    void takeBack() override { make(); }

private:
    PointModel& m_point;
    PointModel* m_master;
    MasterLink m_link;
};

// Writes what the master adds into the point's own keyframes, at every time at which either changes its speed.
void keepPlace(KeyEdits& edits, PointModel& point)
{
    const int hero = point.contourModel().manager().settings.heroView;
    std::set<Place> places;
    collectPlaces(point, {PointX, PointY, PointHandleBackward, PointHandleForward}, places);
    std::set<int> views{hero};
    for (const Place& place : places)
        views.insert(place.first);
    for (const PointModel* part = &point; part->masterModel(); part = part->masterModel())
        for (const int view : views) {
            const MasterLink& link = *part->link();
            places.insert({view, link.time});
            // Where the master was moved since, the point jumps when the link begins.
            if (part->masterModel()->position(link.time, view) != link.reference)
                places.insert({view, link.time - shortestTime});
        }
    addHeroTimes(places, hero);
    const bool bezier = point.contourModel().type() == VX_CONTOUR_BEZIER;
    const bool turns = bezier && point.link()->lockTangents;
    for (const auto& [view, time] : places) {
        const CurvePoint state = point.state(time, view);
        edits.set(point.fields[PointX], time, view, Knob::Value{state.x, 0});
        edits.set(point.fields[PointY], time, view, Knob::Value{state.y, 0});
        if (turns) {
            edits.set(point.fields[PointHandleBackward], time, view, state.backward);
            edits.set(point.fields[PointHandleForward], time, view, state.forward);
        }
    }
}

void unlink(Edit& edit, PointModel& point)
{
    if (!point.masterModel())
        return;
    auto edits = std::make_unique<KeyEdits>();
    keepPlace(*edits, point);
    edit.perform(std::move(edits));
    edit.perform(std::make_unique<Relink>(point, nullptr, MasterLink()));
}

} // namespace

void releaseFollowers(Edit& edit, PointModel& point, const std::function<bool(const PointModel&)>& leaves)
{
    if (!point.links())
        return;
    std::vector<PointModel*> staying;
    for (const PointModel::Links& follower : point.links()->followers)
        if (follower.point.present() && !leaves(follower.point))
            staying.push_back(&follower.point);
    for (PointModel* follower : staying)
        unlink(edit, *follower);
}

void setMaster(Edit& edit, PointModel& point, PointModel* master, const Knob::Context& context, bool lockTangents)
{
    for (const PointModel* link = master; link; link = link->masterModel()) {
        if (link == &point) {
            const QString message =
                QString::fromLatin1("master point %1: point %2 cannot follow itself, directly or not")
                    .arg(master->id())
                    .arg(point.id());
            throw STRM_BadArgument(__FILE__, __LINE__, message, message);
        }
    }
    unlink(edit, point);
    if (!master)
        return;
    MasterLink link;
    link.time = Knob::isUnanimated(context.time) ? beforeAllTimes : context.time;
    link.reference = master->position(context.time, context.viewId);
    link.lockTangents = lockTangents;
    link.referenceAngle = master->ownAngle(context.time, context.viewId);
    edit.perform(std::make_unique<Relink>(point, master, link));
}

// ---- Single values ----

void setValue(Edit& edit, Knob::Animation& animation, Knob::Value value, double time, int view)
{
    auto edits = std::make_unique<KeyEdits>();
    addValue(*edits, animation, time, view, value);
    edit.perform(std::move(edits));
}

void removeKey(Edit& edit, Knob::Animation& animation, double time, int view)
{
    auto edits = std::make_unique<KeyEdits>();
    edits->set(animation, time, view, std::nullopt);
    edit.perform(std::move(edits));
}

} // namespace Stratum
