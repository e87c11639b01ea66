// How a failure of the library becomes a Python exception.
#include "errors.h"

#include <cassert>
#include <sbkpython.h>

namespace binding {

void (*libraryExceptionHook)(const std::exception& caught) = nullptr;

void raiseCaughtException()
{
    assert(std::current_exception());
    try {
        throw;
    } catch (const std::exception& caught) {
        if (libraryExceptionHook)
            libraryExceptionHook(caught);
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "Unknown error");
    }
}

} // namespace binding
