// PyObjectWrapper: a Qt value that holds a reference to a Python object.
#include "pyobjectwrapper.h"

#include "python_scopes.h"

namespace PySide {

PyObjectWrapper::PyObjectWrapper(PyObject* object) : m_object(object) { Py_INCREF(object); }

PyObjectWrapper::PyObjectWrapper(const PyObjectWrapper& other)
{
    if (!other.m_object || !isPythonAlive())
        return;
    const Shiboken::GilState lock;
    m_object = Reference::borrow(other.m_object).release();
}

PyObjectWrapper::~PyObjectWrapper()
{
    if (!m_object || !isPythonAlive())
        return;
    const Shiboken::GilState lock;
    const ErrorAside aside;
    Py_DECREF(m_object);
}

PyObjectWrapper& PyObjectWrapper::operator=(const PyObjectWrapper& other)
{
    PyObjectWrapper copy(other);
    std::swap(m_object, copy.m_object);
    return *this;
}

PyObject* PyObjectWrapper::newReference() const { return Reference::borrow(m_object ? m_object : Py_None).release(); }

} // namespace PySide
