// ProgressWatcher, and the operations that report to one.

#include "cancel_link.h"
#include "parallel_tasks.h"

#include <algorithm>
#include <cassert>
#include <engine/embedding.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/handles/destruction_hook.h>
#include <engine/operations/progress.h>
#include <mutex>

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
std::atomic<void (*)(bool)> endHook{nullptr};
std::atomic<int> running{0};
std::atomic<unsigned> cancels{0};

} // namespace

void setOperationListener(OperationListener* wanted) { listener.store(wanted); }

void setOperationEndHook(void (*wanted)(bool cancelled)) { endHook.store(wanted); }

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

OperationProgress::OperationProgress(ProgressWatcher& watcher)
    : m_watcher(&watcher), m_state(watcher.data().state), m_cancelsAtStart(cancels.load())
{
    auto idle = ProgressState::Idle;
    if (!m_state->compare_exchange_strong(idle, ProgressState::Running))
        raise<STRM_OperationInProgress>(text("Another operation that reports to the same watcher runs"));
    watcher.data().operation = this;
    ++running;
}

void OperationProgress::begin(const QString& title)
{
    assert(!m_begun);
    m_title = title;
    m_begun = true;
    if (OperationListener* const host = listener.load())
        host->started(title);
    tell(&ProgressWatcher::Data::tellStarted, title);
}

// The watcher is free for another operation when it tells of the end of this one. A wish to cancel that comes until
// everybody has been told is too late, and the hook's.
OperationProgress::~OperationProgress()
{
    assert(m_state->load() != ProgressState::Idle && running.load() > 0);
    if (m_watcher)
        m_watcher->data().operation = nullptr;
    m_state->store(ProgressState::Idle);
    const auto quietly = [](const auto& call) {
        try {
            call();
        } catch (...) { // nobody is left who could handle it
        }
    };
    if (m_begun && m_cancelled)
        quietly([this] { tell(&ProgressWatcher::Data::tellCancelled); });
    if (m_begun)
        quietly([this] { tell(&ProgressWatcher::Data::tellFinished); });
    if (OperationListener* const host = m_begun ? listener.load() : nullptr)
        quietly([&] { host->finished(m_cancelled); });
    --running;
    if (const auto hook = endHook.load())
        hook(m_cancelled);
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

void forEachFrame(OperationProgress& progress, int count, const std::function<void(int)>& work,
                  const std::function<QString(int)>& doing)
{
    Workers workers(count);
    workers.begin(count, work);
    for (int done = 0; !workers.over();) {
        progress.throwIfCancelled();
        if (const int now = workers.wait(done, leastInterval); now > done) {
            done = now;
            progress.report(static_cast<double>(done) / count, doing(done));
        }
    }
    workers.finish();
    progress.report(1, doing(count));
}

} // namespace orrery
