// Taking the interpreter lock, also while the interpreter comes to its end.
#include "gilstate.h"

#include <pythread.h>

namespace Shiboken {

GilState::GilState()
{
    if (!Py_IsInitialized())
        return;
    m_state = PyGILState_Ensure();
    m_locked = true;
}

void GilState::release()
{
    if (!m_locked)
        return;
    m_locked = false;
    // Also of an interpreter that is ending: it may be waiting for the lock.
    if (isHeld())
        PyGILState_Release(m_state);
}

bool GilState::isHeld()
{
    // Not PyThreadState_Get(), which ends the process when there is none.
    const PyThreadState* const current = _PyThreadState_Current;
    return current && current->thread_id == PyThread_get_thread_ident();
}

} // namespace Shiboken
