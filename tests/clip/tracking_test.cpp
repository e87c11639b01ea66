// Project::track_layers on made footage with known truth, and on footage with something wrong.

#include "test_footage.h"

#include <QFile>
#include <algorithm>
#include <cmath>
#include <optional>
#include <orrery/progress_watcher.h>
#include <orrery/undo_group.h>
#include <thread>

namespace {

constexpr unsigned int last = 4294967295U;

pixels::FootageOptions trackedOptions()
{
    pixels::FootageOptions options = smallOptions();
    options.size = {128, 96};
    options.motion = 0.5; // a dozen frames are few for all of it
    return options;
}

// The worst distance of the tracked corners from the truth.
double cornerError(Layer layer, const pixels::MadeFootage& footage, int inPoint, int frame)
{
    const Lum_Matrix33 matrix = layer.get_transform_matrix(static_cast<float>(frame), View(0));
    pixels::Matrix transform;
    std::copy(std::begin(matrix.values), std::end(matrix.values), transform.values.begin());
    const auto start = footage.corners(inPoint), truth = footage.corners(frame);
    double worst = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const pixels::Point found = transform.map(start[i]);
        worst = std::max(worst, std::hypot(found.x - truth[i].x, found.y - truth[i].y));
    }
    return worst;
}

int keyCount(Layer layer) { return layer.parameter_set({"transform"}).get_keyframes().size(); }

class Tracking : public testing::Test
{
protected:
    Tracking() : made(trackedOptions()), project(projectOver(writeFootage(folder, made), output)) {}

    Layer surface(int inPoint = 0) { return addPolygon(*project, "surface", cornersOf(made, inPoint), inPoint); }

    Folder folder, output;
    pixels::MadeFootage made;
    std::unique_ptr<Project> project;
};

} // namespace

TEST_F(Tracking, FollowsASurfaceBothWaysAsOneStep)
{
    Layer layer = surface(5);
    UndoGroup group = project->undo_group();
    group.begin();
    project->track_layers(0, last, {layer}, {});
    group.commit();
    EXPECT_EQ(keyCount(layer), 12);
    for (int frame = 0; frame < 12; ++frame)
        EXPECT_LT(cornerError(layer, made, 5, frame), 1) << frame;
    EXPECT_EQ(layer.get_transform_matrix(5, View(0)), Lum_Matrix33::identity());
    group.undo();
    EXPECT_EQ(keyCount(layer), 0);
}

TEST_F(Tracking, StaysInTheFramesThatAreAskedFor)
{
    Layer layer = surface(5);
    project->track_layers(6, 8, {layer}, {View(0)});
    EXPECT_EQ(keyCount(layer), 4) << "the in point is the fourth";
    EXPECT_LT(cornerError(layer, made, 5, 8), 1);
    expectThrow<STRM_OutOfRange>([&] { project->track_layers(0, 12, {layer}, {}); }, "12");
    expectThrow<STRM_BadArgument>([&] { project->track_layers(9, 8, {layer}, {}); }, "start_index");
    expectThrow<STRM_OutOfRange>([&] { project->track_layers(0, 8, {layer}, {View(3)}); }, "3");
    expectThrow<STRM_BadArgument>([&] { project->track_layers(0, 8, {Layer()}, {}); }, "layers");
    EXPECT_EQ(keyCount(layer), 4);
}

TEST_F(Tracking, SeveralLayersShareTheFrames)
{
    // A part of the surface is followed by a layer of its own, which hides it from the one below.
    const auto corners = cornersOf(made, 0), later = cornersOf(made, 2);
    const auto towards = [](const pixels::Point& a, const pixels::Point& b) {
        return pixels::Point{a.x + 0.6 * (b.x - a.x), a.y + 0.6 * (b.y - a.y)};
    };
    Layer whole = surface();
    Layer part = addPolygon(
        *project, "part",
        {later[0], towards(later[0], later[1]), towards(later[0], later[2]), towards(later[0], later[3])}, 2);
    Layer hidden = addPolygon(*project, "hidden", corners);
    hidden.set_visibility(false);
    Layer follower = addPolygon(*project, "follower", square(2, 2, 8, 8));
    follower.set_link_to_track(whole);
    project->track_layers(0, last, {}, {});
    EXPECT_EQ(keyCount(whole), 12);
    EXPECT_EQ(keyCount(part), 12);
    EXPECT_EQ(keyCount(hidden), 0);
    EXPECT_EQ(keyCount(follower), 0);
    EXPECT_EQ(follower.get_transform_matrix(7, View(0)), whole.get_transform_matrix(7, View(0)));
    expectThrow<STRM_BadState>([&] { project->track_layers(0, last, {follower}, {}); }, "'surface'");
}

TEST(TrackingOccluded, WhatLiesAboveIsLeftOut)
{
    pixels::FootageOptions options = trackedOptions();
    options.size = {192, 108};
    options.frames = 24;
    options.motion = 0.6;
    options.occluder = true;
    const pixels::MadeFootage made(options);
    Folder folder, output;
    const auto project = projectOver(writeFootage(folder, made), output);
    Layer layer = addPolygon(*project, "surface", cornersOf(made, 0));
    Layer bar = project->add_layer(nullptr, "bar", 0, 0);
    QVector<BezierControlPointData> points;
    for (const pixels::OutlineVertex& vertex : made.occluder(0))
        points.append(BezierControlPointData(true, true, float(vertex.x), float(vertex.y)));
    BezierContour contour = bar.add_bezier_contour(0, points, View(0));
    for (int frame = 1; frame < options.frames; ++frame)
        for (unsigned int i = 0; i < 4; ++i) {
            const pixels::OutlineVertex vertex = made.occluder(frame)[i];
            contour.control_point(i).update_point_data(
                float(frame), BezierControlPointData(boost::none, boost::none, float(vertex.x), float(vertex.y)),
                View(0));
        }
    project->track_layers(0, last, {layer}, {});
    for (int frame = 0; frame < options.frames; ++frame)
        EXPECT_LT(cornerError(layer, made, 0, frame), 1) << frame;
}

TEST_F(Tracking, FramesInWhichALayerIsNotFoundAreGapsAndAreNamed)
{
    for (const int number : {5, 6, 12})
        writeImage(folder.path() + QString::fromLatin1("/plate.%1.png").arg(number, 4, 10, QLatin1Char('0')),
                   pixels::Image({128, 96}, 3, 0.5f));
    Layer layer = surface();
    expectThrow<STRM_OperationFailed>([&] { project->track_layers(0, last, {layer}, {}); },
                                      "'surface' was not found in frames 4 to 5, 11:");
    EXPECT_EQ(keyCount(layer), 9) << "it is found again";
    EXPECT_LT(cornerError(layer, made, 0, 9), 1);
    Parameter quality = layer.parameter({"track", "quality"}), visible = layer.parameter({"track", "visible"});
    EXPECT_EQ(quality.get_keyframes().size(), 9);
    EXPECT_GT(visible.get(9, View(0)).toDouble(), 0.9);
}

TEST_F(Tracking, FootageWithSomethingWrongLeavesEverythingAsItWas)
{
    Layer layer = surface();
    const std::string whole = readBytes(folder / "plate.0004.png");
    const auto expectBadFile = [&](const char* part) {
        expectThrow<STRM_BadFile>([&] { project->track_layers(0, last, {layer}, {}); }, "plate.0004.png");
        expectThrow<STRM_BadFile>([&] { project->track_layers(0, last, {layer}, {}); }, part);
        EXPECT_EQ(keyCount(layer), 0);
    };
    writeBytes(folder / "plate.0004.png", whole.substr(0, whole.size() / 2));
    expectBadFile("Frame 3 of the clip 'Plate'");
    writeBytes(folder / "plate.0004.png", "no image");
    expectBadFile("Frame 3");
    writeImage(folder / "plate.0004.png", pixels::Image({64, 96}, 3));
    expectBadFile("64");
    QFile::remove(folder / "plate.0004.png");
    expectBadFile("Frame 3");
    writeBytes(folder / "plate.0004.png", whole);
    project->track_layers(0, last, {layer}, {});
    EXPECT_EQ(keyCount(layer), 12);
}

TEST_F(Tracking, NamesLayersThatCannotBeTracked)
{
    Layer empty = project->add_layer(nullptr, "empty", 0, 0);
    expectThrow<STRM_BadState>([&] { project->track_layers(0, last, {empty}, {}); }, "'empty' has no shape");
    Layer flat = addPolygon(*project, "outside", square(-50, -50, -10, -10));
    expectThrow<STRM_OperationFailed>([&] { project->track_layers(0, last, {flat}, {}); }, "'outside'");
    Project bare("", nullptr);
    Layer foreign = addPolygon(bare, "foreign", square(1, 1, 9, 9));
    EXPECT_THROW(project->track_layers(0, last, {foreign}, {}), STRM_BadArgument);
    expectThrow<STRM_BadState>([&] { bare.track_layers(0, last, {foreign}, {}); }, "has no clip");
    bare.track_layers(0, last, {}, {});
}

TEST_F(Tracking, ACancelLeavesNothingAndASecondOperationIsRefused)
{
    Layer layer = surface();
    ProgressWatcher& watcher = *project->get_progress_watcher();
    QStringList events;
    const Listener started(watcher, SIGNAL(started(QString)), [&](const QString& text) { events << text; });
    const Listener cancelled(watcher, SIGNAL(cancelled()), [&] { events << "cancelled"; });
    const Listener finished(watcher, SIGNAL(finished()), [&] { events << "finished"; });
    std::optional<Listener> progress;
    progress.emplace(watcher, SIGNAL(progressChanged(double, QString)), [&] {
        EXPECT_THROW(project->track_layers(0, last, {layer}, {}), STRM_OperationInProgress);
        watcher.cancel();
    });
    EXPECT_THROW(project->track_layers(0, last, {layer}, {}), STRM_OperationCancelledByUser);
    EXPECT_EQ(events, (QStringList{"Tracking", "cancelled", "finished"}));
    EXPECT_EQ(keyCount(layer), 0);
    progress.reset();
    project->track_layers(0, 3, {layer}, {});
    EXPECT_EQ(keyCount(layer), 4);
}

TEST_F(Tracking, ThePlaceOfChangesIsTheModelMeanwhile)
{
    Layer layer = surface(), other = addPolygon(*project, "other", square(5, 5, 20, 20));
    bool changed = false;
    const Listener told(*project->get_progress_watcher(), SIGNAL(progressChanged(double, QString)), [&] {
        if (changed)
            return;
        changed = true;
        std::thread([&] {
            layer.set_name("renamed");
            other.remove();
        }).join();
    });
    project->track_layers(0, last, {layer, other}, {});
    EXPECT_TRUE(changed);
    EXPECT_EQ(keyCount(layer), 12);
    EXPECT_TRUE(other.isNull());
}
