// Containers, each composed from its elements' converters: sequences are lists in Python, maps are dicts.
//
// On the way in any sequence of convertible items is taken, or any dict of convertible keys and values. Testing one
// leaves no error behind, but for those that must reach the caller: an object whose items cannot be read is simply not
// accepted.
#ifndef BINDING_CONTAINER_CONVERTERS_H
#define BINDING_CONTAINER_CONVERTERS_H

#include "converter.h"
#include "errors.h"
#include "primitive_converters.h"
#include "qt_converters.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QVector>
#include <algorithm>

namespace binding {

// A new reference to the item, null with an error when there is none.
inline PyObject* itemOf(PyObject* sequence, Py_ssize_t index)
{
    if (PyList_CheckExact(sequence) && index < PyList_GET_SIZE(sequence))
        return newReference(PyList_GET_ITEM(sequence, index));
    if (PyTuple_CheckExact(sequence) && index < PyTuple_GET_SIZE(sequence))
        return newReference(PyTuple_GET_ITEM(sequence, index));
    return PySequence_GetItem(sequence, index);
}

// Whether the object is a sequence whose every item `accepts` takes.
template <class Accepts>
bool isSequenceOf(PyObject* object, Accepts accepts)
{
    if (!PySequence_Check(object))
        return false;
    const Py_ssize_t length = PySequence_Size(object);
    for (Py_ssize_t i = 0; i < length; ++i) {
        const Reference item(itemOf(object, i));
        if (!item || !accepts(item.get())) {
            clearRefusal();
            return false;
        }
    }
    if (length >= 0)
        return true;
    clearRefusal();
    return false;
}

// Whether the object is a list of nothing but wrapper objects of just the value class T: seen without asking
// converters.
template <class T>
bool isPlainListOf(PyObject* object)
{
    if constexpr (Wrapped<T>::kind == Kind::Value) {
        if (!PyList_CheckExact(object))
            return false;
        PyObject* const* const first = reinterpret_cast<PyListObject*>(object)->ob_item;
        return std::all_of(first, first + PyList_GET_SIZE(object),
                           [type = Wrapped<T>::type()](PyObject* item) { return Py_TYPE(item) == type; });
    }
    (void)object;
    return false;
}

// Converts one item into an element. An item that changed since it was tested, and is not accepted any more, is a
// TypeError.
template <class T>
bool convertItem(PyObject* item, T& element)
{
    if (errorPending() || (Converter<T>::mayHoldWrapper && !Shiboken::Object::isValid(item)))
        return false;
    const FromPython convert = Converter<T>::accepts(item);
    if (errorPending())
        return false;
    if (!convert)
        PyErr_Format(PyExc_TypeError, "an item became a '%s' while it was converted", Py_TYPE(item)->tp_name);
    else
        convert(item, &element);
    return !errorPending();
}

// How each container is walked on the way in: a vector by the length that the sequence has at the start, a list by the
// length that it has before each item.
template <class T>
Py_ssize_t lengthForItem(const QVector<T>&, PyObject*, Py_ssize_t lengthAtStart)
{
    return lengthAtStart;
}
template <class T>
Py_ssize_t lengthForItem(const QList<T>&, PyObject* sequence, Py_ssize_t)
{
    return PySequence_Size(sequence);
}
template <class T>
void reserveFor(QVector<T>& vector, Py_ssize_t length)
{
    vector.reserve(static_cast<int>(length));
}
template <class T>
void reserveFor(QList<T>&, Py_ssize_t)
{}

template <class Container, class T>
struct SequenceConverter
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "list"; }

    // Items of a list from its start that are wrapper objects of just the value class: copied from where they are. No
    // Python code runs meanwhile, so they need not be held.
    static void appendPlainItems(Container& container, PyObject* sequence)
    {
        if constexpr (Wrapped<T>::kind == Kind::Value) {
            if (!PyList_CheckExact(sequence))
                return;
            PyTypeObject* const type = Wrapped<T>::type();
            PyObject* const* const items = reinterpret_cast<PyListObject*>(sequence)->ob_item;
            for (Py_ssize_t i = 0; i < PyList_GET_SIZE(sequence); ++i) {
                SbkObject* const wrapper = reinterpret_cast<SbkObject*>(items[i]);
                if (Py_TYPE(items[i]) != type || !Shiboken::Object::isValid(wrapper, false))
                    return;
                container.append(*static_cast<const T*>(Shiboken::Conversions::cppPointer(type, wrapper)));
            }
        }
    }

    static bool appendItem(Container& container, PyObject* item)
    {
        T element = T();
        if (!convertItem(item, element))
            return false;
        container.append(element);
        return true;
    }

    static FromPython accepts(PyObject* object)
    {
        const bool accepted = isPlainListOf<T>(object) ||
                              isSequenceOf(object, [](PyObject* item) { return Converter<T>::accepts(item); });
        return accepted ? &fromPython : nullptr;
    }

    static void fromPython(PyObject* object, void* value)
    {
        Container container;
        const Py_ssize_t length = PySequence_Size(object);
        if (length < 0)
            return;
        reserveFor(container, length);
        appendPlainItems(container, object);
        for (Py_ssize_t i = container.size(); i < lengthForItem(container, object, length); ++i) {
            const Reference item(itemOf(object, i));
            if (!item || !appendItem(container, item.get()))
                return;
        }
        if (!errorPending())
            *static_cast<Container*>(value) = container;
    }

    static PyObject* toPython(const Container& container)
    {
        Reference list(PyList_New(container.size()));
        for (int i = 0; list && i < container.size(); ++i) {
            PyObject* const item = Converter<T>::toPython(container[i]);
            if (!item)
                return nullptr;
            PyList_SET_ITEM(list.get(), i, item);
        }
        return list.release();
    }
};

template <class T>
struct Converter<QVector<T>> : SequenceConverter<QVector<T>, T>
{};
template <class T>
struct Converter<QList<T>> : SequenceConverter<QList<T>, T>
{};

// A text is a sequence too, but no list of its letters.
template <>
struct Converter<QStringList> : SequenceConverter<QStringList, QString>
{
    static const char* text() { return "QStringList"; }
    static FromPython accepts(PyObject* object)
    {
        return PyString_Check(object) || PyUnicode_Check(object) ? nullptr : SequenceConverter::accepts(object);
    }
};

// Pointers to Qt objects are taken from instances of the Qt binding's QObject only, None is none.
template <>
struct Converter<QList<QObject*>> : SequenceConverter<QList<QObject*>, QObject*>
{
    static FromPython acceptsItem(PyObject* item)
    {
        return PyObject_TypeCheck(item, SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]) ? Converter<QObject*>::accepts(item)
                                                                                : nullptr;
    }

    static FromPython accepts(PyObject* object) { return isSequenceOf(object, &acceptsItem) ? &fromPython : nullptr; }
};

// Values of a dict, which for pointers must be there.
template <class T>
FromPython acceptsValue(PyObject* object)
{
    return std::is_pointer<T>::value && object == Py_None ? nullptr : Converter<T>::accepts(object);
}

template <class Container, class Key, class T>
struct MapConverter
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "dict"; }

    static FromPython accepts(PyObject* object)
    {
        if (!PyDict_Check(object))
            return nullptr;
        // A test may run Python code, too.
        const Reference entries(PyDict_Items(object));
        for (Py_ssize_t i = 0; entries && i < PyList_GET_SIZE(entries.get()); ++i) {
            PyObject* const entry = PyList_GET_ITEM(entries.get(), i);
            if (!Converter<Key>::accepts(PyTuple_GET_ITEM(entry, 0)) || !acceptsValue<T>(PyTuple_GET_ITEM(entry, 1)))
                return nullptr;
        }
        return entries ? &fromPython : nullptr;
    }

    static void fromPython(PyObject* object, void* value)
    {
        Container container;
        // Converting an item may run Python code that changes the dict: a list of its entries, in its order, is walked.
        const Reference entries(PyDict_Items(object));
        for (Py_ssize_t i = 0; entries && i < PyList_GET_SIZE(entries.get()); ++i) {
            PyObject* const entry = PyList_GET_ITEM(entries.get(), i);
            Key convertedKey = Key();
            T convertedItem = T();
            if (!convertItem(PyTuple_GET_ITEM(entry, 0), convertedKey) ||
                !convertItem(PyTuple_GET_ITEM(entry, 1), convertedItem))
                return;
            container.insert(convertedKey, convertedItem);
        }
        if (!errorPending())
            *static_cast<Container*>(value) = container;
    }

    static PyObject* toPython(const Container& container)
    {
        Reference dict(PyDict_New());
        for (auto entry = container.begin(); dict && entry != container.end(); ++entry) {
            const Reference key(Converter<Key>::toPython(entry.key()));
            const Reference item(key ? Converter<T>::toPython(entry.value()) : nullptr);
            if (!item || PyDict_SetItem(dict.get(), key.get(), item.get()) < 0)
                return nullptr;
        }
        return dict.release();
    }
};

template <class Key, class T>
struct Converter<QMap<Key, T>> : MapConverter<QMap<Key, T>, Key, T>
{};
template <class Key, class T>
struct Converter<QHash<Key, T>> : MapConverter<QHash<Key, T>, Key, T>
{};

// A tuple of two in Python; a list of two is taken as well.
template <class First, class Second>
struct Converter<QPair<First, Second>>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "QPair"; }

    static FromPython accepts(PyObject* object)
    {
        if (!(PyList_Check(object) || PyTuple_Check(object)) || PySequence_Size(object) != 2)
            return nullptr;
        const Reference first(itemOf(object, 0));
        const Reference second(itemOf(object, 1));
        const bool accepted =
            first && second && Converter<First>::accepts(first.get()) && Converter<Second>::accepts(second.get());
        if (!accepted)
            clearRefusal();
        return accepted ? &fromPython : nullptr;
    }

    static void fromPython(PyObject* object, void* value)
    {
        QPair<First, Second> pair = QPair<First, Second>();
        const Reference first(itemOf(object, 0));
        if (!first || !convertItem(first.get(), pair.first))
            return;
        const Reference second(itemOf(object, 1));
        if (second && convertItem(second.get(), pair.second))
            *static_cast<QPair<First, Second>*>(value) = pair;
    }

    static PyObject* toPython(const QPair<First, Second>& pair)
    {
        const Reference first(Converter<First>::toPython(pair.first));
        const Reference second(first ? Converter<Second>::toPython(pair.second) : nullptr);
        return second ? PyTuple_Pack(2, first.get(), second.get()) : nullptr;
    }
};

} // namespace binding

#endif
