// What a signal calls: a Python callable that is kept alive, or a bound method that lives no longer than its object.
#ifndef PYTHON_CALLABLE_H
#define PYTHON_CALLABLE_H

#include "python_scopes.h"

#include <QByteArray>
#include <QPointer>

namespace PySide {

class PythonCallable
{
public:
    // Needs the lock, like all that follows. The object must be callable.
    explicit PythonCallable(PyObject* callable);
    // The method that `object`, a QObject's wrapper, has under a name at the time of the call.
    PythonCallable(PyObject* object, const QByteArray& methodName);
    PythonCallable(PythonCallable&&) = default;

    // The callable; null when the object of a bound method has gone, without an error, or has no such method, with one.
    Reference resolve() const;

    // Whether this came from that callable, or from an equal bound method.
    bool isFrom(PyObject* callable) const;

    // How many positional arguments a callable takes at most; INT_MAX when it takes any number or does not say.
    static int mostArguments(PyObject* callable);

    // The QObject that the method is bound to. The call is made in its thread, and no more when it has died.
    bool hasOwner() const { return m_hasOwner; }
    QObject* owner() const { return m_owner; }

    // The object of a bound method has gone.
    bool isDead() const;

    // Lets go of everything; abandon() without the lock, when the interpreter has gone.
    void clear();
    void abandon();

private:
    void setOwner(PyObject* object);

    Reference m_callable; // the function; a bound method is taken apart
    Reference m_self;     // a weak reference to what a method is bound to
    QByteArray m_name;    // of a method that is looked up for each call, or of a built-in one
    QPointer<QObject> m_owner;
    bool m_hasOwner = false;
};

} // namespace PySide

#endif
