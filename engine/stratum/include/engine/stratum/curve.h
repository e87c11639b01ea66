// Closed curves through or near control points: evaluation, flattening, bounds and splitting. Plain values, no model.
//
// X-splines after C. Blanc, C. Schlick: "X-Splines: A Spline Model Designed for the End-User", SIGGRAPH 1995; the shape
// parameter s of the paper is the weight, with -1 <= s <= 1.
#pragma once

#include <cstddef>
#include <engine/stratum/point_fields.h>
#include <vector>

namespace Stratum {

struct Curve
{
    int type = 0; // VX_CONTOUR_TYPE
    std::vector<PointState> points;
};

struct CurveVertex
{
    double x = 0;
    double y = 0;
    double edgeWidth = 0;
};

constexpr double flatteningTolerance = 0.05; // pixels

// A closed polygon that is nowhere further from the curve than the tolerance. Empty for a curve without points.
std::vector<CurveVertex> flatten(const Curve& curve, double tolerance = flatteningTolerance);

struct Bounds
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    bool empty = true;

    void add(double x, double y);
};

// Of the curve itself. Exact for Bezier curves; for X-splines to better than 1/1000 pixel.
Bounds bounds(const Curve& curve);

// The place on the segment from point `segment` to the next one, 0 <= t <= 1.
CurveVertex evaluate(const Curve& curve, std::size_t segment, double t);

// The point that cuts a segment at t: its tangents keep the shape once those beside it are shortened in proportion.
// Fields that are not part of the shape are interpolated between both ends; flags have their initial value.
PointState pointOn(const Curve& curve, std::size_t segment, double t);

// For a point put onto a segment of an X-spline: the smoothest weight of those that change the curve about as little as
// any does. From -1 to 0: a weight above would need a place off the curve.
double bestWeight(const Curve& curve, std::size_t segment, PointState point);

// Where on a segment the curve comes nearest to a place.
double nearest(const Curve& curve, std::size_t segment, double x, double y);

} // namespace Stratum
