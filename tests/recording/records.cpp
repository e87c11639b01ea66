// The recorded records of control points: they hold their fields, and note every reading and writing of one.
#include "call.h"

using namespace recording;

BezierControlPointData::BezierControlPointData(boost::optional<bool> active, boost::optional<bool> corner,
                                               boost::optional<float> x, boost::optional<float> y,
                                               boost::optional<float> edge_width,
                                               boost::optional<float> edge_angle_ratio,
                                               boost::optional<QPointF> handle_offset_backward,
                                               boost::optional<QPointF> handle_offset_forward)
    : m_active(active), m_corner(corner), m_x(x), m_y(y), m_edge_width(edge_width),
      m_edge_angle_ratio(edge_angle_ratio), m_handle_offset_backward(handle_offset_backward),
      m_handle_offset_forward(handle_offset_forward)
{
    call("BezierControlPointData", active, corner, x, y, edge_width, edge_angle_ratio, handle_offset_backward,
         handle_offset_forward);
    begin(this, "BezierControlPointData");
}

BezierControlPointData::BezierControlPointData(const BezierControlPointData& other)
    : m_active(other.m_active), m_corner(other.m_corner), m_x(other.m_x), m_y(other.m_y),
      m_edge_width(other.m_edge_width), m_edge_angle_ratio(other.m_edge_angle_ratio),
      m_handle_offset_backward(other.m_handle_offset_backward), m_handle_offset_forward(other.m_handle_offset_forward)
{
    beginCopy(this, "BezierControlPointData");
}

BezierControlPointData& BezierControlPointData::operator=(const BezierControlPointData& other) = default;

BezierControlPointData::~BezierControlPointData() { end(this, "BezierControlPointData"); }

bool BezierControlPointData::operator==(const BezierControlPointData& other) const
{
    return call("BezierControlPointData.==", *this, other);
}

boost::optional<bool> BezierControlPointData::get_active() const
{
    return answer(m_active, "BezierControlPointData.get_active");
}

void BezierControlPointData::set_active(boost::optional<bool> active)
{
    call("BezierControlPointData.set_active", active);
    m_active = active;
}

boost::optional<bool> BezierControlPointData::get_corner() const
{
    return answer(m_corner, "BezierControlPointData.get_corner");
}

void BezierControlPointData::set_corner(boost::optional<bool> corner)
{
    call("BezierControlPointData.set_corner", corner);
    m_corner = corner;
}

boost::optional<float> BezierControlPointData::get_x() const { return answer(m_x, "BezierControlPointData.get_x"); }

void BezierControlPointData::set_x(boost::optional<float> x)
{
    call("BezierControlPointData.set_x", x);
    m_x = x;
}

boost::optional<float> BezierControlPointData::get_y() const { return answer(m_y, "BezierControlPointData.get_y"); }

void BezierControlPointData::set_y(boost::optional<float> y)
{
    call("BezierControlPointData.set_y", y);
    m_y = y;
}

boost::optional<float> BezierControlPointData::get_edge_width() const
{
    return answer(m_edge_width, "BezierControlPointData.get_edge_width");
}

void BezierControlPointData::set_edge_width(boost::optional<float> edge_width)
{
    call("BezierControlPointData.set_edge_width", edge_width);
    m_edge_width = edge_width;
}

boost::optional<float> BezierControlPointData::get_edge_angle_ratio() const
{
    return answer(m_edge_angle_ratio, "BezierControlPointData.get_edge_angle_ratio");
}

void BezierControlPointData::set_edge_angle_ratio(boost::optional<float> edge_angle_ratio)
{
    call("BezierControlPointData.set_edge_angle_ratio", edge_angle_ratio);
    m_edge_angle_ratio = edge_angle_ratio;
}

boost::optional<QPointF> BezierControlPointData::get_handle_offset_backward() const
{
    return answer(m_handle_offset_backward, "BezierControlPointData.get_handle_offset_backward");
}

void BezierControlPointData::set_handle_offset_backward(boost::optional<QPointF> offset)
{
    call("BezierControlPointData.set_handle_offset_backward", offset);
    m_handle_offset_backward = offset;
}

boost::optional<QPointF> BezierControlPointData::get_handle_offset_forward() const
{
    return answer(m_handle_offset_forward, "BezierControlPointData.get_handle_offset_forward");
}

void BezierControlPointData::set_handle_offset_forward(boost::optional<QPointF> offset)
{
    call("BezierControlPointData.set_handle_offset_forward", offset);
    m_handle_offset_forward = offset;
}

XControlPointData::XControlPointData(boost::optional<bool> active, boost::optional<bool> corner,
                                     boost::optional<float> x, boost::optional<float> y, boost::optional<float> weight,
                                     boost::optional<float> edge_width, boost::optional<float> edge_angle_ratio)
    : m_active(active), m_corner(corner), m_x(x), m_y(y), m_weight(weight), m_edge_width(edge_width),
      m_edge_angle_ratio(edge_angle_ratio)
{
    call("XControlPointData", active, corner, x, y, weight, edge_width, edge_angle_ratio);
    begin(this, "XControlPointData");
}

XControlPointData::XControlPointData(const XControlPointData& other)
    : m_active(other.m_active), m_corner(other.m_corner), m_x(other.m_x), m_y(other.m_y), m_weight(other.m_weight),
      m_edge_width(other.m_edge_width), m_edge_angle_ratio(other.m_edge_angle_ratio)
{
    beginCopy(this, "XControlPointData");
}

XControlPointData& XControlPointData::operator=(const XControlPointData& other) = default;

XControlPointData::~XControlPointData() { end(this, "XControlPointData"); }

bool XControlPointData::operator==(const XControlPointData& other) const
{
    return call("XControlPointData.==", *this, other);
}

boost::optional<bool> XControlPointData::get_active() const { return answer(m_active, "XControlPointData.get_active"); }

void XControlPointData::set_active(boost::optional<bool> active)
{
    call("XControlPointData.set_active", active);
    m_active = active;
}

boost::optional<bool> XControlPointData::get_corner() const { return answer(m_corner, "XControlPointData.get_corner"); }

void XControlPointData::set_corner(boost::optional<bool> corner)
{
    call("XControlPointData.set_corner", corner);
    m_corner = corner;
}

boost::optional<float> XControlPointData::get_x() const { return answer(m_x, "XControlPointData.get_x"); }

void XControlPointData::set_x(boost::optional<float> x)
{
    call("XControlPointData.set_x", x);
    m_x = x;
}

boost::optional<float> XControlPointData::get_y() const { return answer(m_y, "XControlPointData.get_y"); }

void XControlPointData::set_y(boost::optional<float> y)
{
    call("XControlPointData.set_y", y);
    m_y = y;
}

boost::optional<float> XControlPointData::get_weight() const
{
    return answer(m_weight, "XControlPointData.get_weight");
}

void XControlPointData::set_weight(boost::optional<float> weight)
{
    call("XControlPointData.set_weight", weight);
    m_weight = weight;
}

boost::optional<float> XControlPointData::get_edge_width() const
{
    return answer(m_edge_width, "XControlPointData.get_edge_width");
}

void XControlPointData::set_edge_width(boost::optional<float> edge_width)
{
    call("XControlPointData.set_edge_width", edge_width);
    m_edge_width = edge_width;
}

boost::optional<float> XControlPointData::get_edge_angle_ratio() const
{
    return answer(m_edge_angle_ratio, "XControlPointData.get_edge_angle_ratio");
}

void XControlPointData::set_edge_angle_ratio(boost::optional<float> edge_angle_ratio)
{
    call("XControlPointData.set_edge_angle_ratio", edge_angle_ratio);
    m_edge_angle_ratio = edge_angle_ratio;
}
