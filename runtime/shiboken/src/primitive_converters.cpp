// Conversions of bool, numbers, characters and C strings.
#include "converter_data.h"
#include "sbkenum.h"
#include "sbkstring.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace Shiboken {
namespace Conversions {

namespace {

template <typename T>
T& valueAt(void* address)
{
    return *static_cast<T*>(address);
}

template <typename T>
const T& valueAt(const void* address)
{
    return *static_cast<const T*>(address);
}

/// An OverflowError that says no more.
void overflow() { PyErr_SetNone(PyExc_OverflowError); }

template <typename T>
bool fits(double number)
{
    // The bounds are powers of two (and zero), which a double holds exactly; a NaN is outside of any.
    const double end = std::ldexp(1.0, std::numeric_limits<T>::digits);
    const double number0 = std::trunc(number);
    return number0 < end && number0 >= (std::is_signed<T>::value ? -end : 0.0);
}

template <typename T>
PyObject* integerToPython(const void* cppIn)
{
    return PyInt_FromLong(valueAt<T>(cppIn));
}

template <typename T>
void fail(void* cppOut)
{
    valueAt<T>(cppOut) = T();
    overflow();
}

/// Signed integers, and the unsigned ones narrower than int: other errors than range come through.
template <typename T>
void integerToCpp(PyObject* pyIn, void* cppOut)
{
    if (PyFloat_Check(pyIn)) {
        const double number = PyFloat_AS_DOUBLE(pyIn);
        if (!fits<T>(number))
            return fail<T>(cppOut);
        valueAt<T>(cppOut) = static_cast<T>(number);
        return;
    }
    const PY_LONG_LONG number = PyInt_CheckExact(pyIn) ? PyInt_AS_LONG(pyIn) : PyLong_AsLongLong(pyIn);
    const bool isInRange = number >= static_cast<PY_LONG_LONG>(std::numeric_limits<T>::min()) &&
                           number <= static_cast<PY_LONG_LONG>(std::numeric_limits<T>::max());
    valueAt<T>(cppOut) = isInRange ? static_cast<T>(number) : T();
    if (!isInRange && !PyErr_Occurred())
        overflow();
}

/// Whatever does not fit is the same OverflowError, and the result is a Python long.
template <typename T>
void unsignedToCpp(PyObject* pyIn, void* cppOut)
{
    if (PyFloat_Check(pyIn)) {
        const double number = PyFloat_AS_DOUBLE(pyIn);
        if (!fits<T>(number) || !fits<PY_LONG_LONG>(number))
            return fail<T>(cppOut);
        valueAt<T>(cppOut) = static_cast<T>(number);
        return;
    }
    const PY_LONG_LONG number = PyInt_CheckExact(pyIn) ? PyInt_AS_LONG(pyIn) : PyLong_AsLongLong(pyIn);
    valueAt<T>(cppOut) = T();
    if (number == -1 && PyErr_Occurred() && !PyErr_ExceptionMatches(PyExc_OverflowError))
        return;
    if (number < 0 || static_cast<unsigned PY_LONG_LONG>(number) > std::numeric_limits<T>::max())
        return fail<T>(cppOut);
    valueAt<T>(cppOut) = static_cast<T>(number);
}

template <typename T>
PyObject* unsignedToPython(const void* cppIn)
{
    return PyLong_FromUnsignedLong(valueAt<T>(cppIn));
}

PyObject* longLongToPython(const void* cppIn) { return PyLong_FromLongLong(valueAt<PY_LONG_LONG>(cppIn)); }

void longLongToCpp(PyObject* pyIn, void* cppOut) { valueAt<PY_LONG_LONG>(cppOut) = PyLong_AsLongLong(pyIn); }

PyObject* unsignedLongLongToPython(const void* cppIn)
{
    return PyLong_FromUnsignedLongLong(valueAt<unsigned PY_LONG_LONG>(cppIn));
}

void unsignedLongLongToCpp(PyObject* pyIn, void* cppOut)
{
    unsigned PY_LONG_LONG& result = valueAt<unsigned PY_LONG_LONG>(cppOut);
    result = 0;
    if (PyInt_Check(pyIn)) {
        if (PyInt_AS_LONG(pyIn) < 0)
            overflow();
        else
            result = PyInt_AS_LONG(pyIn);
    } else if (PyLong_Check(pyIn)) {
        result = PyLong_AsUnsignedLongLong(pyIn);
    } else {
        PyErr_SetString(PyExc_TypeError, "Invalid type for unsigned long long conversion");
    }
}

template <typename T>
T narrowed(double number)
{
    if (std::isfinite(number) && std::fabs(number) > std::numeric_limits<T>::max())
        return std::copysign(std::numeric_limits<T>::infinity(), static_cast<T>(number > 0 ? 1 : -1));
    return static_cast<T>(number);
}

template <typename T>
PyObject* floatToPython(const void* cppIn)
{
    return PyFloat_FromDouble(valueAt<T>(cppIn));
}

template <typename T>
void floatToCpp(PyObject* pyIn, void* cppOut)
{
    valueAt<T>(cppOut) = narrowed<T>(PyFloat_AsDouble(pyIn));
}

PyObject* boolToPython(const void* cppIn) { return PyBool_FromLong(valueAt<bool>(cppIn)); }

bool isTrue(PyObject* number)
{
    if (PyInt_Check(number))
        return PyInt_AS_LONG(number) != 0;
    if (PyFloat_Check(number))
        return PyFloat_AS_DOUBLE(number) != 0.0;
    if (Enum::check(number))
        return Enum::getValue(number) != 0;
    if (PyComplex_Check(number))
        return PyComplex_RealAsDouble(number) != 0.0;
    if (PyLong_Check(number))
        return PyObject_IsTrue(number) > 0;
    const bool isFloating = !PyInstance_Check(number) && Py_TYPE(number)->tp_as_number->nb_float;
    PyObject* const value = isFloating ? PyNumber_Float(number) : PyNumber_Int(number);
    const bool result = value && PyObject_IsTrue(value) > 0;
    Py_XDECREF(value);
    return result;
}

void boolToCpp(PyObject* pyIn, void* cppOut) { valueAt<bool>(cppOut) = isTrue(pyIn); }

PyObject* charToPython(const void* cppIn) { return PyString_FromStringAndSize(&valueAt<char>(cppIn), 1); }

template <typename T>
void charToCpp(PyObject* pyIn, void* cppOut)
{
    if (String::checkChar(pyIn))
        valueAt<T>(cppOut) = static_cast<T>(PyString_AS_STRING(pyIn)[0]);
    else
        integerToCpp<T>(pyIn, cppOut);
}

PyObject* charPointerToPython(const void* cppIn) { return String::fromCString(static_cast<const char*>(cppIn)); }

void charPointerToCpp(PyObject* pyIn, void* cppOut) { valueAt<const char*>(cppOut) = String::toCString(pyIn); }

PyObject* stringToPython(const void* cppIn)
{
    const std::string& text = valueAt<std::string>(cppIn);
    return PyString_FromStringAndSize(text.data(), text.size());
}

void stringToCpp(PyObject* pyIn, void* cppOut)
{
    Py_ssize_t size;
    const char* const text = String::toCString(pyIn, &size);
    valueAt<std::string>(cppOut).assign(text ? text : "", size);
}

template <PythonToCppFunc convert>
PythonToCppFunc forNumber(PyObject* pyIn)
{
    const bool isPlain = PyInt_CheckExact(pyIn) || PyFloat_CheckExact(pyIn) || PyBool_Check(pyIn);
    return isPlain || SbkNumber_Check(pyIn) ? convert : nullptr;
}

template <PythonToCppFunc convert>
PythonToCppFunc forCharacter(PyObject* pyIn)
{
    return String::checkChar(pyIn) || SbkNumber_Check(pyIn) ? convert : nullptr;
}

template <PythonToCppFunc convert>
PythonToCppFunc forText(PyObject* pyIn)
{
    return String::isConvertible(pyIn) ? convert : nullptr;
}

template <PythonToCppFunc convert>
SbkConverter number(PyTypeObject* type, CppToPythonFunc toPython)
{
    return {type, nullptr, toPython, {nullptr, nullptr}, {{&forNumber<convert>, convert}}};
}

template <PythonToCppFunc convert>
SbkConverter character(PyTypeObject* type, CppToPythonFunc toPython)
{
    return {type, nullptr, toPython, {nullptr, nullptr}, {{&forCharacter<convert>, convert}}};
}

template <PythonToCppFunc convert>
SbkConverter text(CppToPythonFunc toPython)
{
    return {&PyString_Type, nullptr, toPython, {nullptr, nullptr}, {{&forText<convert>, convert}}};
}

/// In the order of their places.
SbkConverter primitives[] = {
    number<&longLongToCpp>(&PyLong_Type, &longLongToPython),
    number<&boolToCpp>(&PyBool_Type, &boolToPython),
    character<&charToCpp<char>>(&PyString_Type, &charToPython),
    text<&charPointerToCpp>(&charPointerToPython),
    number<&floatToCpp<double>>(&PyFloat_Type, &floatToPython<double>),
    number<&floatToCpp<float>>(&PyFloat_Type, &floatToPython<float>),
    number<&integerToCpp<int>>(&PyInt_Type, &integerToPython<int>),
    number<&integerToCpp<long>>(&PyInt_Type, &integerToPython<long>),
    number<&integerToCpp<short>>(&PyInt_Type, &integerToPython<short>),
    character<&charToCpp<signed char>>(&PyInt_Type, &integerToPython<signed char>),
    text<&stringToCpp>(&stringToPython),
    number<&unsignedLongLongToCpp>(&PyLong_Type, &unsignedLongLongToPython),
    character<&charToCpp<unsigned char>>(&PyInt_Type, &integerToPython<unsigned char>),
    number<&unsignedToCpp<unsigned int>>(&PyLong_Type, &unsignedToPython<unsigned int>),
    number<&unsignedToCpp<unsigned long>>(&PyLong_Type, &unsignedToPython<unsigned long>),
    number<&integerToCpp<unsigned short>>(&PyInt_Type, &integerToPython<unsigned short>),
};

struct PrimitiveName
{
    const char* name;
    int index;
};

const PrimitiveName primitiveNames[] = {{"long long", SBK_PY_LONG_LONG_IDX},
                                        {"PY_LONG_LONG", SBK_PY_LONG_LONG_IDX},
                                        {"bool", SBK_BOOL_IDX},
                                        {"char", SBK_CHAR_IDX},
                                        {"const char*", SBK_CONSTCHARPTR_IDX},
                                        {"char*", SBK_CONSTCHARPTR_IDX},
                                        {"double", SBK_DOUBLE_IDX},
                                        {"float", SBK_FLOAT_IDX},
                                        {"int", SBK_INT_IDX},
                                        {"signed int", SBK_INT_IDX},
                                        {"long", SBK_LONG_IDX},
                                        {"signed long", SBK_LONG_IDX},
                                        {"short", SBK_SHORT_IDX},
                                        {"signed short", SBK_SHORT_IDX},
                                        {"signed char", SBK_SIGNEDCHAR_IDX},
                                        {"std::string", SBK_STD_STRING_IDX},
                                        {"unsigned long long", SBK_UNSIGNEDPY_LONG_LONG_IDX},
                                        {"unsigned PY_LONG_LONG", SBK_UNSIGNEDPY_LONG_LONG_IDX},
                                        {"unsigned char", SBK_UNSIGNEDCHAR_IDX},
                                        {"unsigned int", SBK_UNSIGNEDINT_IDX},
                                        {"unsigned long", SBK_UNSIGNEDLONG_IDX},
                                        {"unsigned short", SBK_UNSIGNEDSHORT_IDX}};

} // namespace

SbkConverter* primitiveTypeConverter(int index) { return &primitives[index]; }

void registerPrimitiveConverters()
{
    for (const PrimitiveName& each : primitiveNames)
        registerConverterName(primitiveTypeConverter(each.index), each.name);
}

} // namespace Conversions
} // namespace Shiboken
