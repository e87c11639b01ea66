// The error text for numbers that do not fit: the value and the range.
#include "primitive_converters.h"

#include "messages.h"

namespace binding {

void nameRange(PyObject* object, const char* type, double lowest, double highest)
{
    if (!messages.namesRanges || !PyErr_ExceptionMatches(PyExc_OverflowError))
        return;
    PyObject *error, *text, *traceback;
    PyErr_Fetch(&error, &text, &traceback);
    const bool isNumber = PyInt_CheckExact(object) || PyLong_CheckExact(object) || PyFloat_CheckExact(object);
    const Reference shown(traceback || !isNumber ? nullptr : PyObject_Repr(object));
    if (!shown || lowest < -1e30) {
        PyErr_Clear();
        PyErr_Restore(error, text, traceback);
        return;
    }
    Py_DECREF(error);
    Py_XDECREF(text);
    PyErr_Format(PyExc_OverflowError, "%.60s is not in the range of %s, %lld to %lld", PyString_AS_STRING(shown.get()),
                 type, static_cast<long long>(lowest), static_cast<long long>(highest));
}

} // namespace binding
