// From a class's tables to its Python type: the type object, its converter and names, its type-level operations.
//
// A class file gives classTable<Class, ClassWrapper, members>() or one of the variants below, fills in what the class
// has beyond that, and hands it to registerClass().
#ifndef BINDING_CLASS_REGISTRATION_H
#define BINDING_CLASS_REGISTRATION_H

#include "operation.h"
#include "properties.h"
#include "qt_dispatch.h"
#include "type_rows.h"

#include <QObject>
#include <typeinfo>

namespace binding {

// The operators that a class's comparison handles; it refuses every other with NotImplementedError.
struct Comparison
{
    typedef bool (*Operator)(const void* left, const void* right);
    enum class Outcome { Compared, NotConvertible, Invalid };

    PyTypeObject* const* type;
    Operator operators[Py_GE + 1]; // by the interpreter's numbers
    // Finds the library object of the other operand, in place or converted into a temporary, and compares with it.
    Outcome (*apply)(Operator compare, const void* left, PyObject* self, PyObject* other, bool& result);
};

// Everything that registration needs to know of a class.
struct ClassTable
{
    PyTypeObject** place = nullptr; // in the module's type table
    SbkObjectType* type = nullptr;  // static, still empty
    const char* name = nullptr;     // full Python name
    const char* libraryTypeName = nullptr;
    const char* wrapperTypeName = nullptr;
    bool isValue = false;
    PyMethodDef* methods = nullptr;
    std::vector<const Operation*> operations; // of the methods, in their order, but those that are plain functions
    const Operation* construction = nullptr;  // null for a class that scripts cannot make
    std::vector<Accessor> accessors;

    ObjectDestructor destroy = nullptr;
    initproc initialise = nullptr;
    inquiry truth = nullptr;
    richcmpfunc compare = nullptr;
    hashfunc hash = nullptr;
    reprfunc repr = nullptr;
    reprfunc str = nullptr;
    binaryfunc subscript = nullptr;
    const PySequenceMethods* sequence = nullptr;
    const PyNumberMethods* numbers = nullptr; // without the truth value
    const PyBufferProcs* buffer = nullptr;

    // Conversions as the runtime keeps them; copy and value only for value classes.
    FromPython (*acceptsPointer)(PyObject*) = nullptr;
    FromPython pointerFromPython = nullptr;
    PyObject* (*pointerToPython)(const void*) = nullptr;
    PyObject* (*copyToPython)(const void*) = nullptr;
    FromPython (*acceptsValue)(PyObject*) = nullptr;
    FromPython valueFromPython = nullptr;
    // A second value conversion, from objects of another kind.
    FromPython (*acceptsImplicit)(PyObject*) = nullptr;
    FromPython implicitFromPython = nullptr;

    SbkObjectType* base = nullptr;
    MultipleInheritanceInitFunction offsets = nullptr;
    TypeDiscoveryFuncV2 discover = nullptr;
    const QMetaObject* metaObject = nullptr; // of a QObject: its signals become attributes
    // What the class needs beyond that, or null. False with an error.
    bool (*finish)(SbkObjectType* type) = nullptr;
};

// The documentation of a class of that name, or of one of its methods; null for none. Set before the first class is
// registered. A property has that of its getter.
extern const char* (*documentationHook)(const char* className, const char* method);

// Registers the class in the module. False when it could not be introduced; the error stays pending.
bool registerClass(PyObject* module, const ClassTable& table);

// --- Making and destruction -----------------------------------------------------------------------------------------

// Destroys what Python owned. Called with the lock held, which is released while a destructor runs that may tell
// others.
template <class T>
void destroyLibraryObject(void* object)
{
    if constexpr (Wrapped<T>::kind == Kind::Object) {
        const Unlocked unlocked;
        delete static_cast<T*>(object);
    } else {
        delete static_cast<T*>(object);
    }
}

// How objects of a class come into being and end. A module may specialise it for its classes.
//   finish       what is to be done with an object that a constructor has made and attached; see Making
//   destroy()    destroys an object
//   drop()       destroys an object that Python lets go of
template <class T, class>
struct LifeOf
{
    static constexpr decltype(Making::finish) finish = nullptr;

    static void destroy(void* object)
    {
        if constexpr (std::is_base_of_v<QObject, T>)
            destroyQtObject(static_cast<T*>(object));
        else
            destroyLibraryObject<T>(object);
    }

    // Once no call can be using it any more. Values are copied for calls.
    static void drop(void* object)
    {
        if constexpr (std::is_base_of_v<QObject, T>)
            dropQtObject(static_cast<T*>(object));
        else if constexpr (Wrapped<T>::kind == Kind::Object)
            LibraryCall::destroyUnused(object, &destroy);
        else
            destroy(object);
    }
};

// --- Tables made from rows ------------------------------------------------------------------------------------------

// The signatures of one row of a table, as the protocol reads them.
template <const auto& table, std::size_t row, class Indexes>
struct SignaturesOf;
template <const auto& table, std::size_t row, std::size_t... i>
struct SignaturesOf<table, row, std::index_sequence<i...>>
{
    static constexpr const auto& rows = std::get<row>(table).signatures;
    template <std::size_t place>
    static constexpr std::size_t countOf = std::get<place>(rows).parameters.size();
    template <std::size_t place>
    static inline PyObject* keywordNames[countOf<place> + 1] = {};

    static constexpr Signature signatures[] = {
        Signature{std::get<i>(rows).parameters.data(), static_cast<int>(countOf<i>), std::get<i>(rows).required,
                  std::get<i>(rows).invoke, std::get<i>(rows).testedFirst, keywordNames<i>}...};

    static constexpr int least()
    {
        int least = maximumParameters;
        for (const Signature& signature : signatures)
            least = signature.required < least ? signature.required : least;
        return least;
    }
    static constexpr int most()
    {
        int most = 0;
        for (const Signature& signature : signatures)
            most = signature.count > most ? signature.count : most;
        return most;
    }
};

// The descriptor of one row, and the functions that the interpreter calls for it.
template <class T, const auto& table, std::size_t place>
struct Entry
{
    static constexpr const auto& row = std::get<place>(table);
    typedef SignaturesOf<table, place, std::make_index_sequence<std::tuple_size_v<decltype(row.signatures)>>>
        Signatures;

    static constexpr Operation operation = {Wrapped<T>::name,
                                            methodName(row.name),
                                            row.form,
                                            Signatures::signatures,
                                            static_cast<int>(std::size(Signatures::signatures)),
                                            Signatures::least(),
                                            Signatures::most(),
                                            Wrapped<T>::place()};

    // Objects of classes with virtual operations are of a subclass that hands these to Python.
    static constexpr Making making = {&LifeOf<T>::destroy, std::has_virtual_destructor_v<T>, LifeOf<T>::finish};
    static constexpr bool isStatic = std::get<0>(row.signatures).isStatic;

    static PyObject* entry(PyObject* self, PyObject* arguments)
    {
        return isStatic ? callStatic(operation, arguments) : call(operation, self, arguments);
    }
    static PyObject* entryWithKeywords(PyObject* self, PyObject* arguments, PyObject* keywords)
    {
        return isStatic ? callStatic(operation, arguments, keywords) : call(operation, self, arguments, keywords);
    }
    static int initialise(PyObject* self, PyObject* arguments, PyObject* keywords)
    {
        if constexpr (std::is_base_of_v<QObject, T>)
            if (Shiboken::Object::isUserType(self))
                Shiboken::ObjectType::copyMultimpleheritance(reinterpret_cast<SbkObjectType*>(Py_TYPE(self)),
                                                             wrapperType<T>());
        return construct(operation, self, arguments, keywords, making);
    }

    static PyMethodDef method()
    {
        if (!prepare(operation))
            PyErr_Print();
        constexpr int ofClass = isStatic ? METH_STATIC : 0;
        switch (row.form) {
        case Form::NoArguments:
            return {operation.name, &entry, METH_NOARGS | ofClass, nullptr};
        case Form::One:
            return {operation.name, &entry, METH_O | ofClass, nullptr};
        case Form::Positional:
            return {operation.name, &entry, METH_VARARGS | ofClass, nullptr};
        default:
            return {operation.name, reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&entryWithKeywords)),
                    METH_VARARGS | METH_KEYWORDS | ofClass, nullptr};
        }
    }
};

template <class T, const auto& table, std::size_t place>
PyMethodDef methodOf()
{
    constexpr const auto& row = std::get<place>(table);
    if constexpr (std::is_same_v<decltype(row), const PlainRow&>)
        return {row.name, row.function, row.flags, nullptr};
    else
        return Entry<T, table, place>::method();
}

// A copy: a new Python object that owns a new library object. The library is called with the lock held.
template <class T>
PyObject* copyMethod(PyObject* self, PyObject*)
{
    const T* const object = static_cast<const T*>(libraryObject(self, Wrapped<T>::type()));
    if (!object)
        return nullptr;
    try {
        return unlessError(Converter<T>::toPython(*object));
    } catch (...) {
        raiseCaughtException();
        return nullptr;
    }
}

template <class T>
PyMethodDef copyMethodDefinition()
{
    if constexpr (Wrapped<T>::kind == Kind::Value)
        return {"__copy__", &copyMethod<T>, METH_NOARGS, nullptr};
    else
        return {nullptr, nullptr, 0, nullptr};
}

template <class T, const auto& table, std::size_t place>
void addOperation([[maybe_unused]] std::vector<const Operation*>& operations)
{
    if constexpr (!std::is_same_v<
                      std::tuple_element_t<place, std::remove_cv_t<std::remove_reference_t<decltype(table)>>>,
                      PlainRow>)
        operations.push_back(&Entry<T, table, place>::operation);
}

template <class T, const auto& table, std::size_t... i>
std::vector<const Operation*> operationsOf(std::index_sequence<i...>)
{
    std::vector<const Operation*> operations;
    (addOperation<T, table, i>(operations), ...);
    return operations;
}

template <class T, const auto& table, std::size_t... i>
PyMethodDef* methodDefinitions(std::index_sequence<i...>)
{
    static PyMethodDef definitions[] = {
        methodOf<T, table, i>()..., copyMethodDefinition<T>(), {nullptr, nullptr, 0, nullptr}};
    return definitions;
}

// --- Type-level operations ------------------------------------------------------------------------------------------

// Whether no Python class can replace the library's isNull(). Python owns only what is
// of the module's own subclass; what the library owns may be of a subclass of the library's.
inline bool isNullIsOwn(PyObject* self)
{
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    return Shiboken::Object::hasOwnership(wrapper) && !Shiboken::Object::isUserType(self);
}

template <class T>
int truth(PyObject* self)
{
    const T* const object = static_cast<const T*>(libraryObject(self, Wrapped<T>::type()));
    if (!object)
        return -1;
    try {
        const bool own = isNullIsOwn(self);
        const Unlocked unlocked;
        return !(own ? object->T::isNull() : object->isNull());
    } catch (...) {
        raiseCaughtException();
        return -1;
    }
}

// The Python method isNull. Of an object that Python made it asks the library's own operation, so that it never comes
// back to a Python override.
template <class T>
bool isNull(PyObject* self, T& object)
{
    const bool own = Shiboken::Object::hasCppWrapper(reinterpret_cast<SbkObject*>(self)) || isNullIsOwn(self);
    const Unlocked unlocked;
    return own ? object.T::isNull() : object.isNull();
}

// A representation: the text of a library operation without arguments.
template <class T, auto function>
PyObject* textOf(PyObject* self)
{
    typedef Invoker<OperationTag<function, PlainResult, Lock::Released>> Invoker;
    return unlessError(static_cast<PyObject*>(Invoker::invoke(self, Wrapped<T>::type(), nullptr)));
}

template <class T>
long hash(PyObject* self)
{
    const T* const object = static_cast<const T*>(libraryObject(self, Wrapped<T>::type()));
    if (!object)
        return -1;
    try {
        const long value = static_cast<long>(qHash(*object));
        return value == -1 ? -2 : value;
    } catch (...) {
        raiseCaughtException();
        return -1;
    }
}

PyObject* compareObjects(const Comparison& comparison, PyObject* self, PyObject* other, int operation);

// Which operators of a class scripts may use.
enum Operators { Equal = 1, NotEqual = 2, Less = 4, Ordered = 8, All = 15 };

template <class T, int operators>
struct ComparisonOf
{
    // The operator when it is among those of the class.
    template <int which, class Compare>
    static constexpr Comparison::Operator offered(Compare)
    {
        if constexpr (operators & which)
            return [](const void* left, const void* right) {
                return Compare()(*static_cast<const T*>(left), *static_cast<const T*>(right));
            };
        return nullptr;
    }

    static Comparison::Outcome compareWith(Comparison::Operator compare, const void* left, const T* right, bool& result)
    {
        if (!left || !right)
            return Comparison::Outcome::Invalid;
        result = compare(left, right);
        return Comparison::Outcome::Compared;
    }

    static Comparison::Outcome apply(Comparison::Operator compare, const void* left, PyObject* self, PyObject* other,
                                     bool& result)
    {
        // Most often the other is of just this class.
        if (Py_TYPE(other) == Wrapped<T>::type())
            return compareWith(compare, left, validObject<T>(other), result);
        typedef std::conditional_t<Wrapped<T>::kind == Kind::Value, ArgumentReference<T, void>, ArgumentPointee<T>>
            Operand;
        const Argument argument = {other, Operand::accepts(other)};
        if (!argument.convert)
            return Comparison::Outcome::NotConvertible;
        if (!Shiboken::Object::isValid(other))
            return Comparison::Outcome::Invalid;
        Operand operand(argument, true);
        if (errorPending() || !operand.settle(argument))
            return Comparison::Outcome::NotConvertible;
        // A conversion may have run a script's code.
        return compareWith(compare, libraryObject(self, Wrapped<T>::type()), &operand.get(), result);
    }

    static PyObject* compare(PyObject* self, PyObject* other, int operation)
    {
        static constexpr Comparison comparison = {
            Wrapped<T>::place(),
            {offered<Less>(std::less<T>()), offered<Ordered>(std::less_equal<T>()), offered<Equal>(std::equal_to<T>()),
             offered<NotEqual>(std::not_equal_to<T>()), offered<Ordered>(std::greater<T>()),
             offered<Ordered>(std::greater_equal<T>())},
            &apply};
        return compareObjects(comparison, self, other, operation);
    }
};

// --- Class tables ---------------------------------------------------------------------------------------------------

template <class T>
PyObject* pointerToPython(const void* object)
{
    if (SbkObject* const known = Shiboken::BindingManager::instance().retrieveWrapper(object))
        return newReference(reinterpret_cast<PyObject*>(known));
    const char* const dynamicType = typeid(*static_cast<const T*>(object)).name();
    return Shiboken::Object::newObject(wrapperType<T>(), const_cast<void*>(object), false, false, dynamicType);
}

template <class T, class TWrapper>
PyObject* copyToPython(const void* value)
{
    return Shiboken::Object::newObject(wrapperType<T>(), new TWrapper(*static_cast<const T*>(value)), true, true);
}

template <class T, class TWrapper, const auto& members>
ClassTable baseTable()
{
    static SbkObjectType type = {};
    ClassTable table;
    table.place = Wrapped<T>::place();
    table.type = &type;
    table.name = Wrapped<T>::name;
    table.libraryTypeName = typeid(T).name();
    table.wrapperTypeName = typeid(TWrapper).name();
    typedef std::make_index_sequence<std::tuple_size_v<std::remove_cv_t<std::remove_reference_t<decltype(members)>>>>
        Rows;
    table.methods = methodDefinitions<T, members>(Rows());
    table.operations = operationsOf<T, members>(Rows());
    table.accessors = accessorsOf(members);
    table.destroy = &LifeOf<T>::drop;
    table.acceptsPointer = &WrapperConversions<T>::acceptsPointer;
    table.pointerFromPython = &WrapperConversions<T>::pointerFromPython;
    table.pointerToPython = &pointerToPython<T>;
    return table;
}

template <const auto& constructors, class T>
void addConstructor(ClassTable& table)
{
    typedef Entry<T, constructors, 0> Constructor;
    if (!prepare(Constructor::operation))
        PyErr_Print();
    table.construction = &Constructor::operation;
    table.initialise = &Constructor::initialise;
}

// A class that crosses by copy.
template <class T, class TWrapper, const auto& constructors, const auto& members>
ClassTable valueClass()
{
    ClassTable table = baseTable<T, TWrapper, members>();
    table.isValue = true;
    addConstructor<constructors, T>(table);
    table.copyToPython = &copyToPython<T, TWrapper>;
    table.acceptsValue = &WrapperConversions<T>::acceptsInstance;
    table.valueFromPython = &WrapperConversions<T>::valueFromPython;
    if constexpr (hasImplicit<T>) {
        table.acceptsImplicit = &Implicit<T>::accepts;
        table.implicitFromPython = &Implicit<T>::fromPython;
    }
    return table;
}

// A value class that refers to an engine object: true unless it refers to none.
template <class T, class TWrapper, const auto& constructors, const auto& members>
ClassTable handleClass()
{
    ClassTable table = valueClass<T, TWrapper, constructors, members>();
    table.truth = &truth<T>;
    return table;
}

// A class that crosses by pointer and that scripts cannot make.
template <class T, class TWrapper, const auto& members>
ClassTable abstractClass()
{
    return baseTable<T, TWrapper, members>();
}

// A class that crosses by pointer.
template <class T, class TWrapper, const auto& constructors, const auto& members>
ClassTable objectClass()
{
    ClassTable table = baseTable<T, TWrapper, members>();
    addConstructor<constructors, T>(table);
    return table;
}

// The offsets of the base-class parts in an object, ended by -1; computed from the first object that is asked about.
template <class T>
int* baseOffsets(const void* object)
{
    static int offsets[] = {-1, -1};
    if (offsets[0] == -1) {
        const T* const derived = static_cast<const T*>(object);
        const QObject* const base = derived;
        offsets[0] = static_cast<int>(reinterpret_cast<std::size_t>(base) - reinterpret_cast<std::size_t>(derived));
    }
    return offsets;
}

// The object as one of the class, when it is known as a QObject and is one; else null.
template <class T>
void* discover(void* object, SbkObjectType* knownAs)
{
    if (knownAs != reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]))
        return nullptr;
    return dynamic_cast<T*>(static_cast<QObject*>(object));
}

// An object class that is a QObject in Python too.
template <class T, class TWrapper, const auto& constructors, const auto& members>
ClassTable qtObjectClass()
{
    ClassTable table = objectClass<T, TWrapper, constructors, members>();
    table.base = reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]);
    table.offsets = &baseOffsets<T>;
    table.discover = &discover<T>;
    table.metaObject = &T::staticMetaObject;
    return table;
}

} // namespace binding

#endif
