// Numbers and C strings: the runtime's primitive conversions, with a short way for the types that scripts mostly pass.
#ifndef BINDING_PRIMITIVE_CONVERTERS_H
#define BINDING_PRIMITIVE_CONVERTERS_H

#include "converter.h"

#include <limits>

namespace binding {

// Gives a pending OverflowError of the runtime the value that did not fit, and the range that it did not fit into,
// where the module names ranges. What a script's own code has raised stays.
void nameRange(PyObject* object, const char* type, double lowest, double highest);

// `Exact` names the short way: isExact(object) and get(object) for objects whose conversion cannot fail.
template <class T, class Exact>
struct PrimitiveConverter
{
    static constexpr bool mayHoldWrapper = false;

    static FromPython accepts(PyObject* object)
    {
        if (Exact::isExact(object))
            return &fromExact;
        return ofRuntime(object) ? &fromOther : nullptr;
    }

    static void fromExact(PyObject* object, void* value)
    {
        *static_cast<T*>(value) = static_cast<T>(Exact::get(object));
    }

    static void fromOther(PyObject* object, void* value)
    {
        ofRuntime(object)(object, value);
        if (errorPending())
            nameRange(object, Converter<T>::text(), std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max());
    }

    // Both steps in one, for an object that is known to be accepted.
    static void read(PyObject* object, T& value)
    {
        if (Exact::isExact(object))
            fromExact(object, &value);
        else
            accepts(object)(object, &value);
    }

private:
    static FromPython ofRuntime(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppConvertible(Shiboken::Conversions::PrimitiveTypeConverter<T>(),
                                                               object);
    }
};

struct ExactBool
{
    static bool isExact(PyObject* object) { return PyBool_Check(object); }
    static bool get(PyObject* object) { return object == Py_True; }
};

struct ExactFloat
{
    static bool isExact(PyObject* object) { return PyFloat_CheckExact(object); }
    static double get(PyObject* object) { return PyFloat_AS_DOUBLE(object); }
};

// An int that fits both int and unsigned int converts the same way to either.
struct ExactSmallInteger
{
    static bool isExact(PyObject* object)
    {
        return PyInt_CheckExact(object) && PyInt_AS_LONG(object) >= 0 && PyInt_AS_LONG(object) <= 0x7fffffff;
    }
    static long get(PyObject* object) { return PyInt_AS_LONG(object); }
};

template <>
struct Converter<bool> : PrimitiveConverter<bool, ExactBool>
{
    static const char* text() { return "bool"; }
    static PyObject* toPython(bool value) { return PyBool_FromLong(value); }
};

template <>
struct Converter<int> : PrimitiveConverter<int, ExactSmallInteger>
{
    static const char* text() { return "int"; }
    static PyObject* toPython(int value) { return PyInt_FromLong(value); }
};

template <>
struct Converter<unsigned int> : PrimitiveConverter<unsigned int, ExactSmallInteger>
{
    static const char* text() { return "unsigned int"; }
    static PyObject* toPython(unsigned int value)
    {
        return Shiboken::Conversions::copyToPython(Shiboken::Conversions::PrimitiveTypeConverter<unsigned int>(),
                                                   &value);
    }
};

template <>
struct Converter<float> : PrimitiveConverter<float, ExactFloat>
{
    static const char* text() { return "float"; }
    static PyObject* toPython(float value) { return PyFloat_FromDouble(value); }
};

template <>
struct Converter<double> : PrimitiveConverter<double, ExactFloat>
{
    static const char* text() { return "float"; }
    static PyObject* toPython(double value) { return PyFloat_FromDouble(value); }
};

// Other numbers and C strings only in the runtime's way.
template <class T>
struct RuntimeConverter
{
    static constexpr bool mayHoldWrapper = false;
    static SbkConverter* converter() { return Shiboken::Conversions::PrimitiveTypeConverter<T>(); }
    static FromPython accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppConvertible(converter(), object);
    }
    static PyObject* toPython(T value) { return Shiboken::Conversions::copyToPython(converter(), &value); }
};

template <>
struct Converter<long long> : RuntimeConverter<long long>
{
    static const char* text() { return "long long"; }
};
template <>
struct Converter<unsigned long> : RuntimeConverter<unsigned long>
{
    static const char* text() { return "unsigned long"; }
};
template <>
struct Converter<const char*> : RuntimeConverter<const char*>
{
    static const char* text() { return "str"; }
    static PyObject* toPython(const char* text) { return text ? PyString_FromString(text) : none(); }
};

} // namespace binding

#endif
