// A Python object that holds a library object in place, and what hand-written functions for it need.
#ifndef CALLS_FLOOR_OBJECT_H
#define CALLS_FLOOR_OBJECT_H

#include "conversions.h"

#include <new>
#include <utility>

namespace calls {

class Unlocked
{
public:
    Unlocked() : m_state(PyEval_SaveThread()) {}
    ~Unlocked() { PyEval_RestoreThread(m_state); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    PyThreadState* const m_state;
};

template <class T>
struct Object
{
    PyObject_HEAD T value;
};

template <class T>
PyTypeObject typeOf = {};

template <class T>
T& valueOf(PyObject* object)
{
    return reinterpret_cast<Object<T>*>(object)->value;
}

template <class T>
bool isOne(PyObject* object)
{
    return Py_TYPE(object) == &typeOf<T> || PyType_IsSubtype(Py_TYPE(object), &typeOf<T>);
}

// A new object of the type (or of a Python class derived from it), whose library object is made unlocked.
template <class T, class... Arguments>
PyObject* make(PyTypeObject* type, Arguments&&... arguments)
{
    PyObject* const object = type->tp_alloc(type, 0);
    if (!object)
        return nullptr;
    try {
        const Unlocked unlocked;
        new (&valueOf<T>(object)) T(std::forward<Arguments>(arguments)...);
    } catch (...) {
        raiseCaughtException();
        type->tp_free(object);
        return nullptr;
    }
    return object;
}

// A copy of a library object, made with the lock held.
template <class T>
PyObject* wrap(const T& value)
{
    PyObject* const object = typeOf<T>.tp_alloc(&typeOf<T>, 0);
    if (object)
        new (&valueOf<T>(object)) T(value);
    return object;
}

template <class T>
void deallocate(PyObject* object)
{
    valueOf<T>(object).~T();
    Py_TYPE(object)->tp_free(object);
}

inline PyObject* none()
{
    Py_INCREF(Py_None);
    return Py_None;
}

inline PyObject* wrongArgument(const char* function, PyObject* object)
{
    return PyErr_Format(PyExc_TypeError, "%s() does not take a '%s'", function, Py_TYPE(object)->tp_name);
}

// One property of a class, over methods that are then reached by its name only.
struct Property
{
    const char* name;
    const char* getter;
    const char* setter; // null for none
};

bool addType(PyObject* module, PyTypeObject& type, const char* name, const Property* properties, int count);

template <class T>
bool addType(PyObject* module, const char* name, newfunc makeNew, PyMethodDef* methods, const Property* properties,
             int count)
{
    PyTypeObject& type = typeOf<T>;
    Py_REFCNT(&type) = 1;
    type.tp_name = name;
    type.tp_basicsize = sizeof(Object<T>);
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE;
    type.tp_dealloc = &deallocate<T>;
    type.tp_new = makeNew;
    type.tp_methods = methods;
    return addType(module, type, name, properties, count);
}

} // namespace calls

#endif
