// What a converter is, and the converters of wrapped classes and enumerations.
//
// Converter<T> says, for a library type T:
//   accepts(object)   the conversion that takes the object, or null; converts nothing
//   toPython(value)   a new reference, or null with an error
//   text()            the type's name in signatures
//   mayHoldWrapper    whether an accepted object can be a wrapper object, whose validity must then be tested
// A conversion writes into an existing T; where it fails, it leaves a Python error pending and the T as it was.
#ifndef BINDING_CONVERTER_H
#define BINDING_CONVERTER_H

#include <interpreter_scopes.h>
#include <type_traits>

namespace binding {

typedef void (*FromPython)(PyObject* object, void* value);

template <class T, class = void>
struct Converter;

// What a module says of each class that it wraps and each enumeration that it publishes, by specialising this for the
// library type:
//   kind              which of the below
//   name              the full Python name, "vireo.project.View"
//   place()           where its Python type is in the module's type table
//   type()            the Python type; valid once registered
enum class Kind { NotWrapped, Value, Object, Enumeration };

template <class T, class = void>
struct Wrapped
{
    static constexpr Kind kind = Kind::NotWrapped;
};

template <class T>
constexpr bool isWrappedClass = Wrapped<T>::kind == Kind::Value || Wrapped<T>::kind == Kind::Object;

template <class T>
SbkObjectType* wrapperType()
{
    return reinterpret_cast<SbkObjectType*>(Wrapped<T>::type());
}

// The library object behind a wrapper object that is known to be one of T; null, with the runtime's error pending, when
// there is none any more.
template <class T>
T* validObject(PyObject* object)
{
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(object);
    if (!Shiboken::Object::isValid(wrapper))
        return nullptr;
    return static_cast<T*>(Shiboken::Conversions::cppPointer(Wrapped<T>::type(), wrapper));
}

// A second way into a value class, from objects of another kind. Specialised with
//   isPlain(object)          whether the object surely is of that kind, and not of the class
//   accepts(object), fromPython(object, value)   as a converter's
template <class T>
struct Implicit
{};

template <class T, class = void>
constexpr bool hasImplicit = false;
template <class T>
constexpr bool hasImplicit<T, std::void_t<decltype(&Implicit<T>::fromPython)>> = true;

// The conversion of an object that surely goes the second way, without asking the converter; null for any other.
template <class T>
FromPython acceptsPlainImplicit([[maybe_unused]] PyObject* object)
{
    if constexpr (hasImplicit<T>)
        if (Implicit<T>::isPlain(object))
            return &Implicit<T>::fromPython;
    return nullptr;
}

// Conversions of a wrapped class, in the form in which the runtime keeps them.
template <class T>
struct WrapperConversions
{
    static FromPython acceptsPointer(PyObject* object)
    {
        if (object == Py_None)
            return Shiboken::Conversions::nonePythonToCppNullPtr;
        return PyObject_TypeCheck(object, Wrapped<T>::type()) ? &pointerFromPython : nullptr;
    }

    static FromPython acceptsInstance(PyObject* object)
    {
        return PyObject_TypeCheck(object, Wrapped<T>::type()) ? &valueFromPython : nullptr;
    }

    static void pointerFromPython(PyObject* object, void* pointer)
    {
        *static_cast<T**>(pointer) = validObject<T>(object);
    }

    static void valueFromPython(PyObject* object, void* value)
    {
        if (const T* source = validObject<T>(object))
            *static_cast<T*>(value) = *source;
    }
};

// A value class: by copy in, by copy out.
template <class T>
struct Converter<T, std::enable_if_t<Wrapped<T>::kind == Kind::Value>>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return Wrapped<T>::name; }

    static FromPython accepts(PyObject* object)
    {
        if (Py_TYPE(object) == Wrapped<T>::type())
            return &WrapperConversions<T>::valueFromPython;
        if (const FromPython convert = acceptsPlainImplicit<T>(object))
            return convert;
        return Shiboken::Conversions::isPythonToCppValueConvertible(wrapperType<T>(), object);
    }

    static PyObject* toPython(const T& value) { return Shiboken::Conversions::copyToPython(wrapperType<T>(), &value); }
};

// A pointer to an object of a wrapped class: the wrapper object that stands for it, None for null.
template <class T>
struct Converter<T*, std::enable_if_t<isWrappedClass<T>>>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return Wrapped<T>::name; }

    static FromPython accepts(PyObject* object) { return WrapperConversions<T>::acceptsPointer(object); }

    static PyObject* toPython(const T* object)
    {
        return Shiboken::Conversions::pointerToPython(wrapperType<T>(), object);
    }
};

// An enumeration of the module: its items and nothing else.
template <class T>
struct Converter<T, std::enable_if_t<Wrapped<T>::kind == Kind::Enumeration>>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return Wrapped<T>::name; }

    static FromPython accepts(PyObject* object)
    {
        return PyObject_TypeCheck(object, Wrapped<T>::type()) ? &fromPython : nullptr;
    }

    static void fromPython(PyObject* object, void* value)
    {
        *static_cast<T*>(value) = static_cast<T>(Shiboken::Enum::getValue(object));
    }

    static PyObject* toPython(T value) { return Shiboken::Enum::newItem(Wrapped<T>::type(), value); }
};

// A Python object that passes unchanged: borrowed on the way in, a new reference on the way out.
template <>
struct Converter<PyObject*>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "object"; }
    static FromPython accepts(PyObject*) { return &fromPython; }
    static void fromPython(PyObject* object, void* value) { *static_cast<PyObject**>(value) = object; }
    static PyObject* toPython(PyObject* object) { return object; }
};

} // namespace binding

#endif
