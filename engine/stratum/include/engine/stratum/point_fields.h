// What a control point has: one row per field. The model, curves, insertion, links, snapshots, saving and the records
// of scripts go by this table, so a field is added here and where the public interface names it.
#pragma once

#include <array>
#include <engine/knob/parameter_tree.h>
#include <optional>
#include <vector>

namespace Stratum {

enum PointField {
    PointActive,
    PointCorner,
    PointX,
    PointY,
    PointEdgeWidth,
    PointEdgeAngleRatio,
    PointHandleBackward, // Bezier
    PointHandleForward,
    PointWeight, // X-spline
    PointFieldCount
};

// What a master does to a field of the points that follow it.
enum class MasterEffect { None, MovesX, MovesY, Turns };

struct PointFieldRow
{
    Knob::Description description;
    bool bezier;
    bool xSpline;
    MasterEffect effect;
};

constexpr PointFieldRow pointFieldTable[] = {
    {Knob::flag("active", QT_TRANSLATE_NOOP("Parameter", "Active"), true), true, true, MasterEffect::None},
    {Knob::flag("corner", QT_TRANSLATE_NOOP("Parameter", "Corner"), false), true, true, MasterEffect::None},
    {Knob::coordinate("x", QT_TRANSLATE_NOOP("Parameter", "X"), 0), true, true, MasterEffect::MovesX},
    {Knob::coordinate("y", QT_TRANSLATE_NOOP("Parameter", "Y"), 0), true, true, MasterEffect::MovesY},
    {Knob::coordinate("edge_width", QT_TRANSLATE_NOOP("Parameter", "Edge width"), 0), true, true, MasterEffect::None},
    {Knob::number("edge_angle_ratio", QT_TRANSLATE_NOOP("Parameter", "Edge angle ratio"), 0, 0, 1), true, true,
     MasterEffect::None},
    {Knob::offset("handle_offset_backward", QT_TRANSLATE_NOOP("Parameter", "Backward tangent")), true, false,
     MasterEffect::Turns},
    {Knob::offset("handle_offset_forward", QT_TRANSLATE_NOOP("Parameter", "Forward tangent")), true, false,
     MasterEffect::Turns},
    {Knob::number("weight", QT_TRANSLATE_NOOP("Parameter", "Weight"), -1, -1, 1), false, true, MasterEffect::None},
};
static_assert(std::size(pointFieldTable) == PointFieldCount, "a row for each field");

// The fields of the points of a contour, in the order of the enumeration.
const std::vector<PointField>& pointFields(int contourType);
inline const Knob::Description& description(PointField field) { return pointFieldTable[field].description; }

// A point at one time in one view.
struct PointState
{
    std::array<Knob::Value, PointFieldCount> values{};

    Knob::Value& operator[](PointField field) { return values[field]; }
    const Knob::Value& operator[](PointField field) const { return values[field]; }
    bool operator==(const PointState& other) const { return values == other.values; }

    double x() const { return values[PointX].x; }
    double y() const { return values[PointY].x; }
    Knob::Value position() const { return {x(), y()}; }
    bool active() const { return values[PointActive].x != 0; }
    bool corner() const { return values[PointCorner].x != 0; }
    double edgeWidth() const { return values[PointEdgeWidth].x; }
    double weight() const { return values[PointWeight].x; }
    // From the point to the ends of its tangents.
    const Knob::Value& backward() const { return values[PointHandleBackward]; }
    const Knob::Value& forward() const { return values[PointHandleForward]; }

    void setPosition(const Knob::Value& position)
    {
        values[PointX].x = position.x;
        values[PointY].x = position.y;
    }
};

// A value for each field of a new point, or of one that is written.
using PointValues = std::array<std::optional<Knob::Value>, PointFieldCount>;

} // namespace Stratum
