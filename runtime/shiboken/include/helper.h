// Errors and warnings with the texts that every wrapped function shares.
#ifndef HELPER_H
#define HELPER_H

#include "sbkpython.h"
#include "shibokenmacros.h"

namespace Shiboken {

/// Raises the TypeError for arguments that no signature takes. `args` is the tuple of positional arguments, one
/// argument that is no tuple, or null for none. The signature texts end with a null entry; without them the message is
/// one line.
LIBSHIBOKEN_API void setErrorAboutWrongArguments(PyObject* args, const char* funcName, const char** cppOverloads);

/// Issues a Python warning with a text in the style of PyString_FromFormat. -1 when it was turned into an error.
LIBSHIBOKEN_API int warning(PyObject* category, int stacklevel, const char* format, ...);

/// A sequence of str (or unicode, as UTF-8) as argc and argv; both are the caller's to `free`, item by item. An empty
/// sequence gives the name of the running script, or `defaultAppName`. False with an error set when it is something
/// else.
LIBSHIBOKEN_API bool sequenceToArgcArgv(PyObject* argList, int* argc, char*** argv,
                                        const char* defaultAppName = nullptr);

} // namespace Shiboken

#endif
