// The C++ types that scripts mean when they declare the parameters of signals and slots.
#ifndef DECLARED_TYPES_H
#define DECLARED_TYPES_H

#include "python_scopes.h"

#include <QByteArray>

namespace PySide {

// The name of the C++ type for a Python type, or for the text of a C++ type. Empty with an error.
QByteArray cppTypeName(PyObject* declared);

// "int,QString" for a sequence of declared types. Null with an error; empty, not null, for none.
QByteArray cppTypeNames(PyObject* sequence);

} // namespace PySide

#endif
