// Connections between the signals of QObjects and C++ methods or Python callables.
#include "connections.h"

#include "dynamic_meta_object.h"
#include "object_life.h"
#include "qobject_wrappers.h"
#include "signal_hub.h"

namespace PySide {

namespace {

// A method of C++'s that a built-in method object stands for, if it fits the signal.
struct BoundCppMethod
{
    QObject* receiver = nullptr;
    int index = -1;
};

BoundCppMethod cppMethodOf(PyObject* callable, const QMetaMethod& signal)
{
    if (!PyCFunction_Check(callable))
        return {};
    QObject* const receiver = PyCFunction_GET_SELF(callable) ? qObjectOf(PyCFunction_GET_SELF(callable)) : nullptr;
    if (!receiver)
        return {};
    const QByteArray name = reinterpret_cast<PyCFunctionObject*>(callable)->m_ml->ml_name;
    const QMetaObject* const metaObject = receiver->metaObject();
    BoundCppMethod best;
    int most = -1;
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        const bool isTarget = method.methodType() == QMetaMethod::Slot || method.methodType() == QMetaMethod::Signal;
        if (isTarget && method.name() == name && method.parameterCount() > most &&
            QMetaObject::checkConnectArgs(signal, method)) {
            best = {receiver, i};
            most = method.parameterCount();
        }
    }
    return best;
}

SignalHub& hubOf(QObject* sender)
{
    std::unique_ptr<SignalHub>& hub = ObjectLife::of(sender).hub;
    if (!hub)
        hub.reset(new SignalHub(sender));
    return *hub;
}

// Qt tells the sender of these, which may run any code.
bool connectMethods(QObject* sender, int signal, QObject* receiver, int method, Qt::ConnectionType type)
{
    const UnlockedFor unlocked(sender, receiver);
    return static_cast<bool>(QMetaObject::connect(sender, signal, receiver, method, type));
}

bool disconnectMethods(QObject* sender, int signal, QObject* receiver, int method)
{
    const UnlockedFor unlocked(sender, receiver);
    return receiver ? QMetaObject::disconnectOne(sender, signal, receiver, method)
                    : QMetaObject::disconnect(sender, signal, nullptr, method);
}

// Signals count as slots where they are connected to.
int methodIndex(const QObject* receiver, const QByteArray& signature)
{
    const int slot = receiver->metaObject()->indexOfSlot(signature.constData());
    return slot >= 0 ? slot : receiver->metaObject()->indexOfSignal(signature.constData());
}

} // namespace

SignalPlace::SignalPlace(const QObject* sender, const QByteArray& signature)
    : index(sender->metaObject()->indexOfSignal(signature.constData()))
{
    const QMetaObject* const metaObject = sender->metaObject();
    method = metaObject->method(index);
    while (index >= 0 && metaObject->method(index).attributes() & QMetaMethod::Cloned)
        --index;
}

bool connectToCallable(QObject* sender, const QByteArray& signature, PyObject* callable, Qt::ConnectionType type)
{
    const SignalPlace signal(sender, signature);
    if (!signal.exists())
        return false;
    const BoundCppMethod cpp = cppMethodOf(callable, signal.method);
    if (cpp.receiver)
        return connectMethods(sender, signal.index, cpp.receiver, cpp.index, type);
    SignalHub& hub = hubOf(sender);
    if (type & Qt::UniqueConnection && hub.isConnected(signal.index, callable))
        return false;
    return hub.connectSignal(signal.index, PythonCallable(callable), parameterTypes(signal.method), type);
}

bool disconnectFromCallable(QObject* sender, const QByteArray& signature, PyObject* callable)
{
    const SignalPlace signal(sender, signature);
    if (!signal.exists())
        return false;
    const BoundCppMethod cpp = cppMethodOf(callable, signal.method);
    if (cpp.receiver)
        return disconnectMethods(sender, signal.index, cpp.receiver, cpp.index);
    const ObjectLife* const life = ObjectLife::find(sender);
    return life && life->hub && life->hub->disconnectSignal(signal.index, callable);
}

bool connectToMethod(QObject* sender, const QByteArray& signature, QObject* receiver, const QByteArray& method,
                     Qt::ConnectionType type)
{
    const SignalPlace signal(sender, signature);
    const int target = methodIndex(receiver, method);
    return signal.exists() && target >= 0 &&
           QMetaObject::checkConnectArgs(signal.method, receiver->metaObject()->method(target)) &&
           connectMethods(sender, signal.index, receiver, target, type);
}

bool disconnectFromMethod(QObject* sender, const QByteArray& signature, QObject* receiver, const QByteArray& method)
{
    const SignalPlace signal(sender, signature);
    const int target = methodIndex(receiver, method);
    return signal.exists() && target >= 0 && disconnectMethods(sender, signal.index, receiver, target);
}

bool connectToName(QObject* sender, const QByteArray& signature, PyObject* receiver, const QByteArray& name,
                   Qt::ConnectionType type)
{
    const SignalPlace signal(sender, signature);
    return signal.exists() && hubOf(sender).connectSignal(signal.index, PythonCallable(receiver, name),
                                                          parameterTypes(signal.method), type);
}

bool disconnectAll(QObject* sender, const QByteArray& signature)
{
    const SignalPlace signal(sender, signature);
    const QPointer<QObject> guard = guarded(sender);
    if (!signal.exists() || !disconnectMethods(sender, signal.index, nullptr, -1))
        return false;
    const ObjectLife* const life = guard ? ObjectLife::find(sender) : nullptr;
    if (life && life->hub)
        life->hub->forgetSignal(signal.index);
    return true;
}

bool emitSignal(QObject* sender, const SignalPlace& signal, PyObject* arguments)
{
    const int given = static_cast<int>(PyTuple_GET_SIZE(arguments));
    const int taken = signal.method.parameterCount();
    if (given != taken) {
        // The count that is named has always included the signal itself, which must not make it look right.
        PyErr_Format(PyExc_TypeError, "%s only accepts %d arguments, %d given!",
                     signal.method.methodSignature().constData(), taken, given + 1 == taken ? given : given + 1);
        return false;
    }
    CallArguments values(parameterTypes(sender->metaObject()->method(signal.index)));
    if (!values.isComplete()) {
        PyErr_Format(PyExc_TypeError, "Values of the C++ type '%s' have no Python counterpart",
                     values.missing().constData());
        return false;
    }
    if (!values.fromPython(arguments))
        return false;
    void** const data = values.data();
    const UnlockedFor unlocked(sender);
    QMetaObject::activate(sender, signal.index, data);
    return true;
}

bool addSignal(QObject* sender, const QByteArray& signature)
{
    PythonQObject* const own = dynamic_cast<PythonQObject*>(sender);
    if (!own || signature.isEmpty() || signature.indexOf('(') <= 0 || !signature.endsWith(')'))
        return false;
    const QMetaObject* const base = sender->metaObject();
    own->setPythonMetaObject(std::make_shared<DynamicMetaObject>(base, base->className(),
                                                                 DynamicMembers{{{signature, QByteArray()}}, {}, {}}));
    return true;
}

} // namespace PySide
