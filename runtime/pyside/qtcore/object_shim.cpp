// What QObjects that Python makes get beyond their C++ constructors.
#include "object_shim.h"

#include "pysidesignal.h"

#include <algorithm>
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

// The constructor's own, which are no properties, in ascending order.
std::vector<const char*> keywordsOf(const Operation& constructor)
{
    std::vector<const char*> names;
    for (int s = 0; s < constructor.signatureCount; ++s)
        for (int i = 0; i < constructor.signatures[s].count; ++i)
            if (const char* const name = constructor.signatures[s].parameters[i].keyword)
                names.push_back(name);
    std::sort(names.begin(), names.end(), [](const char* a, const char* b) { return std::strcmp(a, b) < 0; });
    return names;
}

} // namespace

bool finishQObject(const Operation& constructor, PyObject* self, void* address, PyObject* keywords)
{
    QObject* const object = static_cast<QObject*>(address);
    ShimPart* const shim = dynamic_cast<ShimPart*>(object);
    if (const std::shared_ptr<const DynamicMetaObject> own = classMetaObject(Py_TYPE(self)))
        shim->setPythonMetaObject(own);
    if (Shiboken::Object::isUserType(self))
        shim->setOfPythonClass();
    Signal::updateSourceObject(self);
    if (!setQtParent(self, object, shim->givenParent().object))
        return false;
    // The application lives until the interpreter ends, whether a name holds it or not.
    if (object == QCoreApplication::instance())
        Shiboken::Object::releaseOwnership(self);
    if (!keywords)
        return true;
    std::vector<const char*> ignored = keywordsOf(constructor);
    return fillQtProperties(self, object->metaObject(), keywords, ignored.data(),
                            static_cast<unsigned>(ignored.size()));
}

} // namespace QtCore
