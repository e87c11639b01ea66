// Keeps what library calls use alive: what Python drops meanwhile is destroyed when they have returned.
#ifndef BINDING_LIBRARY_CALL_H
#define BINDING_LIBRARY_CALL_H

#include <interpreter_scopes.h>

namespace binding {

// Lives, with the lock held at both ends, around each call of the library and the conversion of its result. What Python
// drops meanwhile, in another thread or in a slot that the library calls, is destroyed when the calls are over that ran
// by then: they may be using it, or what it owns.
class LibraryCall
{
public:
    LibraryCall() : m_older(newest)
    {
        if (m_older)
            m_older->m_newer = this;
        newest = this;
    }
    ~LibraryCall()
    {
        (m_newer ? m_newer->m_older : newest) = m_older;
        if (m_older)
            m_older->m_newer = m_newer;
        if (m_dropped)
            letGoOfDropped();
    }
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;

    // Destroys an object that Python owned, at once or after the calls that are running. The lock is held for
    // `destroy`.
    static void destroyUnused(void* object, void (*destroy)(void*));

private:
    struct Dropped;
    void letGoOfDropped();

    // All that live, in the order of their making. The interpreter's lock guards them.
    static inline LibraryCall* newest = nullptr;
    LibraryCall* m_older;
    LibraryCall* m_newer = nullptr;
    Dropped* m_dropped = nullptr; // waits for this call and the older ones
};

} // namespace binding

#endif
