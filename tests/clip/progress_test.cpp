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
        OperationProgress progress(watcher, "work");
        for (int i = 1; i <= 100000; ++i)
            progress.report(i / 100000.0, "step");
        EXPECT_THROW(OperationProgress(watcher, "second"), STRM_OperationInProgress);
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
            OperationProgress progress(watcher, "work");
            progress.report(0.5, "step");
            bySignal ? emit watcher.cancelRequested() : watcher.cancel();
            EXPECT_TRUE(progress.cancelWanted());
            progress.report(0.6, "step");
        };
        expectThrow<STRM_OperationCancelledByUser>(run, "work");
    }
    EXPECT_EQ(told.events(),
              (QStringList{"started work", "cancelled", "finished", "started work", "cancelled", "finished"}));
    OperationProgress next(watcher, "next");
    EXPECT_FALSE(next.cancelWanted());
}

TEST(Progress, EveryFrameIsWorkedOnOnceAndTheFirstFailureIsThrown)
{
    ProgressWatcher watcher(nullptr);
    const Told told(watcher);
    const auto doing = [](int) { return QString(); };
    std::vector<std::atomic<int>> calls(500);
    {
        OperationProgress progress(watcher, "work");
        orrery::forEachFrame(
            progress, 500, [&](int i) { ++calls[static_cast<std::size_t>(i)]; }, doing);
    }
    for (const auto& count : calls)
        EXPECT_EQ(count, 1);
    EXPECT_EQ(told.last(), 1);

    std::atomic<int> begun{0};
    const auto failing = [&] {
        OperationProgress progress(watcher, "work");
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
