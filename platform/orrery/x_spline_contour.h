// A handle on one closed X-spline of a layer.
#ifndef ORRERY_X_SPLINE_CONTOUR_H
#define ORRERY_X_SPLINE_CONTOUR_H

#include <QList>
#include <QVector>
#include <orrery/x_control_point.h>

// Errors of every operation but isNull(), == and qHash: STRM_BadState for a null handle, STRM_BadArgument for a time or
// coordinate that is not a finite number, STRM_OutOfRange for a view that the project does not have.
class XSplineContour : public PyHandle<Stratum::Contour>
{
public:
    XSplineContour();
    XSplineContour(const XSplineContour& other);
    XSplineContour(boost::shared_ptr<Stratum::Contour> contour, boost::weak_ptr<STRM_ProjectManager> manager);
    XSplineContour& operator=(const XSplineContour& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~XSplineContour();

    // The point at that place in the contour's order; a null handle past the end.
    XControlPoint control_point(unsigned int index);

    // In the order of the outline.
    QVector<XControlPoint> get_control_points();

    // The smallest upright rectangle around the curve itself: {left, top, right, bottom} in pixels; empty for a contour
    // without active points.
    QList<float> get_bounding_rect(float time, View view);

    // Puts a point before the one at `index`; 4294967295 (UINT_MAX) or any index past the end appends. Fields that
    // `data` leaves unset are chosen on the curve, so that the contour keeps its shape as nearly as an X-spline can, at
    // other times and in other views too. A place beside the curve keeps its distance from it. The other points stay as
    // they are. On an empty contour unset fields take their initial values.
    // STRM_OutOfRange, and no change, where a value on the curve would be one that points cannot have.
    XControlPoint insert_point(float time, const XControlPointData& data, unsigned int index, View view);

    // What can be animated, by its path: {"edge_width"}, or from a point's set, which its id names, {"12", "x"}. A path
    // that leads nowhere gives a null handle.
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the contour's own; a null handle where it leads
    // nowhere.
    ParameterSet parameter_set(const QStringList& name_components);

    // Takes the contour out of its layer.
    void remove();

    bool operator==(const XSplineContour& other) const;
};

unsigned int qHash(const XSplineContour& contour);

#endif
