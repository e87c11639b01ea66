// Properties: accessor methods of a class that scripts reach as one attribute.
#include "properties.h"

#include <cstdlib>
#include <string>

namespace binding {

namespace {

[[noreturn]] void failProperty(const char* property, const char* className)
{
    PyErr_Print();
    Py_FatalError(("Cannot initialize '" + std::string(property) + "' property of '" + className + "' class").c_str());
    std::abort(); // not reached; the interpreter's headers do not say so
}

bool buildProperty(PyObject* type, const Property& property)
{
    const Reference getter(PyObject_GetAttrString(type, property.getter));
    if (!getter)
        return false;
    const Reference setter(property.setter ? PyObject_GetAttrString(type, property.setter) : none());
    if (!setter)
        return false;
    const Reference made(PyObject_CallFunctionObjArgs(reinterpret_cast<PyObject*>(&PyProperty_Type), getter.get(),
                                                      setter.get(), Py_None, nullptr));
    return made && PyObject_SetAttrString(type, property.name, made.get()) == 0 &&
           PyObject_DelAttrString(type, property.getter) == 0 &&
           (!property.setter || PyObject_DelAttrString(type, property.setter) == 0);
}

} // namespace

void buildProperties(PyTypeObject* type, const char* className, const std::vector<Property>& properties)
{
    for (const Property& property : properties)
        if (!buildProperty(reinterpret_cast<PyObject*>(type), property))
            failProperty(property.name, className);
}

} // namespace binding
