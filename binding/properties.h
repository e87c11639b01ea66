// Properties: accessor methods of a class that scripts reach as one attribute.
#ifndef BINDING_PROPERTIES_H
#define BINDING_PROPERTIES_H

#include "operation.h"

#include <vector>

namespace binding {

// A method that is one side of a property. A setter follows its getter.
struct Accessor
{
    const char* property;
    const char* method;
    bool isSetter;
};

constexpr const char* methodName(const char* name) { return name; }
inline void addAccessor(std::vector<Accessor>&, const char*) {}

template <std::size_t size>
constexpr const char* methodName(const AccessorName<size>& name)
{
    return name.text.data();
}
template <std::size_t size>
void addAccessor(std::vector<Accessor>& accessors, const AccessorName<size>& name)
{
    accessors.push_back({name.property, methodName(name), name.isSetter});
}

// The accessors among the rows of a class's table, in their order.
template <class... Rows>
std::vector<Accessor> accessorsOf(const std::tuple<Rows...>& table)
{
    std::vector<Accessor> accessors;
    std::apply([&](const auto&... row) { (addAccessor(accessors, row.name), ...); }, table);
    return accessors;
}

// Turns the accessors of a type into properties, in their order, and takes the methods off the type. A property that
// cannot be made ends the process: the class would not be what scripts are promised.
void buildProperties(PyTypeObject* type, const char* className, const std::vector<Accessor>& accessors);

} // namespace binding

#endif
