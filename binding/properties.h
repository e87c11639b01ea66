// Properties: getter and setter methods of a class, reached only by one name.
#ifndef BINDING_PROPERTIES_H
#define BINDING_PROPERTIES_H

#include "interpreter.h"

namespace binding {

struct Property
{
    const char* name;
    const char* getter;
    const char* setter; // null: read-only
};

constexpr Property readOnly(const char* name, const char* getter) { return {name, getter, nullptr}; }

constexpr Property writable(const char* name, const char* getter, const char* setter) { return {name, getter, setter}; }

// Turns the accessor methods of a type into properties, in their order, and takes the methods off the type. A property
// that cannot be made ends the process: the class would not be what scripts are promised.
void buildProperties(PyTypeObject* type, const char* className, const Property* properties, int count);

} // namespace binding

#endif
