// QObject.connect, disconnect and emit with SIGNAL() and SLOT().
#ifndef OLD_STYLE_SIGNALS_H
#define OLD_STYLE_SIGNALS_H

#include "python_scopes.h"

#include <QObject>

namespace QtCore {

// connect and disconnect, which are called on a class and on an object. False with an error.
bool addOldStyleMethods(SbkObjectType* type);

// Connects a signal that exists to the slot or signal of `receiver`, a valid QObject's wrapper object, that a text with
// SLOT()'s or SIGNAL()'s mark names.
bool connectToText(QObject* sender, const QByteArray& signal, PyObject* receiver, const char* target,
                   Qt::ConnectionType type = Qt::AutoConnection);

PyObject* emitOldStyle(PyObject* self, PyObject* arguments);

} // namespace QtCore

#endif
