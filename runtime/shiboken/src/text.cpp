// Making and reading text of Python 2.
#include "sbkstring.h"

#include <cstdarg>

namespace Shiboken {
namespace String {

PyObject* fromCString(const char* value)
{
    if (!value)
        Py_RETURN_NONE;
    return PyString_FromString(value);
}

PyObject* fromCString(const char* value, int length) { return PyString_FromStringAndSize(value, length); }

PyObject* fromFormat(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    PyObject* const text = PyString_FromFormatV(format, arguments);
    va_end(arguments);
    return text;
}

const char* toCString(PyObject* text, Py_ssize_t* size)
{
    if (size)
        *size = 0;
    if (text == Py_None)
        return nullptr;
    if (!PyString_Check(text)) {
        PyErr_Format(PyExc_TypeError, "expected str, got %.200s", Py_TYPE(text)->tp_name);
        return nullptr;
    }
    if (size)
        *size = PyString_GET_SIZE(text);
    return PyString_AS_STRING(text);
}

void concat(PyObject** value, PyObject* extra)
{
    if (PyUnicode_Check(*value) || PyUnicode_Check(extra)) {
        PyObject* const result = PyUnicode_Concat(*value, extra);
        Py_DECREF(*value);
        *value = result;
    } else {
        PyString_Concat(value, extra);
    }
}

} // namespace String
} // namespace Shiboken
