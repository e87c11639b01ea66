// References, the interpreter's lock and its pending error, under this library's own namespace.
#ifndef PYTHON_SCOPES_H
#define PYTHON_SCOPES_H

#include <interpreter_scopes.h>

namespace PySide {

using binding::ErrorAside;
using binding::isPythonAlive;
using binding::none;
using binding::Reference;
using binding::Unlocked;

} // namespace PySide

#endif
