// QObject classes as Python makes them: virtual operations go to Python overrides, the meta-object is the Python
// class's, and the wrapper object is told when the QObject is destroyed.
#ifndef OBJECT_SHIM_H
#define OBJECT_SHIM_H

#include "class_meta.h"
#include "defaults.h"
#include "pyside.h"
#include "signalmanager.h"

#include <atomic>

namespace QtCore {

// Whether a class between the object's own and the C++ one has that name.
bool isPythonClass(const QMetaObject* own, const QMetaObject* cpp, const char* className);

// What every QObject that Python makes has.
class ShimPart : public PythonQObject
{
public:
    explicit ShimPart(const Parent& parent = Parent()) : m_parent(parent) {}
    // Set once the wrapper object knows its QObject: the parent is told of its child, and may look at it.
    Parent givenParent() const { return m_parent; }

    // Whether its Python class is derived from the wrapped one, and may override. Any thread.
    bool isOfPythonClass() const { return m_isOfPythonClass.load(std::memory_order_relaxed); }
    void setOfPythonClass() { m_isOfPythonClass.store(true, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_isOfPythonClass{false};
    const Parent m_parent; // good only until the constructor's call has returned
};

template <class Base>
class ObjectShim : public QtDispatch<Base>, public ShimPart
{
public:
    using QtDispatch<Base>::QtDispatch;
    explicit ObjectShim(const Parent& parent) : ShimPart(parent) {}
    ~ObjectShim() override
    {
        cancelDeletion(this);
        objectDestroyed(static_cast<QObject*>(this)); // while there is the Python part
        this->setParent(nullptr);                     // which may be among the objects destroyed with it
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

    bool ownEvent(QEvent* event) override { return Base::event(event); }
    bool ownEventFilter(QObject* watched, QEvent* event) override { return Base::eventFilter(watched, event); }
    void ownTimerEvent(QTimerEvent* event) override { Base::timerEvent(event); }
    void ownChildEvent(QChildEvent* event) override { Base::childEvent(event); }
    void ownCustomEvent(QEvent* event) override { Base::customEvent(event); }
};

// An optional parent, then keywords that are properties and signals.
template <class Shim>
constexpr auto madeWithParent = constructors(Form::Uncounted,
                                             signature(constructs<Shim, Parent>, optional<NoParent>("parent")));

template <class T>
bool finishQObjectClass(SbkObjectType* type)
{
    Shiboken::ObjectType::setSubTypeInitHook(type, &initQObjectSubType);
    initDynamicMetaObject(type, &T::staticMetaObject, sizeof(T));
    return true;
}

// A QObject class whose base class is Base, QObject itself with void.
template <class T, class Base, const auto& members, class Shim = ObjectShim<T>,
          const auto& constructors = madeWithParent<Shim>>
ClassTable qObjectClass()
{
    ClassTable table = objectClass<T, Shim, constructors, members>();
    if constexpr (!std::is_void_v<Base>)
        table.base = wrapperType<Base>();
    table.metaObject = &T::staticMetaObject;
    table.pointerToPython = [](const void* object) {
        return wrapperOf(static_cast<QObject*>(const_cast<void*>(object)));
    };
    table.finish = &finishQObjectClass<T>;
    return table;
}

} // namespace QtCore

#endif
