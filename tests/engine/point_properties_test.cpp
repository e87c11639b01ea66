// What holds for all outlines: insertion keeps the shape, links begin and end without a jump, and nothing that could
// not be saved gets into a project. Random contours, keyframes, views and links.
#include "sample.h"

#include <algorithm>
#include <cmath>
#include <engine/stratum/shapes.h>
#include <functional>
#include <orrery/point_constraint.h>
#include <random>

namespace {

using Stratum::CurveVertex;

constexpr int views = 3;

// From the vertices of one outline to the lines of the other.
double distance(const std::vector<CurveVertex>& from, const std::vector<CurveVertex>& to)
{
    double furthest = 0;
    for (const CurveVertex& vertex : from) {
        double least = 1e300;
        for (std::size_t i = 0; i < to.size(); ++i) {
            const CurveVertex &a = to[i], &b = to[(i + 1) % to.size()];
            const double dx = b.x - a.x, dy = b.y - a.y, length = dx * dx + dy * dy;
            const double t =
                length > 0 ? std::clamp(((vertex.x - a.x) * dx + (vertex.y - a.y) * dy) / length, 0.0, 1.0) : 0;
            least = std::min(least, std::hypot(a.x + t * dx - vertex.x, a.y + t * dy - vertex.y));
        }
        furthest = std::max(furthest, least);
    }
    return furthest;
}

class Points : public ::testing::TestWithParam<unsigned>
{
protected:
    Points() : layer(project->add_layer(nullptr, "layer", 0, 0))
    {
        project->set_views(
            {ViewInfo("1", "1", {1, 0, 0}), ViewInfo("2", "2", {1, 0, 0}), ViewInfo("3", "3", {1, 0, 0})});
        for (double time = -1; time < 22; time += 0.5)
            times.push_back(time);
        for (double time = 0; time <= 20; time += 3)
            times.push_back(Knob::timeBefore(time));
    }

    int number(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    View someView() { return View(static_cast<unsigned>(number(views))); }
    float someTime() { return static_cast<float>(number(21)); }

    BezierControlPointData someState()
    {
        BezierControlPointData state = bezierPoint(static_cast<float>(number(300)), static_cast<float>(number(300)));
        state.set_corner(true);
        state.set_handle_offset_backward(QPointF(number(80) - 40, number(80) - 40));
        state.set_handle_offset_forward(QPointF(number(80) - 40, number(80) - 40));
        state.set_edge_width(static_cast<float>(number(9)));
        return state;
    }
    BezierContour someContour(int points)
    {
        QVector<BezierControlPointData> states;
        for (int i = 0; i < points; ++i)
            states.append(someState());
        return layer.add_bezier_contour(number(4) ? someTime() : 4294967295.0f, states, someView());
    }
    void animate(BezierContour& contour, bool activity)
    {
        for (BezierControlPoint point : contour.get_control_points()) {
            for (int keys = number(4); keys > 0; --keys) {
                BezierControlPointData whole = someState(), part;
                part.set_x(whole.get_x());
                part.set_handle_offset_forward(whole.get_handle_offset_forward());
                if (activity && number(3) == 0)
                    part.set_active(number(2) == 0);
                point.update_point_data(someTime(), number(2) ? part : whole, someView());
            }
        }
    }
    void follow(BezierControlPoint point, const BezierControlPoint* master, double time, bool lock, View view = View())
    {
        Python::setPointConstraint(master ? master->handledObject() : boost::shared_ptr<Stratum::ControlPoint>(),
                                   point.handledObject(), layer.projectManager().lock().get(),
                                   {time, static_cast<std::int32_t>(view.get_id()), 3}, lock);
    }
    void linkSome(BezierContour& contour, bool lock)
    {
        const QVector<BezierControlPoint> points = contour.get_control_points();
        for (int links = number(4); links > 0; --links) {
            try {
                follow(points[number(points.size())], &points[number(points.size())],
                       number(4) ? someTime() + 0.5 : 4294967295.0, lock && number(2));
            } catch (const STRM_BadArgument&) { // a circle
            }
        }
    }

    std::vector<CurveVertex> outline(const BezierContour& contour, double time, int view)
    {
        const auto engine = contour.handledObject();
        Stratum::ContourModel& model = Stratum::model(*engine);
        const Stratum::Reading lock(model.manager());
        return Stratum::flatten(model.curve(time, view));
    }
    std::vector<std::vector<CurveVertex>> outlines(const BezierContour& contour)
    {
        std::vector<std::vector<CurveVertex>> found;
        for (int view = 0; view < views; ++view)
            for (const double time : times)
                found.push_back(outline(contour, time, view));
        return found;
    }
    // Where a point is at all times and in all views.
    std::vector<QPointF> places(const BezierControlPoint& point, double before = 1e300)
    {
        std::vector<QPointF> found;
        const auto engine = point.handledObject();
        const Stratum::PointModel& model = Stratum::model(*engine);
        const Stratum::Reading lock(model.contourModel().manager());
        for (int view = 0; view < views; ++view)
            for (const double time : times)
                if (time <= before) {
                    const Knob::Value place = model.position(time, view);
                    found.emplace_back(place.x, place.y);
                }
        return found;
    }
    static double apart(const std::vector<QPointF>& a, const std::vector<QPointF>& b)
    {
        double furthest = 0;
        for (std::size_t i = 0; i < a.size(); ++i)
            furthest = std::max(furthest, std::hypot(a[i].x() - b[i].x(), a[i].y() - b[i].y()));
        return furthest;
    }

    std::mt19937 random{GetParam()};
    std::unique_ptr<Project> project = emptyProject();
    Layer layer;
    std::vector<double> times;
};

INSTANTIATE_TEST_SUITE_P(Random, Points, ::testing::Range(0u, 12u));

TEST_P(Points, InsertionKeepsTheShape)
{
    const bool turning = GetParam() % 3 == 2;
    BezierContour contour = someContour(2 + number(6));
    animate(contour, GetParam() % 2 == 0);
    linkSome(contour, turning);
    animate(contour, false);
    const auto before = outlines(contour);
    const float time = number(4) ? someTime() + 0.25f : 4294967295.0f;
    contour.insert_point(time, BezierControlPointData(), static_cast<unsigned>(number(8)), someView());
    const auto after = outlines(contour);
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i].size() < 2)
            continue;
        const double tolerance = turning ? 0.25 : 0.06;
        ASSERT_LT(distance(before[i], after[i]), tolerance)
            << "view " << i / times.size() << " time " << times[i % times.size()];
        ASSERT_LT(distance(after[i], before[i]), tolerance)
            << "view " << i / times.size() << " time " << times[i % times.size()];
    }
}

TEST_P(Points, LinksBeginAndEndWithoutAJump)
{
    BezierContour contour = someContour(4);
    animate(contour, false);
    QVector<BezierControlPoint> points = contour.get_control_points();
    const bool always = number(4) == 0;
    const double time = always ? 4294967295.0 : someTime();
    linkSome(contour, false);
    follow(points[0], nullptr, 0, false);
    follow(points[1], nullptr, 0, false);
    follow(points[2], nullptr, 0, false);
    const auto at = [&](double when) {
        std::vector<QPointF> found;
        for (int view = 0; view < views; ++view) {
            const auto engine = points[0].handledObject();
            const Knob::Value place = Stratum::model(*engine).position(when, view);
            found.emplace_back(place.x, place.y);
        }
        return found;
    };
    const double begin = always ? Stratum::beforeAllTimes : time;
    const auto still = at(begin), former = places(points[0], begin);
    follow(points[0], &points[1], time, GetParam() % 2);
    EXPECT_LT(apart(at(begin), still), 1e-6);
    EXPECT_LT(apart(places(points[0], begin), former), 1e-6);
    // The same link again is none, however much later.
    const std::string linked = documentOf(*project);
    const double later = std::max(begin, 0.0) + number(5);
    follow(points[0], &points[1], later, GetParam() % 2);
    EXPECT_EQ(documentOf(*project), linked);
    // Nor does the motion change when the tangents are locked or released on the way.
    const auto moving = places(points[0]);
    follow(points[0], &points[1], later, !(GetParam() % 2));
    EXPECT_LT(apart(places(points[0]), moving), 1e-6);
    // Another master takes over.
    const auto here = at(12);
    follow(points[0], &points[2], 12, false);
    EXPECT_LT(apart(at(12), here), 1e-6);
    animate(contour, false);
    const auto followed = places(points[0]);
    follow(points[0], nullptr, 0, false);
    EXPECT_LT(apart(places(points[0]), followed), 1e-6);
    for (const QPair<View, double>& key : points[0].parameter({"x"}).get_keyframes())
        EXPECT_GT(key.second, -10);
}

// Near the limits of coordinates every change is made or refused, and what is there can be saved and opened.
TEST_P(Points, NearTheLimitsWhatIsThereCanBeOpened)
{
    Folder folder;
    const auto far = [&] { return static_cast<float>((number(2) ? 1 : -1) * (9e8 + number(100) * 1e6)); };
    const auto farState = [&] {
        BezierControlPointData state = bezierPoint(far(), far());
        state.set_handle_offset_forward(QPointF(far(), far()));
        return state;
    };
    int refused = 0;
    for (int round = 0; round < 12; ++round) {
        BezierContour contour = layer.add_bezier_contour(0, {farState(), farState(), farState()}, View());
        QVector<BezierControlPoint> points = contour.get_control_points();
        const auto change = [&](const std::function<void()>& make) {
            const std::string before = documentOf(*project);
            try {
                make();
            } catch (const STRM_OutOfRange&) {
                ++refused;
                EXPECT_EQ(documentOf(*project), before);
            }
        };
        change([&] { follow(points[0], &points[1], 0, true); });
        change([&] { points[1].set_point_data(10, farState(), View()); });
        change([&] { points[0].set_point_data(10, farState(), View()); });
        change([&] { contour.insert_point(5, BezierControlPointData(), static_cast<unsigned>(number(3)), View()); });
        change([&] { follow(points[0], nullptr, 0, false); });
        change([&] { points[1].remove(); });
    }
    EXPECT_GT(refused, 0);
    project->save_as(folder / "p");
    Project opened(folder / "p", nullptr);
    EXPECT_EQ(documentOf(opened), documentOf(*project));
}

} // namespace
