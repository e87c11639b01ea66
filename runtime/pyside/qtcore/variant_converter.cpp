// QVariant: which Qt value stands for a Python object, and which Python object for a Qt value.
#include "converters.h"
#include "pyobjectwrapper.h"

#include <QPointer>

namespace QtCore {

using namespace Shiboken;

namespace {

// A list or dict can hold itself.
class Nesting
{
public:
    Nesting() : m_isEntered(Py_EnterRecursiveCall(const_cast<char*>(" while converting to a QVariant")) == 0) {}
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting()
    {
        if (m_isEntered)
            Py_LeaveRecursiveCall();
    }
    bool isTooDeep() const { return !m_isEntered; }

private:
    const bool m_isEntered;
};

QVariant wrapped(PyObject* object) { return QVariant::fromValue(PyObjectWrapper(object)); }

// Qt's int has 32 bits wherever it runs.
QVariant fromInt(PyObject* object)
{
    const long value = PyInt_AS_LONG(object);
    if (value == static_cast<int>(value))
        return QVariant(static_cast<int>(value));
    PyErr_SetNone(PyExc_OverflowError);
    return QVariant();
}

QVariant fromLong(PyObject* object)
{
    const long long value = PyLong_AsLongLong(object);
    return PyErr_Occurred() ? QVariant() : QVariant(static_cast<qlonglong>(value));
}

// The C++ object of a wrapper object: a QObject is remembered until it dies, a value copied. Nothing for a type that Qt
// does not know.
QVariant fromWrapper(PyObject* object)
{
    if (isQObjectType(Py_TYPE(object))) {
        QObject* const qObject = validQObjectOf(object);
        return qObject ? QVariant::fromValue(guarded(qObject)) : QVariant();
    }
    if (!Object::isValid(object))
        return QVariant();
    const char* const name = ObjectType::getOriginalName(reinterpret_cast<SbkObjectType*>(Py_TYPE(object)));
    const int type = name && *name ? QMetaType::type(name) : QMetaType::UnknownType;
    if (type == QMetaType::UnknownType)
        return QVariant();
    void* const value = Object::cppPointer(reinterpret_cast<SbkObject*>(object), Py_TYPE(object));
    return value && !QByteArray(name).endsWith('*') ? QVariant(type, value) : QVariant();
}

QVariant fromDictionary(PyObject* object)
{
    if (!hasOnlyTextKeys(object))
        return wrapped(object);
    const Nesting nesting;
    const Reference entries(nesting.isTooDeep() ? nullptr : PyDict_Items(object));
    QVariantMap map;
    for (Py_ssize_t i = 0; entries && i < PyList_GET_SIZE(entries.get()); ++i) {
        PyObject* const entry = PyList_GET_ITEM(entries.get(), i);
        map.insert(textFromPython(PyTuple_GET_ITEM(entry, 0)), variantFromPython(PyTuple_GET_ITEM(entry, 1)));
        if (PyErr_Occurred())
            return QVariant();
    }
    return map;
}

QVariant fromSequence(PyObject* object)
{
    const Nesting nesting;
    const Reference items(nesting.isTooDeep() ? nullptr : PySequence_List(object));
    if (!items) {
        // What calls itself a sequence and cannot be walked is an object like any other.
        if (nesting.isTooDeep() || !PyErr_ExceptionMatches(PyExc_Exception))
            return QVariant();
        PyErr_Clear();
        return wrapped(object);
    }
    const Py_ssize_t size = PyList_GET_SIZE(items.get());
    Py_ssize_t texts = 0;
    while (texts < size && isText(PyList_GET_ITEM(items.get(), texts)))
        ++texts;
    QStringList strings;
    QVariantList values;
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items.get()); ++i) {
        const Reference item = Reference::borrow(PyList_GET_ITEM(items.get(), i));
        if (size > 0 && texts == size)
            strings.append(textFromPython(item.get()));
        else
            values.append(variantFromPython(item.get()));
        if (PyErr_Occurred())
            return QVariant();
    }
    return size > 0 && texts == size ? QVariant(strings) : QVariant(values);
}

bool isQByteArray(PyObject* object) { return PyObject_TypeCheck(object, Wrapped<QByteArray>::type()); }

template <class Map>
PyObject* mapToPython(const Map& map)
{
    Reference result(PyDict_New());
    for (auto entry = map.begin(); result && entry != map.end(); ++entry) {
        const Reference key(textToPython(entry.key()));
        const Reference value(key ? variantToPython(entry.value()) : nullptr);
        if (!value || PyDict_SetItem(result.get(), key.get(), value.get()) < 0)
            return nullptr;
    }
    return result.release();
}

// A type that this module does not know itself: by the converter that another has registered under its name.
PyObject* otherToPython(const QVariant& variant)
{
    if (QMetaType::typeFlags(variant.userType()) & QMetaType::PointerToQObject)
        return wrapperOf(*static_cast<QObject* const*>(variant.constData()));
    const char* const name = variant.typeName();
    Conversions::SpecificConverter converter(name);
    if (converter.isValid())
        return converter.toPython(variant.constData());
    if (QMetaType::typeFlags(variant.userType()) & QMetaType::IsEnumeration)
        return PyInt_FromLong(variant.toInt());
    return none();
}

void anyIntoVariant(PyObject* object, void* value)
{
    const QVariant variant = variantFromPython(object);
    if (!PyErr_Occurred())
        *static_cast<QVariant*>(value) = variant;
}

FromPython acceptsAny(PyObject*) { return &anyIntoVariant; }

PyObject* toPython(const void* value) { return variantToPython(*static_cast<const QVariant*>(value)); }

} // namespace

bool hasOnlyTextKeys(PyObject* dictionary)
{
    PyObject* key;
    PyObject* value;
    for (Py_ssize_t place = 0; PyDict_Next(dictionary, &place, &key, &value);)
        if (!isText(key))
            return false;
    return true;
}

QVariant variantFromPython(PyObject* object)
{
    if (PyBool_Check(object))
        return QVariant(object == Py_True);
    if (object == Py_None)
        return QVariant();
    if (isText(object))
        return QVariant(textFromPython(object));
    if (PyFloat_CheckExact(object))
        return QVariant(PyFloat_AS_DOUBLE(object));
    if (PyInt_Check(object))
        return fromInt(object);
    if (PyLong_CheckExact(object))
        return fromLong(object);
    if (Enum::check(object))
        return QVariant(static_cast<int>(Enum::getValue(object)));
    if (Object::checkType(object) && !isQByteArray(object))
        return fromWrapper(object);
    if (isQByteArray(object)) {
        const QByteArray* const bytes = validObject<QByteArray>(object);
        return bytes ? QVariant(*bytes) : QVariant();
    }
    if (PyDict_Check(object))
        return fromDictionary(object);
    if (PySequence_Check(object))
        return fromSequence(object);
    return wrapped(object);
}

PyObject* variantToPython(const QVariant& variant)
{
    switch (variant.userType()) {
    case QMetaType::UnknownType:
        return none();
    case QMetaType::Bool:
        return PyBool_FromLong(variant.toBool());
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return PyInt_FromLong(variant.toInt());
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return PyLong_FromUnsignedLongLong(variant.toULongLong());
    case QMetaType::Long:
    case QMetaType::LongLong:
        return PyLong_FromLongLong(variant.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return PyFloat_FromDouble(variant.toDouble());
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QUrl:
        return textToPython(variant.toString());
    case QMetaType::QByteArray:
        return Converter<QByteArray>::toPython(variant.toByteArray());
    case QMetaType::QStringList:
        return Converter<QStringList>::toPython(variant.toStringList());
    case QMetaType::QVariantList:
        return Converter<QVariantList>::toPython(variant.toList());
    case QMetaType::QVariantMap:
        return mapToPython(variant.toMap());
    case QMetaType::QVariantHash:
        return mapToPython(variant.toHash());
    default:
        break;
    }
    if (variant.userType() == qMetaTypeId<QPointer<QObject>>())
        return wrapperOf(variant.value<QPointer<QObject>>());
    if (variant.userType() == qMetaTypeId<PyObjectWrapper>())
        return static_cast<const PyObjectWrapper*>(variant.constData())->newReference();
    return otherToPython(variant);
}

void registerVariantConverter()
{
    SbkConverter* const converter = Conversions::createConverter(&PyBaseObject_Type, &toPython);
    Conversions::addPythonToCppValueConversion(converter, &anyIntoVariant, &acceptsAny);
    for (const char* name : {"QVariant", "QVariant&"})
        Conversions::registerConverterName(converter, name);
    SbkPySide_QtCoreTypeConverters[SBK_QVARIANT_IDX] = converter;
}

} // namespace QtCore
