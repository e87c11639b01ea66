// References, the interpreter's lock and its pending error, as objects with a scope.
#ifndef PYTHON_SCOPES_H
#define PYTHON_SCOPES_H

#include <sbkpython.h>
#include <shiboken.h>
#include <utility>

namespace PySide {

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

// Lets other threads run Python while it lives.
class Unlocked
{
public:
    Unlocked() { m_saver.save(); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    Shiboken::ThreadStateSaver m_saver;
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

// False once the interpreter has ended, when nothing of Python may be touched any more.
inline bool isPythonAlive() { return Py_IsInitialized() != 0; }

} // namespace PySide

#endif
