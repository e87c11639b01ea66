// Type objects of the binding's own kinds of objects, and their way into the module.
#ifndef STATIC_TYPE_H
#define STATIC_TYPE_H

#include <cstring>
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

// Makes the type ready and enters it under the last part of its name. False with an error.
inline bool addType(PyObject* module, PyTypeObject& type)
{
    if (PyType_Ready(&type) < 0)
        return false;
    Py_INCREF(&type);
    return PyModule_AddObject(module, std::strrchr(type.tp_name, '.') + 1, reinterpret_cast<PyObject*>(&type)) == 0;
}

} // namespace PySide

#endif
