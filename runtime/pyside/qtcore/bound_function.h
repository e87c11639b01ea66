// From a C++ function to a Python method: arguments counted, tested and converted, the call made without the lock, the
// result converted back.
//
// method<&QObject::startTimer>("startTimer") makes the method's row in a table. A free function whose first parameter
// is a reference to the class is a method too, any other is one for staticMethod<QObject, &function>("name").
#ifndef BOUND_FUNCTION_H
#define BOUND_FUNCTION_H

#include "qt_types.h"

#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace QtCore {

// What a call needs to say about itself when it goes wrong.
struct FunctionName
{
    const char* className;
    const char* name;

    std::string full() const { return std::string(className) + '.' + name; }
};

// A defaulted parameter is an optional one.
template <class T>
struct Parameter
{
    typedef T Value;
    static constexpr bool isOptional = false;
    static T& valueOf(T& stored) { return stored; }
};
template <class T>
struct Parameter<std::optional<T>>
{
    typedef T Value;
    static constexpr bool isOptional = true;
    static T& valueOf(std::optional<T>& stored) { return stored.emplace(); }
};

bool countArguments(const FunctionName& function, PyObject* arguments, int least, int most);
PyObject* raiseWrongArguments(const FunctionName& function, PyObject* arguments, const std::string& signature);

// Lets go of the lock, but not around functions that work on Python objects.
template <bool isPython>
struct CallScope
{
    Unlocked unlocked;
};
template <>
struct CallScope<true>
{
    ~CallScope() {} // used
};

template <class Self, class R, class... A>
struct Caller
{
    static constexpr int most = sizeof...(A);
    static constexpr int least = (0 + ... + !Parameter<std::decay_t<A>>::isOptional);
    static constexpr bool isPython = (std::is_same_v<R, PyObject*> || ... || std::is_same_v<A, PyObject*>);
    typedef std::tuple<std::decay_t<A>...> Values;

    static std::string signature()
    {
        std::string text;
        ((text += (text.empty() ? "" : ", "), text += Crossing<typename Parameter<std::decay_t<A>>::Value>::text()),
         ...);
        return text;
    }

    template <std::size_t i>
    static bool convert(PyObject* arguments, const PythonToCppFunc* conversions, Values& values)
    {
        typedef Parameter<std::tuple_element_t<i, Values>> Each;
        if (!conversions[i])
            return true;
        PyObject* const argument = PyTuple_GET_ITEM(arguments, i);
        if (!Shiboken::Object::isValid(argument))
            return false;
        conversions[i](argument, &Each::valueOf(std::get<i>(values)));
        return !PyErr_Occurred();
    }

    // Values, or nothing with an error.
    template <std::size_t... i>
    static bool read(const FunctionName& function, PyObject* arguments, Values& values, std::index_sequence<i...>)
    {
        const int given = static_cast<int>(PyTuple_GET_SIZE(arguments));
        PythonToCppFunc conversions[most + 1] = {};
        [[maybe_unused]] const auto test = [&](std::size_t place, PythonToCppFunc (*accepts)(PyObject*)) {
            if (static_cast<int>(place) >= given)
                return true;
            conversions[place] = accepts(PyTuple_GET_ITEM(arguments, place));
            return conversions[place] != nullptr;
        };
        const bool fits =
            (true && ... && test(i, &Crossing<typename Parameter<std::tuple_element_t<i, Values>>::Value>::accepts));
        if (!fits) {
            raiseWrongArguments(function, arguments, signature());
            return false;
        }
        return (true && ... && convert<i>(arguments, conversions, values));
    }

    template <class Call>
    static PyObject* call(const FunctionName& function, PyObject* arguments, Call call)
    {
        Values values{};
        if (!countArguments(function, arguments, least, most) ||
            !read(function, arguments, values, std::index_sequence_for<A...>()))
            return nullptr;
        return finish(std::move(call), values);
    }

    template <class Call>
    static PyObject* finish(Call call, Values& values)
    {
        if constexpr (std::is_void_v<R>) {
            {
                [[maybe_unused]] const CallScope<isPython> scope;
                std::apply(call, values);
            }
            return PyErr_Occurred() ? nullptr : none();
        } else {
            std::decay_t<R> result = [&]() -> std::decay_t<R> {
                [[maybe_unused]] const CallScope<isPython> scope;
                return std::apply(call, values);
            }();
            if (PyErr_Occurred())
                return nullptr;
            return Crossing<std::decay_t<R>>::toPython(result);
        }
    }

    // METH_O and METH_NOARGS give no tuple.
    static Reference tuple(PyObject* given)
    {
        if (most == 0)
            return Reference(PyTuple_New(0));
        return most == 1 && least == 1 ? Reference(PyTuple_Pack(1, given)) : Reference::borrow(given);
    }

    static constexpr int flags = most == 0 ? METH_NOARGS : most == 1 && least == 1 ? METH_O : METH_VARARGS;
};

template <auto function>
inline const char* nameOfFunction = nullptr;

// Whether a function throws makes no difference here.
template <class T>
struct Plain
{
    typedef T Type;
};
template <class R, class... A>
struct Plain<R (*)(A...) noexcept>
{
    typedef R (*Type)(A...);
};
template <class R, class C, class... A>
struct Plain<R (C::*)(A...) noexcept>
{
    typedef R (C::*Type)(A...);
};
template <class R, class C, class... A>
struct Plain<R (C::*)(A...) const noexcept>
{
    typedef R (C::*Type)(A...) const;
};

// --- The kinds of functions -----------------------------------------------------------------------------------------

template <auto function, class Type>
struct MethodOf;

template <auto function, class C, class R, class... A>
struct MethodOf<function, R (*)(C&, A...)>
{
    typedef Caller<C, R, A...> Call;
    static PyObject* entry(PyObject* self, PyObject* given)
    {
        C* const object = cppObject<C>(self);
        const Reference arguments = object ? Call::tuple(given) : Reference();
        return arguments ? Call::call({Wrapped<C>::name, nameOfFunction<function>}, arguments.get(),
                                      [object](A... values) -> R { return function(*object, values...); })
                         : nullptr;
    }
};

template <auto function, class C, class R, class... A>
struct MemberOf
{
    typedef Caller<C, R, A...> Call;
    static PyObject* entry(PyObject* self, PyObject* given)
    {
        C* const object = cppObject<C>(self);
        const Reference arguments = object ? Call::tuple(given) : Reference();
        return arguments ? Call::call({Wrapped<C>::name, nameOfFunction<function>}, arguments.get(),
                                      [object](A... values) -> R { return (object->*function)(values...); })
                         : nullptr;
    }
};
template <auto function, class C, class R, class... A>
struct MethodOf<function, R (C::*)(A...)> : MemberOf<function, C, R, A...>
{};
template <auto function, class C, class R, class... A>
struct MethodOf<function, R (C::*)(A...) const> : MemberOf<function, C, R, A...>
{};

template <class C, auto function, class Type>
struct StaticOf;
template <class C, auto function, class R, class... A>
struct StaticOf<C, function, R (*)(A...)>
{
    typedef Caller<C, R, A...> Call;
    static PyObject* entry(PyObject*, PyObject* given)
    {
        const Reference arguments = Call::tuple(given);
        return arguments ? Call::call({Wrapped<C>::name, nameOfFunction<function>}, arguments.get(), function)
                         : nullptr;
    }
};

template <auto function>
PyMethodDef method(const char* name)
{
    typedef MethodOf<function, typename Plain<decltype(function)>::Type> Method;
    nameOfFunction<function> = name;
    return {name, &Method::entry, Method::Call::flags, nullptr};
}

template <class C, auto function>
PyMethodDef staticMethod(const char* name)
{
    typedef StaticOf<C, function, typename Plain<decltype(function)>::Type> Method;
    nameOfFunction<function> = name;
    return {name, &Method::entry, Method::Call::flags | METH_STATIC, nullptr};
}

} // namespace QtCore

#endif
