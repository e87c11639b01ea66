// What the signals, slots and properties that a Python class declares add to the meta-object of the class that it
// derives from.
#include "class_meta.h"

#include "pyside.h"
#include "pysidesignal.h"
#include "qobject_wrappers.h"
#include "signal_objects.h"

namespace PySide {

namespace {

struct ClassMeta
{
    const QMetaObject* metaObject;
    std::shared_ptr<const DynamicMetaObject> own; // null for a wrapped class
};

ClassMeta* metaOf(PyTypeObject* type)
{
    return isQObjectType(type)
               ? static_cast<ClassMeta*>(Shiboken::ObjectType::getTypeUserData(reinterpret_cast<SbkObjectType*>(type)))
               : nullptr;
}

void setMeta(SbkObjectType* type, ClassMeta* meta)
{
    Shiboken::ObjectType::setTypeUserData(type, meta, [](void* data) { delete static_cast<ClassMeta*>(data); });
}

// The class whose C++ part the objects have.
PyTypeObject* primaryBase(PyTypeObject* type)
{
    if (isQObjectType(type->tp_base))
        return type->tp_base;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(type->tp_bases); ++i) {
        PyObject* const base = PyTuple_GET_ITEM(type->tp_bases, i);
        if (PyType_Check(base) && isQObjectType(reinterpret_cast<PyTypeObject*>(base)))
            return reinterpret_cast<PyTypeObject*>(base);
    }
    return nullptr;
}

// Gives a signal that a class body made the name that it has there.
void nameSignal(SignalData& signal, const char* attribute)
{
    if (!signal.attribute.isEmpty())
        return;
    signal.attribute = attribute;
    if (signal.name.isEmpty())
        signal.name = attribute;
}

void collectSlots(PyObject* function, std::vector<DynamicMethod>& slotList)
{
    const Reference declared(PyObject_GetAttrString(function, "_slots"));
    if (!declared) {
        PyErr_Clear();
        return;
    }
    for (Py_ssize_t i = 0; PyList_Check(declared.get()) && i < PyList_GET_SIZE(declared.get()); ++i) {
        const char* signature;
        const char* result;
        if (PyArg_ParseTuple(PyList_GET_ITEM(declared.get(), i), "ss", &signature, &result))
            slotList.push_back({signature, result});
        else
            PyErr_Clear();
    }
}

// Visits the entries of a class body that have names.
template <class Visit>
void visit(PyObject* dictionary, const Visit& visit)
{
    PyObject* name;
    PyObject* value;
    for (Py_ssize_t place = 0; dictionary && PyDict_Next(dictionary, &place, &name, &value);)
        if (PyString_Check(name))
            visit(PyString_AS_STRING(name), value);
}

void collect(PyObject* dictionary, DynamicMembers& members)
{
    const Reference entries(PyDict_Copy(dictionary)); // reading attributes may run Python code
    visit(entries.get(), [&](const char* name, PyObject* value) {
        if (Py_TYPE(value) == &PySideSignalType) {
            SignalData& signal = signalData(value);
            nameSignal(signal, name);
            for (std::size_t i = 0; i < signal.parameters.size(); ++i)
                members.signalList.push_back({signal.signature(i), QByteArray()});
        } else if (PyFunction_Check(value)) {
            collectSlots(value, members.slotList);
        }
    });
    visit(entries.get(), [&](const char* name, PyObject* value) {
        if (isProperty(value))
            members.properties.push_back(describeProperty(name, value));
    });
}

} // namespace

std::shared_ptr<const DynamicMetaObject> classMetaObject(PyTypeObject* type)
{
    const ClassMeta* const meta = metaOf(type);
    return meta ? meta->own : nullptr;
}

void addPythonMetaObject(QObject* object, PyTypeObject* type)
{
    const std::shared_ptr<const DynamicMetaObject> own = classMetaObject(type);
    if (own && !dynamic_cast<PythonQObject*>(object))
        attachMetaObject(object, own);
}

void initDynamicMetaObject(SbkObjectType* type, const QMetaObject* base, const std::size_t&)
{
    setMeta(type, new ClassMeta{base, nullptr});
}

void initQObjectSubType(SbkObjectType* type, PyObject*, PyObject*)
{
    PyTypeObject* const pythonType = reinterpret_cast<PyTypeObject*>(type);
    PyTypeObject* const base = primaryBase(pythonType);
    if (!base)
        return;
    DynamicMembers members;
    PyObject* const order = pythonType->tp_mro;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(order); ++i) {
        PyObject* const each = PyTuple_GET_ITEM(order, i);
        if (PyType_Check(each) && !PyType_IsSubtype(base, reinterpret_cast<PyTypeObject*>(each)))
            collect(reinterpret_cast<PyTypeObject*>(each)->tp_dict, members);
    }
    // A class of another module may show Qt nothing but its own meta-object; there is nothing to extend then.
    const ClassMeta* const baseMeta = metaOf(base);
    if (!baseMeta)
        return;
    const auto own = std::make_shared<DynamicMetaObject>(baseMeta->metaObject, pythonType->tp_name, members);
    setMeta(type, new ClassMeta{own->metaObject(), own});
}

} // namespace PySide
