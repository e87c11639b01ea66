// From wrapper objects to their QObjects and back.
#ifndef QOBJECT_WRAPPERS_H
#define QOBJECT_WRAPPERS_H

#include "python_scopes.h"

#include <QObject>

namespace PySide {

// The Python type of QObject; null before PySide.QtCore has registered it.
PyTypeObject* qObjectType();

// Whether it is QObject's type or one derived from it.
bool isQObjectType(PyTypeObject* type);

// The QObject of a wrapper object; null, without an error, for anything else and for a wrapper object without one.
QObject* qObjectOf(PyObject* object);

// The same with the error that says what is wrong when the wrapper object has none. Needs a wrapper object of a
// QObject.
QObject* validQObjectOf(PyObject* wrapper);

// The wrapper object of a QObject: a new reference, None for null. See getWrapperForQObject().
PyObject* wrapperOf(QObject* object);

} // namespace PySide

#endif
