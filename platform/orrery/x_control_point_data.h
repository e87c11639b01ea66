// The state of one control point of an X-spline contour at one time, in one view.
#ifndef ORRERY_X_CONTROL_POINT_DATA_H
#define ORRERY_X_CONTROL_POINT_DATA_H

#include <boost/optional.hpp>

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

    boost::optional<bool> get_active() const;
    void set_active(boost::optional<bool> active);
    boost::optional<bool> get_corner() const;
    void set_corner(boost::optional<bool> corner);
    boost::optional<float> get_x() const;
    void set_x(boost::optional<float> x);
    boost::optional<float> get_y() const;
    void set_y(boost::optional<float> y);

    // The shape parameter of the X-spline at this point (Blanc and Schlick, "X-splines", 1995), from -1, through the
    // point as smoothly as an interpolating spline does, over 0, a corner at the point, to 1, approximating it.
    boost::optional<float> get_weight() const;
    void set_weight(boost::optional<float> weight);

    boost::optional<float> get_edge_width() const;
    void set_edge_width(boost::optional<float> edge_width);
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
