// The constructor that QObject classes share: an optional parent, then keywords that are properties and signals.
#ifndef QOBJECT_CONSTRUCTOR_H
#define QOBJECT_CONSTRUCTOR_H

#include "bound_function.h"
#include "object_shim.h"
#include "pyside.h"
#include "pysidesignal.h"

namespace QtCore {

extern SbkObjectType qObjectTypeObject;

// The parent among a constructor's arguments: borrowed, null when none is given. False with an error.
bool readParent(const char* className, PyObject* self, PyTypeObject* type, PyObject* arguments, PyObject* keywords,
                PyObject*& parent);

template <class T, class Shim = ObjectShim<T>>
int initialiseQObject(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    PyObject* parent = nullptr;
    if (!readParent(Wrapped<T>::name, self, typeOf<T>(), arguments, keywords, parent))
        return -1;
    Shim* object;
    {
        const Unlocked unlocked;
        object = new Shim;
    }
    static const char* ignored[] = {"parent"};
    return attach(self, typeOf<T>(), object, object, parent, keywords, ignored, 1) ? 0 : -1;
}

// What a QObject class needs beside its registration.
template <class T>
void finishQObjectClass(SbkObjectType& type)
{
    Shiboken::ObjectType::setSubTypeInitHook(&type, &initQObjectSubType);
    initDynamicMetaObject(&type, &T::staticMetaObject, sizeof(T));
}

} // namespace QtCore

#endif
