// Meta-calls into Python classes, and emission by name.
#include "connections.h"
#include "signal_hub.h"
#include "signalmanager.h"
#include "value_type.h"

namespace PySide {

namespace {

// A slot of a Python class, which C++ calls by its place in the meta-object.
void callPythonSlot(QObject* object, const QMetaMethod& method, void** arguments)
{
    if (!isPythonAlive())
        return;
    const Shiboken::GilState lock;
    const ErrorAside aside;
    SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(object);
    if (!wrapper)
        return;
    const ValueTypes types = parameterTypes(method);
    const Reference self = Reference::borrow(reinterpret_cast<PyObject*>(wrapper));
    const Reference callable(PyObject_GetAttrString(self.get(), method.name().constData()));
    const Reference tuple(callable ? argumentTuple(types, types.size(), arguments) : nullptr);
    const Reference result(tuple ? PyObject_CallObject(callable.get(), tuple.get()) : nullptr);
    if (result && arguments[0] && method.returnType() != QMetaType::Void)
        ValueType(method.typeName()).fromPython(result.get(), arguments[0]);
    if (PyErr_Occurred())
        PyErr_Print();
}

} // namespace

SignalManager& SignalManager::instance()
{
    static SignalManager manager;
    return manager;
}

bool SignalManager::emitSignal(QObject* source, const char* signal, PyObject* arguments)
{
    const QByteArray signature = QMetaObject::normalizedSignature(*signal == '0' + QSIGNAL_CODE ? signal + 1 : signal);
    const SignalPlace place(source, signature);
    return !place.exists() || PySide::emitSignal(source, place.method, arguments);
}

int SignalManager::qt_metacall(QObject* object, QMetaObject::Call call, int id, void** arguments)
{
    if (call != QMetaObject::InvokeMetaMethod)
        return id;
    const QMetaObject* const metaObject = object->metaObject();
    const QMetaMethod method = metaObject->method(id);
    if (method.methodType() == QMetaMethod::Signal)
        QMetaObject::activate(object, id, arguments);
    else if (method.isValid())
        callPythonSlot(object, method, arguments);
    return id - metaObject->methodCount();
}

void SignalManager::clear() { SignalHub::cutAll(); }

} // namespace PySide
