// Connecting, disconnecting and emitting by signature, on which both styles of signals are built.
#ifndef CONNECTIONS_H
#define CONNECTIONS_H

#include "python_scopes.h"

#include <QMetaMethod>
#include <QObject>

namespace PySide {

// All need the lock. Where they answer false an error may be pending; without one, there is no such signal or slot, or
// they do not fit.

// A signal as an object has it. `signature` is normalized.
struct SignalPlace
{
    SignalPlace(const QObject* sender, const QByteArray& signature);
    bool exists() const { return method.isValid(); }

    QMetaMethod method; // with the parameters asked for, which may leave out defaulted ones
    int index = -1;     // of the full one, under which connections are kept
};

bool connectToCallable(QObject* sender, const QByteArray& signature, PyObject* callable, Qt::ConnectionType type);
bool disconnectFromCallable(QObject* sender, const QByteArray& signature, PyObject* callable);

// To a signal or slot of C++'s, by signature.
bool connectToMethod(QObject* sender, const QByteArray& signature, QObject* receiver, const QByteArray& method,
                     Qt::ConnectionType type);
bool disconnectFromMethod(QObject* sender, const QByteArray& signature, QObject* receiver, const QByteArray& method);

// To a Python method that `receiver`, a QObject's wrapper, has under a name when the signal comes.
bool connectToName(QObject* sender, const QByteArray& signature, PyObject* receiver, const QByteArray& name,
                   Qt::ConnectionType type);

// Ends all connections of the signal, those of C++ too. False when there was none.
bool disconnectAll(QObject* sender, const QByteArray& signature);

// Emits a signal that exists, with the arguments of a tuple; those that C++ would default get their type's default
// value. False with an error when they do not fit.
bool emitSignal(QObject* sender, const SignalPlace& signal, PyObject* arguments);

// Gives an object that Python made a signal that it does not have. False for other objects.
bool addSignal(QObject* sender, const QByteArray& signature);

} // namespace PySide

#endif
