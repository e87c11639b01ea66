// The records of control points: what is set, and nothing more.
#include <orrery/bezier_control_point_data.h>
#include <orrery/x_control_point_data.h>

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
    return m_active == other.m_active && m_corner == other.m_corner && m_x == other.m_x && m_y == other.m_y &&
           m_edge_width == other.m_edge_width && m_edge_angle_ratio == other.m_edge_angle_ratio &&
           m_handle_offset_backward == other.m_handle_offset_backward &&
           m_handle_offset_forward == other.m_handle_offset_forward;
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
    return m_active == other.m_active && m_corner == other.m_corner && m_x == other.m_x && m_y == other.m_y &&
           m_weight == other.m_weight && m_edge_width == other.m_edge_width &&
           m_edge_angle_ratio == other.m_edge_angle_ratio;
}
