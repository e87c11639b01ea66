// The calling thread works too, so that a single task costs nothing extra.

#include "parallel_tasks.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

namespace orrery {
namespace {

class Joined
{
public:
    explicit Joined(std::thread thread) : m_thread(std::move(thread)) {}
    Joined(Joined&&) = default;
    ~Joined()
    {
        if (m_thread.joinable())
            m_thread.join();
    }

private:
    std::thread m_thread;
};

} // namespace

void runTasks(const std::vector<std::function<void()>>& tasks)
{
    std::atomic<std::size_t> next{0};
    std::vector<std::exception_ptr> failures(tasks.size());
    const auto work = [&] {
        for (std::size_t i = next++; i < tasks.size(); i = next++)
            try {
                tasks[i]();
            } catch (...) {
                failures[i] = std::current_exception();
            }
    };
    {
        const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
        std::vector<Joined> helpers;
        for (std::size_t i = 1; i < std::min(cores, tasks.size()); ++i)
            helpers.emplace_back(std::thread(work));
        work();
    }
    for (const std::exception_ptr& failure : failures)
        if (failure)
            std::rethrow_exception(failure);
}

} // namespace orrery
