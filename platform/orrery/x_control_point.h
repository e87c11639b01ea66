// A handle on one vertex of an X-spline contour.
#ifndef ORRERY_X_CONTROL_POINT_H
#define ORRERY_X_CONTROL_POINT_H

#include <orrery/control_point_data.h>
#include <orrery/parameter.h>
#include <orrery/py_handle.h>
#include <orrery/view.h>

// Times are frames of the project; not-a-number and infinite times and coordinates throw STRM_BadArgument. Errors of
// every operation but isNull() and ==: STRM_BadState for a null handle.
class XControlPoint : public PyHandle<Stratum::ControlPoint>
{
public:
    XControlPoint();
    XControlPoint(const XControlPoint& other);
    XControlPoint(boost::shared_ptr<Stratum::ControlPoint> point, boost::weak_ptr<STRM_ProjectManager> manager);
    XControlPoint& operator=(const XControlPoint& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~XControlPoint();

    boost::weak_ptr<STRM_ProjectManager> projectManager() const;

    // The point's state, every field set: interpolated between keyframes, and moved with its master point if it has
    // one.
    XControlPointData get_point_data(float time, View view);

    // Makes the record the point's whole state at the time: a field that is unset takes its initial value (active, no
    // corner, position 0, edge width 0, ratio 0, weight -1).
    void set_point_data(float time, XControlPointData data, View view);

    // Changes only the fields that the record sets; keyframes of the others stay as they are.
    void update_point_data(float time, XControlPointData data, View view);

    // What can be animated, by its path of one name: "active", "corner", "x", "y", "edge_width", "edge_angle_ratio",
    // "weight".
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the point's own; a null handle where it leads
    // nowhere.
    ParameterSet parameter_set(const QStringList& name_components);

    // Takes the point out of its contour; points that followed it keep their position and have no master any more.
    void remove();

    bool operator==(const XControlPoint& other) const;
};

#endif
