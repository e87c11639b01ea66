// ProgressWatcher, and the operations that report to one.

#include "cancel_link.h"

#include <algorithm>
#include <cassert>
#include <condition_variable>
#include <engine/embedding.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/handles/destruction_hook.h>
#include <engine/operations/progress.h>
#include <mutex>
#include <thread>
#include <vector>

ProgressWatcher::ProgressWatcher(QObject* parent) : QObject(parent), m_data(new Data(*this)) {}

ProgressWatcher::~ProgressWatcher()
{
    orrery::tellDestruction(this);
    setParent(nullptr);
}

void ProgressWatcher::cancel()
{
    auto running = Data::State::Running;
    m_data->state->compare_exchange_strong(running, Data::State::CancelWanted);
}

ProgressWatcher::Data::Data(ProgressWatcher& watcher) : watcher(watcher), cancelLink(new orrery::CancelLink(watcher)) {}

ProgressWatcher::Data::~Data() = default;

namespace orrery {
namespace {

constexpr std::chrono::milliseconds leastInterval(40);

// Of the whole process: what the application hears and wants.
std::atomic<OperationListener*> listener{nullptr};
std::atomic<int> running{0};
std::atomic<unsigned> cancels{0};

} // namespace

void setOperationListener(OperationListener* wanted) { listener.store(wanted); }

bool cancelOperations()
{
    if (running.load() == 0)
        return false;
    ++cancels;
    return true;
}

template <class... Parameters, class... Arguments>
void OperationProgress::tell(void (ProgressWatcher::Data::*what)(Parameters...), const Arguments&... arguments)
{
    if (m_watcher)
        (m_watcher->data().*what)(arguments...);
}

OperationProgress::OperationProgress(ProgressWatcher& watcher, const QString& title)
    : m_watcher(&watcher), m_state(watcher.data().state), m_title(title), m_cancelsAtStart(cancels.load())
{
    auto idle = ProgressState::Idle;
    if (!m_state->compare_exchange_strong(idle, ProgressState::Running))
        raise<STRM_OperationInProgress>(text("%1: another operation that reports to the same watcher runs", title));
    ++running;
    if (OperationListener* const host = listener.load())
        host->started(title);
    try {
        tell(&ProgressWatcher::Data::tellStarted, title);
    } catch (...) {
        m_state->store(ProgressState::Idle);
        throw;
    }
}

OperationProgress::~OperationProgress()
{
    assert(m_state->load() != ProgressState::Idle && running.load() > 0);
    m_state->store(ProgressState::Idle);
    if (m_cancelled)
        tell(&ProgressWatcher::Data::tellCancelled);
    tell(&ProgressWatcher::Data::tellFinished);
    --running;
    if (OperationListener* const host = listener.load())
        host->finished(m_cancelled);
}

ProgressWatcher& presentWatcher(const QPointer<ProgressWatcher>& watcher)
{
    if (!watcher)
        raise<STRM_BadState>(text("The progress watcher was destroyed"));
    return *watcher;
}

bool OperationProgress::cancelWanted() const noexcept
{
    return m_state->load() == ProgressState::CancelWanted || cancels.load() != m_cancelsAtStart;
}

void OperationProgress::throwIfCancelled()
{
    if (!cancelWanted())
        return;
    m_cancelled = true;
    raise<STRM_OperationCancelledByUser>(text("%1: cancelled", m_title));
}

void OperationProgress::report(double fraction, const QString& doing)
{
    throwIfCancelled();
    fraction = std::min(1.0, std::max(0.0, fraction));
    const auto now = std::chrono::steady_clock::now();
    const bool last = fraction >= 1 && m_fraction < 1;
    if (fraction == m_fraction || (!last && m_fraction >= 0 && now - m_told < leastInterval))
        return;
    m_told = now;
    m_fraction = fraction;
    if (OperationListener* const host = listener.load())
        host->progressed(fraction, doing);
    tell(&ProgressWatcher::Data::tellProgress, fraction, doing);
    throwIfCancelled();
}

// ---- Frames on all cores --------------------------------------------------------------------------------------------

namespace {

// The work that is shared out: who takes a frame, what went wrong first, and how many are done.
class Shares
{
public:
    Shares(int count, const std::function<void(int)>& work) : m_count(count), m_work(work) {}

    void run()
    {
        while (!m_stop) { // a frame that was taken is worked on: the first that fails is the first in order
            const int frame = m_next++;
            if (frame >= m_count)
                break;
            try {
                m_work(frame);
                ended(m_count, nullptr);
            } catch (...) {
                ended(frame, std::current_exception());
            }
        }
    }

    void stop() { m_stop = true; }

    // The number that is done, once it is more than `known`, nothing is left, or some time has passed.
    int wait(int known)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, leastInterval, [this, known] { return m_done > known || m_failure; });
        return m_done;
    }

    bool over()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_done == m_count || m_failure;
    }

    // Once all have ended.
    void rethrow() const
    {
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    void ended(int frame, std::exception_ptr failure)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!failure)
            ++m_done;
        else if (frame < m_failed) {
            m_failed = frame;
            m_failure = failure;
            m_stop = true;
        }
        m_changed.notify_one();
    }

    const int m_count;
    const std::function<void(int)>& m_work;
    std::atomic<int> m_next{0};
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_done = 0;
    int m_failed = 0x7fffffff;
    std::exception_ptr m_failure;
};

class Workers
{
public:
    Workers(Shares& shares, int count) : m_shares(shares)
    {
        for (int i = 0; i < count; ++i)
            m_threads.emplace_back([&shares] { shares.run(); });
    }
    ~Workers()
    {
        m_shares.stop();
        for (std::thread& thread : m_threads)
            thread.join();
    }

private:
    Shares& m_shares;
    std::vector<std::thread> m_threads;
};

} // namespace

void forEachFrame(OperationProgress& progress, int count, const std::function<void(int)>& work,
                  const std::function<QString(int)>& doing)
{
    Shares shares(count, work);
    {
        Workers workers(shares, std::min<int>(count, std::max(1U, std::thread::hardware_concurrency())));
        for (int done = 0; !shares.over();) {
            progress.throwIfCancelled();
            if (const int now = shares.wait(done); now > done) {
                done = now;
                progress.report(static_cast<double>(done) / count, doing(done));
            }
        }
    }
    shares.rethrow();
    progress.report(1, doing(count));
}

} // namespace orrery
