// The interpreter lock let go of for a scope, so that other threads run while the library works.
#ifndef THREADSTATESAVER_H
#define THREADSTATESAVER_H

#include "sbkpython.h"

namespace Shiboken {

class ThreadStateSaver
{
public:
    ThreadStateSaver() = default;
    ThreadStateSaver(const ThreadStateSaver&) = delete;
    ThreadStateSaver& operator=(const ThreadStateSaver&) = delete;
    ~ThreadStateSaver() { restore(); }

    void save()
    {
        if (!m_state && PyEval_ThreadsInitialized())
            m_state = PyEval_SaveThread();
    }

    /// Takes the lock back; harmless when it was not let go of.
    void restore()
    {
        if (!m_state)
            return;
        PyThreadState* const state = m_state;
        m_state = nullptr;
        PyEval_RestoreThread(state);
    }

private:
    PyThreadState* m_state = nullptr;
};

} // namespace Shiboken

#endif
