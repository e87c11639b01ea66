// Contours, points and parameters through their handles.
#include "sample.h"

#include <QPointF>
#include <climits>
#include <cmath>
#include <engine/project/data.h>
#include <engine/stratum/shapes.h>
#include <orrery/point_constraint.h>
#include <random>
#include <vector>

namespace {

class Shapes : public ::testing::Test
{
protected:
    Shapes() : layer(project->add_layer(nullptr, "layer", 0, 0))
    {
        project->set_views({ViewInfo("Left", "L", {1, 0, 0}), ViewInfo("Right", "R", {0, 0, 1})});
    }
    void follow(BezierControlPoint& point, const BezierControlPoint* master, double time, bool lock = false)
    {
        Python::setPointConstraint(master ? master->handledObject() : boost::shared_ptr<Stratum::ControlPoint>(),
                                   point.handledObject(), layer.projectManager().lock().get(), {time, 0, 3}, lock);
    }

    std::unique_ptr<Project> project = emptyProject();
    Layer layer;
};

TEST_F(Shapes, PointsAreKeyframedPerFieldTimeAndView)
{
    BezierContour contour = layer.add_bezier_contour(10, {bezierPoint(1, 2), bezierPoint(3, 4)}, View());
    BezierControlPoint point = contour.control_point(1);
    BezierControlPointData part;
    part.set_x(7.f);
    point.update_point_data(20, part, View());
    EXPECT_EQ(point.get_point_data(15, View()).get_x(), 5.f);
    EXPECT_EQ(point.get_point_data(15, View()).get_y(), 4.f);
    EXPECT_EQ(point.parameter({"x"}).get_keyframes().size(), 2);
    EXPECT_EQ(point.parameter({"y"}).get_keyframes().size(), 1);
    point.update_point_data(15, part, View(1));
    EXPECT_EQ(point.get_point_data(0, View(1)).get_x(), 7.f);
    EXPECT_EQ(point.get_point_data(0, View(0)).get_x(), 3.f);
    // The whole state: what the record leaves unset takes its initial value.
    point.set_point_data(10, part, View());
    const BezierControlPointData whole(true, false, 7.f, 0.f, 0.f, 0.f, QPointF(), QPointF());
    EXPECT_EQ(point.get_point_data(10, View()), whole);
    EXPECT_TRUE(contour.control_point(2).isNull());
    EXPECT_TRUE(contour.control_point(UINT_MAX).isNull());
    // The time that means "not animated", also as it arrives in single precision.
    EXPECT_EQ(point.get_point_data(4294967295.0f, View()).get_x(), 3.f);
    point.set_point_data(4294967295.0f, part, View());
    EXPECT_EQ(point.parameter({"x"}).get_keyframes().size(), 1); // that of the other view
}

TEST_F(Shapes, StandSomewhereInEveryView)
{
    BezierContour contour = layer.add_bezier_contour(10, {bezierPoint(1, 2), bezierPoint(3, 4)}, View(1));
    BezierControlPoint point = contour.control_point(1),
                       added = contour.insert_point(10, bezierPoint(8, 9), 2, View(1));
    for (const View& view : {View(0), View(1), View()}) {
        EXPECT_EQ(point.get_point_data(0, view).get_x(), 3.f);
        EXPECT_EQ(added.get_point_data(0, view).get_x(), 8.f);
    }
    EXPECT_EQ(point.parameter({"x"}).get(4294967295.0, View()), QVariant(3.0));
    // A keyframe in one view leaves the others; the hero view's last one leaves its value behind.
    point.update_point_data(5, bezierPoint(7, 7), View(1));
    EXPECT_EQ(point.get_point_data(5, View(0)).get_x(), 3.f);
    Parameter x = point.parameter({"x"});
    x.set(20, 4, View(0));
    project->set_default_hero_view(View(1));
    EXPECT_EQ(point.get_point_data(4, View(0)).get_x(), 20.f);
    x.delete_keyframe(5, View(1));
    x.delete_keyframe(10, View(1));
    EXPECT_EQ(point.get_point_data(4, View(1)).get_x(), 3.f);
    x.delete_keyframe(4, View(0));
    EXPECT_EQ(point.get_point_data(4, View(0)).get_x(), 3.f);
    // A time in single precision names the keyframe that was set in double precision.
    x.set(11, 5000.3, View());
    BezierControlPointData part;
    part.set_x(12.f);
    point.update_point_data(5000.3f, part, View());
    EXPECT_EQ(x.get_keyframes().size(), 1);
}

TEST_F(Shapes, SmoothPointsKeepTheirTangentsInLine)
{
    BezierControlPoint point = layer.add_bezier_contour(0, {bezierPoint(0, 0)}, View()).control_point(0);
    BezierControlPointData part;
    part.set_handle_offset_forward(QPointF(0, 5));
    point.update_point_data(0, part, View());
    const QPointF backward = *point.get_point_data(0, View()).get_handle_offset_backward();
    EXPECT_NEAR(backward.x(), 0, 1e-9);
    EXPECT_NEAR(backward.y(), -std::hypot(3.3, 1), 1e-9);
    part.set_corner(true);
    part.set_handle_offset_forward(QPointF(5, 0));
    point.update_point_data(0, part, View());
    EXPECT_EQ(*point.get_point_data(0, View()).get_handle_offset_backward(), backward);
}

TEST_F(Shapes, RefuseValuesAndStayAsTheyWere)
{
    BezierContour contour = layer.add_bezier_contour(0, {bezierPoint(1, 2), bezierPoint(3, 4)}, View());
    BezierControlPoint point = contour.control_point(0);
    XSplineContour spline = layer.add_xspline_contour(0, {xPoint(1, 2)}, View());
    const std::string before = documentOf(*project);
    const float nan = NAN, infinity = INFINITY;
    expectThrow<STRM_BadArgument>([&] { layer.add_bezier_contour(nan, {}, View()); }, "time: nan");
    expectThrow<STRM_BadArgument>(
        [&] {
            layer.add_bezier_contour(0, {bezierPoint(1, 1), bezierPoint(0, nan)}, View());
        },
        "y: nan");
    expectThrow<STRM_OutOfRange>([&] { layer.add_bezier_contour(0, {}, View(2)); }, "view 2");
    expectThrow<STRM_BadArgument>([&] { point.set_point_data(infinity, bezierPoint(0, 0), View()); }, "inf");
    expectThrow<STRM_BadArgument>([&] { point.update_point_data(0, bezierPoint(-infinity, 0), View()); }, "x: -inf");
    expectThrow<STRM_OutOfRange>([&] { point.set_point_data(0, bezierPoint(1e30f, 0), View()); }, "x");
    expectThrow<STRM_OutOfRange>([&] { spline.control_point(0).set_point_data(0, xPoint(0, 0, 2), View()); },
                                 "weight: 2");
    BezierControlPointData part;
    part.set_handle_offset_forward(QPointF(0, double(nan)));
    expectThrow<STRM_BadArgument>([&] { contour.insert_point(0, part, 0, View()); }, "handle_offset_forward");
    expectThrow<STRM_BadArgument>([&] { contour.get_bounding_rect(nan, View()); }, "time");
    expectThrow<STRM_OutOfRange>([&] { point.get_point_data(0, View(-7)); }, "view 4294967289");
    EXPECT_EQ(documentOf(*project), before);
}

TEST_F(Shapes, InsertionKeepsStraightLinesStraight)
{
    BezierContour drawn = layer.add_bezier_contour(0, {}, View());
    EXPECT_TRUE(drawn.get_bounding_rect(0, View()).isEmpty());
    for (const auto& [x, y] : {std::pair{0.f, 0.f}, {10.f, 0.f}, {10.f, 10.f}}) {
        BezierControlPointData corner;
        corner.set_x(x);
        corner.set_y(y);
        drawn.insert_point(0, corner, UINT_MAX, View());
    }
    for (BezierControlPoint point : drawn.get_control_points())
        EXPECT_EQ(point.get_point_data(0, View()).get_handle_offset_forward(), QPointF());
    EXPECT_EQ(drawn.get_bounding_rect(0, View()), (QList<float>{0, 0, 10, 10}));
}

TEST_F(Shapes, ActivePointsAloneMakeTheOutline)
{
    XSplineContour contour =
        layer.add_xspline_contour(0, {xPoint(0, 0), xPoint(10, 0), xPoint(10, 10), xPoint(99, 99)}, View());
    XControlPointData part;
    part.set_active(false);
    contour.control_point(3).update_point_data(5, part, View());
    EXPECT_EQ(contour.get_bounding_rect(5, View()), (QList<float>{0, 0, 10, 10}));
    // Held, not interpolated; and the first keyframe's before it.
    XControlPointData active;
    active.set_active(true);
    contour.control_point(3).update_point_data(0, active, View());
    EXPECT_EQ(contour.get_bounding_rect(4.9f, View()), (QList<float>{0, 0, 99, 99}));
}

TEST_F(Shapes, FollowersKeepTheirDistance)
{
    BezierContour contour =
        layer.add_bezier_contour(0, {bezierPoint(0, 0), bezierPoint(50, 0), bezierPoint(0, 50)}, View());
    BezierControlPoint master = contour.control_point(0), middle = contour.control_point(1),
                       last = contour.control_point(2);
    master.set_point_data(20, bezierPoint(20, 40), View());
    follow(middle, &master, 5);
    follow(last, &middle, 10, true);
    const auto x = [](BezierControlPoint& point, float time) { return *point.get_point_data(time, View()).get_x(); };
    EXPECT_FLOAT_EQ(x(middle, 0), 50); // before the link holds
    EXPECT_FLOAT_EQ(x(middle, 5), 50);
    EXPECT_FLOAT_EQ(x(middle, 20), 65);
    EXPECT_FLOAT_EQ(x(last, 20), 10);
    expectThrow<STRM_BadArgument>([&] { follow(master, &last, 0); }, "cannot follow itself");
    expectThrow<STRM_BadArgument>([&] { follow(last, &last, 0); }, "cannot follow itself");
    EXPECT_EQ(middle.handledObject()->master(), master.handledObject().get());
    // What is written is where the point then is, whatever the master adds.
    middle.set_point_data(20, bezierPoint(7, 8), View());
    EXPECT_FLOAT_EQ(x(middle, 20), 7);
    std::vector<float> places;
    for (float time = 5; time < 25; time += 1.25f)
        places.push_back(x(last, time));
    middle.remove();
    EXPECT_EQ(last.handledObject()->master(), nullptr);
    std::size_t next = 0;
    for (float time = 5; time < 25; time += 1.25f)
        EXPECT_NEAR(x(last, time), places[next++], 1e-4);
    auto other = emptyProject();
    Layer strange = other->add_layer(nullptr, "other", 0, 0);
    BezierControlPoint stranger = strange.add_bezier_contour(0, {bezierPoint(0, 0)}, View()).control_point(0);
    expectThrow<STRM_BadArgument>([&] { follow(last, &stranger, 0); }, "different projects");
}

TEST_F(Shapes, LockedTangentsTurnWithTheMasters)
{
    BezierContour contour = layer.add_bezier_contour(0, {bezierPoint(0, 0), bezierPoint(50, 0)}, View());
    BezierControlPointData part;
    part.set_corner(true);
    part.set_handle_offset_forward(QPointF(10, 0));
    contour.control_point(0).update_point_data(0, part, View());
    part.set_handle_offset_forward(QPointF(0, 10));
    contour.control_point(0).update_point_data(10, part, View());
    BezierControlPoint follower = contour.control_point(1);
    const BezierControlPoint master = contour.control_point(0);
    follow(follower, &master, 0, true);
    const QPointF turned = *follower.get_point_data(10, View()).get_handle_offset_forward();
    EXPECT_NEAR(turned.x(), 1.25, 1e-9);
    EXPECT_NEAR(turned.y(), 4, 1e-9);
}

// What a contour should be: handles in order, where they are, whom they follow.
struct ExpectedPoint
{
    BezierControlPoint handle;
    float x;
    const Stratum::ControlPoint* master;

    const Stratum::ControlPoint* engine() const { return handle.handledObject().get(); }
};
using Outline = std::vector<ExpectedPoint>;

void move(Outline& outline, const Stratum::ControlPoint* moved, float distance)
{
    for (ExpectedPoint& point : outline) {
        if (point.engine() == moved)
            point.x += distance;
        else if (point.master == moved)
            move(outline, point.engine(), distance);
    }
}

void compare(BezierContour& contour, const Outline& outline)
{
    QVector<BezierControlPoint> found = contour.get_control_points();
    ASSERT_EQ(static_cast<std::size_t>(found.size()), outline.size());
    unsigned int index = 0;
    for (const ExpectedPoint& point : outline) {
        ASSERT_EQ(found[static_cast<int>(index)], point.handle);
        ASSERT_EQ(contour.control_point(index++), point.handle);
        ASSERT_EQ(BezierControlPoint(point.handle).get_point_data(0, View()).get_x(), point.x);
        ASSERT_EQ(point.engine()->master(), point.master);
    }
}

TEST_F(Shapes, AContourOfThousandsKeepsOrderHandlesAndLinks)
{
    std::mt19937 random(12);
    BezierContour contour =
        layer.add_bezier_contour(0, QVector<BezierControlPointData>(2000, bezierPoint(0, 0)), View());
    Outline outline;
    for (const BezierControlPoint& point : contour.get_control_points())
        outline.push_back({point, 0, nullptr});
    const auto changeSomething = [&] {
        const auto at = outline.begin() + static_cast<std::ptrdiff_t>(random() % outline.size());
        BezierControlPoint point = at->handle;
        const auto x = static_cast<float>(random() % 1000);
        switch (random() % 6) {
        case 0:
        case 1: {
            const bool last = random() % 8 == 0;
            const unsigned int index = last ? UINT_MAX : static_cast<unsigned int>(at - outline.begin());
            const BezierControlPoint added = contour.insert_point(0, bezierPoint(x, 0), index, View());
            outline.insert(last ? outline.end() : at, {added, x, nullptr});
            break;
        }
        case 2:
        case 3:
            for (ExpectedPoint& other : outline)
                if (other.master == at->engine())
                    other.master = nullptr;
            outline.erase(at);
            point.remove();
            EXPECT_TRUE(point.isNull());
            break;
        case 4:
            try {
                const ExpectedPoint& master = outline[random() % 20]; // so that some have many followers
                follow(point, &master.handle, 0);
                at->master = master.engine();
            } catch (const STRM_BadArgument&) { // a circle
            }
            break;
        default:
            point.set_point_data(0, bezierPoint(x, 0), View());
            move(outline, at->engine(), x - at->x);
        }
    };
    for (int round = 0; round < 16; ++round) {
        const Outline before = outline;
        UndoGroup group = project->undo_group();
        group.begin();
        for (int i = 0; i < 200; ++i)
            changeSomething();
        compare(contour, outline);
        if (round % 4 == 3) {
            group.rollback();
            outline = before;
        } else {
            group.commit();
            group.undo();
            compare(contour, before);
            group.redo();
        }
        compare(contour, outline);
        ASSERT_FALSE(HasFatalFailure()) << "round " << round;
    }
}

// ---- Parameters ----

TEST_F(Shapes, ParametersTakeWhatTheyAreFor)
{
    BezierContour contour = layer.add_bezier_contour(0, {bezierPoint(1, 2)}, View());
    BezierControlPoint point = contour.control_point(0);
    const QVariantList pair{1.5, -2.0};
    point.parameter({"handle_offset_forward"}).set(pair, 4, View());
    EXPECT_EQ(point.get_point_data(4, View()).get_handle_offset_forward(), QPointF(1.5, -2));
    EXPECT_EQ(point.parameter({"handle_offset_forward"}).get(4, View()).toList(), pair);
    point.parameter({"active"}).set(false, 4, View());
    EXPECT_EQ(point.parameter({"active"}).get(9, View()), QVariant(false));
    Parameter model = layer.parameter({"motion_model"});
    model.set(1, 4294967295.0, View());
    EXPECT_STREQ(model.get(0, View()).typeName(), "TrackModel");
    model.set(model.get(0, View()), 3, View());
    const std::string before = documentOf(*project);
    expectThrow<STRM_OutOfRange>([&] { model.set(3, 0, View()); }, "motion_model: 3");
    expectThrow<STRM_BadArgument>([&] { model.set("x", 0, View()); }, "QString");
    expectThrow<STRM_BadArgument>([&] { model.set(layer.parameter({"blend_mode"}).get(0, View()), 0, View()); },
                                  "VX_BlendMode");
    expectThrow<STRM_BadArgument>([&] { model.set(QVariant(), 0, View()); }, "nothing");
    expectThrow<STRM_BadArgument>([&] { layer.parameter({"opacity"}).set(true, 0, View()); }, "bool");
    expectThrow<STRM_OutOfRange>([&] { layer.parameter({"opacity"}).set(1.5, 0, View()); }, "opacity: 1.5");
    expectThrow<STRM_BadArgument>([&] { layer.parameter({"opacity"}).set(NAN, 0, View()); }, "opacity: nan");
    expectThrow<STRM_BadArgument>([&] { layer.parameter({"opacity"}).set(1, INFINITY, View()); }, "time: inf");
    expectThrow<STRM_OutOfRange>([&] { model.delete_keyframe(3.5, View()); }, "3.5");
    expectThrow<STRM_BadState>([&] { contour.parameter({"type"}).set(0, 0, View()); }, "type");
    EXPECT_EQ(*static_cast<const int*>(contour.parameter({"type"}).get(0, View()).constData()), 1);
    EXPECT_EQ(documentOf(*project), before);
    model.delete_keyframe(3, View());
    EXPECT_TRUE(model.get_keyframes().isEmpty());
}

TEST_F(Shapes, OneValueIsReachedOnSeveralPaths)
{
    BezierContour contour = layer.add_bezier_contour(0, {bezierPoint(1, 2), bezierPoint(3, 4)}, View());
    Parameter own = contour.control_point(1).parameter({"x"});
    Parameter ofContour = contour.parameter({"1", "x"}),
              ofProject = project->parameter({"layers", "1", "contours", "0", "1", "x"});
    EXPECT_EQ(own, ofContour);
    EXPECT_EQ(own, ofProject);
    EXPECT_EQ(qHash(own), qHash(ofProject));
    EXPECT_NE(own, contour.control_point(0).parameter({"x"}));
    EXPECT_EQ(own.get_name_components(), QStringList("x"));
    EXPECT_EQ(ofContour.get_name_components(), QStringList({"1", "x"}));
    for (const QStringList& path : {QStringList(), QStringList("1"), QStringList({"2", "x"}), QStringList({"01", "x"}),
                                    QStringList({"1", "x", "x"}), QStringList("nonsense")})
        EXPECT_TRUE(contour.parameter(path).isNull()) << toStdString(path.join('/'));
    EXPECT_TRUE(contour.parameter_set({"1", "x"}).isNull());
    EXPECT_EQ(contour.parameter_set({"1"}).get_script_name(), QString("point_1"));
    EXPECT_EQ(contour.parameter_set({"1"}), contour.control_point(1).parameter_set(QStringList()));
    EXPECT_EQ(layer.parameter_set({"transform"}).get_parameters().size(), 8);
    EXPECT_EQ(layer.parameter_set({"transform"}).get_display_name(), QString("Transform"));
    contour.control_point(0).remove();
    EXPECT_TRUE(contour.parameter_set({"0"}).isNull());
    EXPECT_EQ(contour.parameter_set(QStringList()).get_subsets().size(), 1);
    EXPECT_EQ(layer.parameter_set({"contours", "0"}), contour.parameter_set(QStringList()));
    contour.remove();
    EXPECT_TRUE(layer.parameter_set({"contours", "0"}).isNull());
}

TEST_F(Shapes, KeyframesAreListedByViewAndTime)
{
    Parameter opacity = layer.parameter({"opacity"});
    for (const double time : {30.0, 10.0, 20.5})
        opacity.set(0.5, time, View());
    opacity.set(0.5, 5, View(1));
    const QVector<QPair<View, double>> expected{{View(0), 10}, {View(0), 20.5}, {View(0), 30}, {View(1), 5}};
    EXPECT_EQ(opacity.get_keyframes(), expected);
    layer.parameter({"blend_mode"}).set(1, 10, View());
    EXPECT_EQ(layer.parameter_set(QStringList()).get_keyframes(), expected);
    project->set_views({project->get_views()[0]});
    EXPECT_EQ(opacity.get_keyframes().size(), 3);
    opacity.set(0.25, 4294967295.0, View());
    EXPECT_TRUE(opacity.get_keyframes().isEmpty());
    EXPECT_EQ(opacity.get(10, View()), QVariant(0.25));
}

} // namespace
