// Objects that end while they tell of a change, and objects that own each other: every pairing and every order.
#include "sample.h"

#include <QObject>
#include <QPointer>
#include <algorithm>
#include <atomic>
#include <functional>
#include <orrery/clip.h>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <thread>

namespace {

// A project with its own clips and what belongs to them, and objects of every class beside it.
struct World
{
    World()
    {
        Clip source(QString(), "plate", false, 64, 48, 10, nullptr);
        project = new Project(&source, NotInterlaced, nullptr);
        clip = project->get_default_trackable_clip();
        objects = {project.data(),
                   clip.data(),
                   project->add_clip(&source, "second"),
                   project->get_progress_watcher(),
                   clip->get_progress_watcher(),
                   clip->get_color_parameters(),
                   new Project(QString(), nullptr),
                   new Clip(QString(), "own", false, 0, 0, 0, nullptr),
                   new QObject};
        layer = project->add_layer(nullptr, "layer", 0, 0);
    }
    ~World()
    {
        for (const QPointer<QObject>& object : objects)
            delete object;
    }

    QPointer<Project> project;
    QPointer<Clip> clip;
    std::vector<QPointer<QObject>> objects;
    Layer layer;
};

using Act = std::function<void(World&)>;

void recordedStep(World& world, void (UndoGroup::*end)(), void (UndoGroup::*then)() = nullptr)
{
    UndoGroup group = world.project->undo_group();
    group.begin();
    world.layer.set_name("step");
    if (world.project)
        world.project->set_notes("step");
    if (world.clip)
        world.clip->set_frame_rate(30);
    (group.*end)();
    if (then)
        (group.*then)();
}

} // namespace

TEST(Lifetime, WhoIsToldMayDestroyAnything)
{
    Folder folder;
    const Act changes[] = {
        [](World& w) { w.layer.set_name("new"); },
        [](World& w) { w.project->set_length(10); },
        [](World& w) { recordedStep(w, &UndoGroup::commit); },
        [](World& w) { recordedStep(w, &UndoGroup::rollback); },
        [](World& w) { recordedStep(w, &UndoGroup::commit, &UndoGroup::undo); },
        [](World& w) { w.layer.remove(); },
        [](World& w) { w.project->add_layer(nullptr, "added", 0, 0); },
        [](World& w) { w.project->add_group("group", {w.layer}); },
        [](World& w) { w.clip->set_frame_rate(12); },
        [](World& w) { w.clip->get_color_parameters()->set_gamma(2); },
        [](World& w) {
            w.clip->set_color_parameters(new ColorParameters(LogColorspace, NoneConversion, 0, 0, 1, 0, 1));
        },
        [](World& w) { w.project->save_as(w.project->get_notes()); },
        [](World& w) {
            delete w.project->export_rendered_shapes({w.layer}, Grayscale, "mattes", w.project->get_output_dir(), "m.",
                                                     ".png", 0, 3, 4, {}, false);
        },
    };
    const Act acts[] = {
        [](World& w) { delete w.project; },
        [](World& w) { delete w.clip; },
        [](World& w) { qDeleteAll(w.project->get_clips()); },
        [](World& w) { delete w.project->get_progress_watcher(); },
        [](World& w) { delete w.clip->get_color_parameters(); },
        [](World& w) { w.clip->set_color_parameters(nullptr); },
        [](World& w) {
            w.project->setParent(w.clip);
            delete w.clip;
        },
    };
    int acted = 0;
    for (const Act& change : changes)
        for (const Act& act : acts)
            for (int which = 0; which < 5; ++which) {
                if ((which == 4) != (&change == std::end(changes) - 1)) // an export tells its watcher only
                    continue;
                World world;
                world.project->set_notes(folder / "saved.vireo");
                world.project->set_output_dir(folder.path(), false);
                bool done = false;
                const auto slot = [&] {
                    if (done)
                        return;
                    done = true;
                    ++acted;
                    act(world);
                };
                const std::pair<QObject*, const char*> senders[] = {
                    {world.project, SIGNAL(settingChanged(QString))},
                    {world.project, SIGNAL(layersChanged())},
                    {world.project, SIGNAL(saved(QString))},
                    {world.clip, SIGNAL(settingChanged(QString))},
                    {world.project->get_progress_watcher(), SIGNAL(started(QString))}};
                const Listener told(*senders[which].first, senders[which].second, slot);
                try {
                    change(world);
                } catch (const STRM_Exception&) {
                    // An operation may end with an error once what it works on is gone.
                }
            }
    EXPECT_GT(acted, 100);
}

TEST(Lifetime, AClipThatIsDestroyedWhenItIsAnnouncedIsNotReturned)
{
    World world;
    Clip source(QString(), "third", false, 0, 0, 0, nullptr);
    const Listener told(*world.project, SIGNAL(clipsChanged()),
                        [&] { delete world.project->get_clips().value("third"); });
    EXPECT_EQ(world.project->add_clip(&source, "third"), nullptr);
    EXPECT_EQ(world.project->get_clips().size(), 2);
}

TEST(Lifetime, ObjectsThatOwnEachOtherEndOnceInAnyOrder)
{
    const std::size_t count = World().objects.size();
    for (std::size_t child = 0; child < count; ++child)
        for (std::size_t parent = 0; parent < count; ++parent)
            for (std::size_t first = 0; child != parent && first < count; ++first) {
                World world;
                world.objects[child]->setParent(world.objects[parent]);
                std::rotate(world.objects.begin(), world.objects.begin() + static_cast<std::ptrdiff_t>(first),
                            world.objects.end());
            }
}

// Threads that ask whether an object is there find one that is moved, all the time.
TEST(Lifetime, WhatIsMovedIsNeverAbsent)
{
    World world;
    LayerGroup group = world.project->add_group("group", {});
    std::atomic<bool> over{false}, absent{false};
    std::thread asking([&] {
        while (!over)
            if (world.layer.isNull())
                absent = true;
    });
    for (int i = 0; i < 2000; ++i) {
        UndoGroup step = world.project->undo_group();
        step.begin();
        world.layer.set_parent(i % 2 ? nullptr : &group, 0);
        step.commit();
        step.undo();
        step.redo();
    }
    over = true;
    asking.join();
    EXPECT_FALSE(absent);
}
