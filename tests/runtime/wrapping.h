// Classes wrapped by hand as an extension module does it, and plain C++ functions as functions and methods of Python:
// what the test modules `probe` and `nodes` are made with.
#ifndef WRAPPING_H
#define WRAPPING_H

#include <cstring>
#include <shiboken.h>
#include <tuple>
#include <typeinfo>
#include <utility>

namespace wrapping {

template <typename T>
inline SbkObjectType typeObject = {};

template <typename T>
PyTypeObject* pythonType()
{
    return &typeObject<T>.super.ht_type;
}

/// Null with an error for an object that is not valid.
template <typename T>
T* pointerOf(PyObject* object)
{
    using namespace Shiboken;
    return Object::isValid(object)
               ? static_cast<T*>(Conversions::cppPointer(pythonType<T>(), reinterpret_cast<SbkObject*>(object)))
               : nullptr;
}

template <typename T>
PyObject* toPython(T* object)
{
    return Shiboken::Conversions::pointerToPython(&typeObject<T>, object);
}

struct Unlocked
{
    Unlocked() { saver.save(); }
    Shiboken::ThreadStateSaver saver;
};

// --- Functions ------------------------------------------------------------------------------------------------------

inline void read(PyObject* object, PyObject*& value) { value = object; }
inline void read(PyObject* object, int& value) { value = PyInt_AsLong(object); }
inline void read(PyObject* object, bool& value) { value = PyObject_IsTrue(object); }
inline void read(PyObject* object, const char*& value) { value = PyString_AsString(object); }
template <typename T>
void read(PyObject* object, T*& value)
{
    value = pointerOf<T>(object);
}

inline PyObject* result(PyObject* object) { return object; }
inline PyObject* result(int number) { return PyInt_FromLong(number); }

/// Arguments that are not given are zero.
template <auto function, typename R, typename... A, std::size_t... i>
PyObject* call(R (*)(A...), PyObject* arguments, std::index_sequence<i...>)
{
    std::tuple<A...> values{};
    const std::size_t given = PyTuple_GET_SIZE(arguments);
    ((i < given ? read(PyTuple_GET_ITEM(arguments, i), std::get<i>(values)) : void()), ...);
    if (given > sizeof...(A))
        PyErr_SetString(PyExc_TypeError, "too many arguments");
    if (PyErr_Occurred())
        return nullptr;
    if constexpr (std::is_void_v<R>) {
        std::apply(function, values);
        return PyErr_Occurred() ? nullptr : Py_BuildValue("");
    } else {
        return result(std::apply(function, values));
    }
}

template <auto function, typename R, typename... A>
PyObject* callWith(R (*pointer)(A...), PyObject* arguments)
{
    return call<function>(pointer, arguments, std::index_sequence_for<A...>());
}

/// A method's function takes the object first.
template <auto function>
PyObject* entry(PyObject* self, PyObject* arguments)
{
    const Shiboken::AutoDecRef first(self ? PyTuple_Pack(1, self) : PyTuple_New(0));
    const Shiboken::AutoDecRef all(PySequence_Concat(first, arguments));
    return callWith<function>(function, all);
}

template <auto function>
PyMethodDef define(const char* name, int flags = 0)
{
    return {name, &entry<function>, METH_VARARGS | flags, nullptr};
}

// --- Classes --------------------------------------------------------------------------------------------------------

/// An object that Python makes: it tells when it dies.
template <typename T>
struct Reporting : T
{
    using T::T;
    explicit Reporting(const T& other) : T(other) {}
    ~Reporting() override
    {
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(this), this);
    }
};

template <typename T>
struct PointerConversion
{
    static void toCpp(PyObject* object, void* out)
    {
        Shiboken::Conversions::pythonToCppPointer(&typeObject<T>, object, out);
    }

    static Shiboken::Conversions::PythonToCppFunc accepts(PyObject* object)
    {
        if (object == Py_None)
            return &Shiboken::Conversions::nonePythonToCppNullPtr;
        return SbkObject_TypeCheck(&typeObject<T>, object) ? &toCpp : nullptr;
    }

    static PyObject* toPython(const void* object)
    {
        if (SbkObject* const known = Shiboken::BindingManager::instance().retrieveWrapper(object))
            return Py_BuildValue("O", known);
        T* const cppObject = static_cast<T*>(const_cast<void*>(object));
        return Shiboken::Object::newObject(&typeObject<T>, cppObject, false, false, typeid(*cppObject).name());
    }
};

template <typename T, typename Made>
int initialise(PyObject* self, PyObject* arguments, PyObject*)
{
    if (Shiboken::Object::isUserType(self) && !Shiboken::ObjectType::canCallConstructor(Py_TYPE(self), pythonType<T>()))
        return -1;
    if (!PyArg_ParseTuple(arguments, ""))
        return -1;
    T* const cppObject = [] {
        const Unlocked unlocked;
        return new Made;
    }();
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    if (!Shiboken::Object::setCppPointer(wrapper, pythonType<T>(), cppObject)) {
        delete cppObject;
        return -1;
    }
    Shiboken::Object::setValidCpp(wrapper, true);
    Shiboken::Object::setHasCppWrapper(wrapper, true);
    Shiboken::BindingManager::instance().registerWrapper(wrapper, cppObject);
    return 0;
}

/// Enters a class into the module, whose objects are of the class Made when Python makes them.
template <typename T, typename Made>
bool introduce(PyObject* module, const char* fullName, const char* cppName, PyMethodDef* methods,
               SbkObjectType* base = nullptr, PyObject* bases = nullptr,
               Shiboken::Conversions::CppToPythonFunc copy = nullptr)
{
    PyTypeObject& type = *pythonType<T>();
    Py_REFCNT(&type) = 1;
    Py_TYPE(&type) = &SbkObjectType_Type;
    type.tp_name = fullName;
    type.tp_basicsize = sizeof(SbkObject);
    type.tp_dealloc = &SbkDeallocWrapper;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = SbkObject_Type.super.ht_type.tp_traverse;
    type.tp_clear = SbkObject_Type.super.ht_type.tp_clear;
    type.tp_methods = methods;
    type.tp_init = &initialise<T, Made>;
    type.tp_new = &SbkObjectTpNew;
    if (!Shiboken::ObjectType::introduceWrapperType(module, std::strrchr(fullName, '.') + 1, cppName, &typeObject<T>,
                                                    &Shiboken::callCppDestructor<T>, base, bases))
        return false;
    typedef PointerConversion<T> Conversion;
    SbkConverter* const converter = Shiboken::Conversions::createConverter(
        &typeObject<T>, &Conversion::toCpp, &Conversion::accepts, &Conversion::toPython, copy);
    for (const char* name : {cppName, typeid(T).name(), typeid(Made).name()})
        Shiboken::Conversions::registerConverterName(converter, name);
    return true;
}

} // namespace wrapping

#endif
