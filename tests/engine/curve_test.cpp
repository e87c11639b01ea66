// Curves against the polynomials that define them, sampled densely.
#include <algorithm>
#include <cmath>
#include <engine/stratum/curve.h>
#include <gtest/gtest.h>
#include <random>
#include <stratum/enumerations.h>

namespace {

using namespace Stratum;

Curve randomCurve(int type, std::mt19937& random, std::size_t count)
{
    std::uniform_real_distribution<double> place(0, 300), handle(-80, 80), weight(-1, 1);
    Curve curve;
    curve.type = type;
    for (std::size_t i = 0; i < count; ++i) {
        PointState point;
        point[PointX].x = place(random);
        point[PointY].x = place(random);
        point[PointHandleBackward] = {handle(random), handle(random)};
        point[PointHandleForward] = {handle(random), handle(random)};
        point[PointWeight].x = weight(random);
        point[PointEdgeWidth].x = place(random);
        curve.points.push_back(point);
    }
    return curve;
}

// Evaluated by repeated linear interpolation, which is another way than the library's.
CurveVertex casteljau(const Curve& curve, std::size_t segment, double t)
{
    const PointState &a = curve.points[segment], &b = curve.points[(segment + 1) % curve.points.size()];
    double x[4] = {a.x(), a.x() + a.forward().x, b.x() + b.backward().x, b.x()};
    double y[4] = {a.y(), a.y() + a.forward().y, b.y() + b.backward().y, b.y()};
    for (int level = 3; level > 0; --level) {
        for (int i = 0; i < level; ++i) {
            x[i] += (x[i + 1] - x[i]) * t;
            y[i] += (y[i + 1] - y[i]) * t;
        }
    }
    return {x[0], y[0], 0};
}

double distance(const std::vector<CurveVertex>& polygon, double x, double y)
{
    double least = 1e300;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const CurveVertex &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        const double dx = b.x - a.x, dy = b.y - a.y, length = dx * dx + dy * dy;
        const double t = length > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / length, 0.0, 1.0) : 0;
        least = std::min(least, std::hypot(a.x + t * dx - x, a.y + t * dy - y));
    }
    return least;
}

class Curves : public ::testing::TestWithParam<int>
{};

TEST_P(Curves, FlatteningStaysWithinTheTolerance)
{
    std::mt19937 random(3);
    for (const std::size_t count : {2u, 3u, 7u}) {
        const Curve curve = randomCurve(GetParam(), random, count);
        for (const double tolerance : {0.05, 1.0}) {
            const std::vector<CurveVertex> polygon = flatten(curve, tolerance);
            for (std::size_t segment = 0; segment < count; ++segment)
                for (double t = 0; t < 1; t += 1.0 / 512) {
                    const CurveVertex place = evaluate(curve, segment, t);
                    ASSERT_LT(distance(polygon, place.x, place.y), tolerance * 1.001);
                }
            EXPECT_LT(polygon.size(), 600 * count / std::sqrt(tolerance));
        }
    }
}

TEST_P(Curves, BoundsAreThoseOfTheCurve)
{
    std::mt19937 random(4);
    for (int round = 0; round < 20; ++round) {
        const Curve curve = randomCurve(GetParam(), random, 4);
        const Bounds box = bounds(curve);
        Bounds sampled;
        for (std::size_t segment = 0; segment < curve.points.size(); ++segment)
            for (int i = 0; i <= 4000; ++i) {
                const CurveVertex place = evaluate(curve, segment, i / 4000.0);
                sampled.add(place.x, place.y);
            }
        EXPECT_NEAR(box.left, sampled.left, 1e-3);
        EXPECT_NEAR(box.top, sampled.top, 1e-3);
        EXPECT_NEAR(box.right, sampled.right, 1e-3);
        EXPECT_NEAR(box.bottom, sampled.bottom, 1e-3);
    }
}

TEST_P(Curves, CopeWithFewAndOddPoints)
{
    Curve curve;
    curve.type = GetParam();
    EXPECT_TRUE(flatten(curve).empty());
    EXPECT_TRUE(bounds(curve).empty);
    curve.points.resize(1);
    EXPECT_EQ(flatten(curve).size(), 1u);
    EXPECT_FALSE(bounds(curve).empty);
    curve.points.resize(5); // all in one place
    for (const CurveVertex& vertex : flatten(curve))
        EXPECT_EQ(vertex.x, 0);
    curve.points[2][PointX].x = 1e9;
    curve.points[3][PointHandleForward] = {-1e9, 1e9};
    EXPECT_LT(flatten(curve).size(), 100000u);
    EXPECT_TRUE(std::isfinite(bounds(curve).bottom));
}

INSTANTIATE_TEST_SUITE_P(BothKinds, Curves, ::testing::Values(VX_CONTOUR_XSPLINE, VX_CONTOUR_BEZIER));

TEST(Bezier, IsTheCubicOfItsTangents)
{
    std::mt19937 random(5);
    const Curve curve = randomCurve(VX_CONTOUR_BEZIER, random, 3);
    for (std::size_t segment = 0; segment < 3; ++segment)
        for (double t = 0; t <= 1; t += 0.125) {
            EXPECT_NEAR(evaluate(curve, segment, t).x, casteljau(curve, segment, t).x, 1e-9);
            EXPECT_NEAR(evaluate(curve, segment, t).y, casteljau(curve, segment, t).y, 1e-9);
        }
}

TEST(XSpline, WeightsMeanWhatThePaperSays)
{
    Curve curve;
    curve.type = VX_CONTOUR_XSPLINE;
    for (const auto& [x, y] : {std::pair{0., 0.}, {100., 0.}, {100., 100.}, {0., 100.}}) {
        PointState point;
        point.setPosition({x, y});
        curve.points.push_back(point);
    }
    const auto at = [&](double weight, double t) {
        for (PointState& point : curve.points)
            point[PointWeight].x = weight;
        return evaluate(curve, 0, t);
    };
    // 0: the polygon itself.
    EXPECT_NEAR(at(0, 0.37).y, 0, 1e-12);
    EXPECT_NEAR(at(0, 0).x, 0, 1e-12);
    // Below 0: through the points, bulging outwards between them, and smooth.
    EXPECT_NEAR(at(-1, 0).x, 0, 1e-12);
    EXPECT_LT(at(-1, 0.5).y, -1);
    const double step = 1e-5;
    const CurveVertex before = evaluate(curve, 3, 1 - step), after = evaluate(curve, 0, step);
    EXPECT_NEAR((0 - before.x) / (0 - before.y), after.x / after.y, 1e-3);
    // Above 0: near the points, inside.
    EXPECT_GT(at(1, 0).x, 5);
    EXPECT_GT(at(1, 0.5).y, 0);
    // The parts always add up: a curve of one place is that place.
    for (PointState& point : curve.points)
        point.setPosition({42, 42});
    for (const double weight : {-1., -0.3, 0., 0.6, 1.})
        for (double t = 0; t <= 1; t += 0.25)
            EXPECT_NEAR(at(weight, t).x, 42, 1e-9);
}

// Insertion in the middle of each segment of outlines as people draw them.
TEST(XSpline, APointOnTheCurveHardlyChangesItAndIsSmooth)
{
    std::mt19937 random(8);
    int smooth = 0, all = 0;
    for (int round = 0; round < 16; ++round) {
        Curve curve = randomCurve(VX_CONTOUR_XSPLINE, random, 8);
        for (std::size_t i = 0; i < 8; ++i) {
            PointState& point = curve.points[i];
            point.setPosition(
                {150 + 100 * std::cos(i * 0.785) + point.x() / 20, 150 + 100 * std::sin(i * 0.785) + point.y() / 20});
            point[PointWeight].x = -0.25 * (round % 4 + 1);
        }
        for (std::size_t segment = 0; segment < 8; ++segment) {
            PointState half = pointOn(curve, segment, 0.5);
            half[PointWeight].x = bestWeight(curve, segment, half);
            smooth += half.weight() < -0.25;
            ++all;
            Curve after = curve;
            after.points.insert(after.points.begin() + static_cast<std::ptrdiff_t>(segment + 1), half);
            const std::vector<CurveVertex> polygon = flatten(curve);
            for (const CurveVertex& vertex : flatten(after))
                ASSERT_LT(distance(polygon, vertex.x, vertex.y), 6.0);
        }
    }
    EXPECT_EQ(smooth, all);
}

} // namespace
