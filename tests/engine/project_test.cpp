// A project's settings: what is kept, what is refused, what is announced, and undo of each.
#include "sample.h"

#include <QObject>
#include <cmath>
#include <engine/embedding.h>
#include <engine/handles/destruction_hook.h>
#include <functional>
#include <limits>
#include <orrery/clip.h>
#include <orrery/start_up.h>
#include <set>
#include <stdexcept>
#include <vector>

namespace {

struct NamedChange
{
    const char* name;
    std::function<void(Project&)> make;
};

// Every kind of change that a script can make, on the sample project.
const std::vector<NamedChange>& changes()
{
    static const auto layer = [](Project& project, const char* name) {
        const QVector<Layer> found = project.find_layers(name);
        if (found.isEmpty())
            throw std::runtime_error(name);
        return found[0];
    };
    static const auto contourOf = [](Layer layer) {
        if (layer.getAllContours().isEmpty())
            throw std::runtime_error("no contour");
        return layer.getAllContours()[0];
    };
    static const auto bezier = [](Project& project) {
        Layer front = layer(project, "front");
        return BezierContour(contourOf(front), front.projectManager());
    };
    static const auto spline = [](Project& project) {
        Layer back = layer(project, "back");
        return XSplineContour(contourOf(back), back.projectManager());
    };
    static const Fundo::Colour3<float> blue{0, 0, 0.5f};
    static const std::vector<NamedChange> all = {
        {"frame rate", [](Project& p) { p.set_frame_rate(50); }},
        {"first frame", [](Project& p) { p.set_first_frame_offset(1001); }},
        {"shorter", [](Project& p) { p.set_length(10); }},
        {"longer", [](Project& p) { p.set_length(1000); }},
        {"playback", [](Project& p) { p.set_playback_in_point(5); }},
        {"range", [](Project& p) { p.set_in_out_range(qMakePair(0u, 1u)); }},
        {"notes", [](Project& p) { p.set_notes("other"); }},
        {"folder", [](Project& p) { p.set_output_dir("/tmp", true); }},
        {"one view", [](Project& p) { p.set_views(p.get_views().mid(0, 1)); }},
        {"hero", [](Project& p) { p.set_default_hero_view(View(0)); }},
        {"clip", [](Project& p) { p.add_clip(p.get_default_trackable_clip(), "again"); }},
        {"clip rate", [](Project& p) { p.get_default_trackable_clip()->set_frame_rate(12); }},
        {"layer", [](Project& p) { p.add_layer(nullptr, "new", 1, 0); }},
        {"group", [](Project& p) { p.add_group("new", p.get_layers()); }},
        {"rename", [](Project& p) { layer(p, "front").set_name("renamed"); }},
        {"hide", [](Project& p) { layer(p, "front").set_visibility(false); }},
        {"lock", [](Project& p) { layer(p, "front").set_locked(true); }},
        {"select", [](Project& p) { layer(p, "back").set_selected(true); }},
        {"matte", [](Project& p) { layer(p, "front").set_matte_color(blue); }},
        {"stroke", [](Project& p) { layer(p, "front").set_stroke_color(blue); }},
        {"higher", [](Project& p) { layer(p, "front").set_z_order(1); }},
        {"to the top of its group", [](Project& p) { layer(p, "third").set_z_order(99); }},
        {"out of the group", [](Project& p) { layer(p, "back").set_parent(nullptr, 0); }},
        {"unlink", [](Project& p) { layer(p, "back").set_link_to_track(boost::none); }},
        {"remove linked layer", [](Project& p) { layer(p, "front").remove(); }},
        {"remove following layer", [](Project& p) { layer(p, "back").remove(); }},
        {"group settings",
         [](Project& p) {
             LayerGroup group = p.get_groups().last();
             group.set_name("g");
             group.set_locked(true);
             group.set_visibility(false);
             group.set_z_order(0);
         }},
        {"contour", [](Project& p) { layer(p, "third").add_xspline_contour(1.5f, {xPoint(1, 2)}, View()); }},
        {"remove contour", [](Project& p) { bezier(p).remove(); }},
        {"insert", [](Project& p) { bezier(p).insert_point(4, bezierPoint(20, 20), 1, View(1)); }},
        {"insert on spline", [](Project& p) { spline(p).insert_point(4, XControlPointData(), 1, View()); }},
        {"remove master point", [](Project& p) { bezier(p).control_point(1).remove(); }},
        {"remove point", [](Project& p) { spline(p).control_point(0).remove(); }},
        {"whole point", [](Project& p) { bezier(p).control_point(0).set_point_data(9, bezierPoint(1, 1), View()); }},
        {"part of a point",
         [](Project& p) {
             BezierControlPointData part;
             part.set_handle_offset_forward(QPointF(0, 9));
             bezier(p).control_point(0).update_point_data(2, part, View(0));
         }},
        {"key", [](Project& p) { layer(p, "front").parameter({"opacity"}).set(1, 5.5, View(0)); }},
        {"replaced key", [](Project& p) { layer(p, "front").parameter({"opacity"}).set(1, 5, View(0)); }},
        {"rest", [](Project& p) { layer(p, "front").parameter({"opacity"}).set(0.5, 4294967295.0, View(0)); }},
        {"no key", [](Project& p) { layer(p, "front").parameter({"opacity"}).delete_keyframe(5, View(0)); }},
        {"group opacity", [](Project& p) { p.get_groups().last().parameter({"opacity"}).set(0.5, 3, View()); }},
    };
    return all;
}

TEST(Undo, EveryChangeIsRolledBackTakenBackAndMadeAgain)
{
    for (const NamedChange& change : changes()) {
        SCOPED_TRACE(change.name);
        auto project = sampleProject();
        const std::string before = documentOf(*project);
        const QStringList readBefore = describe(*project);
        UndoGroup group = project->undo_group();
        group.begin();
        change.make(*project);
        EXPECT_NE(describe(*project), readBefore);
        group.rollback();
        EXPECT_EQ(describe(*project), readBefore);
        group.begin();
        change.make(*project);
        group.commit();
        const std::string after = documentOf(*project);
        EXPECT_NE(before, after);
        group.undo();
        EXPECT_EQ(describe(*project), readBefore);
        // New objects may have used up ids: these do not come back.
        group.redo();
        EXPECT_EQ(documentOf(*project), after);
        group.undo();
        group.redo();
        EXPECT_EQ(documentOf(*project), after);
    }
}

TEST(Undo, GroupsKnowTheirPlace)
{
    auto project = emptyProject();
    UndoGroup group = project->undo_group(), copy(group);
    expectThrow<STRM_BadState>([&] { group.commit(); }, "commit");
    expectThrow<STRM_BadState>([&] { group.rollback(); }, "rollback");
    expectThrow<STRM_BadState>([&] { group.undo(); }, "never committed");
    group.begin();
    expectThrow<STRM_BadState>([&] { copy.begin(); }, "open already");
    expectThrow<STRM_BadState>([&] { copy.undo(); }, "open");
    project->set_notes("a");
    UndoGroup inner = project->undo_group();
    inner.begin();
    project->set_notes("inner");
    inner.rollback();
    EXPECT_EQ(project->get_notes(), QString("a"));
    inner.begin();
    inner.commit();
    inner.undo(); // nothing
    EXPECT_EQ(project->get_notes(), QString("a"));
    inner.begin();
    project->set_notes("inner");
    inner.commit();
    expectThrow<STRM_BadState>([&] { inner.undo(); }, "another undo group is open");
    copy.commit();
    expectThrow<STRM_BadState>([&] { inner.undo(); }, "next");
    project->set_notes("b");
    expectThrow<STRM_BadState>([&] { group.undo(); }, "next");
    UndoGroup nothing = project->undo_group();
    nothing.begin();
    nothing.commit();
    nothing.undo();
    EXPECT_EQ(project->get_notes(), QString("b"));
    UndoGroup orphan = project->undo_group();
    orphan.begin();
    project.reset();
    expectThrow<STRM_BadState>([&] { orphan.commit(); }, "Invalid object");
}

TEST(Undo, GroupsAreBegunAgainAndDropped)
{
    auto project = emptyProject();
    UndoGroup group = project->undo_group();
    for (const char* notes : {"first", "second"}) {
        group.begin();
        project->set_notes(notes);
        group.commit();
    }
    group.begin();
    project->set_notes("rolled back");
    group.rollback();
    group.undo();
    EXPECT_EQ(project->get_notes(), QString("first"));
    group.undo();
    EXPECT_EQ(project->get_notes(), QString());
    group.redo();
    {
        UndoGroup dropped = project->undo_group(), copy(dropped);
        dropped.begin();
        project->set_notes("dropped");
        expectThrow<STRM_BadState>([&] { group.undo(); }, "open");
    }
    EXPECT_EQ(project->get_notes(), QString("dropped"));
    expectThrow<STRM_BadState>([&] { group.undo(); }, "next");
    // A group that has nothing to show leaves the step to the one that has.
    UndoGroup idle = project->undo_group();
    idle.begin();
    group.begin();
    idle.commit();
    project->set_notes("third");
    group.commit();
    idle.undo();
    EXPECT_EQ(project->get_notes(), QString("third"));
    group.undo();
    EXPECT_EQ(project->get_notes(), QString("dropped"));
}

TEST(Undo, OverlappingGroupsBecomeOneStepOfTheFirst)
{
    auto project = emptyProject();
    UndoGroup first = project->undo_group(), second = project->undo_group();
    first.begin();
    project->set_notes("1");
    second.begin();
    project->set_notes("2");
    first.commit();
    project->set_notes("3");
    second.commit();
    first.undo();
    EXPECT_EQ(project->get_notes(), QString());
    first.redo();
    EXPECT_EQ(project->get_notes(), QString("3"));

    first.begin();
    project->set_notes("4");
    second.begin();
    project->set_notes("5");
    first.rollback();
    EXPECT_EQ(project->get_notes(), QString("3"));
    project->set_notes("6");
    second.rollback();
    EXPECT_EQ(project->get_notes(), QString("3"));
    // What was rolled back leaves the steps that can be made again.
    first.begin();
    project->set_notes("7");
    first.commit();
    first.undo();
    second.begin();
    project->set_notes("8");
    second.rollback();
    first.redo();
    EXPECT_EQ(project->get_notes(), QString("7"));
}

TEST(Project, RefusesValuesAndStaysAsItWas)
{
    auto project = sampleProject();
    const QStringList before = describe(*project);
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    expectThrow<STRM_BadArgument>([&] { project->set_frame_rate(nan); }, "frame_rate");
    expectThrow<STRM_BadArgument>([&] { project->set_frame_rate(-24); }, "-24");
    expectThrow<STRM_BadArgument>([&] { project->set_frame_rate(infinity); }, "inf");
    expectThrow<STRM_OutOfRange>([&] { project->set_length(0); }, "length: 0");
    expectThrow<STRM_OutOfRange>([&] { project->set_length(UINT_MAX); }, "4294967295");
    expectThrow<STRM_OutOfRange>([&] { project->set_playback_in_point(45); }, "45");
    expectThrow<STRM_OutOfRange>([&] { project->set_playback_out_point(60); }, "60");
    expectThrow<STRM_OutOfRange>([&] { project->set_in_out_range(qMakePair(9u, 8u)); }, "9");
    expectThrow<STRM_OutOfRange>([&] { project->set_in_out_range(qMakePair(9u, 60u)); }, "60");
    expectThrow<STRM_BadFile>([&] { project->set_output_dir("/no/such/folder", true); }, "/no/such/folder");
    expectThrow<STRM_BadFile>([&] { project->set_output_dir("/etc/hostname", true); }, "no folder");
    expectThrow<STRM_BadArgument>([&] { project->set_notes(QString(QChar(0xd800))); }, "notes");
    expectThrow<STRM_BadArgument>([&] { project->set_views({}); }, "at least one");
    const Fundo::Colour3<float> black{0, 0, 0};
    const ViewInfo first("a", "b", black), sameName("a", "c", black);
    expectThrow<STRM_BadArgument>([&] { project->set_views({first, sameName}); }, "'a'");
    expectThrow<STRM_BadArgument>([&] { project->set_views({ViewInfo("a", "", black)}); }, "abbr");
    expectThrow<STRM_OutOfRange>([&] { project->set_views({ViewInfo("a", "b", {0, 2, 0})}); }, "2");
    expectThrow<STRM_BadArgument>([&] { project->set_views({ViewInfo("a", "b", {nan, 0, 0})}); }, "nan");
    expectThrow<STRM_OutOfRange>([&] { project->set_default_hero_view(View(3)); }, "view 3");
    expectThrow<STRM_BadArgument>([&] { project->add_layer(nullptr, QString(), 0, 0); }, "name");
    expectThrow<STRM_BadArgument>([&] { project->add_layer(nullptr, QString(70000, 'x'), 0, 0); }, "70000");
    expectThrow<STRM_OutOfRange>([&] { project->add_layer(nullptr, "a", 60, 0); }, "60");
    expectThrow<STRM_OutOfRange>([&] { project->add_layer(nullptr, "a", 0, 3); }, "view 3");
    Clip stray(QString(), "stray", false, 1, 1, 1, nullptr);
    expectThrow<STRM_BadArgument>([&] { project->add_layer(&stray, "a", 0, 0); }, "clip");
    expectThrow<STRM_BadArgument>([&] { project->add_clip(nullptr, "a"); }, "clip");
    expectThrow<STRM_BadArgument>([&] { project->add_group("g", {project->layer(0), Layer()}); }, "layers");
    expectThrow<STRM_BadArgument>([&] { Project(nullptr, InvalidInterlaceMode, nullptr); }, "13");
    EXPECT_EQ(describe(*project), before);
}

TEST(Project, AValueThatIsThereAlreadyIsNoStep)
{
    auto project = emptyProject();
    UndoGroup group = project->undo_group();
    group.begin();
    project->set_notes("a");
    group.commit();
    project->set_notes("a");
    project->set_views(project->get_views());
    project->set_length(project->get_length());
    group.undo();
    EXPECT_EQ(project->get_notes(), QString());
}

TEST(Project, TakesItsSettingsFromAClip)
{
    Clip clip(QString(), "plate", false, 64, 48, 33, nullptr);
    clip.set_frame_rate(12.5f);
    Project project(&clip, LowerFieldFirst, nullptr);
    EXPECT_EQ(project.get_frame_rate(), 12.5f);
    EXPECT_EQ(project.get_length(), 33u);
    EXPECT_EQ(project.get_playback_out_point(), 32u);
    EXPECT_EQ(project.get_interlace_mode(), LowerFieldFirst);
    ASSERT_NE(project.get_default_trackable_clip(), nullptr);
    EXPECT_NE(project.get_default_trackable_clip(), &clip);
    EXPECT_EQ(project.get_default_trackable_clip()->get_name(), QString("plate"));
    EXPECT_EQ(Project(nullptr, NotInterlaced, nullptr).get_default_trackable_clip(), nullptr);
}

TEST(Project, LivesOnWithoutAClipThatSomebodyElseDestroyed)
{
    auto project = emptyProject();
    Clip clip(QString(), "plate", false, 8, 8, 8, nullptr);
    UndoGroup group = project->undo_group();
    group.begin();
    Clip* const first = project->add_clip(&clip, "first");
    Clip* const second = project->add_clip(&clip, "second");
    second->set_frame_rate(25);
    Layer layer = project->add_layer(second, "layer", 0, 0);
    Parameter parameter = second->parameter_set(QStringList()).get_parameters().at(0);
    group.commit();
    QObject parent;
    first->setParent(&parent);
    delete second;
    EXPECT_EQ(layer.tracking_input_clip(false), nullptr);
    EXPECT_EQ(project->get_clips().size(), 1);
    EXPECT_TRUE(parameter.isNull());
    group.undo();
    group.redo();
    EXPECT_EQ(project->get_clips().size(), 1);
    documentOf(*project);
    project.reset(); // and so goes the clip, whatever its parent is
    EXPECT_TRUE(parent.children().isEmpty());
}

TEST(Project, IsCurrentUntilItGoes)
{
    auto project = emptyProject();
    orrery::setCurrentProject(project.get());
    EXPECT_EQ(getCurrentProject(), project.get());
    static std::vector<void*> gone;
    orrery::setDestructionHook([](void* object) { gone.push_back(object); });
    Clip clip(QString(), "plate", false, 1, 1, 1, nullptr);
    Clip* const own = project->add_clip(&clip, "own");
    const std::set<void*> expected{project.get(), own, own->get_color_parameters(), own->get_progress_watcher(),
                                   project->get_progress_watcher()};
    project.reset();
    orrery::setDestructionHook(nullptr);
    EXPECT_EQ(getCurrentProject(), nullptr);
    EXPECT_EQ(std::set<void*>(gone.begin(), gone.end()), expected);
}

} // namespace
