// QObject: what every Qt object can do for a script.
#include "object_shim.h"
#include "old_style_signals.h"
#include "signal_hub.h"
#include "signal_objects.h"

#include <algorithm>

namespace QtCore {

namespace {

// --- Family ---------------------------------------------------------------------------------------------------------

bool isAncestor(const QObject& object, const QObject* candidate)
{
    for (; candidate; candidate = candidate->parent())
        if (candidate == &object)
            return true;
    return false;
}

void setParent(PyObject* self, QObject& object, QObject* parent)
{
    if (isAncestor(object, parent)) {
        PyErr_SetString(PyExc_ValueError, "a QObject cannot become its own ancestor");
        return;
    }
    const Reference parentWrapper(wrapperOf(parent));
    if (!parentWrapper)
        return;
    if (object.thread() == &object) {
        PyErr_SetString(PyExc_RuntimeError, "a QThread that lives in itself cannot have a parent");
        return;
    }
    if (object.parent() && !object.parent()->children().contains(&object)) {
        PyErr_SetString(PyExc_RuntimeError, "a QObject cannot get a parent while another one is told of its loss");
        return;
    }
    // Parents are told, which may run any code.
    const InUse used(&object);
    const InUse usedParent(parent);
    {
        const Unlocked unlocked;
        object.setParent(parent);
    }
    if (isBeingDeleted(&object) || (parent && object.parent() != parent && object.thread() == parent->thread()))
        return; // somebody told wanted otherwise
    if (object.parent() == parent)
        Shiboken::Object::setParent(parentWrapper.get(), self);
    else
        PyErr_SetString(PyExc_RuntimeError, "a QObject's parent must live in the same thread");
}

void deleteLater(QObject& object)
{
    if (!isQtsOwnThread(&object))
        object.deleteLater();
}

bool isBelow(const QObject& object, const QObject* descendant)
{
    return descendant && descendant != &object && isAncestor(object, descendant);
}

// A thread cannot wait for its own end, so none is ever deleted by what lives in it: one below the object stays behind,
// without a parent, and is kept.
void moveToThread(PyObject* self, QObject& object, QThread* thread)
{
    if (isBelow(object, thread) && !object.parent() && object.thread() == QThread::currentThread()) {
        const Reference other(wrapperOf(thread));
        if (!other)
            return;
        setParent(other.get(), *thread, nullptr);
        Shiboken::Object::keepReference(reinterpret_cast<SbkObject*>(self), "moveToThread", other.get());
    }
    const InUse used(&object);
    const Unlocked unlocked;
    object.moveToThread(thread);
}

// A child that neither Python nor another wrapper object owns lives as long as its parent.
Reference childWrapper(PyObject* self, QObject* child)
{
    Reference wrapper(wrapperOf(child));
    SbkObject* const known = reinterpret_cast<SbkObject*>(wrapper.get());
    if (known && !Shiboken::Object::hasOwnership(known) && !Shiboken::Object::hasParentInfo(known))
        Shiboken::Object::setParent(self, wrapper.get());
    return wrapper;
}

// Without those whose destructor runs, for slots that are told of it.
QObjectList livingChildren(const QObject& object)
{
    QObjectList list = object.children();
    list.erase(std::remove_if(list.begin(), list.end(), [](QObject* child) { return !guarded(child); }), list.end());
    return list;
}

PyObject* children(PyObject* self, QObject& object)
{
    Reference list(PyList_New(0));
    for (QObject* child : livingChildren(object)) {
        const Reference wrapper = childWrapper(self, child);
        if (!wrapper || !list || PyList_Append(list.get(), wrapper.get()) < 0)
            return nullptr;
    }
    return list.release();
}

// A type, or a tuple of types, as isinstance() takes it.
bool isSearchable(PyObject* type)
{
    if (PyType_Check(type) || PyClass_Check(type) || PyTuple_Check(type))
        return true;
    PyErr_Format(PyExc_TypeError, "a type to look for is needed, not %s", Py_TYPE(type)->tp_name);
    return false;
}

// Visits what lies below, until the visitor answers false.
template <class Visit>
bool visitDescendants(PyObject* self, QObject& object, const Visit& visit)
{
    for (QObject* child : livingChildren(object)) {
        const Reference wrapper = childWrapper(self, child);
        if (!wrapper || !visit(wrapper.get(), *child) || !visitDescendants(wrapper.get(), *child, visit))
            return false;
    }
    return true;
}

struct Search
{
    PyObject* type;
    QString name;

    bool finds(PyObject* wrapper, const QObject& child) const
    {
        return (name.isEmpty() || child.objectName() == name) && PyObject_IsInstance(wrapper, type) == 1;
    }
};

PyObject* findChild(PyObject* self, QObject& object, PyObject* type, const QString& name)
{
    if (!isSearchable(type))
        return nullptr;
    const Search search = {type, name};
    Reference found = Reference::borrow(Py_None);
    visitDescendants(self, object, [&](PyObject* wrapper, const QObject& child) {
        if (!search.finds(wrapper, child))
            return !PyErr_Occurred();
        found = Reference::borrow(wrapper);
        return false;
    });
    return PyErr_Occurred() ? nullptr : found.release();
}

PyObject* findChildren(PyObject* self, QObject& object, PyObject* type, const QString& name)
{
    if (!isSearchable(type))
        return nullptr;
    const Search search = {type, name};
    Reference list(PyList_New(0));
    visitDescendants(self, object, [&](PyObject* wrapper, const QObject& child) {
        return !search.finds(wrapper, child) ? !PyErr_Occurred() : PyList_Append(list.get(), wrapper) == 0;
    });
    return PyErr_Occurred() ? nullptr : list.release();
}

// --- Others ---------------------------------------------------------------------------------------------------------

// The protected operations, reachable through any QObject.
struct Protected : QObject
{
    using QObject::childEvent;
    using QObject::customEvent;
    using QObject::receivers;
    using QObject::sender;
    using QObject::timerEvent;
};

QVariant propertyOf(QObject& object, const char* name) { return name ? object.property(name) : QVariant(); }

bool setProperty(QObject& object, const char* name, const QVariant& value)
{
    return name && object.setProperty(name, value);
}

int startTimer(QObject& object, int interval) { return object.startTimer(interval); }
bool inherits(QObject& object, const char* name) { return name && object.inherits(name); }
QObject* sender(QObject& object)
{
    QObject* const ours = currentSender(&object);
    return ours ? ours : (object.*&Protected::sender)();
}

int receivers(QObject& object, const char* signal) { return signal ? (object.*&Protected::receivers)(signal) : 0; }

QString tr(QObject& object, const char* text, const char* disambiguation, int count)
{
    return QCoreApplication::translate(object.metaObject()->className(), text, disambiguation, count);
}

// An override that calls the operation of its base class must not come back to itself: where Python made the object,
// the C++ class's own operation is meant.
bool isMadeByPython(const QObject& object)
{
    SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(&object);
    return wrapper && Shiboken::Object::hasCppWrapper(wrapper);
}

bool event(QObject& object, QEvent& event)
{
    if (PythonQObject* const own = dynamic_cast<PythonQObject*>(&object))
        return own->ownEvent(&event);
    return isMadeByPython(object) ? object.QObject::event(&event) : object.event(&event);
}

bool eventFilter(QObject& object, QObject* watched, QEvent& event)
{
    if (PythonQObject* const own = dynamic_cast<PythonQObject*>(&object))
        return own->ownEventFilter(watched, &event);
    return isMadeByPython(object) ? object.QObject::eventFilter(watched, &event) : object.eventFilter(watched, &event);
}

// QObject's own versions of these do nothing.
template <class Event, void (PythonQObject::*own)(Event*), void (QObject::*any)(Event*)>
void specialEvent(QObject& object, Event& event)
{
    if (PythonQObject* const made = dynamic_cast<PythonQObject*>(&object))
        (made->*own)(&event);
    else if (!isMadeByPython(object))
        (object.*any)(&event);
}

void ignoreNotification(QObject&, const char*) {}

constexpr auto members = memberTable(
    noArguments("objectName", operation<&QObject::objectName>),
    one("setObjectName", operation<&QObject::setObjectName>), noArguments("parent", operation<&QObject::parent>),
    one("setParent", lockedOperation<&setParent>), noArguments("children", lockedOperation<&children>),
    keywords("findChild", lockedOperation<&findChild>, optional<NoText>("name")),
    keywords("findChildren", lockedOperation<&findChildren>, optional<NoText>("name")),
    one("property", operation<&propertyOf>), positional("setProperty", operation<&setProperty>),
    noArguments("dynamicPropertyNames", operation<&QObject::dynamicPropertyNames>),
    one("installEventFilter", operation<&QObject::installEventFilter>),
    one("removeEventFilter", operation<&QObject::removeEventFilter>), one("startTimer", operation<&startTimer>),
    one("killTimer", operation<&QObject::killTimer>), one("blockSignals", operation<&QObject::blockSignals>),
    noArguments("signalsBlocked", operation<&QObject::signalsBlocked>),
    noArguments("deleteLater", operation<&deleteLater>), one("inherits", operation<&inherits>),
    noArguments("thread", operation<&QObject::thread>), one("moveToThread", lockedOperation<&moveToThread>),
    noArguments("isWidgetType", operation<&QObject::isWidgetType>), noArguments("sender", operation<&sender>),
    one("receivers", operation<&receivers>),
    keywords("tr", operation<&tr>, optional<NoBytes>("disambiguation"), optional<MinusOne>("n")),
    keywords("trUtf8", operation<&tr>, optional<NoBytes>("disambiguation"), optional<MinusOne>("n")),
    one("event", operation<&event>), positional("eventFilter", operation<&eventFilter>),
    one("timerEvent", operation<&specialEvent<QTimerEvent, &PythonQObject::ownTimerEvent, &Protected::timerEvent>>),
    one("childEvent", operation<&specialEvent<QChildEvent, &PythonQObject::ownChildEvent, &Protected::childEvent>>),
    one("customEvent", operation<&specialEvent<QEvent, &PythonQObject::ownCustomEvent, &Protected::customEvent>>),
    one("connectNotify", operation<&ignoreNotification>), one("disconnectNotify", operation<&ignoreNotification>),
    plain("emit", &emitOldStyle, METH_VARARGS));

// `destroyed` without its argument is what scripts get who do not ask for the other one.
bool putShortSignalFirst(SbkObjectType* type)
{
    PyObject* const destroyed = PyDict_GetItemString(type->super.ht_type.tp_dict, "destroyed");
    if (!destroyed)
        return false;
    std::vector<QByteArray>& overloads = signalData(destroyed).parameters;
    std::stable_partition(overloads.begin(), overloads.end(), [](const QByteArray& each) { return each.isEmpty(); });
    return true;
}

bool finish(SbkObjectType* type)
{
    return finishQObjectClass<QObject>(type) && addOldStyleMethods(type) && putShortSignalFirst(type);
}

} // namespace

template <>
ClassTable tableOf<QObject>()
{
    ClassTable table = qObjectClass<QObject, void, members>();
    table.finish = &finish;
    return table;
}

} // namespace QtCore
