// Keeps what library calls use alive: what Python drops meanwhile is destroyed when they have returned.
#ifndef BINDING_LIBRARY_CALL_H
#define BINDING_LIBRARY_CALL_H

#include <interpreter_scopes.h>

namespace binding {

// Lives, with the lock held at both ends, around each call of the library and the conversion of its result. What Python
// drops meanwhile, in another thread or in a slot that the library calls, is destroyed when the calls are over that ran
// by then: they may be using it, or what it owns.
//
// Calls are counted in two groups. New ones join the current group; the groups change places when something was dropped
// and the other group is empty: then what was dropped waits for one group, which no further call joins.
class LibraryCall
{
public:
    LibraryCall() : m_group(current) { ++m_group->running; }
    ~LibraryCall()
    {
        if (--m_group->running == 0 && isWaitedFor)
            letGoOfDropped();
    }
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;

    // Destroys an object that Python owned, at once or after the calls that are running. The lock is held for
    // `destroy`.
    static void destroyUnused(void* object, void (*destroy)(void*));

private:
    struct Dropped;
    struct Group
    {
        int running;
        Dropped* dropped; // waits for the calls of the group, and for those of the other one that are older
    };
    static void letGoOfDropped();

    // The interpreter's lock guards them.
    static inline Group groups[2] = {};
    static inline Group* current = groups;
    static inline bool isWaitedFor = false;

    Group* const m_group;
};

} // namespace binding

#endif
