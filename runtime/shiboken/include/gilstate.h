// The interpreter lock for a scope, taken on whatever thread the library calls in.
#ifndef GILSTATE_H
#define GILSTATE_H

#include "sbkpython.h"
#include "shibokenmacros.h"

namespace Shiboken {

/// Once the interpreter is gone there is no lock to take: nothing is done then, and nothing of Python may be touched.
class LIBSHIBOKEN_API GilState
{
public:
    GilState();
    GilState(const GilState&) = delete;
    GilState& operator=(const GilState&) = delete;
    ~GilState() { release(); }

    /// Gives the lock back before the scope ends; harmless when that was done before.
    void release();

    /// True when this thread holds the lock, also the one that ends the interpreter just now.
    static bool isHeld();

private:
    PyGILState_STATE m_state;
    bool m_locked = false;
};

} // namespace Shiboken

#endif
