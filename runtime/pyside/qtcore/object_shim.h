// QObject classes as Python makes them: virtual operations go to Python overrides, the meta-object is the Python
// class's, and the wrapper object is told when the QObject is destroyed.
#ifndef OBJECT_SHIM_H
#define OBJECT_SHIM_H

#include "class_meta.h"
#include "object_life.h"
#include "override_call.h"
#include "qt_types.h"
#include "signalmanager.h"

#include <QMetaMethod>

namespace QtCore {

// Whether a class between the object's own and the C++ one has that name.
bool isPythonClass(const QMetaObject* own, const QMetaObject* cpp, const char* className);

template <class Base>
class ObjectShim : public Base, public PythonQObject
{
public:
    using Base::Base;
    ~ObjectShim() override
    {
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(address()), address());
    }

    const QMetaObject* metaObject() const override
    {
        const QMetaObject* const own = pythonMetaObject();
        return own ? own : Base::metaObject();
    }

    void* qt_metacast(const char* className) override
    {
        return isPythonClass(metaObject(), &Base::staticMetaObject, className) ? static_cast<QObject*>(this)
                                                                               : Base::qt_metacast(className);
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = Base::qt_metacall(call, id, arguments);
        const QMetaObject& base = Base::staticMetaObject;
        const int inherited = SignalManager::isForProperty(call) ? base.propertyCount() : base.methodCount();
        return id < 0 ? id : SignalManager::qt_metacall(this, call, id + inherited, arguments);
    }

    bool event(QEvent* event) override
    {
        OverrideCall override(address(), className(), "event");
        if (override.isBlocked())
            return false;
        if (override.isFound())
            return override.callForBool(Crossing<QEvent*>::toPython(event));
        override.unlock();
        return Base::event(event);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        OverrideCall override(address(), className(), "eventFilter");
        if (override.isBlocked())
            return false;
        if (override.isFound()) {
            PyObject* const first = wrapperOf(watched);
            return override.callForBool(first, first ? Crossing<QEvent*>::toPython(event) : nullptr);
        }
        override.unlock();
        return Base::eventFilter(watched, event);
    }

    bool ownEvent(QEvent* event) override { return Base::event(event); }
    bool ownEventFilter(QObject* watched, QEvent* event) override { return Base::eventFilter(watched, event); }
    void ownTimerEvent(QTimerEvent* event) override { Base::timerEvent(event); }
    void ownChildEvent(QChildEvent* event) override { Base::childEvent(event); }
    void ownCustomEvent(QEvent* event) override { Base::customEvent(event); }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        dispatch(
            "timerEvent", [event] { return Crossing<QTimerEvent*>::toPython(event); },
            [=] { Base::timerEvent(event); });
    }
    void childEvent(QChildEvent* event) override
    {
        dispatch(
            "childEvent", [event] { return Crossing<QChildEvent*>::toPython(event); },
            [=] { Base::childEvent(event); });
    }
    void customEvent(QEvent* event) override
    {
        dispatch(
            "customEvent", [event] { return Crossing<QEvent*>::toPython(event); }, [=] { Base::customEvent(event); });
    }
    void connectNotify(const QMetaMethod& signal) override
    {
        dispatch(
            "connectNotify", [&] { return marked(signal); }, [&] { Base::connectNotify(signal); });
    }
    void disconnectNotify(const QMetaMethod& signal) override
    {
        dispatch(
            "disconnectNotify", [&] { return marked(signal); }, [&] { Base::disconnectNotify(signal); });
    }

    template <class ToPython, class Own>
    void dispatch(const char* method, ToPython toPython, Own own)
    {
        OverrideCall override(address(), className(), method);
        if (override.isBlocked())
            return;
        if (override.isFound())
            return override.call(toPython());
        override.unlock();
        own();
    }

    const void* constAddress() const { return static_cast<const QObject*>(this); }
    void* address() { return static_cast<QObject*>(this); }
    static const char* className() { return Base::staticMetaObject.className(); }

private:
    // As SIGNAL() writes it.
    static PyObject* marked(const QMetaMethod& signal)
    {
        return PyString_FromFormat("%d%s", QSIGNAL_CODE, signal.methodSignature().constData());
    }
};

// Makes a C++ object that is ready the one of `self`: false, with an error and the C++ object deleted, for a second
// one. Then come the parent, which may be null or None, and the keywords.
bool attach(PyObject* self, PyTypeObject* type, QObject* object, PythonQObject* pythonPart, PyObject* parent,
            PyObject* keywords, const char** ignoredKeywords = nullptr, unsigned ignoredCount = 0);

} // namespace QtCore

#endif
