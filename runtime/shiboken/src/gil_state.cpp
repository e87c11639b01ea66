// Taking the interpreter lock, also while the interpreter comes to its end.
#include "gilstate.h"

#include <pythread.h>

namespace Shiboken {

namespace {

// PyGILState_Ensure() knows the first interpreter's thread states only: on a thread that holds the lock in another
// interpreter it would wait for itself. With one interpreter the look at the state, which its own thread may free
// meanwhile, is left out.
bool isHeldInOtherInterpreter() { return PyInterpreterState_Next(PyInterpreterState_Head()) && GilState::isHeld(); }

} // namespace

GilState::GilState()
{
    if (!Py_IsInitialized() || isHeldInOtherInterpreter())
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
