// Delays the destruction of objects that Python drops until the library calls that are running have returned.
#include "library_call.h"

namespace binding {

struct LibraryCall::Dropped
{
    void* object;
    void (*destroy)(void*);
    Dropped* next;
};

void LibraryCall::destroyUnused(void* object, void (*destroy)(void*))
{
    if (groups[0].running == 0 && groups[1].running == 0)
        return destroy(object);
    current->dropped = new Dropped{object, destroy, current->dropped};
    isWaitedFor = true;
    letGoOfDropped();
}

void LibraryCall::letGoOfDropped()
{
    const ErrorAside aside;
    for (Group* old = &groups[current == groups]; isWaitedFor && old->running == 0; old = &groups[current == groups]) {
        Dropped* ready = std::exchange(old->dropped, nullptr);
        isWaitedFor = current->dropped != nullptr;
        if (isWaitedFor)
            current = old;
        // Destructors may run scripts, and other threads meanwhile.
        while (ready) {
            const Dropped each = *ready;
            delete std::exchange(ready, each.next);
            each.destroy(each.object);
        }
    }
}

} // namespace binding
