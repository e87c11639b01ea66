// The virtual operations of Qt objects, which Python subclasses may override.
#ifndef BINDING_QT_DISPATCH_H
#define BINDING_QT_DISPATCH_H

#include "notified_signal.h"
#include "qt_converters.h"
#include "virtual_dispatch.h"

#include <QCoreApplication>

namespace binding {

// How objects of a class come into being and end: class_registration.h.
template <class T, class = void>
struct LifeOf;

// For an object whose destruction begins: a deletion that was asked for must not begin another. What scripts are told
// of the end may run an event loop.
inline void cancelDeletion(QObject* object) { QCoreApplication::removePostedEvents(object, QEvent::DeferredDelete); }

template <class T>
class QtDispatch : public Wrapper<T>
{
public:
    using Wrapper<T>::Wrapper;
    ~QtDispatch() override { cancelDeletion(this); }

    bool event(QEvent* event) override
    {
        return handOn(
            "event", [&] { return isDropped(*event) || T::event(event); }, event);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        return handOn(
            "eventFilter", [&] { return T::eventFilter(watched, event); }, watched, event);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        handOn(
            "timerEvent", [&] { T::timerEvent(event); }, event);
    }
    void childEvent(QChildEvent* event) override
    {
        handOn(
            "childEvent", [&] { T::childEvent(event); }, event);
    }
    void customEvent(QEvent* event) override
    {
        handOn(
            "customEvent", [&] { T::customEvent(event); }, event);
    }
    void connectNotify(NotifiedSignal signal) override
    {
        handOn(
            "connectNotify", [&] { T::connectNotify(signal); }, signalText(signal).constData());
    }
    void disconnectNotify(NotifiedSignal signal) override
    {
        handOn(
            "disconnectNotify", [&] { T::disconnectNotify(signal); }, signalText(signal).constData());
    }

    // What deleteLater() asked for is as if a script dropped the object: a call may be using it.
    bool isDropped(const QEvent& event)
    {
        const QObject* const address = this;
        if (event.type() != QEvent::DeferredDelete || !isPythonAlive())
            return false;
        const Shiboken::GilState lock;
        if (!Shiboken::BindingManager::instance().hasWrapper(address))
            return false;
        LifeOf<T>::drop(static_cast<T*>(this));
        return true;
    }

    template <class Own, class... A>
    auto handOn(const char* method, const Own& own, A... arguments)
    {
        const QObject* const address = this;
        return dispatch(address, Wrapped<T>::name, method, own, arguments...);
    }
};

} // namespace binding

#endif
