// Strings, bytes and Qt objects: the Qt binding's own converters, found at their places in its tables. What a variant
// takes is for each module to say.
#ifndef BINDING_QT_CONVERTERS_H
#define BINDING_QT_CONVERTERS_H

#include "converter.h"

#include <QByteArray>
#include <QChildEvent>
#include <QEvent>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimerEvent>
#include <pyside_qtcore_python.h>

namespace binding {

template <class T, int place>
struct QtConverter
{
    static constexpr bool mayHoldWrapper = false;
    static SbkConverter* converter() { return SbkPySide_QtCoreTypeConverters[place]; }

    static FromPython accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppConvertible(converter(), object);
    }

    static PyObject* toPython(const T& value) { return Shiboken::Conversions::copyToPython(converter(), &value); }
};

template <>
struct Converter<QString> : QtConverter<QString, SBK_QSTRING_IDX>
{
    static const char* text() { return "unicode"; }
};

// The Qt binding's value class of byte arrays.
template <>
struct Converter<QByteArray>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "PySide.QtCore.QByteArray"; }
    static SbkObjectType* type() { return reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QBYTEARRAY_IDX]); }

    static FromPython accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppValueConvertible(type(), object);
    }

    static PyObject* toPython(const QByteArray& value) { return Shiboken::Conversions::copyToPython(type(), &value); }
};

// Objects of the Qt binding by pointer, a null one as None.
template <class T, int place>
struct QtPointerConverter
{
    static constexpr bool mayHoldWrapper = true;
    static SbkObjectType* type() { return reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[place]); }

    static FromPython accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppPointerConvertible(type(), object);
    }

    static PyObject* toPython(const T* object) { return Shiboken::Conversions::pointerToPython(type(), object); }
};

template <>
struct Converter<QObject*> : QtPointerConverter<QObject, SBK_QOBJECT_IDX>
{
    static const char* text() { return "PySide.QtCore.QObject"; }
};
template <>
struct Converter<QEvent*> : QtPointerConverter<QEvent, SBK_QEVENT_IDX>
{
    static const char* text() { return "PySide.QtCore.QEvent"; }
};
template <>
struct Converter<QTimerEvent*> : QtPointerConverter<QTimerEvent, SBK_QTIMEREVENT_IDX>
{
    static const char* text() { return "PySide.QtCore.QTimerEvent"; }
};
template <>
struct Converter<QChildEvent*> : QtPointerConverter<QChildEvent, SBK_QCHILDEVENT_IDX>
{
    static const char* text() { return "PySide.QtCore.QChildEvent"; }
};

} // namespace binding

#endif
