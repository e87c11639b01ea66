// The types of PySide.QtCore: one list of them, and what the binding has to know of Qt's classes beyond its own rules.
#ifndef QT_TYPES_H
#define QT_TYPES_H

#include "object_life.h"
#include "pyside.h"
#include "python_scopes.h"
#include "qobject_wrappers.h"

#include <class_registration.h>
#include <pyside_qtcore_python.h>
#include <pysidesignal.h>

namespace QtCore {

using namespace PySide;
using namespace binding;

extern PyTypeObject* types[SBK_QtCore_IDX_COUNT];

// How a text to be translated is encoded: of Qt 4, whose scripts say so. Qt 5 takes every text for UTF-8.
enum Encoding { CodecForTr, UnicodeUTF8, DefaultCodec = CodecForTr };

// In the order in which they are registered: a class comes after its base class and before its enumerations.
inline constexpr std::tuple typeRows{
    objectType<QObject>(SBK_QOBJECT_IDX, "PySide.QtCore.QObject"),
    objectType<QEvent>(SBK_QEVENT_IDX, "PySide.QtCore.QEvent"),
    objectType<QTimerEvent>(SBK_QTIMEREVENT_IDX, "PySide.QtCore.QTimerEvent"),
    objectType<QChildEvent>(SBK_QCHILDEVENT_IDX, "PySide.QtCore.QChildEvent"),
    valueType<QByteArray>(SBK_QBYTEARRAY_IDX, "PySide.QtCore.QByteArray"),
    objectType<QCoreApplication>(SBK_QCOREAPPLICATION_IDX, "PySide.QtCore.QCoreApplication"),
    objectType<QTimer>(SBK_QTIMER_IDX, "PySide.QtCore.QTimer"),
    objectType<QThread>(SBK_QTHREAD_IDX, "PySide.QtCore.QThread"),
    enumerationType<QEvent::Type>(SBK_QEVENT_TYPE_IDX, "PySide.QtCore.QEvent.Type"),
    enumerationType<QThread::Priority>(SBK_QTHREAD_PRIORITY_IDX, "PySide.QtCore.QThread.Priority"),
    enumerationType<Encoding>(SBK_QCOREAPPLICATION_ENCODING_IDX, "PySide.QtCore.QCoreApplication.Encoding"),
    enumerationType<Qt::ConnectionType>(SBK_QT_CONNECTIONTYPE_IDX, "PySide.QtCore.Qt.ConnectionType"),
    enumerationType<Qt::Orientation>(SBK_QT_ORIENTATION_IDX, "PySide.QtCore.Qt.Orientation"),
    enumerationType<Qt::CaseSensitivity>(SBK_QT_CASESENSITIVITY_IDX, "PySide.QtCore.Qt.CaseSensitivity"),
    enumerationType<Qt::SortOrder>(SBK_QT_SORTORDER_IDX, "PySide.QtCore.Qt.SortOrder"),
    enumerationType<Qt::CheckState>(SBK_QT_CHECKSTATE_IDX, "PySide.QtCore.Qt.CheckState"),
    enumerationType<Qt::TimeSpec>(SBK_QT_TIMESPEC_IDX, "PySide.QtCore.Qt.TimeSpec"),
    enumerationType<Qt::DateFormat>(SBK_QT_DATEFORMAT_IDX, "PySide.QtCore.Qt.DateFormat")};

// The table of a class, which its own file gives.
template <class T>
ClassTable tableOf();

// The parent that a constructor is given: a wrapper object, borrowed, or null.
struct Parent
{
    PyObject* object = nullptr;
};

// A Python object that can be called, or a signal that can be emitted; borrowed.
struct Callable
{
    PyObject* object = nullptr;
};

// Makes an object that Python has made a full QObject of its Python class: meta-object, signals, the parent, and what
// the keywords name that are no parameters of the constructor.
bool finishQObject(const Operation& constructor, PyObject* self, void* object, PyObject* keywords);

} // namespace QtCore

namespace binding {

template <class T>
struct Wrapped<T, std::enable_if_t<isListed<T, decltype(QtCore::typeRows)>>>
    : WrappedByRow<T, QtCore::typeRows, QtCore::types>
{};

// Scripts drop objects while an event loop runs: nothing waits for calls. Who calls keeps what is called.
template <class T>
struct LifeOf<T, std::enable_if_t<isListed<T, decltype(QtCore::typeRows)>>>
{
    static constexpr decltype(Making::finish) finish = std::is_base_of_v<QObject, T> ? &QtCore::finishQObject : nullptr;

    static void destroy(void* object)
    {
        if constexpr (std::is_base_of_v<QObject, T>)
            PySide::deleteQObject(object);
        else
            destroyLibraryObject<T>(object);
    }
    static void drop(void* object) { destroy(object); }
};

template <>
struct Converter<QVariant> : QtConverter<QVariant, SBK_QVARIANT_IDX>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "QVariant"; }
};

template <>
struct Converter<QtCore::Parent>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return Converter<QObject*>::text(); }
    static FromPython accepts(PyObject* object) { return Converter<QObject*>::accepts(object) ? &fromPython : nullptr; }
    static void fromPython(PyObject* object, void* parent) { static_cast<QtCore::Parent*>(parent)->object = object; }
};

template <>
struct Converter<QtCore::Callable>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "callable"; }
    static FromPython accepts(PyObject* object)
    {
        return PyCallable_Check(object) || PySide::Signal::checkType(object) ? &fromPython : nullptr;
    }
    static void fromPython(PyObject* object, void* value) { static_cast<QtCore::Callable*>(value)->object = object; }
};

// One byte: a str of length one.
template <>
struct Converter<char>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "char"; }
    static FromPython accepts(PyObject* object)
    {
        return PyString_Check(object) && PyString_GET_SIZE(object) == 1 ? &fromPython : nullptr;
    }
    static void fromPython(PyObject* object, void* value) { *static_cast<char*>(value) = *PyString_AS_STRING(object); }
};

// Python's bytes are taken wherever a QByteArray is.
template <>
struct Implicit<QByteArray>
{
    static bool isPlain(PyObject* object) { return PyString_CheckExact(object); }
    static FromPython accepts(PyObject* object)
    {
        return PyString_Check(object) || PyByteArray_Check(object) ? &fromPython : nullptr;
    }
    static void fromPython(PyObject* object, void* bytes)
    {
        *static_cast<QByteArray*>(bytes) =
            PyString_Check(object)
                ? QByteArray(PyString_AS_STRING(object), static_cast<int>(PyString_GET_SIZE(object)))
                : QByteArray(PyByteArray_AS_STRING(object), static_cast<int>(PyByteArray_GET_SIZE(object)));
    }
};

} // namespace binding

#endif
