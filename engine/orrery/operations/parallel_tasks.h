// The threads of one long operation: they are started with it and work on one batch of tasks after the other.
#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orrery {

// To be used by one thread; its threads only ever run tasks.
class Workers
{
public:
    // As many threads as there are cores, but no more than `most`.
    explicit Workers(int most = 0x7fffffff);
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    // No further task begins; waits for those that have.
    ~Workers();

    // Begins the batch: `work` with 0 to count - 1 in this order, several at once, so a task may wait for one before
    // it. When one throws, no further ones begin.
    void begin(int count, std::function<void(int)> work);

    // Waits until more than `known` tasks have ended well, nothing is left to wait for, or some time has passed.
    // Returns how many have ended well.
    int wait(int known, std::chrono::nanoseconds longest);
    bool over();

    // Waits for the batch to be over. Throws what the first task in order threw.
    void finish();

    void run(int count, std::function<void(int)> work)
    {
        begin(count, std::move(work));
        finish();
    }

private:
    void work();
    bool idle() const { return m_next >= m_count && m_running == 0; }

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_begun;
    std::condition_variable m_changed;
    std::function<void(int)> m_work;
    int m_count = 0;
    int m_next = 0;
    int m_running = 0;
    int m_done = 0;
    int m_failed = 0;
    std::exception_ptr m_failure;
    bool m_ending = false;
    std::vector<std::thread> m_threads;
};

} // namespace orrery
