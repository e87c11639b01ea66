// Bezier segments by their polynomials, X-splines by the blending functions of the paper.
#include <algorithm>
#include <array>
#include <cmath>
#include <engine/stratum/curve.h>
#include <functional>
#include <stratum/enumerations.h>

namespace Stratum {

namespace {

using Knob::Value;

constexpr int mostSteps = 4096; // of one segment, however far its points lie apart
constexpr double unlimitedDistance = 1e300;

Value mix(const Value& a, const Value& b, double t) { return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t}; }
Value sum(const Value& a, const Value& b) { return {a.x + b.x, a.y + b.y}; }
Value difference(const Value& a, const Value& b) { return {a.x - b.x, a.y - b.y}; }

const PointState& pointAt(const Curve& curve, std::size_t index) { return curve.points[index % curve.points.size()]; }

// ---- Bezier ----

using Cubic = std::array<Value, 4>;

Cubic cubic(const Curve& curve, std::size_t segment)
{
    const PointState &from = pointAt(curve, segment), &to = pointAt(curve, segment + 1);
    return {from.position(), sum(from.position(), from.forward()), sum(to.position(), to.backward()), to.position()};
}

Value evaluate(const Cubic& c, double t)
{
    const double u = 1 - t, a = u * u * u, b = 3 * u * u * t, d = 3 * u * t * t, e = t * t * t;
    return {a * c[0].x + b * c[1].x + d * c[2].x + e * c[3].x, a * c[0].y + b * c[1].y + d * c[2].y + e * c[3].y};
}

// So many equal steps that no chord is further away than the tolerance: |chord - curve| <= max|second derivative|
// h^2/8.
int stepCount(const Cubic& c, double tolerance)
{
    double bend = 0;
    for (int i = 0; i < 2; ++i)
        bend = std::max(bend, std::hypot(c[i].x - 2 * c[i + 1].x + c[i + 2].x, c[i].y - 2 * c[i + 1].y + c[i + 2].y));
    return static_cast<int>(std::clamp(std::ceil(std::sqrt(6 * bend / (8 * tolerance))), 1.0, double(mostSteps)));
}

// The parameters inside (0, 1) where the derivative of one coordinate vanishes.
std::vector<double> extremes(double p0, double p1, double p2, double p3)
{
    const double a = p3 - 3 * p2 + 3 * p1 - p0, b = 2 * (p2 - 2 * p1 + p0), c = p1 - p0;
    std::vector<double> roots;
    const auto add = [&roots](double root) {
        if (root > 0 && root < 1)
            roots.push_back(root);
    };
    const double discriminant = b * b - 4 * a * c;
    if (discriminant < 0)
        return roots;
    // The form that does not lose digits where a is small.
    const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
    if (a != 0)
        add(q / a);
    if (q != 0)
        add(c / q);
    return roots;
}

// ---- X-splines ----

double blend(double numerator, double denominator)
{
    const double p = 2 * denominator * denominator, u = numerator / denominator, u2 = u * u;
    return u * u2 * (10 - p + (2 * p - 15) * u + (6 - p) * u2);
}

double innerBlend(double u, double q)
{
    return u * (q + u * (2 * q + u * (8 - 12 * q + u * (14 * q - 11 + u * (4 - 5 * q)))));
}

double outerBlend(double u, double q)
{
    const double u2 = u * u;
    return u * (q + u * (2 * q + u2 * (-2 * q - u * q)));
}

double shape(const PointState& point) { return point.corner() ? 0 : std::clamp(point.weight(), -1.0, 1.0); }

// The parts that the points before, at the start, at the end and after have in the place at t of a segment.
std::array<double, 4> influences(double s1, double s2, double t)
{
    std::array<double, 4> parts{};
    if (s1 < 0) {
        parts[0] = outerBlend(-t, -s1 / 2);
        parts[2] = innerBlend(t, -s1 / 2);
    } else {
        parts[0] = t < s1 ? blend(t - s1, -1 - s1) : 0;
        parts[2] = blend(t + s1, 1 + s1);
    }
    if (s2 < 0) {
        parts[1] = innerBlend(1 - t, -s2 / 2);
        parts[3] = outerBlend(t - 1, -s2 / 2);
    } else {
        parts[1] = blend(t - 1 - s2, -1 - s2);
        parts[3] = t > 1 - s2 ? blend(t - 1 + s2, 1 + s2) : 0;
    }
    return parts;
}

Value evaluateXSpline(const Curve& curve, std::size_t segment, double t)
{
    const std::size_t count = curve.points.size();
    const std::array<double, 4> parts =
        influences(shape(pointAt(curve, segment)), shape(pointAt(curve, segment + 1)), t);
    double x = 0, y = 0, total = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const PointState& point = pointAt(curve, segment + count - 1 + i);
        x += parts[i] * point.x();
        y += parts[i] * point.y();
        total += parts[i];
    }
    return {x / total, y / total};
}

Value place(const Curve& curve, std::size_t segment, double t)
{
    return curve.type == VX_CONTOUR_BEZIER ? evaluate(cubic(curve, segment), t) : evaluateXSpline(curve, segment, t);
}

double distanceToChord(const Value& point, const Value& from, const Value& to)
{
    const Value chord = difference(to, from), offset = difference(point, from);
    const double length = chord.x * chord.x + chord.y * chord.y;
    if (length == 0)
        return std::hypot(offset.x, offset.y);
    const double along = std::clamp((offset.x * chord.x + offset.y * chord.y) / length, 0.0, 1.0);
    return std::hypot(offset.x - along * chord.x, offset.y - along * chord.y);
}

// Halves until three places inside each piece lie close to its chord, which with half the tolerance holds in between.
void halve(const Curve& curve, std::size_t segment, double from, double to, double tolerance, int depth,
           std::vector<double>& steps)
{
    const Value start = place(curve, segment, from), end = place(curve, segment, to);
    double furthest = 0;
    for (int i = 1; i <= 3; ++i)
        furthest = std::max(furthest, distanceToChord(place(curve, segment, from + (to - from) * i / 4), start, end));
    if (depth > 0 && furthest > tolerance / 2) {
        const double middle = (from + to) / 2;
        halve(curve, segment, from, middle, tolerance, depth - 1, steps);
        halve(curve, segment, middle, to, tolerance, depth - 1, steps);
    } else {
        steps.push_back(to);
    }
}

// The parameters at which a segment is cut, without its start.
std::vector<double> steps(const Curve& curve, std::size_t segment, double tolerance)
{
    std::vector<double> steps;
    if (curve.type == VX_CONTOUR_BEZIER) {
        const int count = stepCount(cubic(curve, segment), tolerance);
        for (int i = 1; i <= count; ++i)
            steps.push_back(double(i) / count);
    } else {
        for (int quarter = 0; quarter < 4; ++quarter)
            halve(curve, segment, quarter / 4.0, (quarter + 1) / 4.0, tolerance, 10, steps);
    }
    return steps;
}

// The parameter in [from, to] that makes the function least, when it has one minimum there.
double least(const std::function<double(double)>& function, double from, double to)
{
    constexpr double golden = 0.6180339887498949;
    double a = to - golden * (to - from), b = from + golden * (to - from);
    double atA = function(a), atB = function(b);
    for (int i = 0; i < 40; ++i) {
        if (atA < atB) {
            to = b;
            b = a;
            atB = atA;
            a = to - golden * (to - from);
            atA = function(a);
        } else {
            from = a;
            a = b;
            atA = atB;
            b = from + golden * (to - from);
            atB = function(b);
        }
    }
    return (from + to) / 2;
}

// The parameter of a segment that makes the function least, found among samples and refined around the best.
double leastOnSegment(const std::function<double(double)>& function)
{
    constexpr int samples = 32;
    int best = 0;
    double value = function(0);
    for (int i = 1; i <= samples; ++i) {
        const double next = function(double(i) / samples);
        if (next < value) {
            value = next;
            best = i;
        }
    }
    const double refined =
        least(function, std::max(best - 1, 0) / double(samples), std::min(best + 1, samples) / double(samples));
    return function(refined) < value ? refined : best / double(samples);
}

void addXSplineExtremes(const Curve& curve, std::size_t segment, Bounds& box)
{
    for (const double sign : {1.0, -1.0}) {
        const auto x = [&](double t) { return sign * evaluateXSpline(curve, segment, t).x; };
        const auto y = [&](double t) { return sign * evaluateXSpline(curve, segment, t).y; };
        for (const double t : {leastOnSegment(x), leastOnSegment(y)}) {
            const Value extreme = evaluateXSpline(curve, segment, t);
            box.add(extreme.x, extreme.y);
        }
    }
}

void addBezierExtremes(const Cubic& c, Bounds& box)
{
    box.add(c[0].x, c[0].y);
    std::vector<double> places = extremes(c[0].x, c[1].x, c[2].x, c[3].x);
    const std::vector<double> more = extremes(c[0].y, c[1].y, c[2].y, c[3].y);
    places.insert(places.end(), more.begin(), more.end());
    for (const double t : places) {
        const Value extreme = evaluate(c, t);
        box.add(extreme.x, extreme.y);
    }
}

bool isZero(const Value& value) { return value.x == 0 && value.y == 0; }

void cutBezier(const Curve& curve, std::size_t segment, double t, PointState& point)
{
    const PointState &from = pointAt(curve, segment), &to = pointAt(curve, segment + 1);
    const Cubic c = cubic(curve, segment);
    if (isZero(from.forward()) && isZero(to.backward())) {
        // A straight line stays one without tangents.
        point.setPosition(mix(c[0], c[3], t));
        point[PointHandleBackward] = point[PointHandleForward] = {};
        return;
    }
    const Value a = mix(c[0], c[1], t), b = mix(c[1], c[2], t), d = mix(c[2], c[3], t);
    const Value left = mix(a, b, t), right = mix(b, d, t), middle = mix(left, right, t);
    point.setPosition(middle);
    point[PointHandleBackward] = difference(left, middle);
    point[PointHandleForward] = difference(right, middle);
}

// How far the two segments beside a new point lie from the one that was there. Its weight changes no others.
double deviation(const std::vector<Value>& before, const Curve& after, std::size_t index)
{
    double furthest = 0;
    for (const std::size_t segment : {index + after.points.size() - 1, index}) {
        for (int step = 1; step < 8; ++step) {
            const Value point = evaluateXSpline(after, segment, step / 8.0);
            double nearest = unlimitedDistance;
            for (std::size_t k = 1; k < before.size(); ++k)
                nearest = std::min(nearest, distanceToChord(point, before[k - 1], before[k]));
            furthest = std::max(furthest, nearest);
        }
    }
    return furthest;
}

} // namespace

void Bounds::add(double x, double y)
{
    left = empty ? x : std::min(left, x);
    top = empty ? y : std::min(top, y);
    right = empty ? x : std::max(right, x);
    bottom = empty ? y : std::max(bottom, y);
    empty = false;
}

CurveVertex evaluate(const Curve& curve, std::size_t segment, double t)
{
    const Value found = place(curve, segment, t);
    const PointState &from = pointAt(curve, segment), &to = pointAt(curve, segment + 1);
    return {found.x, found.y, from.edgeWidth() + (to.edgeWidth() - from.edgeWidth()) * t};
}

std::vector<CurveVertex> flatten(const Curve& curve, double tolerance)
{
    std::vector<CurveVertex> vertices;
    if (curve.points.size() == 1)
        return {{curve.points[0].x(), curve.points[0].y(), curve.points[0].edgeWidth()}};
    for (std::size_t segment = 0; segment < curve.points.size(); ++segment)
        for (const double t : steps(curve, segment, tolerance))
            vertices.push_back(evaluate(curve, segment, t));
    return vertices;
}

Bounds bounds(const Curve& curve)
{
    Bounds box;
    if (curve.points.size() == 1)
        box.add(curve.points[0].x(), curve.points[0].y());
    for (std::size_t segment = 0; curve.points.size() > 1 && segment < curve.points.size(); ++segment) {
        if (curve.type == VX_CONTOUR_BEZIER)
            addBezierExtremes(cubic(curve, segment), box);
        else
            addXSplineExtremes(curve, segment, box);
    }
    return box;
}

PointState pointOn(const Curve& curve, std::size_t segment, double t)
{
    PointState point;
    const PointState &from = pointAt(curve, segment), &to = pointAt(curve, segment + 1);
    for (const PointField field : pointFields(curve.type))
        point[field] = description(field).interpolated() ? mix(from[field], to[field], t) : description(field).initial;
    if (curve.type == VX_CONTOUR_BEZIER)
        cutBezier(curve, segment, t, point);
    else
        point.setPosition(evaluateXSpline(curve, segment, t));
    return point;
}

double bestWeight(const Curve& curve, std::size_t segment, PointState point)
{
    constexpr int samples = 32, weights = 8;
    segment %= curve.points.size();
    std::vector<Value> before;
    for (int i = 0; i <= samples; ++i)
        before.push_back(evaluateXSpline(curve, segment, double(i) / samples));
    Curve after = curve;
    after.points.insert(after.points.begin() + static_cast<std::ptrdiff_t>(segment + 1), point);
    std::array<double, weights + 1> moved;
    for (int i = 0; i <= weights; ++i) {
        after.points[segment + 1][PointWeight].x = -1 + double(i) / weights;
        moved[static_cast<std::size_t>(i)] = deviation(before, after, segment + 1);
    }
    // The points beside the new one change the curve more than its weight does: a corner is not worth a little less.
    const double enough = 1.25 * *std::min_element(moved.begin(), moved.end()) + flatteningTolerance;
    const auto smoothest = std::find_if(moved.begin(), moved.end(), [enough](double far) { return far <= enough; });
    return -1 + double(smoothest - moved.begin()) / weights;
}

double nearest(const Curve& curve, std::size_t segment, double x, double y)
{
    return leastOnSegment([&](double t) {
        const Value point = place(curve, segment, t);
        return std::hypot(point.x - x, point.y - y);
    });
}

} // namespace Stratum
