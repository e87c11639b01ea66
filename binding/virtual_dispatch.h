// The wrapper subclasses' common bases: a library object that Python made tells the runtime when it goes, and hands its
// virtual operations to Python overrides.
#ifndef BINDING_VIRTUAL_DISPATCH_H
#define BINDING_VIRTUAL_DISPATCH_H

#include "converter.h"

#include <QChildEvent>
#include <QEvent>
#include <QTimerEvent>
#include <fundo/qt_version.h>

namespace binding {

// Tells the runtime that the library object at the address, made from Python, is being destroyed. Any thread.
void objectDestroyed(const void* object);

// A library object that Python makes, by calling its class or by copying.
template <class T>
class Wrapper : public T
{
public:
    using T::T;
    Wrapper() = default;
    explicit Wrapper(const T& other) : T(other) {}
    ~Wrapper() override { objectDestroyed(this); }
};

// One call of a Python override from the library. Holds the interpreter's lock while it lives, or until unlock().
class OverrideCall
{
public:
    // Looks for an override of `method` on the wrapper object of `object`. `className` is the class's full Python name.
    OverrideCall(const void* object, const char* className, const char* method);
    ~OverrideCall();
    OverrideCall(const OverrideCall&) = delete;
    OverrideCall& operator=(const OverrideCall&) = delete;

    // A Python error was pending: nothing may be called.
    bool isBlocked() const { return m_blocked; }
    bool isFound() const { return m_override != nullptr; }
    void unlock() { m_lock.release(); }

    // Call the override; its error is printed. The reference to the arguments is taken over. The event, which may be
    // null, is made invalid afterwards when its wrapper object was made for this call.
    void call(PyObject* arguments, PyObject* event = nullptr);
    // The same for a bool result. Anything else is warned about and counts as false.
    bool callForBool(PyObject* arguments, PyObject* event = nullptr);

private:
    PyObject* run(PyObject* arguments);
    bool boolFrom(PyObject* result) const;

    Shiboken::GilState m_lock;
    const char* m_className;
    const char* m_method;
    bool m_blocked;
    PyObject* m_override;
};

// A handle whose isNull() a Python subclass may override.
template <class T>
class NullDispatch : public Wrapper<T>
{
public:
    using Wrapper<T>::Wrapper;

    bool isNull() const override
    {
        OverrideCall override(this, Wrapped<T>::name, "isNull");
        if (override.isBlocked())
            return false;
        if (override.isFound())
            return override.callForBool(PyTuple_New(0));
        override.unlock();
        return T::isNull();
    }
};

PyObject* eventToPython(QEvent* event);
PyObject* timerEventToPython(QTimerEvent* event);
PyObject* childEventToPython(QChildEvent* event);
PyObject* qObjectToPython(QObject* object);

// A Qt object whose event operations a Python subclass may override.
template <class T>
class QtDispatch : public Wrapper<T>
{
public:
    using Wrapper<T>::Wrapper;

    bool event(QEvent* event) override
    {
        OverrideCall override(this, Wrapped<T>::name, "event");
        if (override.isBlocked())
            return false;
        if (override.isFound()) {
            PyObject* const argument = eventToPython(event);
            return override.callForBool(Py_BuildValue("(N)", argument), argument);
        }
        override.unlock();
        return T::event(event);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        OverrideCall override(this, Wrapped<T>::name, "eventFilter");
        if (override.isBlocked())
            return false;
        if (override.isFound()) {
            PyObject* const argument = eventToPython(event);
            return override.callForBool(Py_BuildValue("(NN)", qObjectToPython(watched), argument), argument);
        }
        override.unlock();
        return T::eventFilter(watched, event);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        dispatchEvent("timerEvent", event, &timerEventToPython, [&] { T::timerEvent(event); });
    }
    void childEvent(QChildEvent* event) override
    {
        dispatchEvent("childEvent", event, &childEventToPython, [&] { T::childEvent(event); });
    }
    void customEvent(QEvent* event) override
    {
        dispatchEvent("customEvent", event, &eventToPython, [&] { T::customEvent(event); });
    }
    void connectNotify(Fundo::qt::NotifiedSignal signal) override
    {
        dispatchSignal("connectNotify", signal, [&] { T::connectNotify(signal); });
    }
    void disconnectNotify(Fundo::qt::NotifiedSignal signal) override
    {
        dispatchSignal("disconnectNotify", signal, [&] { T::disconnectNotify(signal); });
    }

private:
    template <class Event, class Own>
    void dispatchEvent(const char* method, Event* event, PyObject* (*toPython)(Event*), Own own)
    {
        OverrideCall override(this, Wrapped<T>::name, method);
        if (override.isBlocked())
            return;
        if (override.isFound()) {
            PyObject* const argument = toPython(event);
            return override.call(Py_BuildValue("(N)", argument), argument);
        }
        override.unlock();
        own();
    }

    template <class Own>
    void dispatchSignal(const char* method, Fundo::qt::NotifiedSignal signal, Own own)
    {
        OverrideCall override(this, Wrapped<T>::name, method);
        if (override.isBlocked())
            return;
        if (override.isFound())
            return override.call(Py_BuildValue("(s)", Fundo::qt::signalText(signal).constData()));
        override.unlock();
        own();
    }
};

} // namespace binding

#endif
