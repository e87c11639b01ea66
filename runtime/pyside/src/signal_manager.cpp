// Meta-calls into Python classes, and emission by name.
#include "connections.h"
#include "signal_hub.h"
#include "signalmanager.h"
#include "value_type.h"

#include <QMetaProperty>

namespace PySide {

namespace {

// Does for the object's wrapper, if it has one, what C++ asks of its Python class. A script's error is printed.
template <class Function>
void withWrapper(QObject* object, Function function)
{
    if (!isPythonAlive())
        return;
    const Shiboken::GilState lock;
    const ErrorAside aside;
    SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(object);
    if (!wrapper)
        return;
    const Reference self = Reference::borrow(reinterpret_cast<PyObject*>(wrapper));
    function(self.get());
    if (PyErr_Occurred())
        PyErr_Print();
}

// A slot of a Python class, which C++ calls by its place in the meta-object.
void callPythonSlot(PyObject* self, const QMetaMethod& method, void** arguments)
{
    const ValueTypes types = parameterTypes(method);
    const Reference callable(PyObject_GetAttrString(self, method.name().constData()));
    const Reference tuple(callable ? argumentTuple(types, types.size(), arguments) : nullptr);
    const Reference result(tuple ? PyObject_CallObject(callable.get(), tuple.get()) : nullptr);
    if (result && arguments[0] && method.returnType() != QMetaType::Void)
        ValueType(method.typeName()).fromPython(result.get(), arguments[0]);
}

// A property of a Python class, which the descriptor in the class reads and writes.
void accessPythonProperty(PyObject* self, QMetaObject::Call call, const QMetaProperty& property, void* value)
{
    const ValueType type(property.typeName());
    if (call == QMetaObject::ReadProperty) {
        const Reference result(PyObject_GetAttrString(self, property.name()));
        if (result)
            type.fromPython(result.get(), value);
    } else if (const Reference given{type.toPython(value)}) {
        PyObject_SetAttrString(self, property.name(), given.get());
    }
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
    return !place.exists() || PySide::emitSignal(source, place, arguments);
}

bool SignalManager::isForProperty(QMetaObject::Call call)
{
    return call >= QMetaObject::ReadProperty && call <= QMetaObject::QueryPropertyUser;
}

int SignalManager::qt_metacall(QObject* object, QMetaObject::Call call, int id, void** arguments)
{
    const QMetaObject* const metaObject = object->metaObject();
    if (call == QMetaObject::ReadProperty || call == QMetaObject::WriteProperty)
        withWrapper(object,
                    [&](PyObject* self) { accessPythonProperty(self, call, metaObject->property(id), arguments[0]); });
    if (isForProperty(call))
        return id - metaObject->propertyCount();
    if (call != QMetaObject::InvokeMetaMethod)
        return id;
    const QMetaMethod method = metaObject->method(id);
    if (method.methodType() == QMetaMethod::Signal)
        QMetaObject::activate(object, id, arguments);
    else if (method.isValid())
        withWrapper(object, [&](PyObject* self) { callPythonSlot(self, method, arguments); });
    return id - metaObject->methodCount();
}

void SignalManager::clear() { SignalHub::cutAll(); }

} // namespace PySide
