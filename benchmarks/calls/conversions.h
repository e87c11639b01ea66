// What every hand-written or generated binding beside the module shares: the same conversions of texts and the same
// translation of library exceptions, so that the bindings differ in nothing but the way of a call.
#ifndef CALLS_CONVERSIONS_H
#define CALLS_CONVERSIONS_H

#include <Python.h>
#include <QString>

namespace calls {

inline bool isText(PyObject* object) { return PyUnicode_Check(object) || PyString_Check(object); }

// For an object that isText().
inline QString textFromPython(PyObject* object)
{
    if (PyUnicode_Check(object))
        return QString::fromWCharArray(reinterpret_cast<const wchar_t*>(PyUnicode_AS_UNICODE(object)),
                                       static_cast<int>(PyUnicode_GET_SIZE(object)));
    return QString::fromLatin1(PyString_AS_STRING(object), static_cast<int>(PyString_GET_SIZE(object)));
}

inline PyObject* textToPython(const QString& text)
{
    PyObject* result = PyUnicode_FromUnicode(nullptr, text.size());
    if (!result)
        return nullptr;
    const int length = text.toWCharArray(reinterpret_cast<wchar_t*>(PyUnicode_AS_UNICODE(result)));
    if (length != text.size())
        PyUnicode_Resize(&result, length);
    return result;
}

// For a catch (...) handler: sets the Python exception for the library exception in flight.
void raiseCaughtException();

} // namespace calls

#endif
