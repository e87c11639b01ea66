// The model lock, and the words by which Clang checks at compile time that it is held (-Wthread-safety); other
// compilers skip them. https://clang.llvm.org/docs/ThreadSafetyAnalysis.html
#pragma once

#include <mutex>

#if defined(__clang__)
    #define VIREO_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
    #define VIREO_THREAD_SAFETY(attribute)
#endif
#define VIREO_CAPABILITY(name) VIREO_THREAD_SAFETY(capability(name))
#define VIREO_GUARDED_BY(lock) VIREO_THREAD_SAFETY(guarded_by(lock))
// For code that holds a lock from one function to another, which the analysis cannot follow.
#define VIREO_UNCHECKED VIREO_THREAD_SAFETY(no_thread_safety_analysis)
#define VIREO_ACQUIRE(...) VIREO_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define VIREO_RELEASE(...) VIREO_THREAD_SAFETY(release_capability(__VA_ARGS__))

namespace Stratum {

class VIREO_CAPABILITY("model lock") ModelLock
{
public:
    void lock() VIREO_ACQUIRE() { m_mutex.lock(); }
    void unlock() VIREO_RELEASE() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

} // namespace Stratum
