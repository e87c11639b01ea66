// Extension modules: their creation, and the tables through which one finds the types and converters of another.
#ifndef SBKMODULE_H
#define SBKMODULE_H

#include "sbkpython.h"
#include "shibokenmacros.h"

struct SbkConverter;

namespace Shiboken {
namespace Module {

/// Imports a module: a new reference, or null with the error set. A module whose types belong to another binding
/// runtime is refused with an ImportError that names the module's file and this runtime's.
LIBSHIBOKEN_API PyObject* import(const char* moduleName);

/// Creates an extension module (borrowed) with a PyMethodDef array that ends with an empty entry, and starts the
/// runtime.
LIBSHIBOKEN_API PyObject* create(const char* moduleName, void* moduleData);

/// Publishes the module's tables. They must outlive the module.
LIBSHIBOKEN_API void registerTypes(PyObject* module, PyTypeObject** types);
LIBSHIBOKEN_API void registerTypeConverters(PyObject* module, SbkConverter** converters);

/// The published table; null with an ImportError when the module has published none.
LIBSHIBOKEN_API PyTypeObject** getTypes(PyObject* module);
LIBSHIBOKEN_API SbkConverter** getTypeConverters(PyObject* module);

} // namespace Module
} // namespace Shiboken

#endif
