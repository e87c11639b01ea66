// Type objects of the binding's own kinds of objects.
#ifndef STATIC_TYPE_H
#define STATIC_TYPE_H

#include <sbkpython.h>

namespace PySide {

// A type object with a name and a size, to be filled further and made ready.
inline PyTypeObject staticType(const char* name, Py_ssize_t size)
{
    PyTypeObject type = {};
    type.ob_refcnt = 1;
    type.tp_name = name;
    type.tp_basicsize = size;
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    return type;
}

} // namespace PySide

#endif
