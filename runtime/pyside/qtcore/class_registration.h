// From a class's table of methods to its Python type.
#ifndef CLASS_REGISTRATION_H
#define CLASS_REGISTRATION_H

#include "qt_types.h"

#include <cstring>
#include <string>
#include <typeinfo>

namespace QtCore {

struct ClassTable
{
    SbkObjectType* type; // static, filled as far as the class has slots of its own
    const char* name;    // full Python name
    int place;
    bool isValue;
    PyMethodDef* methods;
    initproc initialise; // null for a class that scripts cannot make
    ObjectDestructor destroy;
    SbkObjectType* base;         // null for none
    const char* cppTypeNames[2]; // typeid names of the class and of its shim
};

// The conversions of a class whose objects cross by pointer.
template <class T>
struct PointerConversion
{
    static void fromPython(PyObject* object, void* pointer)
    {
        *static_cast<T**>(pointer) =
            static_cast<T*>(Shiboken::Conversions::cppPointer(typeOf<T>(), reinterpret_cast<SbkObject*>(object)));
    }
    static PythonToCppFunc accepts(PyObject* object)
    {
        if (object == Py_None)
            return &Shiboken::Conversions::nonePythonToCppNullPtr;
        return PyObject_TypeCheck(object, typeOf<T>()) ? &fromPython : nullptr;
    }
    static PyObject* toPython(const void* object)
    {
        if constexpr (std::is_base_of_v<QObject, T>) {
            return wrapperOf(static_cast<T*>(const_cast<void*>(object)));
        } else {
            if (SbkObject* const known = Shiboken::BindingManager::instance().retrieveWrapper(object))
                return Reference::borrow(reinterpret_cast<PyObject*>(known)).release();
            return Shiboken::Object::newObject(wrapperTypeOf<T>(), const_cast<void*>(object), false, false,
                                               typeid(*static_cast<const T*>(object)).name());
        }
    }
};

// Whether `self` may be made with a constructor of the class at all: false with an error.
bool canInitialise(PyObject* self, PyTypeObject* type);

// Makes `object` the C++ object of `self`, which owns it then. False with an error for a second one.
bool takeCppObject(PyObject* self, PyTypeObject* type, void* object, bool isShim);

// Fills the type, enters it into the module and its table, and gives it the converter. Null with an error.
SbkConverter* registerClass(PyObject* module, const ClassTable& table,
                            Shiboken::Conversions::IsConvertibleToCppFunc accepts, PythonToCppFunc fromPython,
                            Shiboken::Conversions::CppToPythonFunc toPython,
                            Shiboken::Conversions::CppToPythonFunc copyToPython);

template <class T, class Shim>
SbkConverter* registerClass(PyObject* module, SbkObjectType& type, PyMethodDef* methods, initproc initialise,
                            ObjectDestructor destroy, SbkObjectType* base = nullptr,
                            Shiboken::Conversions::CppToPythonFunc copyToPython = nullptr)
{
    const ClassTable table = {&type,
                              Wrapped<T>::name,
                              Wrapped<T>::place,
                              copyToPython != nullptr,
                              methods,
                              initialise,
                              destroy,
                              base,
                              {typeid(T).name(), typeid(Shim).name()}};
    typedef PointerConversion<T> Conversion;
    return registerClass(module, table, &Conversion::accepts, &Conversion::fromPython, &Conversion::toPython,
                         copyToPython);
}

// An enumeration inside a class, with its converter. Null with an error.
struct EnumerationItem
{
    const char* name;
    long value;
};
PyTypeObject* registerEnumeration(SbkObjectType* scope, const char* fullName, const char* cppName, int place,
                                  const EnumerationItem* items, std::size_t count,
                                  Shiboken::Conversions::CppToPythonFunc toPython, PythonToCppFunc fromPython,
                                  Shiboken::Conversions::IsConvertibleToCppFunc accepts);

template <class T, std::size_t count>
PyTypeObject* registerEnumeration(SbkObjectType* scope, const char* cppName, const EnumerationItem (&items)[count])
{
    struct Conversion
    {
        static PyObject* toPython(const void* value)
        {
            return Shiboken::Enum::newItem(typeOf<T>(), *static_cast<const T*>(value));
        }
        static void fromPython(PyObject* item, void* value)
        {
            *static_cast<T*>(value) = static_cast<T>(Shiboken::Enum::getValue(item));
        }
        static PythonToCppFunc accepts(PyObject* object)
        {
            return PyObject_TypeCheck(object, typeOf<T>()) ? &fromPython : nullptr;
        }
    };
    return registerEnumeration(scope, Wrapped<T>::name, cppName, Wrapped<T>::place, items, count, &Conversion::toPython,
                               &Conversion::fromPython, &Conversion::accepts);
}

// Each enters its classes; false with an error.
bool registerQObject(PyObject* module);
bool registerEvents(PyObject* module);
bool registerQByteArray(PyObject* module);
bool registerQCoreApplication(PyObject* module);
bool registerQTimer(PyObject* module);
bool registerQThread(PyObject* module);
bool registerQtNamespace(PyObject* module);

} // namespace QtCore

#endif
