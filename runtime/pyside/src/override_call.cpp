// Calling the Python method that overrides a virtual operation.
#include "override_call.h"

namespace PySide {

OverrideCall::OverrideCall(const void* object, const char* className, const char* method)
    : m_className(className), m_method(method), m_isBlocked(!isPythonAlive() || PyErr_Occurred())
{
    if (!m_isBlocked)
        m_override = Reference(Shiboken::BindingManager::instance().getOverride(object, method));
}

void OverrideCall::unlock() { m_lock.release(); }

Reference OverrideCall::run(PyObject* first, PyObject* second)
{
    const Reference firstOwned(first), secondOwned(second);
    if (PyErr_Occurred()) {
        PyErr_Print();
        return Reference();
    }
    // The event comes last. One that only this call knows dies with it in C++, too.
    PyObject* const event = second ? second : first;
    const bool isOurs = event && Py_REFCNT(event) == 1 && Shiboken::Object::checkType(event);
    Reference result(PyObject_CallFunctionObjArgs(m_override.get(), first, second, nullptr));
    if (!result)
        PyErr_Print();
    if (isOurs)
        Shiboken::Object::invalidate(event);
    return result;
}

void OverrideCall::call(PyObject* first, PyObject* second) { run(first, second); }

bool OverrideCall::callForBool(PyObject* first, PyObject* second)
{
    const Reference result = run(first, second);
    return result && boolFrom(result.get());
}

bool OverrideCall::boolFrom(PyObject* result) const
{
    SbkConverter* const converter = Shiboken::Conversions::PrimitiveTypeConverter<bool>();
    const Shiboken::Conversions::PythonToCppFunc convert =
        Shiboken::Conversions::isPythonToCppConvertible(converter, result);
    bool answer = false;
    if (convert)
        convert(result, &answer);
    else
        Shiboken::warning(PyExc_RuntimeWarning, 2, "Invalid return value in function %s.%s, expected %s, got %s.",
                          m_className, m_method, "bool", Py_TYPE(result)->tp_name);
    if (PyErr_Occurred())
        PyErr_Print(); // C++ has called, which cannot take it
    return answer;
}

} // namespace PySide
