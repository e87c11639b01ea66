// Calls of Python overrides from the library.
#include "virtual_dispatch.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace binding {

void objectDestroyed(const void* object)
{
    Shiboken::BindingManager& manager = Shiboken::BindingManager::instance();
    // A wrapper object that goes with its library object has left the manager already.
    if (!manager.hasWrapper(object))
        return;
    const Shiboken::GilState lock;
    Shiboken::Object::destroy(manager.retrieveWrapper(object), const_cast<void*>(object));
}

OverrideCall::OverrideCall(const void* object, const char* className, const char* method)
    : m_className(className), m_method(method), m_isBlocked(!isPythonAlive() || PyErr_Occurred())
{
    if (!m_isBlocked)
        m_override = Reference(Shiboken::BindingManager::instance().getOverride(object, method));
}

Reference OverrideCall::call(PyObject* const* arguments, int count)
{
    assert(m_override);
    const Reference tuple(PyTuple_New(count));
    for (int i = 0; i < count; ++i) {
        if (tuple)
            PyTuple_SET_ITEM(tuple.get(), i, arguments[i]);
        else
            Py_XDECREF(arguments[i]);
    }
    PyObject* const last = count ? arguments[count - 1] : nullptr;
    const bool isOurs = tuple && last && Py_REFCNT(last) == 1 && Shiboken::Object::checkType(last);
    Reference result(PyErr_Occurred() ? nullptr : PyObject_Call(m_override.get(), tuple.get(), nullptr));
    if (!result)
        PyErr_Print();
    if (isOurs)
        Shiboken::Object::invalidate(last);
    return result;
}

void OverrideCall::refuse(PyObject* result, const char* expected) const
{
    if (!PyErr_Occurred())
        Shiboken::warning(PyExc_RuntimeWarning, 2, "Invalid return value in function %s.%s, expected %s, got %s.",
                          std::strrchr(m_className, '.') + 1, m_method, expected, Py_TYPE(result)->tp_name);
    if (PyErr_Occurred())
        PyErr_Print(); // the library has called, which cannot take it
}

} // namespace binding
