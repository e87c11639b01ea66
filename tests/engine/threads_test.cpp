// Any number of threads on one project: nothing is torn, nothing waits for ever, handles outlive what they refer to.
#include "sample.h"

#include <atomic>
#include <functional>
#include <iterator>
#include <orrery/clip.h>
#include <orrery/point_constraint.h>
#include <random>
#include <thread>

namespace {

void changeShapes(const Layer& layer, float time, std::mt19937& random)
{
    const auto anyIndex = [&] { return static_cast<unsigned int>(random() % 5); };
    for (const auto& contour : layer.getAllContours()) {
        if (contour->type() != 1)
            continue;
        BezierContour bezier(contour, layer.projectManager());
        bezier.insert_point(time, BezierControlPointData(), anyIndex(), View());
        bezier.get_bounding_rect(time, View());
        BezierControlPoint point = bezier.control_point(anyIndex());
        const BezierControlPoint master = bezier.control_point(anyIndex());
        Python::setPointConstraint(master.handledObject(), point.handledObject(), layer.projectManager().lock().get(),
                                   {time, -1, 3}, random() % 2);
        point.set_point_data(time, bezierPoint(time, 3), View());
        if (random() % 2)
            point.remove();
        else
            bezier.remove();
    }
}

void changeAsGroup(Project& project, Layer& layer, std::mt19937& random)
{
    UndoGroup group = project.undo_group();
    group.begin();
    layer.set_visibility(random() % 2);
    if (random() % 2)
        group.rollback();
    else
        group.commit();
    group.undo();
}

// One call of any kind; what the model refuses is refused by an exception of the library.
void callSomething(Project& project, const Folder& folder, std::mt19937& random)
{
    const auto anyPlace = [&] { return static_cast<unsigned int>(random() % 12); };
    const auto time = static_cast<float>(random() % 20);
    Layer layer = project.layer(anyPlace());
    const QVector<BezierControlPointData> bezier{bezierPoint(1, 2), bezierPoint(30, 4), bezierPoint(9, 40)};
    const QVector<XControlPointData> spline{xPoint(1, 2), xPoint(30, 4), xPoint(9, 40)};
    const std::function<void()> shapes = [&] { changeShapes(layer, time, random); };
    const std::function<void()> group = [&] { changeAsGroup(project, layer, random); };
    const std::function<void()> calls[] = {
        [&] { project.add_layer(nullptr, "layer", 0, 0); },
        [&] { layer.remove(); },
        [&] { layer.set_name(QString::number(random())); },
        [&] { layer.add_bezier_contour(time, bezier, View()); },
        [&] { layer.add_xspline_contour(time, spline, View()); },
        [&] { layer.set_z_order(static_cast<int>(anyPlace())); },
        [&] { layer.set_link_to_track(project.layer(anyPlace())); },
        [&] { project.add_group("group", {layer}); },
        [&] { layer.set_parent(nullptr, 0); },
        [&] { layer.parameter({"opacity"}).set(0.5, time, View()); },
        [&] { layer.parameter_set(QStringList()).get_keyframes(); },
        [&] { project.parameter_set({"layers"}).get_subsets(); },
        [&] { project.find_layers("1"); },
        [&] { project.set_length(1 + static_cast<unsigned int>(random() % 100)); },
        [&] { layer.get_surface_position(1, time, View()); },
        [&] { project.save_as(folder / QString::number(random() % 2)); },
        [&] { project.get_clips(); },
        shapes,
        shapes,
        shapes,
        group,
        group,
    };
    calls[random() % std::size(calls)]();
}

void callInThreads(Project& project, int threadCount, int calls)
{
    const Folder folder;
    std::atomic<int> refused{0}, done{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&, i] {
            std::mt19937 random(static_cast<unsigned int>(i));
            for (int call = 0; call < calls; ++call) {
                try {
                    callSomething(project, folder, random);
                    ++done;
                } catch (const STRM_Exception&) {
                    ++refused;
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GT(done, refused / 2);
    for (const QString& file : folder.files())
        Project(folder / file, nullptr); // each is whole
    EXPECT_EQ(folder.files().size(), 2);
}

TEST(Threads, MayCallAnythingOnOneProject)
{
    auto project = sampleProject();
    callInThreads(*project, 6, 300);
    Folder folder;
    project->save_as(folder / "p");
    EXPECT_EQ(describe(*std::make_unique<Project>(folder / "p", nullptr)), describe(*project));
}

TEST(Threads, WhateverTheyDidIsTakenBack)
{
    auto project = sampleProject();
    const QStringList before = describe(*project);
    UndoGroup group = project->undo_group();
    group.begin();
    callInThreads(*project, 4, 200);
    group.rollback();
    EXPECT_EQ(describe(*project), before);
}

TEST(Threads, HandlesOutliveTheProject)
{
    for (int round = 0; round < 20; ++round) {
        auto project = sampleProject();
        std::vector<std::thread> threads;
        std::atomic<bool> gone{false};
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([&gone, layers = project->get_layers(), groups = project->get_groups()]() mutable {
                for (bool last = false; !last;) {
                    last = gone;
                    try {
                        for (Layer& layer : layers) {
                            layer.isNull();
                            layer.get_transform_matrix(3, View());
                            layer.parameter({"opacity"}).get(0, View());
                            for (const auto& contour : layer.getAllContours())
                                contour->pointByID(0);
                            static_cast<void>(layer == layers[0]); // either, while they go
                        }
                        groups[0].get_layers();
                        EXPECT_FALSE(last);
                    } catch (const STRM_BadState& error) {
                        EXPECT_STREQ(error.what(), "Invalid object");
                    }
                }
                EXPECT_TRUE(layers[0].isNull() && groups[0].isNull());
            });
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        project.reset();
        gone = true;
        for (std::thread& thread : threads)
            thread.join();
    }
}

} // namespace
