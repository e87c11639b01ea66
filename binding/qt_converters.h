// Strings, variants and Qt objects: the Qt binding's own converters, found at their places in its tables.
#ifndef BINDING_QT_CONVERTERS_H
#define BINDING_QT_CONVERTERS_H

#include "converter.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
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

template <>
struct Converter<QVariant> : QtConverter<QVariant, SBK_QVARIANT_IDX>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "QVariant"; }

    // The Qt binding passes instances of subclasses of float and long as mere objects; a library wants numbers.
    static FromPython accepts(PyObject* object)
    {
        return PyFloat_Check(object) ? &fromFloat : PyLong_Check(object) ? &fromLong : QtConverter::accepts(object);
    }

private:
    static void fromFloat(PyObject* object, void* value)
    {
        *static_cast<QVariant*>(value) = QVariant(PyFloat_AS_DOUBLE(object));
    }
    static void fromLong(PyObject* object, void* value)
    {
        const long long number = PyLong_AsLongLong(object);
        if (!errorPending())
            *static_cast<QVariant*>(value) = QVariant(static_cast<qlonglong>(number));
    }
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

// Any QObject of the Qt binding, the wrapped ones included.
template <>
struct Converter<QObject*>
{
    static constexpr bool mayHoldWrapper = true;
    static const char* text() { return "PySide.QtCore.QObject"; }
    static SbkObjectType* type() { return reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]); }

    static FromPython accepts(PyObject* object)
    {
        return Shiboken::Conversions::isPythonToCppPointerConvertible(type(), object);
    }

    static PyObject* toPython(const QObject* object) { return Shiboken::Conversions::pointerToPython(type(), object); }
};

} // namespace binding

#endif
