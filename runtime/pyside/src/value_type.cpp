// Conversion of signal and slot arguments.
#include "value_type.h"

#include "pyobjectwrapper.h"
#include "qobject_wrappers.h"

#include <QVariant>
#include <cstring>

namespace PySide {

using namespace Shiboken;

namespace {

int pyObjectType() { return qMetaTypeId<PyObjectWrapper>(); }

bool isPointerName(const QByteArray& name) { return name.endsWith('*'); }

bool isPointerToQObject(const QByteArray& name)
{
    if (QMetaType::typeFlags(QMetaType::type(name.constData())) & QMetaType::PointerToQObject)
        return true;
    PyTypeObject* const type = isPointerName(name) ? Conversions::getPythonTypeObject(name.constData()) : nullptr;
    return type && isQObjectType(type);
}

// A copy, or the default value: Qt leaves what needs no constructor as the memory was.
void* newValue(int metaType, const void* source)
{
    void* const value = QMetaType::create(metaType, source);
    if (!source && !(QMetaType::typeFlags(metaType) & QMetaType::NeedsConstruction))
        std::memset(value, 0, QMetaType::sizeOf(metaType));
    return value;
}

} // namespace

ValueType::ValueType(const QByteArray& name)
    : m_name(name), m_metaType(QMetaType::type(name.constData())), m_isQObjectPointer(isPointerToQObject(name))
{}

PyObject* ValueType::toPython(const void* value) const
{
    if (m_metaType == pyObjectType())
        return static_cast<const PyObjectWrapper*>(value)->newReference();
    if (isQObjectPointer())
        return wrapperOf(*static_cast<QObject* const*>(value));
    if (isPointerName(m_name)) {
        Conversions::SpecificConverter converter(m_name.constData());
        if (converter.isValid())
            return converter.toPython(value);
    } else if (SbkConverter* const converter = Conversions::getConverter(m_name.constData())) {
        return Conversions::copyToPython(converter, value);
    }
    if (m_metaType != QMetaType::UnknownType) {
        const QVariant variant(m_metaType, value);
        return Conversions::copyToPython(Conversions::getConverter("QVariant"), &variant);
    }
    return PyErr_Format(PyExc_TypeError, "Values of the C++ type '%s' have no Python counterpart", m_name.constData());
}

bool ValueType::fromPython(PyObject* object, void* value) const
{
    if (m_metaType == pyObjectType()) {
        *static_cast<PyObjectWrapper*>(value) = PyObjectWrapper(object);
        return true;
    }
    if (isQObjectPointer() || isPointerName(m_name)) {
        if (object == Py_None)
            return true;
        PyTypeObject* type = Conversions::getPythonTypeObject(m_name.constData());
        if (!type && isQObjectPointer())
            type = qObjectType();
        if (!type || !PyObject_TypeCheck(object, type))
            return refuse(object);
        if (!Object::isValid(object))
            return false;
        *static_cast<void**>(value) = Conversions::cppPointer(type, reinterpret_cast<SbkObject*>(object));
        return true;
    }
    SbkConverter* const converter = Conversions::getConverter(m_name.constData());
    if (const Conversions::PythonToCppFunc convert =
            converter ? Conversions::isPythonToCppConvertible(converter, object) : nullptr) {
        if (!Object::isValid(object))
            return false;
        convert(object, value);
    } else if (!PyErr_Occurred() && object != Py_None) { // None stands for no value of any type
        return refuse(object);
    }
    if (PyErr_Occurred())
        PyErr_Print();
    return true;
}

bool ValueType::refuse(PyObject* object) const
{
    PyErr_Format(PyExc_TypeError, "a value of type '%s' cannot be made from %s", m_name.constData(),
                 Py_TYPE(object)->tp_name);
    return false;
}

ValueTypes parameterTypes(const QMetaMethod& method)
{
    ValueTypes types;
    for (const QByteArray& name : method.parameterTypes())
        types.emplace_back(name);
    return types;
}

PyObject* argumentTuple(const ValueTypes& types, std::size_t count, void** arguments)
{
    if (count == 1 && types[0].name() == anyArguments)
        return types[0].toPython(arguments[1]);
    Reference tuple(PyTuple_New(count));
    for (std::size_t i = 0; tuple && i < count; ++i) {
        PyObject* const argument = types[i].toPython(arguments[i + 1]);
        if (!argument)
            return nullptr;
        PyTuple_SET_ITEM(tuple.get(), i, argument);
    }
    return tuple.release();
}

CallArguments::CallArguments(const ValueTypes& types) : CallArguments(types, nullptr) {}

CallArguments::CallArguments(const ValueTypes& types, void* const* arguments)
    : m_types(types), m_values(types.size() + 1, nullptr)
{
    for (std::size_t i = 0; i < m_types.size(); ++i) {
        const void* const source = arguments ? arguments[i + 1] : nullptr;
        if (m_types[i].metaType() != QMetaType::UnknownType)
            m_values[i + 1] = newValue(m_types[i].metaType(), source);
        else if (isPointerName(m_types[i].name()))
            m_values[i + 1] = new void*(source ? *static_cast<void* const*>(source) : nullptr);
        else
            m_missing = m_types[i].name();
        if (source && m_types[i].isQObjectPointer())
            m_guards.emplace_back(i + 1, guarded(*static_cast<QObject* const*>(source)));
    }
}

CallArguments::~CallArguments()
{
    for (std::size_t i = 0; i < m_types.size(); ++i) {
        if (!m_values[i + 1])
            continue;
        if (m_types[i].metaType() != QMetaType::UnknownType)
            QMetaType::destroy(m_types[i].metaType(), m_values[i + 1]);
        else
            delete static_cast<void**>(m_values[i + 1]);
    }
}

bool CallArguments::fromPython(PyObject* tuple)
{
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple); ++i)
        if (!m_types[i].fromPython(PyTuple_GET_ITEM(tuple, i), m_values[i + 1]))
            return false;
    return true;
}

void** CallArguments::data()
{
    for (const auto& guard : m_guards)
        *static_cast<QObject**>(m_values[guard.first]) = guard.second.data();
    return m_values.data();
}

} // namespace PySide
