// Progress: order and number of signals, cancelling, and frames that several threads work on.

#include "test_footage.h"

#include <atomic>
#include <engine/operations/progress.h>
#include <orrery/render_operation.h>
#include <set>
#include <thread>

using orrery::OperationProgress;

namespace {

// What a watcher tells, in order.
class Told
{
public:
    explicit Told(ProgressWatcher& watcher)
        : m_listeners{{watcher, SIGNAL(started(QString)), [this](const QString& text) { add("started " + text); }},
                      {watcher, SIGNAL(progressChanged(double, QString)),
                       [this](double fraction) {
                           ++m_progress;
                           m_last = fraction;
                       }},
                      {watcher, SIGNAL(cancelled()), [this] { add("cancelled"); }},
                      {watcher, SIGNAL(finished()), [this] { add("finished"); }}}
    {}
    const QStringList& events() const { return m_events; }
    int progress() const { return m_progress; }
    double last() const { return m_last; }

private:
    void add(const QString& event)
    {
        EXPECT_EQ(std::this_thread::get_id(), m_thread);
        m_events << event;
    }
    const Listener m_listeners[4];
    QStringList m_events;
    int m_progress = 0;
    double m_last = 0;
    std::thread::id m_thread = std::this_thread::get_id();
};

} // namespace

TEST(Progress, TellsTheBeginningTheEndAndSomeOfWhatIsBetween)
{
    ProgressWatcher watcher(nullptr);
    const Told told(watcher);
    {
        OperationProgress progress(watcher);
        progress.begin("work");
        for (int i = 1; i <= 100000; ++i)
            progress.report(i / 100000.0, "step");
        EXPECT_THROW(OperationProgress second(watcher), STRM_OperationInProgress);
    }
    EXPECT_EQ(told.events(), (QStringList{"started work", "finished"}));
    EXPECT_EQ(told.last(), 1);
    EXPECT_LT(told.progress(), 100);
    EXPECT_GE(told.progress(), 2);
}

TEST(Progress, CancelsByCallOrSignalOnlyWhatRuns)
{
    ProgressWatcher watcher(nullptr);
    const Told told(watcher);
    watcher.cancel();
    for (const bool bySignal : {false, true}) {
        const auto run = [&] {
            OperationProgress progress(watcher);
            progress.begin("work");
            progress.report(0.5, "step");
            bySignal ? emit watcher.cancelRequested() : watcher.cancel();
            EXPECT_TRUE(progress.cancelWanted());
            progress.report(0.6, "step");
        };
        expectThrow<STRM_OperationCancelledByUser>(run, "work");
    }
    EXPECT_EQ(told.events(),
              (QStringList{"started work", "cancelled", "finished", "started work", "cancelled", "finished"}));
    OperationProgress next(watcher);
    EXPECT_FALSE(next.cancelWanted());
}

TEST(Progress, EveryFrameIsWorkedOnOnceAndTheFirstFailureIsThrown)
{
    ProgressWatcher watcher(nullptr);
    const Told told(watcher);
    const auto doing = [](int) { return QString(); };
    std::vector<std::atomic<int>> calls(500);
    {
        OperationProgress progress(watcher);
        progress.begin("work");
        orrery::forEachFrame(
            progress, 500, [&](int i) { ++calls[static_cast<std::size_t>(i)]; }, doing);
    }
    for (const auto& count : calls)
        EXPECT_EQ(count, 1);
    EXPECT_EQ(told.last(), 1);

    std::atomic<int> begun{0};
    const auto failing = [&] {
        OperationProgress progress(watcher);
        progress.begin("work");
        orrery::forEachFrame(
            progress, 100000,
            [&](int i) {
                ++begun;
                if (i >= 20)
                    throw std::runtime_error("frame " + std::to_string(i));
            },
            doing);
    };
    expectThrow<std::runtime_error>(failing, "frame 20");
    EXPECT_LT(begun, 1000);
}

TEST(Progress, FinishedComesWhenAllIsOverAndOnceWhateverHappens)
{
    Folder folder, output;
    const pixels::MadeFootage made(smallOptions());
    const auto project = projectOver(writeFootage(folder, made), output);
    addPolygon(*project, "layer", cornersOf(made, 0));
    Clip& clip = *project->get_default_trackable_clip();
    RenderInsertOperation render;
    const std::pair<ProgressWatcher*, std::function<void(const QString& folder)>> operations[] = {
        {render.get_progress_watcher(),
         [&](const QString& path) {
             project->set_output_dir(path, false);
             project->render(&render, 0, 3, {}, View(0));
         }},
        {project->get_progress_watcher(),
         [&](const QString& path) {
             delete project->export_rendered_shapes({}, Grayscale, "M", path, "m.", ".png", 0, 3, 1, {}, false);
         }},
        {clip.get_progress_watcher(),
         [&](const QString& path) { clip.exportClip(nullptr, path, "c.", ".png", "", 0, 3, 1, {}, false); }},
        {project->get_progress_watcher(),
         [&](const QString& path) {
             project->set_output_dir(path, false); // refuses what the others refuse
             project->track_layers(0, 2, {}, {});
         }},
    };
    int changes = 0;
    const Listener changed(*project, SIGNAL(clipsChanged()), [&changes] { ++changes; });
    for (const auto& [reported, operation] : operations) {
        ProgressWatcher& watcher = *reported;
        const auto& run = operation;
        const Told told(watcher);
        bool again = true;
        const Listener next(watcher, SIGNAL(finished()), [&] {
            EXPECT_EQ(project->get_clips().size(), 1 + changes);
            if (std::exchange(again, false))
                run(output / "again");
        });
        run(output.path());
        EXPECT_EQ(told.events().filter("finished").size(), 2);
        EXPECT_EQ(told.events().last(), QString("finished"));
        again = false;
        {
            const Listener cancelling(watcher, SIGNAL(started(QString)), [&watcher] { watcher.cancel(); });
            EXPECT_THROW(run(output.path()), STRM_OperationCancelledByUser);
        }
        EXPECT_EQ(told.events().mid(told.events().size() - 2), (QStringList{"cancelled", "finished"}));
        const int before = told.events().size();
        EXPECT_THROW(run(folder / "plate.0001.png"), STRM_BadFile);
        EXPECT_EQ(told.events().size() - before, 2 * told.events().mid(before).filter("finished").size());
    }
    EXPECT_EQ(changes, 2);
}

TEST(Progress, AWatcherThatAScriptDestroyedIsMissedAndNotUsed)
{
    Clip clip("", "Plate", false, 0, 0, 0, nullptr);
    delete clip.get_progress_watcher();
    EXPECT_EQ(clip.get_progress_watcher(), nullptr);
    expectThrow<STRM_BadState>([&] { orrery::presentWatcher(clip.get_progress_watcher()); }, "progress watcher");

    Project project(QString(), nullptr);
    delete project.get_progress_watcher();
    EXPECT_EQ(project.get_progress_watcher(), nullptr);

    RenderInsertOperation operation;
    delete operation.get_progress_watcher();
    EXPECT_EQ(operation.get_progress_watcher(), nullptr);
}
