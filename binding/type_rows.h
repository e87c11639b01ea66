// One list of the types that a module publishes: from a row follow a type's place, its name and how its values cross.
#ifndef BINDING_TYPE_ROWS_H
#define BINDING_TYPE_ROWS_H

#include "converter.h"

#include <tuple>

namespace binding {

struct ClassTable;

// One type: the kind decides how its values cross between Python and the library.
template <class T>
struct TypeRow
{
    Kind kind;
    int place; // in the module's type table
    const char* name;
};

template <class T>
constexpr TypeRow<T> valueType(int place, const char* name)
{
    return {Kind::Value, place, name};
}
template <class T>
constexpr TypeRow<T> objectType(int place, const char* name)
{
    return {Kind::Object, place, name};
}
template <class T>
constexpr TypeRow<T> enumerationType(int place, const char* name)
{
    return {Kind::Enumeration, place, name};
}

template <class T, class Rows>
constexpr bool isListed = false;
template <class T, class... Listed>
constexpr bool isListed<T, const std::tuple<TypeRow<Listed>...>> = (std::is_same_v<T, Listed> || ...);

// What Wrapped<T> says of a type in the list `rows`, whose Python type stands in the table `types`.
template <class T, const auto& rows, PyTypeObject** types>
struct WrappedByRow
{
    static constexpr TypeRow<T> row = std::get<TypeRow<T>>(rows);
    static constexpr Kind kind = row.kind;
    static constexpr const char* name = row.name;
    static constexpr PyTypeObject** place() { return types + row.place; }
    static PyTypeObject* type() { return types[row.place]; }
};

} // namespace binding

#endif
