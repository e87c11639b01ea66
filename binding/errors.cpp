// How a failure of the library becomes a Python exception.
#include "errors.h"

#include <cassert>
#include <sbkpython.h>

namespace binding {

void (*libraryExceptionHook)(const std::exception& caught) = nullptr;

const char* textOf(const std::exception& caught)
{
    const char* const text = caught.what();
    return text ? text : "";
}

void raiseCaughtException()
{
    assert(std::current_exception());
    try {
        throw;
    } catch (const std::exception& caught) {
        if (libraryExceptionHook)
            libraryExceptionHook(caught);
        else
            PyErr_SetString(PyExc_RuntimeError, textOf(caught));
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "Unknown error");
    }
}

bool mustReachCaller()
{
    return PyErr_Occurred() && (!PyErr_ExceptionMatches(PyExc_Exception) || PyErr_ExceptionMatches(PyExc_MemoryError));
}

void clearRefusal()
{
    if (!mustReachCaller())
        PyErr_Clear();
}

} // namespace binding
