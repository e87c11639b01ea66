// Lists and maps of what Qt's interfaces exchange.
#include "converters.h"

namespace QtCore {

using namespace Shiboken;

namespace {

template <class T>
struct ListConversion
{
    static PythonToCppFunc accepts(PyObject* object)
    {
        if (!PySequence_Check(object) || PyDict_Check(object) || isText(object))
            return nullptr;
        const Reference items(PySequence_Fast(object, "a sequence is needed"));
        bool fits = static_cast<bool>(items);
        for (Py_ssize_t i = 0; fits && i < PySequence_Fast_GET_SIZE(items.get()); ++i)
            fits = Crossing<T>::accepts(PySequence_Fast_GET_ITEM(items.get(), i)) != nullptr;
        PyErr_Clear();
        return fits ? &fromPython : nullptr;
    }

    static void fromPython(PyObject* object, void* value)
    {
        const Reference items(PySequence_List(object));
        QList<T> list;
        for (Py_ssize_t i = 0; items && i < PyList_GET_SIZE(items.get()); ++i) {
            PyObject* const item = PyList_GET_ITEM(items.get(), i);
            T each = T();
            const PythonToCppFunc convert = Crossing<T>::accepts(item);
            if (!convert || !Object::isValid(item))
                return;
            convert(item, &each);
            if (PyErr_Occurred())
                return;
            list.append(each);
        }
        if (items)
            *static_cast<QList<T>*>(value) = list;
    }

    static PyObject* toPython(const void* value)
    {
        const QList<T>& list = *static_cast<const QList<T>*>(value);
        Reference result(PyList_New(list.size()));
        for (int i = 0; result && i < list.size(); ++i) {
            PyObject* const item = Crossing<T>::toPython(list[i]);
            if (!item)
                return nullptr;
            PyList_SET_ITEM(result.get(), i, item);
        }
        return result.release();
    }

    static void enter(int place, const char* name)
    {
        SbkConverter* const converter = Conversions::createConverter(&PyList_Type, &toPython);
        Conversions::addPythonToCppValueConversion(converter, &fromPython, &accepts);
        Conversions::registerConverterName(converter, name);
        SbkPySide_QtCoreTypeConverters[place] = converter;
    }
};

void mapFromPython(PyObject* object, void* value)
{
    const QVariant variant = variantFromPython(object);
    if (!PyErr_Occurred())
        *static_cast<QVariantMap*>(value) = variant.toMap();
}

PythonToCppFunc acceptsMap(PyObject* object)
{
    return PyDict_Check(object) && hasOnlyTextKeys(object) ? &mapFromPython : nullptr;
}

PyObject* mapToPython(const void* value) { return variantToPython(QVariant(*static_cast<const QVariantMap*>(value))); }

} // namespace

void registerListConverters()
{
    ListConversion<QVariant>::enter(SBK_QTCORE_QLIST_QVARIANT_IDX, "QVariantList");
    ListConversion<QObject*>::enter(SBK_QTCORE_QLIST_QOBJECTPTR_IDX, "QObjectList");
    ListConversion<QByteArray>::enter(SBK_QTCORE_QLIST_QBYTEARRAY_IDX, "QByteArrayList");
    SbkConverter* const map = Conversions::createConverter(&PyDict_Type, &mapToPython);
    Conversions::addPythonToCppValueConversion(map, &mapFromPython, &acceptsMap);
    Conversions::registerConverterName(map, "QVariantMap");
    SbkPySide_QtCoreTypeConverters[SBK_QTCORE_QMAP_QSTRING_QVARIANT_IDX] = map;
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
