// Python's header, and the names under which sources reach what differs between interpreters.
#ifndef SBKPYTHON_H
#define SBKPYTHON_H

#include <Python.h>

#define SBK_STR_NAME "str"
#define SBK_PyMethod_New PyMethod_New
#define SBK_NB_BOOL(x) (x).nb_nonzero

/// A number in the sense of the primitive converters; an old-style instance must be able to truncate itself.
#define SbkNumber_Check(X) (PyNumber_Check(X) && (!PyInstance_Check(X) || PyObject_HasAttrString(X, "__trunc__")))

/// Frames of an extension module's entry point. The module itself defines SBK_EXPORT_MODULE.
// clang-format off
#define SBK_MODULE_INIT_ERROR
#define SBK_MODULE_INIT_FUNCTION_BEGIN(ModuleName) extern "C" SBK_EXPORT_MODULE void init##ModuleName() {
#define SBK_MODULE_INIT_FUNCTION_END }
// clang-format on

#endif
