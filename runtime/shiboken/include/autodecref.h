// A new reference that is dropped at the end of its scope.
#ifndef AUTODECREF_H
#define AUTODECREF_H

#include "sbkpython.h"

struct SbkObject;

namespace Shiboken {

class AutoDecRef
{
public:
    explicit AutoDecRef(PyObject* object) : m_object(object) {}
    explicit AutoDecRef(SbkObject* object) : m_object(reinterpret_cast<PyObject*>(object)) {}
    AutoDecRef(const AutoDecRef&) = delete;
    AutoDecRef& operator=(const AutoDecRef&) = delete;
    ~AutoDecRef() { Py_XDECREF(m_object); }

    bool isNull() const { return !m_object; }
    PyObject* object() const { return m_object; }
    operator PyObject*() const { return m_object; }
    operator bool() const { return m_object != nullptr; }
    PyObject* operator->() const { return m_object; }
    template <typename T>
    T cast() const
    {
        return reinterpret_cast<T>(m_object);
    }

    /// Drops what was held and takes over a new reference, or nothing.
    AutoDecRef& operator=(PyObject* other)
    {
        PyObject* const old = m_object;
        m_object = other;
        Py_XDECREF(old);
        return *this;
    }

private:
    PyObject* m_object;
};

} // namespace Shiboken

#endif
