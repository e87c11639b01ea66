// Worker threads wait for a batch, and take its tasks in order.

#include "parallel_tasks.h"

#include <algorithm>
#include <system_error>

namespace orrery {

Workers::Workers(int most)
{
    const int count = std::max(1, std::min(most, static_cast<int>(std::thread::hardware_concurrency())));
    for (int i = 0; i < count; ++i)
        try {
            m_threads.emplace_back([this] { work(); });
        } catch (const std::system_error&) { // fewer will do
            if (m_threads.empty())
                throw;
            break;
        }
}

Workers::~Workers()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_begun.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void Workers::begin(int count, std::function<void(int)> work)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_work = std::move(work);
    m_count = m_failed = count;
    m_next = m_done = 0;
    m_failure = nullptr;
    m_begun.notify_all();
}

int Workers::wait(int known, std::chrono::nanoseconds longest)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, longest, [this, known] { return m_done > known || idle(); });
    return m_done;
}

bool Workers::over()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return idle();
}

void Workers::finish()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return idle(); });
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void Workers::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_begun.wait(lock, [this] { return m_ending || m_next < m_count; });
        if (m_ending)
            return;
        const int task = m_next++;
        ++m_running;
        lock.unlock();
        std::exception_ptr failure;
        try {
            m_work(task);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        --m_running;
        if (!failure)
            ++m_done;
        else
            m_next = m_count;
        if (failure && task < m_failed) {
            m_failed = task;
            m_failure = failure;
        }
        m_changed.notify_all();
    }
}

} // namespace orrery
