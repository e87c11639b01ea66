// QTimer: single and repeated timers.
#include "class_registration.h"
#include "connections.h"
#include "old_style_signals.h"
#include "qobject_constructor.h"

namespace QtCore {

namespace {

void start(QTimer& timer, std::optional<int> interval)
{
    if (interval)
        timer.start(*interval);
    else
        timer.start();
}
void setInterval(QTimer& timer, int interval) { timer.setInterval(interval); }

// A timer of its own, which goes when it has fired.
QTimer* newSingleShot(int interval)
{
    QTimer* const timer = new QTimer;
    timer->setSingleShot(true);
    timer->setInterval(interval);
    return timer;
}

// singleShot(milliseconds, callable) and singleShot(milliseconds, receiver, SLOT(...)).
PyObject* singleShot(PyObject*, PyObject* arguments)
{
    static const char* const signatures[] = {"int, PySide.QtCore.QObject, str", "int, callable", nullptr};
    PyObject* interval;
    PyObject* receiver;
    PyObject* member = nullptr;
    if (!PyArg_UnpackTuple(arguments, "singleShot", 2, 3, &interval, &receiver, &member))
        return nullptr;
    const PythonToCppFunc convert = Crossing<int>::accepts(interval);
    const bool isMember = member && PyString_Check(member) && isQObjectType(Py_TYPE(receiver));
    if (!convert || !(isMember || (!member && PyCallable_Check(receiver)))) {
        Shiboken::setErrorAboutWrongArguments(arguments, "PySide.QtCore.QTimer.singleShot",
                                              const_cast<const char**>(signatures));
        return nullptr;
    }
    int milliseconds = 0;
    convert(interval, &milliseconds);
    if (PyErr_Occurred() || (isMember && !Shiboken::Object::isValid(receiver)))
        return nullptr;
    QTimer* const timer = newSingleShot(milliseconds);
    const bool isConnected = isMember ? connectToText(timer, "timeout()", receiver, PyString_AS_STRING(member))
                                      : connectToCallable(timer, "timeout()", receiver, Qt::AutoConnection);
    if (!isConnected) {
        delete timer;
        if (!PyErr_Occurred())
            PyErr_SetString(PyExc_RuntimeError, "Failed to connect signal timeout().");
        return nullptr;
    }
    QObject::connect(timer, &QTimer::timeout, timer, &QObject::deleteLater);
    timer->start();
    Py_RETURN_NONE;
}

PyMethodDef methods[] = {method<&start>("start"),
                         method<&QTimer::stop>("stop"),
                         method<&QTimer::isActive>("isActive"),
                         method<&QTimer::interval>("interval"),
                         method<&setInterval>("setInterval"),
                         method<&QTimer::isSingleShot>("isSingleShot"),
                         method<&QTimer::setSingleShot>("setSingleShot"),
                         method<&QTimer::remainingTime>("remainingTime"),
                         method<&QTimer::timerId>("timerId"),
                         {"singleShot", &singleShot, METH_VARARGS | METH_STATIC, nullptr},
                         {}};

SbkObjectType type = {};

} // namespace

bool registerQTimer(PyObject* module)
{
    if (!registerClass<QTimer, ObjectShim<QTimer>>(module, type, methods, &initialiseQObject<QTimer>, &deleteQObject,
                                                   &qObjectTypeObject))
        return false;
    finishQObjectClass<QTimer>(type);
    Signal::registerSignals(&type, &QTimer::staticMetaObject);
    return true;
}

} // namespace QtCore
