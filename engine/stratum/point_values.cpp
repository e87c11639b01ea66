// Single values, and the states that scripts write into points.
#include "derived_keys.h"

#include <cmath>
#include <engine/stratum/shapes.h>
#include <stratum/exception.h>

namespace Stratum {

namespace {

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

// A tangent that is not set turns to stay in line with the one that is, and keeps its length.
void keepInLine(const PointModel& point, PointValues& values, double time, int view)
{
    const auto& corner = values[PointCorner];
    if (corner ? corner->x != 0 : point.ownValue(PointCorner, time, view).x != 0)
        return;
    auto &backward = values[PointHandleBackward], &forward = values[PointHandleForward];
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

void checkValue(const Knob::Description& description, const Knob::Value& value)
{
    refuseValue(description, value.x);
    if (description.kind == Knob::Kind::Point)
        refuseValue(description, value.y);
}

void checkPointValues(int contourType, const PointValues& values)
{
    for (const PointField field : pointFields(contourType))
        if (values[field])
            checkValue(description(field), *values[field]);
}

PointValues completed(int contourType, PointValues values)
{
    for (const PointField field : pointFields(contourType))
        if (!values[field])
            values[field] = description(field).initial;
    return values;
}

void writePoint(Edit& edit, PointModel& point, PointValues values, bool whole, double time, int view)
{
    const int type = point.contourModel().type();
    if (whole)
        values = completed(type, values);
    // Scripts write the point's position; its own values are that less the offset of its master.
    const Knob::Value moved = point.displacement(time, view);
    const double angle = point.turn(time, view);
    for (const PointField field : pointFields(type))
        if (values[field])
            values[field] = withMaster(field, *values[field], {-moved.x, -moved.y}, -angle);
    if (type == VX_CONTOUR_BEZIER && !whole)
        keepInLine(point, values, time, view);
    PointEdits edits;
    edits.write(point, values, time, view);
    edits.perform(edit);
}

void setValue(Edit& edit, Knob::Animation& animation, Knob::Value value, double time, int view)
{
    auto edits = std::make_unique<KeyEdits>();
    addValue(*edits, animation, time, view, value);
    edit.perform(std::move(edits));
}

void removeKey(Edit& edit, Knob::Animation& animation, double time, int view)
{
    const std::vector<Knob::Key> keys = animation.keys(view);
    auto edits = std::make_unique<KeyEdits>();
    if (view == edit->settings.heroView && keys.size() == 1)
        edits->setRest(animation, keys.front().value);
    edits->set(animation, time, view, std::nullopt);
    edit.perform(std::move(edits));
}

} // namespace Stratum
