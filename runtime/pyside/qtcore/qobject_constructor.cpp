// The arguments of QObject classes' constructors.
#include "qobject_constructor.h"

#include "class_registration.h"

#include <cstring>

namespace QtCore {

bool readParent(const char* className, PyObject* self, PyTypeObject* type, PyObject* arguments, PyObject* keywords,
                PyObject*& parent)
{
    if (!canInitialise(self, type))
        return false;
    const std::string format = std::string("|O:") + (std::strrchr(className, '.') + 1);
    if (!PyArg_ParseTuple(arguments, format.c_str(), &parent))
        return false;
    if (PyObject* const named = keywords ? PyDict_GetItemString(keywords, "parent") : nullptr) {
        if (parent) {
            PyErr_Format(PyExc_TypeError, "%s(): got multiple values for keyword argument 'parent'.", className);
            return false;
        }
        parent = named;
    }
    if (parent && !Crossing<QObject*>::accepts(parent)) {
        const char* signatures[] = {"PySide.QtCore.QObject = None", nullptr};
        Shiboken::setErrorAboutWrongArguments(arguments, className, signatures);
        return false;
    }
    return !parent || Shiboken::Object::isValid(parent);
}

} // namespace QtCore
