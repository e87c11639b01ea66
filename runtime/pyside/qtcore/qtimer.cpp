// QTimer: single and repeated timers.
#include "connections.h"
#include "object_shim.h"
#include "old_style_signals.h"

namespace QtCore {

namespace {

// A timer of its own, which goes when it has fired.
QTimer* newSingleShot(int interval)
{
    QTimer* const timer = new QTimer;
    timer->setSingleShot(true);
    timer->setInterval(interval);
    return timer;
}

void startSingleShot(QTimer* timer, bool isConnected)
{
    if (isConnected) {
        QObject::connect(timer, &QTimer::timeout, timer, &QObject::deleteLater);
        timer->start();
        return;
    }
    delete timer;
    if (!PyErr_Occurred())
        PyErr_SetString(PyExc_RuntimeError, "Failed to connect signal timeout().");
}

void singleShotMember(int interval, QObject& receiver, const char* member)
{
    QTimer* const timer = newSingleShot(interval);
    startSingleShot(timer, connectToText(timer, "timeout()", Reference(wrapperOf(&receiver)).get(), member));
}

void singleShotCallable(int interval, Callable callable)
{
    const Reference called = Signal::checkType(callable.object)
                                 ? Reference(PyObject_GetAttrString(callable.object, "emit"))
                                 : Reference::borrow(callable.object);
    if (!called)
        return;
    QTimer* const timer = newSingleShot(interval);
    startSingleShot(timer, connectToCallable(timer, "timeout()", called.get(), Qt::AutoConnection));
}

constexpr auto members =
    memberTable(overloads("start", signature(operation<overload<void()>(&QTimer::start)>),
                          signature(operation<overload<void(int)>(&QTimer::start)>)),
                noArguments("stop", operation<&QTimer::stop>), noArguments("isActive", operation<&QTimer::isActive>),
                noArguments("interval", operation<&QTimer::interval>),
                one("setInterval", operation<overload<void(int)>(&QTimer::setInterval)>),
                noArguments("isSingleShot", operation<&QTimer::isSingleShot>),
                one("setSingleShot", operation<&QTimer::setSingleShot>),
                noArguments("remainingTime", operation<&QTimer::remainingTime>),
                noArguments("timerId", operation<&QTimer::timerId>),
                row("singleShot", Form::Positional, signature(lockedStaticOperation<&singleShotMember>),
                    signature(lockedStaticOperation<&singleShotCallable>)));

} // namespace

template <>
ClassTable tableOf<QTimer>()
{
    return qObjectClass<QTimer, QObject, members>();
}

} // namespace QtCore
