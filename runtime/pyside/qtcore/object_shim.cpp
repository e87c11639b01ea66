// Construction and destruction of the QObjects that Python makes.
#include "object_shim.h"

#include "class_registration.h"
#include "pyside.h"
#include "pysidesignal.h"

#include <cstring>

namespace QtCore {

bool isPythonClass(const QMetaObject* own, const QMetaObject* cpp, const char* className)
{
    for (; className && own && own != cpp; own = own->superClass())
        if (!std::strcmp(own->className(), className))
            return true;
    return false;
}

namespace {

// Qt refuses a parent in another thread.
bool setQtParent(PyObject* self, QObject* object, PyObject* parent)
{
    if (!parent || parent == Py_None)
        return true;
    QObject* const cppParent = validQObjectOf(parent);
    if (!cppParent)
        return false;
    {
        const Unlocked unlocked;
        object->setParent(cppParent);
    }
    if (object->parent() == cppParent)
        Shiboken::Object::setParent(parent, self);
    return !PyErr_Occurred();
}

} // namespace

bool attach(PyObject* self, PyTypeObject* type, QObject* object, PythonQObject* pythonPart, PyObject* parent,
            PyObject* keywords, const char** ignoredKeywords, unsigned ignoredCount)
{
    if (!takeCppObject(self, type, object, true)) {
        const ErrorAside aside;
        const Unlocked unlocked;
        delete object;
        return false;
    }
    if (const std::shared_ptr<const DynamicMetaObject> own = classMetaObject(Py_TYPE(self)))
        pythonPart->setPythonMetaObject(own);
    Signal::updateSourceObject(self);
    return setQtParent(self, object, parent) &&
           (!keywords || fillQtProperties(self, object->metaObject(), keywords, ignoredKeywords, ignoredCount));
}

} // namespace QtCore
