// Layers and groups: their order, their links, their removal, their handles.
#include "sample.h"

#include <climits>
#include <cmath>
#include <orrery/clip.h>

namespace {

QStringList names(const QVector<Layer>& layers)
{
    QStringList names;
    for (Layer layer : layers)
        names << layer.get_name();
    return names;
}

class Tree : public ::testing::Test
{
protected:
    Tree()
    {
        for (const char* name : {"a", "b", "c", "d"})
            layers.append(project->add_layer(nullptr, name, 0, 0));
    }
    QString order() { return names(project->get_layers()).join(QString()); }

    std::unique_ptr<Project> project = emptyProject();
    QVector<Layer> layers;
};

TEST_F(Tree, KeepsTheDrawingOrderThroughGroups)
{
    LayerGroup group = project->add_group("g", {layers[2], layers[0]});
    EXPECT_EQ(order(), QString("bdca"));
    EXPECT_EQ(group.get_z_order(), 2);
    EXPECT_EQ(layers[0].get_z_order(), 1);
    EXPECT_EQ(project->layer(2).get_name(), QString("c"));
    EXPECT_TRUE(project->layer(4).isNull());
    group.set_z_order(0);
    EXPECT_EQ(order(), QString("cabd"));
    group.insert_child(layers[1], 1);
    EXPECT_EQ(order(), QString("cbad"));
    group.insert_child(layers[1], 1); // where it is
    EXPECT_EQ(order(), QString("cbad"));
    group.insert_child(layers[1], UINT_MAX);
    EXPECT_EQ(order(), QString("cabd"));
    layers[2].set_parent(nullptr, UINT_MAX);
    EXPECT_EQ(order(), QString("abdc"));
    layers[2].set_parent(&group, 0);
    layers[0].set_z_order(-5);
    EXPECT_EQ(order(), QString("acbd"));
    EXPECT_EQ(names(group.get_layers()).join(QString()), QString("acb"));
    EXPECT_EQ(layers[0].handledObject()->parentGroup(), group.handledObject().get());
    EXPECT_EQ(names(project->find_layers("C")), QStringList("c"));
    EXPECT_EQ(project->find_groups("G").size(), 1);
    EXPECT_EQ(project->find_groups("x").size(), 0);
}

TEST_F(Tree, LinksHaveNoCircles)
{
    layers[0].set_link_to_track(layers[1]);
    layers[1].set_link_to_track(layers[2]);
    expectThrow<STRM_BadArgument>([&] { layers[2].set_link_to_track(layers[0]); }, "'c'");
    expectThrow<STRM_BadArgument>([&] { layers[2].set_link_to_track(layers[2]); }, "link_to_track");
    layers[1].remove();
    EXPECT_FALSE(layers[0].get_link_to_track());
    expectThrow<STRM_BadArgument>([&] { layers[2].set_link_to_track(layers[1]); }, "refers to nothing");
    layers[2].set_link_to_track(layers[0]);
    EXPECT_EQ(*layers[2].get_link_to_track(), layers[0]);
    layers[2].set_link_to_track(Layer());
    EXPECT_FALSE(layers[2].get_link_to_track());
}

TEST_F(Tree, AFollowingLayerMovesWithTheOther)
{
    Layer followed = layers[0], follower = layers[1];
    for (int corner = 0; corner < 4; ++corner)
        for (const double time : {0.0, 10.0}) {
            const QString name = QString::fromLatin1("corner%1_").arg(corner);
            followed.parameter({"transform", name + "x"}).set((corner == 1 || corner == 2) * 10 + time, time, View());
            followed.parameter({"transform", name + "y"}).set((corner > 1) * 10 + 2 * time, time, View());
        }
    follower.set_link_to_track(followed);
    follower.add_xspline_contour(0, {xPoint(0, 0), xPoint(10, 0), xPoint(10, 20), xPoint(0, 20)}, View());
    const Lum_Matrix33 moved = follower.get_transform_matrix(5, View());
    EXPECT_NEAR(moved.values[2], 5, 1e-9);
    EXPECT_NEAR(moved.values[5], 10, 1e-9);
    EXPECT_EQ(moved.values[8], 1);
    EXPECT_EQ(followed.get_transform_matrix(0, View()), Lum_Matrix33::identity());
    EXPECT_EQ(follower.get_surface_position(2, 10, View()), (QList<float>{20, 40}));
    EXPECT_EQ(layers[2].get_transform_matrix(5, View()), Lum_Matrix33::identity());
    expectThrow<STRM_OutOfRange>([&] { follower.get_surface_position(4, 0, View()); }, "corner: 4");
    expectThrow<STRM_OutOfRange>([&] { follower.get_surface_position(0, 0, View(1)); }, "view 1");
    expectThrow<STRM_BadArgument>([&] { follower.get_transform_matrix(NAN, View()); }, "time: nan");
}

TEST_F(Tree, HandlesOfWhatIsGoneAreNull)
{
    Layer layer = layers[1];
    BezierContour contour = layer.add_bezier_contour(0, {bezierPoint(1, 1), bezierPoint(2, 2)}, View());
    BezierControlPoint point = contour.control_point(0);
    Parameter x = point.parameter({"x"}), opacity = layer.parameter({"opacity"});
    ParameterSet set = layer.parameter_set(QStringList());
    const unsigned int hash = qHash(layer);
    UndoGroup group = project->undo_group();
    group.begin();
    layer.remove();
    group.commit();
    EXPECT_TRUE(layer.isNull() && contour.isNull() && point.isNull() && x.isNull() && opacity.isNull() && set.isNull());
    EXPECT_EQ(layer, layers[1]);
    EXPECT_EQ(qHash(layer), hash);
    const std::string invalid = "Invalid object";
    expectThrow<STRM_BadState>([&] { layer.get_name(); }, invalid);
    expectThrow<STRM_BadState>([&] { layer.set_parent(nullptr, 0); }, invalid);
    expectThrow<STRM_BadState>([&] { contour.get_control_points(); }, invalid);
    expectThrow<STRM_BadState>([&] { point.set_point_data(0, bezierPoint(1, 1), View()); }, invalid);
    expectThrow<STRM_BadState>([&] { x.set(1, 0, View()); }, invalid);
    expectThrow<STRM_BadState>([&] { set.get_subsets(); }, invalid);
    expectThrow<STRM_BadState>([&] { layer.remove(); }, invalid);
    group.undo();
    EXPECT_FALSE(layer.isNull() || contour.isNull() || point.isNull() || x.isNull() || opacity.isNull());
    EXPECT_EQ(layer.get_z_order(), 1);
    const auto kept = layer.handledObject();
    project.reset();
    EXPECT_TRUE(layer.isNull());
    EXPECT_NE(kept->parentGroup(), nullptr); // may be followed as long as it is kept
    expectThrow<STRM_BadState>([&] { x.get(0, View()); }, invalid);
    expectThrow<STRM_BadState>([&] { Layer().get_name(); }, invalid);
    EXPECT_EQ(Layer(), Layer());
    EXPECT_TRUE(Parameter().isNull() && ParameterSet().isNull() && LayerGroup().isNull());
}

TEST_F(Tree, RefusesObjectsOfAnotherProject)
{
    auto other = emptyProject();
    Layer stranger = other->add_layer(nullptr, "stranger", 0, 0);
    LayerGroup group = project->add_group("g", {}), strangers = other->add_group("s", {});
    expectThrow<STRM_BadArgument>([&] { group.insert_child(stranger, 0); }, "another project");
    expectThrow<STRM_BadArgument>([&] { group.insert_child(Layer(), 0); }, "layer");
    expectThrow<STRM_BadArgument>([&] { layers[0].set_parent(&strangers, 0); }, "another project");
    expectThrow<STRM_BadArgument>([&] { layers[0].set_link_to_track(stranger); }, "another project");
    expectThrow<STRM_BadArgument>([&] { project->add_group("h", {stranger}); }, "another project");
    LayerGroup null;
    expectThrow<STRM_BadArgument>([&] { layers[0].set_parent(&null, 0); }, "group");
    EXPECT_EQ(project->get_groups().size(), 1);
    EXPECT_EQ(order(), QString("abcd"));
}

TEST_F(Tree, TracksOnTheClipThatItWasGiven)
{
    EXPECT_EQ(layers[0].tracking_input_clip(false), nullptr);
    Clip clip(QString(), "plate", false, 8, 8, 8, nullptr);
    Clip* const first = project->add_clip(&clip, "first");
    Clip* const second = project->add_clip(&clip, "second");
    Layer standard = project->add_layer(nullptr, "standard", 0, 0), chosen = project->add_layer(second, "chosen", 0, 0);
    standard.set_link_to_track(chosen);
    EXPECT_EQ(standard.tracking_input_clip(false), first);
    EXPECT_EQ(standard.tracking_input_clip(true), second);
    EXPECT_EQ(chosen.tracking_input_clip(true), second);
}

TEST_F(Tree, LocksItsShapes)
{
    BezierContour contour = layers[0].add_bezier_contour(0, {bezierPoint(1, 1), bezierPoint(2, 2)}, View());
    const auto refused = [&] {
        expectThrow<STRM_BadState>([&] { layers[0].add_xspline_contour(0, {}, View()); }, "'a' is locked");
        expectThrow<STRM_BadState>([&] { contour.control_point(0).set_point_data(0, bezierPoint(1, 1), View()); },
                                   "'a'");
        expectThrow<STRM_BadState>([&] { contour.control_point(0).parameter({"x"}).set(3, 0, View()); }, "'a'");
        expectThrow<STRM_BadState>([&] { contour.insert_point(0, bezierPoint(1, 1), 0, View()); }, "'a'");
        expectThrow<STRM_BadState>([&] { contour.control_point(0).remove(); }, "'a'");
        expectThrow<STRM_BadState>([&] { contour.remove(); }, "'a'");
    };
    layers[0].set_locked(true);
    refused();
    layers[0].set_locked(false);
    project->add_group("g", {layers[0]}).set_locked(true);
    refused();
    layers[0].parameter({"opacity"}).set(0.5, 0, View());
    layers[0].set_name("still");
}

} // namespace
