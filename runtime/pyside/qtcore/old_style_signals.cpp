// Connections by text. The same names work on the class, with the sender first, and on an object, which is then the
// sender or the receiver.
#include "old_style_signals.h"

#include "connections.h"
#include "pysidesignal.h"
#include "qt_types.h"
#include "signal_objects.h"
#include "signalmanager.h"
#include "static_type.h"
#include "value_type.h"

namespace QtCore {

namespace {

constexpr char slotMark = '0' + QSLOT_CODE;
constexpr char signalMark = '0' + QSIGNAL_CODE;

// What connect and disconnect are asked for. All borrowed.
struct Request
{
    QObject* sender = nullptr;
    QByteArray signal;
    PyObject* callable = nullptr; // either this, or a receiver and a text
    PyObject* receiver = nullptr;
    const char* target = nullptr;
    Qt::ConnectionType type = Qt::AutoConnection;
};

bool isQObject(PyObject* object) { return isQObjectType(Py_TYPE(object)); }

class Reader
{
public:
    explicit Reader(PyObject* arguments) : m_arguments(arguments) {}

    PyObject* peek() const
    {
        return m_place < PyTuple_GET_SIZE(m_arguments) ? PyTuple_GET_ITEM(m_arguments, m_place) : nullptr;
    }
    PyObject* take() { return PyTuple_GET_ITEM(m_arguments, m_place++); }
    bool isText() const { return peek() && PyString_Check(peek()); }
    bool isAtEnd() const { return !peek(); }

private:
    PyObject* m_arguments;
    Py_ssize_t m_place = 0;
};

// A signal without a list of parameters is Python's alone, and takes any arguments.
QByteArray signatureOf(const char* signal)
{
    const QByteArray signature = QMetaObject::normalizedSignature(signal);
    return signature.isEmpty() || signature.contains('(') ? signature : signature + '(' + anyArguments + ')';
}

bool readSignal(const char* text, QByteArray& signal)
{
    if (*text != signalMark) {
        PyErr_SetString(PyExc_TypeError, "Use the function PySide.QtCore.SIGNAL on signals");
        return false;
    }
    signal = signatureOf(text + 1);
    return true;
}

// False, perhaps without an error, for what fits no signature.
bool readTarget(Reader& reader, PyObject* self, Request& request)
{
    if (reader.isAtEnd())
        return false;
    if (reader.isText() && self) {
        request.receiver = self;
        request.target = PyString_AS_STRING(reader.take());
    } else if (isQObject(reader.peek())) {
        request.receiver = reader.take();
        if (!reader.isText())
            return false;
        request.target = PyString_AS_STRING(reader.take());
    } else if (PyCallable_Check(reader.peek())) {
        request.callable = reader.take();
    } else {
        return false;
    }
    if (request.target && *request.target != slotMark && *request.target != signalMark) {
        PyErr_SetString(PyExc_TypeError, "Use the function PySide.QtCore.SLOT on slots");
        return false;
    }
    return true;
}

bool readRequest(PyObject* self, PyObject* arguments, Request& request)
{
    Reader reader(arguments);
    PyObject* sender = self;
    if (reader.peek() && isQObject(reader.peek())) {
        sender = reader.take();
    } else if (!self) {
        return false;
    } else {
        self = nullptr; // the sender: text that follows names no slot of it
    }
    if (!reader.isText() || !(request.sender = validQObjectOf(sender)))
        return false;
    if (!readSignal(PyString_AS_STRING(reader.take()), request.signal) || !readTarget(reader, self, request))
        return false;
    if (request.receiver && !Shiboken::Object::isValid(request.receiver))
        return false;
    if (!reader.isAtEnd()) {
        PyObject* const type = reader.take();
        const FromPython convert = Converter<Qt::ConnectionType>::accepts(type);
        if (!convert)
            return false;
        convert(type, &request.type);
    }
    return reader.isAtEnd();
}

QByteArray nameOf(const QByteArray& signature) { return signature.left(signature.indexOf('(')); }

bool hasMethod(const QObject* object, const QByteArray& signature)
{
    return object->metaObject()->indexOfMethod(signature.constData()) >= 0;
}

// A signal that an object of Python's does not have is given to it.
bool hasSignal(QObject* object, const QByteArray& signature)
{
    return object->metaObject()->indexOfSignal(signature.constData()) >= 0 || addSignal(object, signature);
}

bool connectRequest(const Request& request)
{
    if (!hasSignal(request.sender, request.signal))
        return false;
    if (request.callable)
        return connectToCallable(request.sender, request.signal, request.callable, request.type);
    return connectToText(request.sender, request.signal, request.receiver, request.target, request.type);
}

bool disconnectRequest(const Request& request)
{
    if (request.callable)
        return disconnectFromCallable(request.sender, request.signal, request.callable);
    QObject* const receiver = validQObjectOf(request.receiver);
    const QByteArray method = QMetaObject::normalizedSignature(request.target + 1);
    if (hasMethod(receiver, method))
        return disconnectFromMethod(request.sender, request.signal, receiver, method);
    const Reference named(PyObject_GetAttrString(request.receiver, nameOf(method).constData()));
    if (!named) {
        PyErr_Clear();
        return false;
    }
    return disconnectFromCallable(request.sender, request.signal, named.get());
}

// Arguments that fit nothing are shown with the object in front that the method was called on.
PyObject* refuse(const char* operation, PyObject* self, PyObject* arguments)
{
    if (PyErr_Occurred())
        return nullptr;
    const Reference first(self ? PyTuple_Pack(1, self) : PyTuple_New(0));
    const Reference all(first ? PySequence_Concat(first.get(), arguments) : nullptr);
    if (all)
        setWrongConnectArguments(operation, all.get());
    return nullptr;
}

// `bound` is the object that the method was read from, or the class.
template <bool (*operation)(const Request&)>
PyObject* run(const char* name, PyObject* bound, PyObject* arguments)
{
    PyObject* const self = isQObject(bound) ? bound : nullptr;
    Request request;
    if (!readRequest(self, arguments, request))
        return refuse(name, self, arguments);
    const bool isDone = operation(request);
    return PyErr_Occurred() ? nullptr : PyBool_FromLong(isDone);
}

PyObject* connect(PyObject* bound, PyObject* arguments) { return run<&connectRequest>("connect", bound, arguments); }
PyObject* disconnect(PyObject* bound, PyObject* arguments)
{
    return run<&disconnectRequest>("disconnect", bound, arguments);
}

// A method that is bound to the object it is read from, or to the class.
struct DualMethodObject
{
    PyObject_HEAD PyMethodDef* definition;
};

PyObject* bind(PyObject* self, PyObject* object, PyObject* type)
{
    PyMethodDef* const definition = reinterpret_cast<DualMethodObject*>(self)->definition;
    return PyCFunction_New(definition, object && object != Py_None ? object : type);
}

PyTypeObject dualMethodType = staticType("PySide.QtCore.method", sizeof(DualMethodObject));

bool addDualMethod(PyTypeObject* type, PyMethodDef* definition)
{
    DualMethodObject* const object = PyObject_New(DualMethodObject, &dualMethodType);
    const Reference owned(reinterpret_cast<PyObject*>(object));
    if (!object)
        return false;
    object->definition = definition;
    const bool isEntered = PyDict_SetItemString(type->tp_dict, definition->ml_name, owned.get()) == 0;
    PyType_Modified(type);
    return isEntered;
}

} // namespace

bool connectToText(QObject* sender, const QByteArray& signal, PyObject* receiver, const char* target,
                   Qt::ConnectionType type)
{
    QObject* const object = validQObjectOf(receiver);
    const QByteArray method = QMetaObject::normalizedSignature(target + 1);
    if (hasMethod(object, method) || (*target == signalMark && addSignal(object, method)))
        return connectToMethod(sender, signal, object, method, type);
    return *target == slotMark && connectToName(sender, signal, receiver, nameOf(method), type);
}

bool addOldStyleMethods(SbkObjectType* type)
{
    static PyMethodDef connectDefinition = {"connect", &connect, METH_VARARGS, nullptr};
    static PyMethodDef disconnectDefinition = {"disconnect", &disconnect, METH_VARARGS, nullptr};
    dualMethodType.tp_descr_get = &bind;
    dualMethodType.tp_dealloc = reinterpret_cast<destructor>(&PyObject_Del);
    PyTypeObject* const pythonType = &type->super.ht_type;
    return PyType_Ready(&dualMethodType) == 0 && addDualMethod(pythonType, &connectDefinition) &&
           addDualMethod(pythonType, &disconnectDefinition);
}

PyObject* emitOldStyle(PyObject* self, PyObject* arguments)
{
    QObject* const source = validQObjectOf(self);
    if (!source)
        return nullptr;
    PyObject* const signal = PyTuple_GET_SIZE(arguments) > 0 ? PyTuple_GET_ITEM(arguments, 0) : nullptr;
    QByteArray signature;
    if (!signal || !PyString_Check(signal)) {
        const char* signatures[] = {"str, ...", nullptr};
        Shiboken::setErrorAboutWrongArguments(arguments, "PySide.QtCore.QObject.emit", signatures);
        return nullptr;
    }
    if (!readSignal(PyString_AS_STRING(signal), signature))
        return nullptr;
    if (!SignalPlace(source, signature).exists())
        Py_RETURN_FALSE;
    Reference values(PyTuple_GetSlice(arguments, 1, PyTuple_GET_SIZE(arguments)));
    if (values && signature.endsWith('(' + QByteArray(anyArguments) + ')'))
        values = Reference(PyTuple_Pack(1, values.get()));
    if (!values || !SignalManager::instance().emitSignal(source, signature.constData(), values.get()))
        return nullptr;
    Py_RETURN_TRUE;
}

} // namespace QtCore
