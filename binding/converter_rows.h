// Converters that a module publishes by name, for other modules and for variants.
#ifndef BINDING_CONVERTER_ROWS_H
#define BINDING_CONVERTER_ROWS_H

#include "converter.h"

namespace binding {

struct ConverterRow
{
    int place; // in the module's table of converters
    const char* name;
    PyTypeObject* type;
    PyObject* (*toPython)(const void*);
    FromPython fromPython;
    FromPython (*accepts)(PyObject*); // null: to Python only
};

namespace detail {

template <class T, class Conversion>
PyObject* toPython(const void* value)
{
    return Conversion::toPython(*static_cast<const T*>(value));
}

// The runtime pairs each test with one conversion: those of one converter are told apart by the conversion that its
// test gives.
template <class Conversion>
FromPython accepts(PyObject* object)
{
    return Conversion::accepts(object);
}

template <class Conversion>
void fromPython(PyObject* object, void* value)
{
    if (const FromPython convert = Conversion::accepts(object))
        convert(object, value);
}

} // namespace detail

template <class T, class Conversion = Converter<T>>
constexpr ConverterRow both(int place, const char* name, PyTypeObject& type)
{
    return {place,
            name,
            &type,
            &detail::toPython<T, Conversion>,
            &detail::fromPython<Conversion>,
            &detail::accepts<Conversion>};
}

template <class T>
constexpr ConverterRow toPythonOnly(int place, const char* name, PyTypeObject& type)
{
    return {place, name, &type, &detail::toPython<T, Converter<T>>, nullptr, nullptr};
}

inline SbkConverter* registerConverter(const ConverterRow& row)
{
    SbkConverter* const converter = Shiboken::Conversions::createConverter(row.type, row.toPython);
    Shiboken::Conversions::registerConverterName(converter, row.name);
    if (row.accepts)
        Shiboken::Conversions::addPythonToCppValueConversion(converter, row.fromPython, row.accepts);
    return converter;
}

} // namespace binding

#endif
