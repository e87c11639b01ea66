// How a failure of the library becomes a Python exception.
#ifndef BINDING_ERRORS_H
#define BINDING_ERRORS_H

#include <exception>

namespace binding {

// What the exception says; never null.
const char* textOf(const std::exception& caught);

// Turns a caught library exception into the pending Python exception. Set once, before any call; null until then.
extern void (*libraryExceptionHook)(const std::exception& caught);

// For a catch (...) handler: hands the exception in flight to libraryExceptionHook; anything that is no std::exception
// becomes RuntimeError "Unknown error". The interpreter's lock must be held.
void raiseCaughtException();

// Whether the pending error must reach the caller, whatever was tried: an interrupt, an exit, the end of memory.
bool mustReachCaller();

// Clears the pending error, by which an object was refused, unless it must reach the caller.
void clearRefusal();

} // namespace binding

#endif
