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

bool buildProperty(PyObject* type, const Accessor& getter, const Accessor* setter)
{
    const Reference get(PyObject_GetAttrString(type, getter.method));
    if (!get)
        return false;
    const Reference set(setter ? PyObject_GetAttrString(type, setter->method) : none());
    if (!set)
        return false;
    const Reference made(PyObject_CallFunctionObjArgs(reinterpret_cast<PyObject*>(&PyProperty_Type), get.get(),
                                                      set.get(), Py_None, nullptr));
    return made && PyObject_SetAttrString(type, getter.property, made.get()) == 0 &&
           PyObject_DelAttrString(type, getter.method) == 0 &&
           (!setter || PyObject_DelAttrString(type, setter->method) == 0);
}

} // namespace

void buildProperties(PyTypeObject* type, const char* className, const std::vector<Accessor>& accessors)
{
    for (std::size_t i = 0; i < accessors.size(); ++i) {
        const Accessor& getter = accessors[i];
        const bool isWritable = i + 1 < accessors.size() && accessors[i + 1].isSetter;
        if (!buildProperty(reinterpret_cast<PyObject*>(type), getter, isWritable ? &accessors[++i] : nullptr))
            failProperty(getter.property, className);
    }
}

} // namespace binding
