// Taking the interpreter lock, also while the interpreter comes to its end.
#include "gilstate.h"

#include <pythread.h>

namespace Shiboken {

GilState::GilState()
{
    if (Py_IsInitialized()) {
        m_state = PyGILState_Ensure();
        m_locked = true;
    }
}

void GilState::release()
{
    if (!m_locked)
        return;
    m_locked = false;
    // The interpreter may have ended in between, and with it the thread's state.
    if (Py_IsInitialized())
        PyGILState_Release(m_state);
}

bool GilState::isHeld()
{
    // Not PyThreadState_Get(), which ends the process when there is none.
    const PyThreadState* const current = _PyThreadState_Current;
    return current && current->thread_id == PyThread_get_thread_ident();
}

} // namespace Shiboken
