// From wrapper objects to their QObjects and back.
#ifndef QOBJECT_WRAPPERS_H
#define QOBJECT_WRAPPERS_H

#include "python_scopes.h"

#include <QObject>
#include <QPointer>

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

// A pointer that becomes null when the QObject dies. It is null at once for one whose destructor has come to QObject's
// own part: Qt does not allow it a QPointer any more, though it still emits signals.
QPointer<QObject> guarded(QObject* object);

// The wrapper object of a QObject: a new reference, None for null. See getWrapperForQObject().
PyObject* wrapperOf(QObject* object);

} // namespace PySide

#endif
