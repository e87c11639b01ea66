// Finds the C++ types for the parameter types that scripts declare.
#include "declared_types.h"

#include "qobject_wrappers.h"

#include <QMetaObject>
#include <QMetaType>

namespace PySide {

namespace {

// The wrapped class that a Python class derives from.
SbkObjectType* wrappedBase(PyTypeObject* type)
{
    while (Shiboken::ObjectType::isUserType(type))
        type = type->tp_base;
    return reinterpret_cast<SbkObjectType*>(type);
}

QByteArray unlessUnknown(const QByteArray& name, const char* shownName)
{
    if (name.endsWith('*') || QMetaType::type(name.constData()) != QMetaType::UnknownType)
        return name;
    PyErr_Format(PyExc_TypeError,
                 "Value types used on meta functions (including signals) need to be registered on meta type: %s",
                 shownName);
    return QByteArray();
}

QByteArray nameOfType(PyTypeObject* type)
{
    if (type == &PyInt_Type)
        return "int";
    if (type == &PyFloat_Type)
        return "double";
    if (type == &PyBool_Type)
        return "bool";
    if (type == &PyString_Type || type == &PyUnicode_Type)
        return "QString";
    if (Py_TYPE(type) == &SbkEnumType_Type)
        return unlessUnknown(Shiboken::Enum::getCppName(type), type->tp_name);
    if (Shiboken::ObjectType::checkType(type)) {
        const char* const name = Shiboken::ObjectType::getOriginalName(wrappedBase(type));
        return unlessUnknown(name ? name : "", type->tp_name);
    }
    return "PyObject";
}

} // namespace

QByteArray cppTypeName(PyObject* declared)
{
    if (PyType_Check(declared))
        return nameOfType(reinterpret_cast<PyTypeObject*>(declared));
    if (PyClass_Check(declared))
        return "PyObject";
    if (PyString_Check(declared) && PyString_GET_SIZE(declared) > 0)
        return QMetaObject::normalizedType(PyString_AS_STRING(declared));
    PyErr_Format(PyExc_TypeError, "a type or the name of a C++ type is needed, not %s", Py_TYPE(declared)->tp_name);
    return QByteArray();
}

QByteArray cppTypeNames(PyObject* sequence)
{
    const Reference items(PySequence_Fast(sequence, "a sequence of types is needed"));
    if (!items)
        return QByteArray();
    QByteArray names("");
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.get()); ++i) {
        const QByteArray name = cppTypeName(PySequence_Fast_GET_ITEM(items.get(), i));
        if (name.isEmpty())
            return QByteArray();
        names += (i ? "," : "") + name;
    }
    return names;
}

} // namespace PySide
