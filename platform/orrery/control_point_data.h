// The state of one control point at one time, in one view, as scripts pass it: a record for each kind of contour.
#ifndef ORRERY_CONTROL_POINT_DATA_H
#define ORRERY_CONTROL_POINT_DATA_H

#include <QPointF>
#include <boost/optional.hpp>

// Every field may be unset. Positions and offsets are in pixels from the top left corner of the frame, y downwards.
// A record has no link to the point that it was read from.
class BezierControlPointData
{
public:
    explicit BezierControlPointData(boost::optional<bool> active = boost::none,
                                    boost::optional<bool> corner = boost::none, boost::optional<float> x = boost::none,
                                    boost::optional<float> y = boost::none,
                                    boost::optional<float> edge_width = boost::none,
                                    boost::optional<float> edge_angle_ratio = boost::none,
                                    boost::optional<QPointF> handle_offset_backward = boost::none,
                                    boost::optional<QPointF> handle_offset_forward = boost::none);
    BezierControlPointData(const BezierControlPointData& other);
    BezierControlPointData& operator=(const BezierControlPointData& other);
    virtual ~BezierControlPointData();

    // Whether the point takes part in the contour.
    boost::optional<bool> get_active() const;
    void set_active(boost::optional<bool> active);

    // Whether the two tangents are independent; else a change of one turns the other to stay in line.
    boost::optional<bool> get_corner() const;
    void set_corner(boost::optional<bool> corner);

    // Where the point is, in pixels from the left edge of the frame; pixel centres are at .5.
    boost::optional<float> get_x() const;
    void set_x(boost::optional<float> x);
    // Where the point is, in pixels from the top edge of the frame, downwards.
    boost::optional<float> get_y() const;
    void set_y(boost::optional<float> y);

    // The width in pixels, outwards from the outline, over which the matte falls off; 0 for a hard edge.
    boost::optional<float> get_edge_width() const;
    void set_edge_width(boost::optional<float> edge_width);

    // Where the edge's direction lies between the outline's normal (0) and the bisector of the tangents (1).
    boost::optional<float> get_edge_angle_ratio() const;
    void set_edge_angle_ratio(boost::optional<float> edge_angle_ratio);

    // From the point to the end of its tangent towards the previous point, in pixels.
    boost::optional<QPointF> get_handle_offset_backward() const;
    void set_handle_offset_backward(boost::optional<QPointF> offset);
    // From the point to the end of its tangent towards the next point, in pixels.
    boost::optional<QPointF> get_handle_offset_forward() const;
    void set_handle_offset_forward(boost::optional<QPointF> offset);

    // Equal when the same fields are set, to equal values.
    bool operator==(const BezierControlPointData& other) const;

private:
    boost::optional<bool> m_active;
    boost::optional<bool> m_corner;
    boost::optional<float> m_x;
    boost::optional<float> m_y;
    boost::optional<float> m_edge_width;
    boost::optional<float> m_edge_angle_ratio;
    boost::optional<QPointF> m_handle_offset_backward;
    boost::optional<QPointF> m_handle_offset_forward;
};

// Every field may be unset. Units and meanings are those of BezierControlPointData, with a weight in place of the
// tangents.
class XControlPointData
{
public:
    explicit XControlPointData(boost::optional<bool> active = boost::none, boost::optional<bool> corner = boost::none,
                               boost::optional<float> x = boost::none, boost::optional<float> y = boost::none,
                               boost::optional<float> weight = boost::none,
                               boost::optional<float> edge_width = boost::none,
                               boost::optional<float> edge_angle_ratio = boost::none);
    XControlPointData(const XControlPointData& other);
    XControlPointData& operator=(const XControlPointData& other);
    virtual ~XControlPointData();

    // Whether the point takes part in the contour.
    boost::optional<bool> get_active() const;
    void set_active(boost::optional<bool> active);
    // Whether the curve has a corner at the point: its weight then counts as 0.
    boost::optional<bool> get_corner() const;
    void set_corner(boost::optional<bool> corner);
    // Where the point is, in pixels from the left edge of the frame; pixel centres are at .5.
    boost::optional<float> get_x() const;
    void set_x(boost::optional<float> x);
    // Where the point is, in pixels from the top edge of the frame, downwards.
    boost::optional<float> get_y() const;
    void set_y(boost::optional<float> y);

    // The shape parameter of the X-spline at this point (Blanc and Schlick, "X-splines", 1995), from -1, through the
    // point as smoothly as an interpolating spline does, over 0, a corner at the point, to 1, approximating it.
    // Points that are made without one have -1.
    boost::optional<float> get_weight() const;
    void set_weight(boost::optional<float> weight);

    // The width in pixels, outwards from the outline, over which the matte falls off; 0 for a hard edge.
    boost::optional<float> get_edge_width() const;
    void set_edge_width(boost::optional<float> edge_width);
    // Where the edge's direction lies between the outline's normal (0) and the bisector of its sides (1).
    boost::optional<float> get_edge_angle_ratio() const;
    void set_edge_angle_ratio(boost::optional<float> edge_angle_ratio);

    bool operator==(const XControlPointData& other) const;

private:
    boost::optional<bool> m_active;
    boost::optional<bool> m_corner;
    boost::optional<float> m_x;
    boost::optional<float> m_y;
    boost::optional<float> m_weight;
    boost::optional<float> m_edge_width;
    boost::optional<float> m_edge_angle_ratio;
};

#endif
