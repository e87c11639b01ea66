// Properties: accessor methods of a class that scripts reach as one attribute.
#ifndef BINDING_PROPERTIES_H
#define BINDING_PROPERTIES_H

#include "operation.h"

#include <vector>

namespace binding {

struct Property
{
    const char* name;
    const char* getter;
    const char* setter; // null: read-only
};

constexpr const char* methodName(const char* name) { return name; }
inline void addAccessor(std::vector<Property>&, const char*) {}

template <std::size_t size>
constexpr const char* methodName(const AccessorName<size>& name)
{
    return name.text.data();
}
template <std::size_t size>
void addAccessor(std::vector<Property>& properties, const AccessorName<size>& name)
{
    if (name.isSetter)
        properties.back().setter = methodName(name);
    else
        properties.push_back({name.property, methodName(name), nullptr});
}

// The properties among the rows of a class's table, in their order.
template <class... Rows>
std::vector<Property> propertiesOf(const std::tuple<Rows...>& table)
{
    std::vector<Property> properties;
    std::apply([&](const auto&... row) { (addAccessor(properties, row.name), ...); }, table);
    return properties;
}

// Turns the accessor methods of a type into properties, in their order, and takes the methods off the type. A property
// that cannot be made ends the process: the class would not be what scripts are promised.
void buildProperties(PyTypeObject* type, const char* className, const std::vector<Property>& properties);

} // namespace binding

#endif
