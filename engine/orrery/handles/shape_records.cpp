// Copies the fields of records into point values and back.
#include "shape_records.h"

namespace orrery {

namespace {

void put(std::optional<Knob::Value>& field, boost::optional<bool> value)
{
    if (value)
        field = Knob::Value{*value ? 1.0 : 0.0, 0};
}

void put(std::optional<Knob::Value>& field, boost::optional<float> value)
{
    if (value)
        field = Knob::Value{*value, 0};
}

void put(std::optional<Knob::Value>& field, boost::optional<QPointF> value)
{
    if (value)
        field = Knob::Value{value->x(), value->y()};
}

template <class Record>
Stratum::PointValues commonValues(const Record& record)
{
    Stratum::PointValues values;
    put(values.fields[Stratum::PointActive], record.get_active());
    put(values.fields[Stratum::PointCorner], record.get_corner());
    put(values.fields[Stratum::PointX], record.get_x());
    put(values.fields[Stratum::PointY], record.get_y());
    put(values.fields[Stratum::PointEdgeWidth], record.get_edge_width());
    put(values.fields[Stratum::PointEdgeAngleRatio], record.get_edge_angle_ratio());
    return values;
}

template <class Record>
void writeCommon(const Stratum::CurvePoint& state, Record& record)
{
    record.set_active(state.active);
    record.set_corner(state.corner);
    record.set_x(static_cast<float>(state.x));
    record.set_y(static_cast<float>(state.y));
    record.set_edge_width(static_cast<float>(state.edgeWidth));
    record.set_edge_angle_ratio(static_cast<float>(state.edgeAngleRatio));
}

} // namespace

Stratum::PointValues valuesOf(const BezierControlPointData& record)
{
    Stratum::PointValues values = commonValues(record);
    put(values.fields[Stratum::PointHandleBackward], record.get_handle_offset_backward());
    put(values.fields[Stratum::PointHandleForward], record.get_handle_offset_forward());
    return values;
}

Stratum::PointValues valuesOf(const XControlPointData& record)
{
    Stratum::PointValues values = commonValues(record);
    put(values.fields[Stratum::PointWeight], record.get_weight());
    return values;
}

void write(const Stratum::CurvePoint& state, BezierControlPointData& record)
{
    writeCommon(state, record);
    record.set_handle_offset_backward(QPointF(state.backward.x, state.backward.y));
    record.set_handle_offset_forward(QPointF(state.forward.x, state.forward.y));
}

void write(const Stratum::CurvePoint& state, XControlPointData& record)
{
    writeCommon(state, record);
    record.set_weight(static_cast<float>(state.weight));
}

} // namespace orrery
