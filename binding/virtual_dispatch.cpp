// Calls of Python overrides from the library.
#include "virtual_dispatch.h"

#include "primitive_converters.h"

#include <cassert>
#include <cstring>
#include <pyside_qtcore_python.h>
#include <string>

namespace binding {

namespace {

PyObject* pointerToPython(int place, const void* object)
{
    return Shiboken::Conversions::pointerToPython(reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[place]),
                                                  object);
}

} // namespace

void objectDestroyed(const void* object)
{
    Shiboken::BindingManager& manager = Shiboken::BindingManager::instance();
    // A wrapper object that goes with its library object has left the manager already.
    if (!manager.retrieveWrapper(object))
        return;
    const Shiboken::GilState lock;
    if (SbkObject* const wrapper = manager.retrieveWrapper(object))
        Shiboken::Object::destroy(wrapper, const_cast<void*>(object));
}

OverrideCall::OverrideCall(const void* object, const char* className, const char* method)
    : m_className(className), m_method(method), m_blocked(PyErr_Occurred() != nullptr),
      m_override(m_blocked ? nullptr : Shiboken::BindingManager::instance().getOverride(object, method))
{}

OverrideCall::~OverrideCall() { Py_XDECREF(m_override); }

PyObject* OverrideCall::run(PyObject* arguments)
{
    assert(m_override);
    PyObject* const result = arguments ? PyObject_Call(m_override, arguments, nullptr) : nullptr;
    if (!result)
        PyErr_Print();
    return result;
}

void OverrideCall::call(PyObject* arguments, PyObject* event)
{
    const Reference owned(arguments);
    const bool madeForCall = event && Py_REFCNT(event) == 1;
    const Reference result(run(arguments));
    if (madeForCall)
        Shiboken::Object::invalidate(event);
}

bool OverrideCall::callForBool(PyObject* arguments, PyObject* event)
{
    const Reference owned(arguments);
    const bool madeForCall = event && Py_REFCNT(event) == 1;
    const Reference result(run(arguments));
    const bool answer = result && boolFrom(result.get());
    if (madeForCall)
        Shiboken::Object::invalidate(event);
    return answer;
}

bool OverrideCall::boolFrom(PyObject* result) const
{
    const FromPython convert = Converter<bool>::accepts(result);
    if (!convert) {
        const std::string function = std::string(std::strrchr(m_className, '.') + 1) + "." + m_method;
        if (Shiboken::warning(PyExc_RuntimeWarning, 2, "Invalid return value in function %s, expected %s, got %s.",
                              function.c_str(), "bool", Py_TYPE(result)->tp_name) < 0)
            PyErr_Print(); // warnings are errors: the caller is the library, which cannot take one
        return false;
    }
    bool answer = false;
    convert(result, &answer);
    if (PyErr_Occurred())
        PyErr_Print();
    return answer;
}

PyObject* eventToPython(QEvent* event) { return pointerToPython(SBK_QEVENT_IDX, event); }
PyObject* timerEventToPython(QTimerEvent* event) { return pointerToPython(SBK_QTIMEREVENT_IDX, event); }
PyObject* childEventToPython(QChildEvent* event) { return pointerToPython(SBK_QCHILDEVENT_IDX, event); }
PyObject* qObjectToPython(QObject* object) { return pointerToPython(SBK_QOBJECT_IDX, object); }

} // namespace binding
