// The type SignalInstance: connect, disconnect and emit of one object's signal.
#include "connections.h"
#include "declared_types.h"
#include "object_life.h"
#include "pysidesignal.h"
#include "qobject_wrappers.h"
#include "signal_objects.h"
#include "static_type.h"

#include <pyside_qtcore_python.h>

namespace PySide {

namespace {

const char* connectSignatures[] = {
    "PySide.QtCore.QObject, str, callable, PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    "PySide.QtCore.QObject, PySide.QtCore.QMetaMethod, PySide.QtCore.QObject, PySide.QtCore.QMetaMethod, "
    "PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    "PySide.QtCore.QObject, str, PySide.QtCore.QObject, str, PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    "PySide.QtCore.QObject, str, str, PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    "str, callable, PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    "str, PySide.QtCore.QObject, str, PySide.QtCore.Qt.ConnectionType = Qt.AutoConnection",
    nullptr};

const char* disconnectSignatures[] = {"PySide.QtCore.QObject, str, callable",
                                      "PySide.QtCore.QObject, str, PySide.QtCore.QObject, str", "str, callable",
                                      "str, PySide.QtCore.QObject, str", nullptr};

void refuse(const char* operation, QObject* source, const SignalInstanceData& data, PyObject* slot)
{
    const Reference arguments(Py_BuildValue("(NsO)", wrapperOf(source), data.signatures[0].constData(), slot));
    if (arguments)
        setWrongConnectArguments(operation, arguments.get());
}

PyObject* fail(const char* what, const SignalInstanceData& data)
{
    if (!PyErr_Occurred())
        PyErr_Format(PyExc_RuntimeError, "Failed to %s signal %s.", what, data.signatures[0].constData());
    return nullptr;
}

// None and text are tried, and found to be no slot.
bool isSlotLike(PyObject* object)
{
    return PyCallable_Check(object) || object == Py_None || PyString_Check(object) || PyUnicode_Check(object) ||
           Signal::checkType(object);
}

bool readConnectionType(PyObject* given, Qt::ConnectionType& type)
{
    if (!given)
        return true;
    PyTypeObject* const enumeration = Shiboken::Conversions::getPythonTypeObject("Qt::ConnectionType");
    if (!enumeration || !PyObject_TypeCheck(given, enumeration)) {
        PyErr_Format(PyExc_TypeError, "a connection's type must be a PySide.QtCore.Qt.ConnectionType, not %s",
                     Py_TYPE(given)->tp_name);
        return false;
    }
    type = static_cast<Qt::ConnectionType>(Shiboken::Enum::getValue(given));
    return true;
}

PyObject* connect(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    const SignalInstanceData& data = instanceData(self);
    PyObject* slot;
    PyObject* givenType = nullptr;
    static const char* names[] = {"slot", "type", nullptr};
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "O|O:connect", const_cast<char**>(names), &slot, &givenType))
        return nullptr;
    Qt::ConnectionType type = Qt::AutoConnection;
    QObject* const source = sourceOf(data);
    if (!source || !readConnectionType(givenType, type))
        return nullptr;
    bool isDone = false;
    if (!isSlotLike(slot)) {
        refuse("connect", source, data, slot);
    } else if (Signal::checkType(slot)) {
        QObject* const target = sourceOf(instanceData(slot));
        isDone = target && connectToMethod(source, data.signatures[0], target, instanceData(slot).signatures[0], type);
    } else if (PyCallable_Check(slot)) {
        isDone = connectToCallable(source, data.signatures[0], slot, type);
    }
    if (!isDone)
        return fail("connect", data);
    Py_RETURN_TRUE;
}

PyObject* disconnect(PyObject* self, PyObject* arguments)
{
    const SignalInstanceData& data = instanceData(self);
    PyObject* slot = nullptr;
    if (!PyArg_UnpackTuple(arguments, "disconnect", 0, 1, &slot))
        return nullptr;
    QObject* const source = sourceOf(data);
    if (!source)
        return nullptr;
    bool isDone = false;
    if (!slot || slot == Py_None) {
        isDone = disconnectAll(source, data.signatures[0]);
    } else if (!isSlotLike(slot)) {
        refuse("disconnect", source, data, slot);
    } else if (Signal::checkType(slot)) {
        QObject* const target = sourceOf(instanceData(slot));
        isDone = target && disconnectFromMethod(source, data.signatures[0], target, instanceData(slot).signatures[0]);
    } else if (PyCallable_Check(slot)) {
        isDone = disconnectFromCallable(source, data.signatures[0], slot);
    }
    if (!isDone)
        return fail("disconnect", data);
    Py_RETURN_TRUE;
}

PyObject* emitIt(PyObject* self, PyObject* arguments)
{
    const SignalInstanceData& data = instanceData(self);
    QObject* const source = sourceOf(data);
    if (!source)
        return nullptr;
    const SignalPlace signal(source, data.signatures[0]);
    if (!signal.exists())
        return fail("emit", data);
    if (!emitSignal(source, signal, arguments))
        return nullptr;
    Py_RETURN_TRUE;
}

// source.signal[int] or source.signal[int, str]: the overload with these parameters.
PyObject* overload(PyObject* self, PyObject* key)
{
    const SignalInstanceData& data = instanceData(self);
    const bool isSequence = PyTuple_Check(key) || PyList_Check(key);
    const QByteArray types = isSequence ? cppTypeNames(key) : cppTypeName(key);
    if (PyErr_Occurred())
        return nullptr;
    const QByteArray wanted = data.name + '(' + types + ')';
    for (const QByteArray& signature : data.signatures) {
        if (signature == wanted)
            return newSignalInstance({data.name, data.name, {types}}, data.source,
                                     reinterpret_cast<PyTypeObject*>(data.sourceType.get()));
    }
    return PyErr_Format(PyExc_IndexError, "Signature %s not found for signal: %s", wanted.constData(),
                        data.name.constData());
}

void deallocate(PyObject* self)
{
    delete reinterpret_cast<SignalInstanceObject*>(self)->data;
    PyObject_Del(self);
}

PyMethodDef methods[] = {{"connect", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&connect)),
                          METH_VARARGS | METH_KEYWORDS, nullptr},
                         {"disconnect", &disconnect, METH_VARARGS, nullptr},
                         {"emit", &emitIt, METH_VARARGS, nullptr},
                         {}};

PyMappingMethods mapping = {nullptr, &overload, nullptr};

PyTypeObject makeType()
{
    PyTypeObject type = staticType("PySide.QtCore.SignalInstance", sizeof(SignalInstanceObject));
    type.tp_dealloc = &deallocate;
    type.tp_methods = methods;
    type.tp_as_mapping = &mapping;
    return type;
}

} // namespace

PyObject* newSignalInstance(const SignalData& signal, QObject* source, PyTypeObject* sourceType)
{
    SignalInstanceObject* const self = PyObject_New(SignalInstanceObject, &PySideSignalInstanceType);
    if (!self)
        return nullptr;
    self->data = new SignalInstanceData;
    self->data->source = guarded(source);
    self->data->sourceType = Reference::borrow(reinterpret_cast<PyObject*>(sourceType));
    self->data->name = signal.name;
    for (std::size_t i = 0; i < signal.parameters.size(); ++i)
        self->data->signatures.push_back(signal.signature(i));
    return reinterpret_cast<PyObject*>(self);
}

QObject* sourceOf(const SignalInstanceData& instance)
{
    QObject* const source = isBeingDeleted(instance.source) ? nullptr : instance.source.data();
    if (!source)
        PyErr_Format(PyExc_RuntimeError, "Internal C++ object (%s) already deleted.",
                     reinterpret_cast<PyTypeObject*>(instance.sourceType.get())->tp_name);
    return source;
}

void setWrongConnectArguments(const char* operation, PyObject* arguments)
{
    const bool isConnect = std::strcmp(operation, "connect") == 0;
    const QByteArray name = QByteArray("PySide.QtCore.QObject.") + operation;
    Shiboken::setErrorAboutWrongArguments(arguments, name.constData(),
                                          isConnect ? connectSignatures : disconnectSignatures);
}

} // namespace PySide

PyTypeObject PySideSignalInstanceType = PySide::makeType();
