// How a long operation reports its progress, and how it learns that it has been cancelled.
#pragma once

#include <QPointer>
#include <QString>
#include <atomic>
#include <chrono>
#include <functional>
#include <orrery/progress_watcher.h>

namespace orrery {

class CancelLink;

enum class ProgressState { Idle, Running, CancelWanted };

// One operation, reported to a watcher from the thread that runs it: started() when it begins, finished(), after
// cancelled() if it was, when this is destroyed; each once, whatever throws. Construct it before everything that a
// failure undoes or that another operation would wait for, so that finished() comes last. No lock may be held by
// whoever constructs, calls or destroys it.
class OperationProgress
{
public:
    // From now on a wish to cancel is meant for this operation. STRM_OperationInProgress when the watcher reports
    // another one.
    explicit OperationProgress(ProgressWatcher& watcher);
    OperationProgress(const OperationProgress&) = delete;
    OperationProgress& operator=(const OperationProgress&) = delete;
    ~OperationProgress();

    // Once.
    void begin(const QString& title);

    // Any thread.
    bool cancelWanted() const noexcept;

    // Reports how much is done, from 0 to 1; calls in quick succession are merged. Throws
    // STRM_OperationCancelledByUser when a cancel was requested.
    void report(double fraction, const QString& doing);
    void throwIfCancelled();

private:
    // With the watcher, as long as it lives: whoever is told may destroy it, and what owns it.
    template <class... Parameters, class... Arguments>
    void tell(void (ProgressWatcher::Data::*what)(Parameters...), const Arguments&... arguments);

    const QPointer<ProgressWatcher> m_watcher;
    const std::shared_ptr<std::atomic<ProgressState>> m_state;
    QString m_title;
    std::chrono::steady_clock::time_point m_told;
    double m_fraction = -1;
    bool m_begun = false;
    bool m_cancelled = false;
    const unsigned m_cancelsAtStart;
};

// The watcher that an object owns. STRM_BadState when a script has destroyed it.
ProgressWatcher& presentWatcher(const QPointer<ProgressWatcher>& watcher);

// Calls `work` with 0 to count - 1 from all cores, several at once, in order as far as that goes, and reports meanwhile
// from the calling thread: `doing` puts into words how many are done. When one throws, no further ones begin, and the
// exception of the first of them in order is thrown here once all have ended.
void forEachFrame(OperationProgress& progress, int count, const std::function<void(int)>& work,
                  const std::function<QString(int)>& doing);

} // namespace orrery

struct ProgressWatcher::Data
{
    using State = orrery::ProgressState;

    explicit Data(ProgressWatcher& watcher);
    ~Data();

    void tellStarted(const QString& text) { emit watcher.started(text); }
    void tellProgress(double fraction, const QString& text) { emit watcher.progressChanged(fraction, text); }
    void tellCancelled() { emit watcher.cancelled(); }
    void tellFinished() { emit watcher.finished(); }

    ProgressWatcher& watcher;
    const std::shared_ptr<std::atomic<State>> state = std::make_shared<std::atomic<State>>(State::Idle);
    const std::unique_ptr<orrery::CancelLink> cancelLink;
    orrery::OperationProgress* operation = nullptr; // that runs; for the thread that runs it
};
