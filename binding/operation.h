// From a library function to a row of a class's table.
//
// A row names the Python method and the library function; parameter types come from the function, and only parameters
// with defaults are spelled out:
//
//     constexpr auto members = memberTable(
//         keywords("add_stream", operation<&Clip::add_stream>, optional<False>("validate")),
//         one("delete_stream", operation<&Clip::delete_stream>),
//         property("frame_rate", operation<&Clip::get_frame_rate>, operation<&Clip::set_frame_rate>));
//
// The templates here make constant descriptors (Row); call_protocol.cpp, which is no template, runs them.
#ifndef BINDING_OPERATION_H
#define BINDING_OPERATION_H

#include "call_protocol.h"
#include "container_converters.h"
#include "errors.h"
#include "library_call.h"
#include "qt_objects.h"

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace binding {

// --- Parameters -----------------------------------------------------------------------------------------------------

// What a given argument is converted into. A value class whose default constructor asks the library for something may
// offer a cheaper initial value.
template <class T>
struct StartValue
{
    static T make() { return T(); }
};

// Whether an argument may be converted. Nothing can have failed before the first one.
inline bool mayConvert(bool isFirst) { return isFirst || !errorPending(); }

// Tests the validity of a wrapper object, then converts, unless an error is pending.
inline void convertArgument(const Argument& argument, bool isFirst, bool mayBeWrapper, void* value)
{
    if (mayConvert(isFirst) && (!mayBeWrapper || Shiboken::Object::isValid(argument.object)))
        argument.convert(argument.object, value);
}

// Holds one converted parameter of a call. `Default` is void for a required one.
template <class T, class Default>
class ArgumentValue
{
    typedef std::remove_cv_t<std::remove_reference_t<T>> Value;

public:
    ArgumentValue(const Argument& argument, bool isFirst) : m_value(from(argument, isFirst)) {}
    const Value& get() const { return m_value; }
    bool settle(const Argument&) { return true; }

    static FromPython accepts(PyObject* object) { return Converter<Value>::accepts(object); }
    static const char* text() { return Converter<Value>::text(); }

private:
    static Value from(const Argument& argument, bool isFirst)
    {
        if constexpr (!std::is_void_v<Default>)
            if (!argument.object)
                return Default::value();
        // What a wrapper object holds is copied from where it is.
        if constexpr (Wrapped<Value>::kind == Kind::Value)
            if (argument.convert == &WrapperConversions<Value>::valueFromPython && mayConvert(isFirst))
                if (const Value* const source = validObject<Value>(argument.object))
                    return *source;
        return converted(argument, isFirst);
    }
    static Value converted(const Argument& argument, bool isFirst)
    {
        Value value = StartValue<Value>::make();
        convertArgument(argument, isFirst, Converter<Value>::mayHoldWrapper, &value);
        return value;
    }

    Value m_value;
};

// A library object that is taken by pointer. Later arguments may destroy it: only settle() takes its address.
template <class Pointer, class Default>
class ArgumentPointer
{
public:
    ArgumentPointer(const Argument& argument, bool isFirst)
    {
        if (argument.object && mayConvert(isFirst))
            Shiboken::Object::isValid(argument.object);
    }
    Pointer get() const { return m_pointer; }
    bool settle(const Argument& argument)
    {
        if (argument.object)
            convertArgument(argument, false, true, &m_pointer);
        else if constexpr (!std::is_void_v<Default>)
            m_pointer = Default::value();
        return !errorPending();
    }

    static FromPython accepts(PyObject* object) { return Converter<Pointer>::accepts(object); }
    static const char* text() { return Converter<Pointer>::text(); }

private:
    Pointer m_pointer = nullptr;
};

// A wrapped value taken by const reference: a wrapper object's own library object is used in place, where it is once
// all arguments are converted.
template <class T, class Default>
class ArgumentReference
{
public:
    ArgumentReference(const Argument& argument, bool isFirst)
    {
        if (!argument.object) {
            m_temporary.emplace();
        } else if (isInPlace(argument)) {
            if (mayConvert(isFirst))
                Shiboken::Object::isValid(argument.object);
        } else {
            m_temporary.emplace();
            convertArgument(argument, isFirst, true, &*m_temporary);
        }
    }
    bool settle(const Argument& argument)
    {
        if (!argument.object || !isInPlace(argument))
            return true;
        m_inPlace = validObject<T>(argument.object);
        return m_inPlace != nullptr;
    }
    const T& get() const { return m_inPlace ? *m_inPlace : static_cast<const T&>(*m_temporary); }

    static FromPython accepts(PyObject* object)
    {
        if (PyObject_TypeCheck(object, Wrapped<T>::type()))
            return &WrapperConversions<T>::pointerFromPython;
        if (const FromPython convert = acceptsPlainImplicit<T>(object))
            return convert;
        return Shiboken::Conversions::isPythonToCppReferenceConvertible(wrapperType<T>(), object);
    }
    static const char* text() { return Converter<T>::text(); }

private:
    static bool isInPlace(const Argument& argument)
    {
        return argument.convert == &WrapperConversions<T>::pointerFromPython;
    }

    class Temporary
    {
    public:
        ~Temporary() { reset(); }
        void emplace()
        {
            if constexpr (!std::is_void_v<Default>)
                m_value = new (&m_storage) T(Default::value());
            else if constexpr (std::is_default_constructible_v<T>)
                m_value = new (&m_storage) T();
        }
        void reset()
        {
            if (m_value)
                m_value->~T();
        }
        T& operator*() { return *m_value; }
        const T& operator*() const { return *m_value; }

    private:
        std::aligned_storage_t<sizeof(T), alignof(T)> m_storage;
        T* m_value = nullptr;
    };

    T* m_inPlace = nullptr;
    Temporary m_temporary;
};

// A library object that is taken by reference: an instance, not None.
template <class T>
class ArgumentPointee
{
public:
    ArgumentPointee(const Argument& argument, bool isFirst)
    {
        if (mayConvert(isFirst))
            Shiboken::Object::isValid(argument.object);
    }
    bool settle(const Argument& argument) { return (m_object = validObject<T>(argument.object)) != nullptr; }
    T& get() const { return *m_object; }

    static FromPython accepts(PyObject* object)
    {
        return object == Py_None ? nullptr : WrapperConversions<T>::acceptsPointer(object);
    }
    static const char* text() { return Wrapped<T>::name; }

private:
    T* m_object = nullptr;
};

// The way in which an argument is held for a parameter of type P.
template <class P, class Default>
struct ArgumentHolder
{
    typedef std::remove_cv_t<std::remove_reference_t<P>> Value;
    static constexpr bool isObjectPointer = std::is_pointer_v<P> && !std::is_same_v<P, PyObject*>;
    typedef std::conditional_t<isObjectPointer, ArgumentPointer<P, Default>, ArgumentValue<P, Default>> type;
};
template <class T, class Default>
struct ArgumentHolder<const T&, Default>
{
    typedef std::conditional_t<Wrapped<T>::kind == Kind::Value, ArgumentReference<T, Default>,
                               ArgumentValue<const T&, Default>>
        type;
};
template <class T, class Default>
struct ArgumentHolder<T&, Default>
{
    typedef ArgumentPointee<T> type;
};

template <class P, class Default>
using ArgumentFor = typename ArgumentHolder<P, Default>::type;

// A parameter with a default: `Default` offers `text`, as signatures show it, and value(), evaluated at each call in
// which the argument is not given.
template <class Default>
struct OptionalParameter
{
    const char* keyword;
};

template <class Default>
constexpr OptionalParameter<Default> optional(const char* keyword)
{
    return {keyword};
}

// --- Results --------------------------------------------------------------------------------------------------------

// What becomes of a result beyond its conversion, and of the arguments once the call is made.
struct PlainResult
{
    template <class R>
    static PyObject* convert(const R& result, const Argument*)
    {
        return Converter<std::remove_cv_t<R>>::toPython(result);
    }
    static PyObject* convertNothing(const Argument*) { return none(); }
};

// The library owns the object that the result stands for.
struct ReleasedResult : PlainResult
{
    template <class R>
    static PyObject* convert(const R& result, const Argument* arguments)
    {
        PyObject* const object = PlainResult::convert(result, arguments);
        if (object && object != Py_None)
            Shiboken::Object::releaseOwnership(object);
        return object;
    }
};

// Python owns the object that the result stands for.
struct OwnedResult : PlainResult
{
    template <class R>
    static PyObject* convert(const R& result, const Argument* arguments)
    {
        PyObject* const object = PlainResult::convert(result, arguments);
        if (object && object != Py_None)
            Shiboken::Object::getOwnership(object);
        return object;
    }
};

// The library owns the first argument from now on.
struct ReleasedArgument : PlainResult
{
    static PyObject* convertNothing(const Argument* arguments)
    {
        if (arguments[0].object != Py_None)
            Shiboken::Object::releaseOwnership(arguments[0].object);
        return none();
    }
};

// None for a handle that refers to nothing.
struct NoneForNull : PlainResult
{
    template <class R>
    static PyObject* convert(const R& result, const Argument* arguments)
    {
        return result.isNull() ? none() : PlainResult::convert(result, arguments);
    }
};

// --- Owners ---------------------------------------------------------------------------------------------------------

// Holds the wrapper objects of the Qt parents of an object while a call uses it: they are its C++ owners, and their own
// wrapper objects may own them.
template <class T, bool isQtObject = std::is_base_of_v<QObject, T>>
class OwnersHeld
{
public:
    explicit OwnersHeld(const T&) {}
    ~OwnersHeld() {} // used
};
template <class T>
class OwnersHeld<T, true>
{
public:
    explicit OwnersHeld(const T& object) : m_owners(object.parent() ? wrappersOfParents(object) : nullptr) {}

private:
    const Reference m_owners;
};

// --- Invoking -------------------------------------------------------------------------------------------------------

template <class R, class Object, class... P>
struct FunctionShape
{
    typedef R Result;
    typedef Object ObjectType;
    typedef std::tuple<P...> Parameters;
};

// Member functions, and free functions whose first parameter is the object.
template <class F>
struct ShapeOf;
template <class R, class C, class... P>
struct ShapeOf<R (C::*)(P...)> : FunctionShape<R, C, P...>
{};
template <class R, class C, class... P>
struct ShapeOf<R (C::*)(P...) const> : FunctionShape<R, C, P...>
{};
template <class R, class C, class... P>
struct ShapeOf<R (*)(C&, P...)> : FunctionShape<R, C, P...>
{};
// A function that works with the lock held is given the wrapper object too.
template <class R, class C, class... P>
struct ShapeOf<R (*)(PyObject*, C&, P...)> : FunctionShape<R, C, P...>
{};
template <class R, class C, class... P>
struct ShapeOf<R (C::*)(P...) noexcept> : FunctionShape<R, C, P...>
{};
template <class R, class C, class... P>
struct ShapeOf<R (C::*)(P...) const noexcept> : FunctionShape<R, C, P...>
{};

// Functions that scripts call on the class.
struct NoObject
{};
template <class F>
struct StaticShapeOf;
template <class R, class... P>
struct StaticShapeOf<R (*)(P...)> : FunctionShape<R, NoObject, P...>
{};
template <class R, class... P>
struct StaticShapeOf<R (*)(P...) noexcept> : FunctionShape<R, NoObject, P...>
{};

enum class Lock { Released, Held };

// Says which library function an operation calls, what becomes of its result, and whether the interpreter's lock is
// released around it.
template <auto function, class ResultPolicy, Lock lock>
struct OperationTag
{};

template <auto function, class ResultPolicy = PlainResult>
constexpr OperationTag<function, ResultPolicy, Lock::Released> operation{};

// For a function that is written by hand and does its own unlocking: R function(PyObject* wrapper, Class&, ...).
template <auto function>
constexpr OperationTag<function, PlainResult, Lock::Held> lockedOperation{};

// The same for functions without an object, which scripts call on the class.
template <auto function, class ResultPolicy, Lock lock>
struct StaticTag
{};

template <auto function, class ResultPolicy = PlainResult>
constexpr StaticTag<function, ResultPolicy, Lock::Released> staticOperation{};

template <auto function>
constexpr StaticTag<function, PlainResult, Lock::Held> lockedStaticOperation{};

template <class Tag>
constexpr bool isStatic = false;
template <auto function, class ResultPolicy, Lock lock>
constexpr bool isStatic<StaticTag<function, ResultPolicy, lock>> = true;

// Picks one of several functions of a name by its parameters: overload<void(View)>(&Clip::relink).
template <class Signature, class C>
constexpr auto overload(Signature C::*function)
{
    return function;
}

// The defaults of all parameters, void for the required ones: defaults belong to the last parameters.
template <std::size_t>
using NoDefault = void;
template <class Indexes, class... Defaults>
struct PaddedDefaults;
template <std::size_t... i, class... Defaults>
struct PaddedDefaults<std::index_sequence<i...>, Defaults...>
{
    typedef std::tuple<NoDefault<i>..., Defaults...> type;
};

template <std::size_t, class Value>
struct PlacedArgument : Value
{
    using Value::Value;
};

// The converted arguments of a call. Base classes are initialised in their order: so are the arguments.
template <class Indexes, class Parameters, class Defaults>
struct ConvertedArguments;
template <std::size_t... i, class... P, class Defaults>
struct ConvertedArguments<std::index_sequence<i...>, std::tuple<P...>, Defaults>
    : PlacedArgument<i, ArgumentFor<P, std::tuple_element_t<i, Defaults>>>...
{
    template <std::size_t place>
    using At = PlacedArgument<
        place, ArgumentFor<std::tuple_element_t<place, std::tuple<P...>>, std::tuple_element_t<place, Defaults>>>;

    explicit ConvertedArguments([[maybe_unused]] const Argument* arguments) : At<i>(arguments[i], i == 0)... {}

    // Takes the addresses of library objects, now that no script's code runs any more. False with an error pending.
    bool settle([[maybe_unused]] const Argument* arguments)
    {
        return sizeof...(P) == 0 || (!errorPending() && (At<i>::settle(arguments[i]) && ...));
    }

    static constexpr std::array<FormalParameter, sizeof...(P)> describe()
    {
        return {FormalParameter{nullptr, nullptr, &At<i>::accepts, &At<i>::text}...};
    }
};

template <class Parameters, class... Defaults>
struct ArgumentsFor
{
    static constexpr std::size_t count = std::tuple_size_v<Parameters>;
    static_assert(sizeof...(Defaults) <= count, "more defaults than parameters");
    typedef
        typename PaddedDefaults<std::make_index_sequence<count - sizeof...(Defaults)>, Defaults...>::type AllDefaults;
    typedef std::make_index_sequence<count> Indexes;
    typedef ConvertedArguments<Indexes, Parameters, AllDefaults> Values;
};

// Makes the call, and a Python object from its result.
template <class ResultPolicy, class Call>
PyObject* resultOf(const Call& call, const Argument* arguments)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        return ResultPolicy::convertNothing(arguments);
    } else {
        return ResultPolicy::convert(call(), arguments);
    }
}

template <class Tag, class... Defaults>
struct Invoker;

template <auto function, class ResultPolicy, Lock lock, class... Defaults>
struct Invoker<OperationTag<function, ResultPolicy, lock>, Defaults...>
{
    typedef ShapeOf<decltype(function)> Shape;
    typedef typename Shape::Result Result;
    typedef typename Shape::ObjectType Object;
    typedef ArgumentsFor<typename Shape::Parameters, Defaults...> Arguments;
    typedef typename Arguments::Values Values;

    static void* invoke(PyObject* self, PyTypeObject* type, const Argument* arguments)
    {
        try {
            Values values(arguments);
            void* const object = values.settle(arguments) ? libraryObject(self, type) : nullptr;
            if (!object)
                return nullptr;
            return run(self, *static_cast<Object*>(object), arguments, values, typename Arguments::Indexes());
        } catch (...) {
            raiseCaughtException();
            return nullptr;
        }
    }

private:
    template <std::size_t... i>
    static PyObject* run([[maybe_unused]] PyObject* self, Object& object, const Argument* arguments,
                         [[maybe_unused]] const Values& values, std::index_sequence<i...>)
    {
        const OwnersHeld<Object> owners(object);
        const LibraryCall running;
        return resultOf<ResultPolicy>(
            [&]() -> Result {
                if constexpr (lock == Lock::Held) {
                    return function(self, object, values.Values::template At<i>::get()...);
                } else {
                    const Unlocked unlocked;
                    if constexpr (std::is_member_function_pointer_v<decltype(function)>)
                        return (object.*function)(values.Values::template At<i>::get()...);
                    else
                        return function(object, values.Values::template At<i>::get()...);
                }
            },
            arguments);
    }
};

template <auto function, class ResultPolicy, Lock lock, class... Defaults>
struct Invoker<StaticTag<function, ResultPolicy, lock>, Defaults...>
{
    typedef StaticShapeOf<decltype(function)> Shape;
    typedef typename Shape::Result Result;
    typedef ArgumentsFor<typename Shape::Parameters, Defaults...> Arguments;
    typedef typename Arguments::Values Values;

    static void* invoke(PyObject*, PyTypeObject*, const Argument* arguments)
    {
        try {
            Values values(arguments);
            return values.settle(arguments) ? run(arguments, values, typename Arguments::Indexes()) : nullptr;
        } catch (...) {
            raiseCaughtException();
            return nullptr;
        }
    }

private:
    template <std::size_t... i>
    static PyObject* run(const Argument* arguments, [[maybe_unused]] const Values& values, std::index_sequence<i...>)
    {
        return resultOf<ResultPolicy>(
            [&]() -> Result {
                if constexpr (lock == Lock::Held) {
                    return function(values.Values::template At<i>::get()...);
                } else {
                    const Unlocked unlocked;
                    return function(values.Values::template At<i>::get()...);
                }
            },
            arguments);
    }
};

// Makes a library object of class Made from constructor arguments of the types P.
template <class Made, class... P>
struct ConstructorTag
{};

template <class Made, class... P>
constexpr ConstructorTag<Made, P...> constructs{};

template <class Made, class... P, class... Defaults>
struct Invoker<ConstructorTag<Made, P...>, Defaults...>
{
    typedef ArgumentsFor<std::tuple<P...>, Defaults...> Arguments;
    typedef typename Arguments::Values Values;

    static void* invoke(PyObject*, PyTypeObject*, const Argument* arguments)
    {
        try {
            Values values(arguments);
            if (!values.settle(arguments))
                return nullptr;
            return make(values, typename Arguments::Indexes());
        } catch (...) {
            raiseCaughtException();
            return nullptr;
        }
    }

private:
    template <std::size_t... i>
    static void* make([[maybe_unused]] const Values& values, std::index_sequence<i...>)
    {
        const Unlocked unlocked;
        return new Made(values.Values::template At<i>::get()...);
    }
};

// --- Rows -----------------------------------------------------------------------------------------------------------

// One way to call an operation: its parameters, and what converts them and calls.
template <std::size_t count>
struct SignatureRow
{
    std::array<FormalParameter, count> parameters;
    int required;
    Invoke invoke;
    bool isStatic;
    bool testedFirst;
};

template <class Tag, class... Defaults>
constexpr auto signature(Tag, OptionalParameter<Defaults>... optionals)
{
    typedef Invoker<Tag, Defaults...> Invoker;
    constexpr std::size_t count = Invoker::Arguments::count;
    static_assert(count <= maximumParameters, "raise maximumParameters");
    SignatureRow<count> row{Invoker::Values::describe(), static_cast<int>(count - sizeof...(Defaults)),
                            &Invoker::invoke, isStatic<Tag>, false};
    [[maybe_unused]] std::size_t place = count - sizeof...(Defaults);
    ((row.parameters[place].keyword = optionals.keyword, row.parameters[place].defaultText = Defaults::text, ++place),
     ...);
    return row;
}

// Of several signatures, one whose test comes before those listed above it.
template <std::size_t count>
constexpr SignatureRow<count> testedFirst(SignatureRow<count> row)
{
    row.testedFirst = true;
    return row;
}

// `Name` is const char* for a method, AccessorName for an accessor of a property.
template <class Name, class... Signatures>
struct Row
{
    Name name;
    Form form;
    std::tuple<Signatures...> signatures;
};

template <class Name, class... Signatures>
constexpr auto row(Name name, Form form, Signatures... signatures)
{
    return Row<Name, Signatures...>{name, form, {signatures...}};
}

template <class Tag>
constexpr auto noArguments(const char* name, Tag tag)
{
    return row(name, Form::NoArguments, signature(tag));
}

template <class Tag>
constexpr auto one(const char* name, Tag tag)
{
    return row(name, Form::One, signature(tag));
}

template <class Tag>
constexpr auto positional(const char* name, Tag tag)
{
    return row(name, Form::Positional, signature(tag));
}

template <class Tag, class... Defaults>
constexpr auto keywords(const char* name, Tag tag, OptionalParameter<Defaults>... optionals)
{
    return row(name, Form::Keywords, signature(tag, optionals...));
}

// Several signatures of one method, in the order in which error messages list them.
template <class... Signatures>
constexpr auto overloads(const char* name, Signatures... signatures)
{
    return row(name, Form::Keywords, signatures...);
}

// The method behind one side of a property. It exists while the class is registered, and gives messages their name.
template <std::size_t size>
struct AccessorName
{
    const char* property;
    bool isSetter;
    std::array<char, size> text; // "get_" or "set_" and the stem
};

template <std::size_t size>
constexpr auto accessorName(const char* property, bool isSetter, const char (&stem)[size])
{
    AccessorName<size + 4> name{property, isSetter, {isSetter ? 's' : 'g', 'e', 't', '_'}};
    for (std::size_t i = 0; i < size; ++i)
        name.text[i + 4] = stem[i];
    return name;
}

// Properties are made in the order of their rows. One without a setter is read-only. Accessors that are not named after
// the property are told by their `stem`: "parent_group" for get_parent_group and set_parent_group.
template <std::size_t size, class Getter, class... Setter>
constexpr auto property(const char* name, const char (&stem)[size], Getter getter, Setter... setter)
{
    return std::make_tuple(row(accessorName(name, false, stem), Form::NoArguments, signature(getter)),
                           row(accessorName(name, true, stem), Form::One, signature(setter))...);
}
template <std::size_t size, auto function, class ResultPolicy, Lock lock, class... Setter>
constexpr auto property(const char (&name)[size], OperationTag<function, ResultPolicy, lock> getter, Setter... setter)
{
    return property(name, name, getter, setter...);
}

// A method that is written by hand as the interpreter calls it.
struct PlainRow
{
    const char* name;
    PyCFunction function;
    int flags;
};

constexpr PlainRow plain(const char* name, PyCFunction function, int flags) { return {name, function, flags}; }
constexpr std::tuple<PlainRow> rowsOf(const PlainRow& row) { return row; }

template <class Name, class... Signatures>
constexpr auto rowsOf(const Row<Name, Signatures...>& row)
{
    return std::make_tuple(row);
}
template <class... Rows>
constexpr const std::tuple<Rows...>& rowsOf(const std::tuple<Rows...>& rows)
{
    return rows;
}

// The methods and properties of a class, or a part of them: tables may be rows of tables.
template <class... Rows>
constexpr auto memberTable(const Rows&... rows)
{
    return std::tuple_cat(rowsOf(rows)...);
}

// A class's constructors, with the rule by which their arguments are counted: a table of one row.
template <class... Signatures>
constexpr auto constructors(Form form, Signatures... signatures)
{
    return memberTable(row<const char*>(nullptr, form, signatures...));
}

} // namespace binding

#endif
