// The interpreter's lock, references and the pending error, as objects with a scope: for the runtime as for what is
// bound on top of it.
#ifndef BINDING_INTERPRETER_SCOPES_H
#define BINDING_INTERPRETER_SCOPES_H

#include <sbkpython.h>
#include <shiboken.h>
#include <utility>

namespace binding {

// Lets other threads run Python while it lives; the lock is held again when the scope is left, by an exception too.
class Unlocked
{
public:
    Unlocked() : m_state(PyEval_SaveThread()) {}
    ~Unlocked() { PyEval_RestoreThread(m_state); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    PyThreadState* const m_state;
};

// Owns one reference; moves. Must be emptied or destroyed with the lock held.
class Reference
{
public:
    Reference() = default;
    explicit Reference(PyObject* owned) : m_object(owned) {}
    Reference(Reference&& other) noexcept : m_object(other.release()) {}
    Reference(const Reference&) = delete;
    ~Reference() { Py_XDECREF(m_object); }

    static Reference borrow(PyObject* object)
    {
        Py_XINCREF(object);
        return Reference(object);
    }

    Reference& operator=(Reference&& other) noexcept
    {
        PyObject* const old = m_object;
        m_object = other.release();
        Py_XDECREF(old);
        return *this;
    }

    PyObject* get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    PyObject* release() { return std::exchange(m_object, nullptr); }

private:
    PyObject* m_object = nullptr;
};

// Puts a pending error aside, for Python code that runs in between and must start without one.
class ErrorAside
{
public:
    ErrorAside() { PyErr_Fetch(&m_type, &m_value, &m_traceback); }
    ErrorAside(const ErrorAside&) = delete;
    ErrorAside& operator=(const ErrorAside&) = delete;
    ~ErrorAside()
    {
        if (m_type)
            PyErr_Restore(m_type, m_value, m_traceback);
    }

private:
    PyObject* m_type;
    PyObject* m_value;
    PyObject* m_traceback;
};

// What PyErr_Occurred() answers, without leaving the caller: every call asks several times.
inline bool errorPending() { return PyThreadState_GET()->curexc_type != nullptr; }

// A result, but null with the error when one is pending: an error never hides behind a success.
inline PyObject* unlessError(PyObject* result)
{
    if (!errorPending())
        return result;
    Py_XDECREF(result);
    return nullptr;
}

// A new reference to a borrowed object, or null.
inline PyObject* newReference(PyObject* object)
{
    Py_XINCREF(object);
    return object;
}

inline PyObject* none() { return newReference(Py_None); }

// False once the interpreter has ended, when nothing of Python may be touched any more.
inline bool isPythonAlive() { return Py_IsInitialized() != 0; }

} // namespace binding

#endif
