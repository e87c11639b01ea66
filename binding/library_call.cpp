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
    if (newest)
        newest->m_dropped = new Dropped{object, destroy, newest->m_dropped};
    else
        destroy(object);
}

void LibraryCall::letGoOfDropped()
{
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    while (Dropped* const first = m_dropped) {
        m_dropped = first->next;
        if (m_older) {
            first->next = m_older->m_dropped;
            m_older->m_dropped = first;
        } else {
            const Dropped last = *first;
            delete first;
            last.destroy(last.object);
        }
    }
    PyErr_Restore(type, value, traceback);
}

} // namespace binding
