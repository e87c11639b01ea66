// Calls of Python methods that override virtual operations of QObject.
#ifndef OVERRIDE_CALL_H
#define OVERRIDE_CALL_H

#include "python_scopes.h"

#include <QByteArray>

namespace PySide {

// One call. Holds the lock while it lives, or until unlock().
class OverrideCall
{
public:
    // Looks for the override on the wrapper object of `object`. `className` is what warnings call the class.
    OverrideCall(const void* object, const char* className, const char* method);
    OverrideCall(const OverrideCall&) = delete;
    OverrideCall& operator=(const OverrideCall&) = delete;

    // A Python error is pending, or the interpreter has ended: nothing may be called.
    bool isBlocked() const { return m_isBlocked; }
    bool isFound() const { return static_cast<bool>(m_override); }
    // For the C++ operation, which must run without the lock.
    void unlock();

    // Call with arguments that are taken over; a null one stands for a failed conversion. An exception is printed. An
    // event's wrapper object that only the call referred to is made invalid afterwards.
    void call(PyObject* first = nullptr, PyObject* second = nullptr);
    // The same for a bool. Any other result is warned about and counts as false.
    bool callForBool(PyObject* first, PyObject* second = nullptr);

private:
    Reference run(PyObject* first, PyObject* second);
    bool boolFrom(PyObject* result) const;

    Shiboken::GilState m_lock;
    const char* const m_className;
    const char* const m_method;
    bool m_isBlocked;
    Reference m_override;
};

} // namespace PySide

#endif
