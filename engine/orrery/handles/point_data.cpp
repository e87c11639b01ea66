// The records of control points, and what they are to the engine.
#include "point_data.h"

#include <tuple>

BezierControlPointData::BezierControlPointData(boost::optional<bool> active, boost::optional<bool> corner,
                                               boost::optional<float> x, boost::optional<float> y,
                                               boost::optional<float> edge_width,
                                               boost::optional<float> edge_angle_ratio,
                                               boost::optional<QPointF> handle_offset_backward,
                                               boost::optional<QPointF> handle_offset_forward)
    : m_active(active), m_corner(corner), m_x(x), m_y(y), m_edge_width(edge_width),
      m_edge_angle_ratio(edge_angle_ratio), m_handle_offset_backward(handle_offset_backward),
      m_handle_offset_forward(handle_offset_forward)
{}

BezierControlPointData::BezierControlPointData(const BezierControlPointData&) = default;

BezierControlPointData& BezierControlPointData::operator=(const BezierControlPointData&) = default;

BezierControlPointData::~BezierControlPointData() = default;

boost::optional<bool> BezierControlPointData::get_active() const { return m_active; }

void BezierControlPointData::set_active(boost::optional<bool> active) { m_active = active; }

boost::optional<bool> BezierControlPointData::get_corner() const { return m_corner; }

void BezierControlPointData::set_corner(boost::optional<bool> corner) { m_corner = corner; }

boost::optional<float> BezierControlPointData::get_x() const { return m_x; }

void BezierControlPointData::set_x(boost::optional<float> x) { m_x = x; }

boost::optional<float> BezierControlPointData::get_y() const { return m_y; }

void BezierControlPointData::set_y(boost::optional<float> y) { m_y = y; }

boost::optional<float> BezierControlPointData::get_edge_width() const { return m_edge_width; }

void BezierControlPointData::set_edge_width(boost::optional<float> edge_width) { m_edge_width = edge_width; }

boost::optional<float> BezierControlPointData::get_edge_angle_ratio() const { return m_edge_angle_ratio; }

void BezierControlPointData::set_edge_angle_ratio(boost::optional<float> edge_angle_ratio)
{
    m_edge_angle_ratio = edge_angle_ratio;
}

boost::optional<QPointF> BezierControlPointData::get_handle_offset_backward() const { return m_handle_offset_backward; }

void BezierControlPointData::set_handle_offset_backward(boost::optional<QPointF> offset)
{
    m_handle_offset_backward = offset;
}

boost::optional<QPointF> BezierControlPointData::get_handle_offset_forward() const { return m_handle_offset_forward; }

void BezierControlPointData::set_handle_offset_forward(boost::optional<QPointF> offset)
{
    m_handle_offset_forward = offset;
}

bool BezierControlPointData::operator==(const BezierControlPointData& other) const
{
    return orrery::valuesOf(*this) == orrery::valuesOf(other);
}

XControlPointData::XControlPointData(boost::optional<bool> active, boost::optional<bool> corner,
                                     boost::optional<float> x, boost::optional<float> y, boost::optional<float> weight,
                                     boost::optional<float> edge_width, boost::optional<float> edge_angle_ratio)
    : m_active(active), m_corner(corner), m_x(x), m_y(y), m_weight(weight), m_edge_width(edge_width),
      m_edge_angle_ratio(edge_angle_ratio)
{}

XControlPointData::XControlPointData(const XControlPointData&) = default;

XControlPointData& XControlPointData::operator=(const XControlPointData&) = default;

XControlPointData::~XControlPointData() = default;

boost::optional<bool> XControlPointData::get_active() const { return m_active; }

void XControlPointData::set_active(boost::optional<bool> active) { m_active = active; }

boost::optional<bool> XControlPointData::get_corner() const { return m_corner; }

void XControlPointData::set_corner(boost::optional<bool> corner) { m_corner = corner; }

boost::optional<float> XControlPointData::get_x() const { return m_x; }

void XControlPointData::set_x(boost::optional<float> x) { m_x = x; }

boost::optional<float> XControlPointData::get_y() const { return m_y; }

void XControlPointData::set_y(boost::optional<float> y) { m_y = y; }

boost::optional<float> XControlPointData::get_weight() const { return m_weight; }

void XControlPointData::set_weight(boost::optional<float> weight) { m_weight = weight; }

boost::optional<float> XControlPointData::get_edge_width() const { return m_edge_width; }

void XControlPointData::set_edge_width(boost::optional<float> edge_width) { m_edge_width = edge_width; }

boost::optional<float> XControlPointData::get_edge_angle_ratio() const { return m_edge_angle_ratio; }

void XControlPointData::set_edge_angle_ratio(boost::optional<float> edge_angle_ratio)
{
    m_edge_angle_ratio = edge_angle_ratio;
}

bool XControlPointData::operator==(const XControlPointData& other) const
{
    return orrery::valuesOf(*this) == orrery::valuesOf(other);
}

// ---- Between records and the engine's values ----

namespace orrery {

namespace {

template <class Record, class Type>
struct RecordField
{
    Stratum::PointField field;
    boost::optional<Type> (Record::*get)() const;
    void (Record::*set)(boost::optional<Type>);
};

template <class Record, class... More>
constexpr auto fieldsOf(More... more)
{
    using namespace Stratum;
    return std::make_tuple(
        RecordField<Record, bool>{PointActive, &Record::get_active, &Record::set_active},
        RecordField<Record, bool>{PointCorner, &Record::get_corner, &Record::set_corner},
        RecordField<Record, float>{PointX, &Record::get_x, &Record::set_x},
        RecordField<Record, float>{PointY, &Record::get_y, &Record::set_y},
        RecordField<Record, float>{PointEdgeWidth, &Record::get_edge_width, &Record::set_edge_width},
        RecordField<Record, float>{PointEdgeAngleRatio, &Record::get_edge_angle_ratio, &Record::set_edge_angle_ratio},
        more...);
}

using Bezier = BezierControlPointData;
constexpr auto bezierFields =
    fieldsOf<Bezier>(RecordField<Bezier, QPointF>{Stratum::PointHandleBackward, &Bezier::get_handle_offset_backward,
                                                  &Bezier::set_handle_offset_backward},
                     RecordField<Bezier, QPointF>{Stratum::PointHandleForward, &Bezier::get_handle_offset_forward,
                                                  &Bezier::set_handle_offset_forward});

using XSpline = XControlPointData;
constexpr auto xSplineFields =
    fieldsOf<XSpline>(RecordField<XSpline, float>{Stratum::PointWeight, &XSpline::get_weight, &XSpline::set_weight});

Knob::Value toValue(bool value) { return {value ? 1.0 : 0.0, 0}; }
Knob::Value toValue(float value) { return {value, 0}; }
Knob::Value toValue(const QPointF& value) { return {value.x(), value.y()}; }

void fromValue(const Knob::Value& value, bool& result) { result = value.x != 0; }
void fromValue(const Knob::Value& value, float& result) { result = static_cast<float>(value.x); }
void fromValue(const Knob::Value& value, QPointF& result) { result = QPointF(value.x, value.y); }

template <class Record, class Fields>
Stratum::PointValues read(const Record& record, const Fields& fields)
{
    Stratum::PointValues values;
    const auto readField = [&](const auto& row) {
        if (const auto value = (record.*row.get)())
            values[row.field] = toValue(*value);
    };
    std::apply([&](const auto&... row) { (readField(row), ...); }, fields);
    return values;
}

template <class Record, class Type>
void setField(Record& record, const RecordField<Record, Type>& row, const Knob::Value& value)
{
    Type converted;
    fromValue(value, converted);
    (record.*row.set)(converted);
}

template <class Record, class Fields>
void setFields(const Stratum::PointState& state, Record& record, const Fields& fields)
{
    std::apply([&](const auto&... row) { (setField(record, row, state[row.field]), ...); }, fields);
}

} // namespace

Stratum::PointValues valuesOf(const BezierControlPointData& record) { return read(record, bezierFields); }
Stratum::PointValues valuesOf(const XControlPointData& record) { return read(record, xSplineFields); }

void write(const Stratum::PointState& state, BezierControlPointData& record) { setFields(state, record, bezierFields); }

void write(const Stratum::PointState& state, XControlPointData& record) { setFields(state, record, xSplineFields); }

} // namespace orrery
