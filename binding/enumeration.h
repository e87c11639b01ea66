// Enumerations: from a table of items to a Python type, in the module or inside one of its classes.
#ifndef BINDING_ENUMERATION_H
#define BINDING_ENUMERATION_H

#include "converter.h"

#include <cstddef>

namespace binding {

struct EnumerationItem
{
    const char* name;
    long value;
};

// What registration needs to know of an enumeration.
struct EnumerationTable
{
    PyTypeObject** place; // in the module's type table
    const char* name;     // full Python name: "vireo.project.Colorspace", "PySide.QtCore.QEvent.Type"
    PyObject* (*toPython)(const void*);
    FromPython fromPython;
    FromPython (*accepts)(PyObject*);
};

// Makes the type and its converter. One inside a class, which is registered before it, is told by its name. False with
// an error.
bool registerEnumeration(PyObject* module, const EnumerationTable& table, const EnumerationItem* items,
                         std::size_t count);

template <class T, std::size_t count>
bool registerEnumeration(PyObject* module, const EnumerationItem (&items)[count])
{
    constexpr auto toPython = [](const void* value) { return Converter<T>::toPython(*static_cast<const T*>(value)); };
    const EnumerationTable table = {Wrapped<T>::place(), Wrapped<T>::name, toPython, &Converter<T>::fromPython,
                                    &Converter<T>::accepts};
    return registerEnumeration(module, table, items, count);
}

} // namespace binding

#endif
