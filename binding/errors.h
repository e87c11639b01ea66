// How a failure of the library becomes a Python exception.
#ifndef BINDING_ERRORS_H
#define BINDING_ERRORS_H

#include <exception>

namespace binding {

// Turns a caught library exception into the pending Python exception. Set once, before any call; null until then.
extern void (*libraryExceptionHook)(const std::exception& caught);

// For a catch (...) handler: hands the exception in flight to libraryExceptionHook; anything that is no std::exception
// becomes RuntimeError "Unknown error". The interpreter's lock must be held.
void raiseCaughtException();

} // namespace binding

#endif
