// Conversions between Python and C++: a converter per type, found by type, by name or by place, which first says
// whether a Python object can be converted and by which function.
#ifndef SBKCONVERTER_H
#define SBKCONVERTER_H

#include "basewrapper.h"
#include "sbkpython.h"
#include "shibokenmacros.h"

#include <string>

struct SbkConverter;

namespace Shiboken {

/// The Python type of a C++ class; modules specialise it.
template <typename T>
inline PyTypeObject* SbkType()
{
    return nullptr;
}

namespace Conversions {

typedef PyObject* (*CppToPythonFunc)(const void*);
typedef void (*PythonToCppFunc)(PyObject*, void*);
typedef PythonToCppFunc (*IsConvertibleToCppFunc)(PyObject*);

/// A converter for a wrapper type, entered into the type. Without `copyToPythonFunc` objects cross only as pointers.
LIBSHIBOKEN_API SbkConverter* createConverter(SbkObjectType* type, PythonToCppFunc toCppPointerConvFunc,
                                              IsConvertibleToCppFunc toCppPointerCheckFunc,
                                              CppToPythonFunc pointerToPythonFunc,
                                              CppToPythonFunc copyToPythonFunc = nullptr);
/// A converter for any other type.
LIBSHIBOKEN_API SbkConverter* createConverter(PyTypeObject* type, CppToPythonFunc toPythonFunc);
LIBSHIBOKEN_API void deleteConverter(SbkConverter* converter);

LIBSHIBOKEN_API void setCppPointerToPythonFunction(SbkConverter* converter, CppToPythonFunc pointerToPythonFunc);
LIBSHIBOKEN_API void setPythonToCppPointerFunctions(SbkConverter* converter, PythonToCppFunc toCppPointerConvFunc,
                                                    IsConvertibleToCppFunc toCppPointerCheckFunc);
/// Conversions are tried in the order in which they were added.
LIBSHIBOKEN_API void addPythonToCppValueConversion(SbkConverter* converter, PythonToCppFunc pythonToCppFunc,
                                                   IsConvertibleToCppFunc isConvertibleToCppFunc);
LIBSHIBOKEN_API void addPythonToCppValueConversion(SbkObjectType* type, PythonToCppFunc pythonToCppFunc,
                                                   IsConvertibleToCppFunc isConvertibleToCppFunc);

/// The first converter that takes a name keeps it.
LIBSHIBOKEN_API void registerConverterName(SbkConverter* converter, const char* typeName);
/// Null, without an error, for an unknown name.
LIBSHIBOKEN_API SbkConverter* getConverter(const char* typeName);
LIBSHIBOKEN_API SbkConverter* primitiveTypeConverter(int index);

/// New references. A null pointer gives None.
LIBSHIBOKEN_API PyObject* pointerToPython(SbkObjectType* type, const void* cppIn);
LIBSHIBOKEN_API PyObject* pointerToPython(const SbkConverter* converter, const void* cppIn);
LIBSHIBOKEN_API PyObject* referenceToPython(SbkObjectType* type, const void* cppIn);
LIBSHIBOKEN_API PyObject* referenceToPython(const SbkConverter* converter, const void* cppIn);
LIBSHIBOKEN_API PyObject* copyToPython(SbkObjectType* type, const void* cppIn);
LIBSHIBOKEN_API PyObject* copyToPython(const SbkConverter* converter, const void* cppIn);

/// The function that converts the object, or null, without an error, when it cannot be converted.
LIBSHIBOKEN_API PythonToCppFunc isPythonToCppPointerConvertible(SbkObjectType* type, PyObject* pyIn);
LIBSHIBOKEN_API PythonToCppFunc isPythonToCppValueConvertible(SbkObjectType* type, PyObject* pyIn);
/// An object of the type itself is used in place: the function then gives a pointer. None is refused.
LIBSHIBOKEN_API PythonToCppFunc isPythonToCppReferenceConvertible(SbkObjectType* type, PyObject* pyIn);
LIBSHIBOKEN_API PythonToCppFunc isPythonToCppConvertible(const SbkConverter* converter, PyObject* pyIn);

/// True when the function makes a new value instead of reading the one behind a wrapper object.
LIBSHIBOKEN_API bool isImplicitConversion(SbkObjectType* type, PythonToCppFunc toCpp);

LIBSHIBOKEN_API void pythonToCppPointer(SbkObjectType* type, PyObject* pyIn, void* cppOut);
LIBSHIBOKEN_API void pythonToCppPointer(const SbkConverter* converter, PyObject* pyIn, void* cppOut);
LIBSHIBOKEN_API void pythonToCppCopy(SbkObjectType* type, PyObject* pyIn, void* cppOut);
LIBSHIBOKEN_API void pythonToCppCopy(const SbkConverter* converter, PyObject* pyIn, void* cppOut);
LIBSHIBOKEN_API void nonePythonToCppNullPtr(PyObject*, void* cppOut);

LIBSHIBOKEN_API void* cppPointerSlowly(PyTypeObject* desiredType, SbkObject* pyIn);

/// The C++ object as `desiredType` sees it. Null with a RuntimeError for a valid object that unites several wrapped
/// classes and has not called the `__init__` of this one. A type that is no wrapper type gives the Python object
/// itself.
inline void* cppPointer(PyTypeObject* desiredType, SbkObject* pyIn)
{
    const SbkObjectTypePrivate* const type = reinterpret_cast<SbkObjectType*>(Py_TYPE(pyIn))->d;
    // An object of just the desired class needs no cast.
    if (Py_TYPE(pyIn) == desiredType && !type->isUserType)
        return pyIn->d.cppObject;
    return type->isSingleAddress && Py_TYPE(desiredType) == &SbkObjectType_Type ? pyIn->d.cppObject
                                                                                : cppPointerSlowly(desiredType, pyIn);
}

/// Whether every item is of a type, or can be converted. A `...CheckExact` wants the converter's own type.
LIBSHIBOKEN_API bool checkSequenceTypes(PyTypeObject* type, PyObject* pyIn);
LIBSHIBOKEN_API bool convertibleSequenceTypes(const SbkConverter* converter, PyObject* pyIn);
LIBSHIBOKEN_API bool convertibleSequenceTypes(SbkObjectType* type, PyObject* pyIn);
LIBSHIBOKEN_API bool checkPairTypes(PyTypeObject* firstType, PyTypeObject* secondType, PyObject* pyIn);
LIBSHIBOKEN_API bool convertiblePairTypes(const SbkConverter* first, bool firstCheckExact, const SbkConverter* second,
                                          bool secondCheckExact, PyObject* pyIn);
LIBSHIBOKEN_API bool checkDictTypes(PyTypeObject* keyType, PyTypeObject* valueType, PyObject* pyIn);
LIBSHIBOKEN_API bool convertibleDictTypes(const SbkConverter* key, bool keyCheckExact, const SbkConverter* value,
                                          bool valueCheckExact, PyObject* pyIn);

LIBSHIBOKEN_API PyTypeObject* getPythonTypeObject(const SbkConverter* converter);
LIBSHIBOKEN_API PyTypeObject* getPythonTypeObject(const char* typeName);
LIBSHIBOKEN_API bool pythonTypeIsValueType(const SbkConverter* converter);
LIBSHIBOKEN_API bool pythonTypeIsObjectType(const SbkConverter* converter);
LIBSHIBOKEN_API bool pythonTypeIsWrapperType(const SbkConverter* converter);

/// The conversion that a C++ type's text asks for: `T*` and object types by pointer, `T&` by reference, others by copy.
class LIBSHIBOKEN_API SpecificConverter
{
public:
    enum Type { InvalidConversion, CopyConversion, PointerConversion, ReferenceConversion };

    explicit SpecificConverter(const char* typeName);

    SbkConverter* converter() const { return m_converter; }
    operator SbkConverter*() const { return m_converter; }
    bool isValid() const { return m_type != InvalidConversion; }
    operator bool() const { return isValid(); }
    Type conversionType() const { return m_type; }

    /// `cppIn` is the address of the value; for a pointer type, of the pointer.
    PyObject* toPython(const void* cppIn);
    void toCpp(PyObject* pyIn, void* cppOut);

private:
    SbkConverter* m_converter;
    Type m_type = InvalidConversion;
};

} // namespace Conversions
} // namespace Shiboken

/// Places of the primitive converters.
#define SBK_PY_LONG_LONG_IDX 0
#define SBK_BOOL_IDX 1
#define SBK_CHAR_IDX 2
#define SBK_CONSTCHARPTR_IDX 3
#define SBK_DOUBLE_IDX 4
#define SBK_FLOAT_IDX 5
#define SBK_INT_IDX 6
#define SBK_SIGNEDINT_IDX 6
#define SBK_LONG_IDX 7
#define SBK_SHORT_IDX 8
#define SBK_SIGNEDCHAR_IDX 9
#define SBK_STD_STRING_IDX 10
#define SBK_UNSIGNEDPY_LONG_LONG_IDX 11
#define SBK_UNSIGNEDCHAR_IDX 12
#define SBK_UNSIGNEDINT_IDX 13
#define SBK_UNSIGNEDLONG_IDX 14
#define SBK_UNSIGNEDSHORT_IDX 15

namespace Shiboken {
namespace Conversions {

template <typename T>
SbkConverter* PrimitiveTypeConverter()
{
    return nullptr;
}
template <>
inline SbkConverter* PrimitiveTypeConverter<long long>()
{
    return primitiveTypeConverter(SBK_PY_LONG_LONG_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<bool>()
{
    return primitiveTypeConverter(SBK_BOOL_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<char>()
{
    return primitiveTypeConverter(SBK_CHAR_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<const char*>()
{
    return primitiveTypeConverter(SBK_CONSTCHARPTR_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<double>()
{
    return primitiveTypeConverter(SBK_DOUBLE_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<float>()
{
    return primitiveTypeConverter(SBK_FLOAT_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<int>()
{
    return primitiveTypeConverter(SBK_INT_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<long>()
{
    return primitiveTypeConverter(SBK_LONG_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<short>()
{
    return primitiveTypeConverter(SBK_SHORT_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<signed char>()
{
    return primitiveTypeConverter(SBK_SIGNEDCHAR_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<std::string>()
{
    return primitiveTypeConverter(SBK_STD_STRING_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<unsigned long long>()
{
    return primitiveTypeConverter(SBK_UNSIGNEDPY_LONG_LONG_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<unsigned char>()
{
    return primitiveTypeConverter(SBK_UNSIGNEDCHAR_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<unsigned int>()
{
    return primitiveTypeConverter(SBK_UNSIGNEDINT_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<unsigned long>()
{
    return primitiveTypeConverter(SBK_UNSIGNEDLONG_IDX);
}
template <>
inline SbkConverter* PrimitiveTypeConverter<unsigned short>()
{
    return primitiveTypeConverter(SBK_UNSIGNEDSHORT_IDX);
}

} // namespace Conversions
} // namespace Shiboken

#define SBK_CONVERTER(type) (reinterpret_cast<SbkObjectType*>(type)->d->converter)
#define SbkObject_TypeCheck(tp, ob)                                                                                    \
    (Py_TYPE(ob) == reinterpret_cast<PyTypeObject*>(tp) ||                                                             \
     PyType_IsSubtype(Py_TYPE(ob), reinterpret_cast<PyTypeObject*>(tp)))

#endif
