// Text of Python 2, which is str and unicode: what counts as text, and how it is made and read.
#ifndef SBKSTRING_H
#define SBKSTRING_H

#include "sbkpython.h"
#include "shibokenmacros.h"

#include <cstring>

namespace Shiboken {
namespace String {

/// str or a subclass.
inline bool checkType(PyTypeObject* type) { return PyType_IsSubtype(type, &PyString_Type); }

/// None, str or unicode.
inline bool check(PyObject* object) { return object == Py_None || PyString_Check(object) || PyUnicode_Check(object); }

/// What `const char*` and `std::string` take: None or str. A unicode has no bytes of its own.
inline bool isConvertible(PyObject* object) { return object == Py_None || PyString_Check(object); }

/// A str of one byte.
inline bool checkChar(PyObject* object) { return PyString_Check(object) && PyString_GET_SIZE(object) == 1; }

/// None for a null pointer.
LIBSHIBOKEN_API PyObject* fromCString(const char* value);
LIBSHIBOKEN_API PyObject* fromCString(const char* value, int length);
inline PyObject* fromStringAndSize(const char* value, Py_ssize_t size)
{
    return PyString_FromStringAndSize(value, size);
}
LIBSHIBOKEN_API PyObject* fromFormat(const char* format, ...);

/// The bytes of a str, null for None. Anything else is a TypeError and null. The size may be null.
LIBSHIBOKEN_API const char* toCString(PyObject* text, Py_ssize_t* size = nullptr);

/// Replaces the text at `value` by itself followed by `extra`; `extra` stays the caller's. Null at `value` on error.
LIBSHIBOKEN_API void concat(PyObject** value, PyObject* extra);

/// As strcmp; 2 when the object is no str.
inline int compare(PyObject* text, const char* other)
{
    return PyString_Check(text) ? std::strcmp(PyString_AS_STRING(text), other) : 2;
}

/// The number of bytes or characters; 0 for what is no text.
inline int len(PyObject* text)
{
    return static_cast<int>(PyString_Check(text)    ? PyString_GET_SIZE(text)
                            : PyUnicode_Check(text) ? PyUnicode_GET_SIZE(text)
                                                    : 0);
}

} // namespace String
} // namespace Shiboken

#endif
