// What every hand-written or generated binding beside the module shares: the same conversions of texts and the same
// translation of library exceptions, so that the bindings differ in nothing but the way of a call.
#ifndef CALLS_CONVERSIONS_H
#define CALLS_CONVERSIONS_H

#include <Python.h>
#include <QString>

namespace calls {

inline bool isText(PyObject* object) { return PyUnicode_Check(object) || PyString_Check(object); }

// For an object that isText().
QString textFromPython(PyObject* object);
PyObject* textToPython(const QString& text);

// For a catch (...) handler: sets the Python exception for the library exception in flight.
void raiseCaughtException();

} // namespace calls

#endif
