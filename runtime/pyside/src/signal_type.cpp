// The type Signal: a class's signal, which becomes a SignalInstance when it is read from an object.
#include "class_meta.h"
#include "declared_types.h"
#include "pyside.h"
#include "pysidesignal.h"
#include "qobject_wrappers.h"
#include "signal_objects.h"
#include "static_type.h"

#include <QMetaMethod>
#include <algorithm>

namespace PySide {

namespace {

bool isOverloadList(PyObject* arguments)
{
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(arguments); ++i)
        if (PyTuple_Check(PyTuple_GET_ITEM(arguments, i)) || PyList_Check(PyTuple_GET_ITEM(arguments, i)))
            return true;
    return false;
}

// A declaration: either the types of one signature, or a tuple of types (or a type) for each overload.
bool readParameters(PyObject* arguments, std::vector<QByteArray>& parameters)
{
    if (!isOverloadList(arguments)) {
        parameters.push_back(cppTypeNames(arguments));
        return !parameters.back().isNull();
    }
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(arguments); ++i) {
        PyObject* const item = PyTuple_GET_ITEM(arguments, i);
        const bool isSequence = PyTuple_Check(item) || PyList_Check(item);
        parameters.push_back(isSequence ? cppTypeNames(item) : cppTypeName(item));
        if (PyErr_Occurred())
            return false;
    }
    return true;
}

PyObject* newDeclared(PyTypeObject*, PyObject* arguments, PyObject* keywords)
{
    SignalData data;
    PyObject* const name = keywords ? PyDict_GetItemString(keywords, "name") : nullptr;
    if (keywords && PyDict_Size(keywords) > (name ? 1 : 0)) {
        PyErr_SetString(PyExc_TypeError, "Signal() takes no keyword argument but 'name'");
        return nullptr;
    }
    if (name && !PyString_Check(name)) {
        PyErr_Format(PyExc_TypeError, "a signal's name must be a str, not %s", Py_TYPE(name)->tp_name);
        return nullptr;
    }
    if (name)
        data.name = PyString_AS_STRING(name);
    return readParameters(arguments, data.parameters) ? newSignal(std::move(data)) : nullptr;
}

void deallocate(PyObject* self)
{
    delete reinterpret_cast<SignalObject*>(self)->data;
    Py_TYPE(self)->tp_free(self);
}

PyObject* text(PyObject* self)
{
    const SignalData& data = signalData(self);
    return PyString_FromString(data.signature(0).constData());
}

PyObject* refuseCall(PyObject*, PyObject*, PyObject*)
{
    PyErr_SetString(PyExc_TypeError, "native Qt signal is not callable");
    return nullptr;
}

bool isDead(PyObject* object)
{
    if (!isQObjectType(Py_TYPE(object)) || Shiboken::Object::isValid(object, false))
        return false;
    return !Shiboken::Object::isUserType(object) ||
           Shiboken::Object::wasCreatedByPython(reinterpret_cast<SbkObject*>(object));
}

// Of an object that is no QObject, or has not got one yet, the Signal itself is given.
PyObject* get(PyObject* self, PyObject* object, PyObject*)
{
    const SignalData& data = signalData(self);
    QObject* const source = object && !data.attribute.isEmpty() ? qObjectOf(object) : nullptr;
    if (!source && object && !data.attribute.isEmpty() && isDead(object))
        return newSignalInstance(data, nullptr, Py_TYPE(object));
    if (!source)
        return Reference::borrow(self).release();
    addPythonMetaObject(source, Py_TYPE(object));
    Reference instance(newSignalInstance(data, source, Py_TYPE(object)));
    // The next time the object's dictionary answers.
    PyObject** const dictionary = _PyObject_GetDictPtr(object);
    if (instance && dictionary) {
        if (!*dictionary)
            *dictionary = PyDict_New();
        if (!*dictionary || PyDict_SetItemString(*dictionary, data.attribute.constData(), instance.get()) < 0)
            return nullptr;
    }
    return instance.release();
}

} // namespace

PyObject* newSignal(SignalData data)
{
    PyObject* const self = PySideSignalType.tp_alloc(&PySideSignalType, 0);
    if (self)
        reinterpret_cast<SignalObject*>(self)->data = new SignalData(std::move(data));
    return self;
}

namespace Signal {

void registerSignals(SbkObjectType* type, const QMetaObject* metaObject)
{
    std::vector<SignalData> found;
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        auto known = std::find_if(found.begin(), found.end(),
                                  [&](const SignalData& data) { return data.name == method.name(); });
        if (known == found.end())
            known = found.insert(found.end(), SignalData{method.name(), method.name(), {}});
        known->parameters.push_back(method.parameterTypes().join(','));
    }
    PyTypeObject* const pythonType = reinterpret_cast<PyTypeObject*>(type);
    for (SignalData& data : found) {
        const QByteArray name = data.attribute;
        const Reference signal(newSignal(std::move(data)));
        if (!signal || PyDict_SetItemString(pythonType->tp_dict, name.constData(), signal.get()) < 0)
            return;
    }
    PyType_Modified(pythonType);
    Shiboken::ObjectType::setSubTypeInitHook(type, &initQObjectSubType);
    initDynamicMetaObject(type, metaObject, 0);
}

void updateSourceObject(PyObject* object)
{
    PyObject* const dictionary = Py_TYPE(object)->tp_dict;
    PyObject* name;
    PyObject* value;
    std::vector<QByteArray> names;
    for (Py_ssize_t place = 0; PyDict_Next(dictionary, &place, &name, &value);)
        if (Py_TYPE(value) == &PySideSignalType && PyString_Check(name))
            names.push_back(PyString_AS_STRING(name));
    for (const QByteArray& each : names)
        if (!Reference(PyObject_GetAttrString(object, each.constData())))
            PyErr_Clear();
}

bool checkType(PyObject* object) { return Py_TYPE(object) == &PySideSignalInstanceType; }

} // namespace Signal

bool initSignalTypes(PyObject* module)
{
    static PyTypeObject metaType = staticType("PySide.QtCore.MetaSignal", PyType_Type.tp_basicsize);
    metaType.tp_itemsize = PyType_Type.tp_itemsize;
    metaType.tp_base = &PyType_Type;

    PySideSignalType.tp_dealloc = &deallocate;
    PySideSignalType.tp_new = &newDeclared;
    PySideSignalType.tp_str = &text;
    PySideSignalType.tp_call = &refuseCall;
    PySideSignalType.tp_descr_get = &get;
    if (PyType_Ready(&metaType) < 0)
        return false;
    Py_TYPE(&PySideSignalType) = &metaType;
    return addType(module, PySideSignalType) && addType(module, PySideSignalInstanceType);
}

} // namespace PySide

PyTypeObject PySideSignalType = PySide::staticType("PySide.QtCore.Signal", sizeof(PySide::SignalObject));
