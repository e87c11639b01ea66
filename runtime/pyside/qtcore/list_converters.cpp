// Lists and maps of what Qt's interfaces exchange.
#include "converters.h"

#include <converter_rows.h>

namespace QtCore {

using namespace Shiboken;

namespace {

// Neither texts nor dicts are taken for lists.
template <class T>
struct ListConversion : Converter<QList<T>>
{
    static FromPython accepts(PyObject* object)
    {
        return PyDict_Check(object) || isText(object) ? nullptr : Converter<QList<T>>::accepts(object);
    }
};

template <class T>
constexpr ConverterRow listRow(int place, const char* name)
{
    return both<QList<T>, ListConversion<T>>(place, name, PyList_Type);
}

struct MapConversion
{
    static void fromPython(PyObject* object, void* value)
    {
        const QVariant variant = variantFromPython(object);
        if (!PyErr_Occurred())
            *static_cast<QVariantMap*>(value) = variant.toMap();
    }
    static FromPython accepts(PyObject* object)
    {
        return PyDict_Check(object) && hasOnlyTextKeys(object) ? &fromPython : nullptr;
    }
    static PyObject* toPython(const QVariantMap& map) { return variantToPython(map); }
};

constexpr ConverterRow rows[] = {
    listRow<QVariant>(SBK_QTCORE_QLIST_QVARIANT_IDX, "QVariantList"),
    listRow<QObject*>(SBK_QTCORE_QLIST_QOBJECTPTR_IDX, "QObjectList"),
    listRow<QByteArray>(SBK_QTCORE_QLIST_QBYTEARRAY_IDX, "QByteArrayList"),
    both<QVariantMap, MapConversion>(SBK_QTCORE_QMAP_QSTRING_QVARIANT_IDX, "QVariantMap", PyDict_Type),
};

} // namespace

void registerListConverters()
{
    for (const ConverterRow& row : rows)
        SbkPySide_QtCoreTypeConverters[row.place] = registerConverter(row);
}

void registerPrimitiveNames()
{
    const auto name = [](SbkConverter* converter, std::initializer_list<const char*> names) {
        for (const char* each : names)
            Conversions::registerConverterName(converter, each);
    };
    name(Conversions::PrimitiveTypeConverter<bool>(), {"bool"});
    name(Conversions::PrimitiveTypeConverter<int>(), {"int", "qint32"});
    name(Conversions::PrimitiveTypeConverter<unsigned int>(), {"uint", "unsigned int", "quint32"});
    name(Conversions::PrimitiveTypeConverter<long>(), {"long"});
    name(Conversions::PrimitiveTypeConverter<unsigned long>(), {"ulong", "unsigned long"});
    name(Conversions::PrimitiveTypeConverter<short>(), {"short", "qint16"});
    name(Conversions::PrimitiveTypeConverter<unsigned short>(), {"ushort", "unsigned short", "quint16"});
    name(Conversions::PrimitiveTypeConverter<long long>(), {"qlonglong", "long long", "qint64"});
    name(Conversions::PrimitiveTypeConverter<unsigned long long>(), {"qulonglong", "unsigned long long", "quint64"});
    name(Conversions::PrimitiveTypeConverter<double>(), {"double", "qreal"});
    name(Conversions::PrimitiveTypeConverter<float>(), {"float"});
}

} // namespace QtCore
