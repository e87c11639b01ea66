// The wrapped types of PySide.QtCore: their names and places, and how values of each kind cross between Python and C++.
//
// Crossing<T> says for the type of a parameter or result: accepts(object), the conversion that takes the object or
// null; text(), as signatures show it; toPython(value), a new reference or null with an error.
#ifndef QT_TYPES_H
#define QT_TYPES_H

#include "pyside_qtcore_python.h"
#include "python_scopes.h"
#include "qobject_wrappers.h"

#include <QList>
#include <sbkpython.h>
#include <type_traits>

namespace QtCore {

using namespace PySide;
using Shiboken::Conversions::PythonToCppFunc;

template <class T>
struct Wrapped;

// clang-format off
template <> struct Wrapped<QObject> { static constexpr const char* name = "PySide.QtCore.QObject"; static constexpr int place = SBK_QOBJECT_IDX; };
template <> struct Wrapped<QEvent> { static constexpr const char* name = "PySide.QtCore.QEvent"; static constexpr int place = SBK_QEVENT_IDX; };
template <> struct Wrapped<QTimerEvent> { static constexpr const char* name = "PySide.QtCore.QTimerEvent"; static constexpr int place = SBK_QTIMEREVENT_IDX; };
template <> struct Wrapped<QChildEvent> { static constexpr const char* name = "PySide.QtCore.QChildEvent"; static constexpr int place = SBK_QCHILDEVENT_IDX; };
template <> struct Wrapped<QByteArray> { static constexpr const char* name = "PySide.QtCore.QByteArray"; static constexpr int place = SBK_QBYTEARRAY_IDX; };
template <> struct Wrapped<QCoreApplication> { static constexpr const char* name = "PySide.QtCore.QCoreApplication"; static constexpr int place = SBK_QCOREAPPLICATION_IDX; };
template <> struct Wrapped<QTimer> { static constexpr const char* name = "PySide.QtCore.QTimer"; static constexpr int place = SBK_QTIMER_IDX; };
template <> struct Wrapped<QThread> { static constexpr const char* name = "PySide.QtCore.QThread"; static constexpr int place = SBK_QTHREAD_IDX; };
template <> struct Wrapped<QEvent::Type> { static constexpr const char* name = "PySide.QtCore.QEvent.Type"; static constexpr int place = SBK_QEVENT_TYPE_IDX; };
template <> struct Wrapped<Qt::ConnectionType> { static constexpr const char* name = "PySide.QtCore.Qt.ConnectionType"; static constexpr int place = SBK_QT_CONNECTIONTYPE_IDX; };
// clang-format on

template <class T>
PyTypeObject* typeOf()
{
    return Shiboken::SbkType<T>();
}
template <class T>
SbkObjectType* wrapperTypeOf()
{
    return reinterpret_cast<SbkObjectType*>(typeOf<T>());
}

template <class T, class = void>
struct Crossing;

// By a converter.
template <class T, SbkConverter* (*converter)()>
struct ConverterCrossing
{
    static PythonToCppFunc accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppConvertible(converter(), object);
    }
    static PyObject* toPython(const T& value) { return Shiboken::Conversions::copyToPython(converter(), &value); }
};

// Numbers and bytes have the runtime's own.
template <class T>
using PrimitiveCrossing = ConverterCrossing<T, &Shiboken::Conversions::PrimitiveTypeConverter<T>>;
template <>
struct Crossing<bool> : PrimitiveCrossing<bool>
{
    static const char* text() { return "bool"; }
};
template <>
struct Crossing<int> : PrimitiveCrossing<int>
{
    static const char* text() { return "int"; }
};
template <>
struct Crossing<long long> : PrimitiveCrossing<long long>
{
    static const char* text() { return "long long"; }
};
template <>
struct Crossing<unsigned long> : PrimitiveCrossing<unsigned long>
{
    static const char* text() { return "unsigned long"; }
};
template <>
struct Crossing<const char*> : PrimitiveCrossing<const char*>
{
    static const char* text() { return "str"; }
};

// Texts, variants and lists have those of this module.
template <int place>
SbkConverter* tableConverter()
{
    return SbkPySide_QtCoreTypeConverters[place];
}
template <class T, int place>
using TableCrossing = ConverterCrossing<T, &tableConverter<place>>;
template <>
struct Crossing<QString> : TableCrossing<QString, SBK_QSTRING_IDX>
{
    static const char* text() { return "unicode"; }
};
template <>
struct Crossing<QStringList> : TableCrossing<QStringList, SBK_QSTRINGLIST_IDX>
{
    static const char* text() { return "QStringList"; }
};
template <>
struct Crossing<QVariant> : TableCrossing<QVariant, SBK_QVARIANT_IDX>
{
    static const char* text() { return "QVariant"; }
};
template <>
struct Crossing<QVariantList> : TableCrossing<QVariantList, SBK_QTCORE_QLIST_QVARIANT_IDX>
{
    static const char* text() { return "list"; }
};
template <>
struct Crossing<QList<QByteArray>> : TableCrossing<QList<QByteArray>, SBK_QTCORE_QLIST_QBYTEARRAY_IDX>
{
    static const char* text() { return "list"; }
};

template <class T>
SbkConverter* enumerationConverter()
{
    return Shiboken::Enum::getTypeConverter(typeOf<T>());
}
template <class T>
struct Crossing<T, std::enable_if_t<std::is_enum<T>::value>> : ConverterCrossing<T, &enumerationConverter<T>>
{
    static const char* text() { return Wrapped<T>::name; }
};

// Objects of wrapped classes, by pointer.
template <class T>
struct Crossing<T*, std::enable_if_t<std::is_class<T>::value>>
{
    static const char* text() { return Wrapped<T>::name; }
    static PythonToCppFunc accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppPointerConvertible(wrapperTypeOf<T>(), object);
    }
    static PyObject* toPython(const T* value)
    {
        return Shiboken::Conversions::pointerToPython(wrapperTypeOf<T>(), value);
    }
};

// The same, but None is refused.
template <class T>
struct Given
{
    T* pointer = nullptr;
    operator T*() const { return pointer; }
    T* operator->() const { return pointer; }
};
template <class T>
struct Crossing<Given<T>>
{
    static const char* text() { return Wrapped<T>::name; }
    static PythonToCppFunc accepts(PyObject* object)
    {
        return object == Py_None ? nullptr : Crossing<T*>::accepts(object);
    }
};

template <>
struct Crossing<QByteArray>
{
    static const char* text() { return Wrapped<QByteArray>::name; }
    static PythonToCppFunc accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppValueConvertible(wrapperTypeOf<QByteArray>(), object);
    }
    static PyObject* toPython(const QByteArray& value)
    {
        return Shiboken::Conversions::copyToPython(wrapperTypeOf<QByteArray>(), &value);
    }
};

// Python objects as they are: borrowed on the way in, a new reference or null with an error on the way out.
template <>
struct Crossing<PyObject*>
{
    static const char* text() { return "object"; }
    static void same(PyObject* object, void* value) { *static_cast<PyObject**>(value) = object; }
    static PythonToCppFunc accepts(PyObject*) { return &same; }
    static PyObject* toPython(PyObject* value) { return value; }
};

// The C++ object of a method's own object; null with the error when it has gone or was never made.
template <class T>
T* cppObject(PyObject* self)
{
    if (!Shiboken::Object::isValid(self))
        return nullptr;
    return static_cast<T*>(Shiboken::Conversions::cppPointer(typeOf<T>(), reinterpret_cast<SbkObject*>(self)));
}

} // namespace QtCore

#endif
