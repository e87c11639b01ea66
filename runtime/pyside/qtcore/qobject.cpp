// QObject: what every Qt object can do for a script.
#include "bound_function.h"
#include "class_registration.h"
#include "old_style_signals.h"
#include "pyside.h"
#include "pysidesignal.h"
#include "qobject_constructor.h"
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

PyObject* setParent(QObject& object, QObject* parent)
{
    if (isAncestor(object, parent)) {
        PyErr_SetString(PyExc_ValueError, "a QObject cannot become its own ancestor");
        return nullptr;
    }
    // The parent that goes may hold the last reference.
    const Reference self(wrapperOf(&object));
    const Reference parentWrapper(wrapperOf(parent));
    if (!self || !parentWrapper)
        return nullptr;
    {
        const Unlocked unlocked;
        object.setParent(parent);
    }
    if (object.parent() != parent) {
        PyErr_SetString(PyExc_RuntimeError, "a QObject's parent must live in the same thread");
        return nullptr;
    }
    Shiboken::Object::setParent(parentWrapper.get(), self.get());
    return PyErr_Occurred() ? nullptr : none();
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

PyObject* children(QObject& object)
{
    const Reference self(wrapperOf(&object));
    Reference list(PyList_New(0));
    for (QObject* child : livingChildren(object)) {
        const Reference wrapper = childWrapper(self.get(), child);
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
bool visitDescendants(const Reference& self, QObject& object, const Visit& visit)
{
    for (QObject* child : livingChildren(object)) {
        const Reference wrapper = childWrapper(self.get(), child);
        if (!wrapper || !visit(wrapper.get(), *child) || !visitDescendants(wrapper, *child, visit))
            return false;
    }
    return true;
}

struct Search
{
    PyObject* type;
    std::optional<QString> name;

    bool finds(PyObject* wrapper, const QObject& child) const
    {
        return (!name || name->isEmpty() || child.objectName() == *name) && PyObject_IsInstance(wrapper, type) == 1;
    }
};

PyObject* findChild(QObject& object, PyObject* type, std::optional<QString> name)
{
    if (!isSearchable(type))
        return nullptr;
    const Search search = {type, name};
    const Reference self(wrapperOf(&object));
    Reference found = Reference::borrow(Py_None);
    visitDescendants(self, object, [&](PyObject* wrapper, const QObject& child) {
        if (!search.finds(wrapper, child))
            return !PyErr_Occurred();
        found = Reference::borrow(wrapper);
        return false;
    });
    return PyErr_Occurred() ? nullptr : found.release();
}

PyObject* findChildren(QObject& object, PyObject* type, std::optional<QString> name)
{
    if (!isSearchable(type))
        return nullptr;
    const Search search = {type, name};
    const Reference self(wrapperOf(&object));
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

QVariant property(QObject& object, const char* name) { return name ? object.property(name) : QVariant(); }

bool setProperty(QObject& object, const char* name, const QVariant& value)
{
    return name && object.setProperty(name, value);
}

int startTimer(QObject& object, int interval) { return object.startTimer(interval); }
bool inherits(QObject& object, const char* name) { return name && object.inherits(name); }
void deleteLater(QObject& object) { object.deleteLater(); }
QObject* parent(QObject& object) { return object.parent(); }

QObject* sender(QObject& object)
{
    QObject* const ours = currentSender(&object);
    return ours ? ours : (object.*&Protected::sender)();
}

int receivers(QObject& object, const char* signal) { return signal ? (object.*&Protected::receivers)(signal) : 0; }

QString tr(QObject& object, const char* text, std::optional<const char*> disambiguation, std::optional<int> count)
{
    return QCoreApplication::translate(object.metaObject()->className(), text, disambiguation.value_or(nullptr),
                                       count.value_or(-1));
}

// An override that calls the operation of its base class must not come back to itself: where Python made the object,
// the C++ class's own operation is meant.
bool isMadeByPython(const QObject& object)
{
    SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(&object);
    return wrapper && Shiboken::Object::hasCppWrapper(wrapper);
}

bool event(QObject& object, Given<QEvent> event)
{
    if (PythonQObject* const own = dynamic_cast<PythonQObject*>(&object))
        return own->ownEvent(event);
    return isMadeByPython(object) ? object.QObject::event(event) : object.event(event);
}

bool eventFilter(QObject& object, QObject* watched, Given<QEvent> event)
{
    if (PythonQObject* const own = dynamic_cast<PythonQObject*>(&object))
        return own->ownEventFilter(watched, event);
    return isMadeByPython(object) ? object.QObject::eventFilter(watched, event) : object.eventFilter(watched, event);
}

// QObject's own versions of these do nothing.
template <class Event, void (PythonQObject::*own)(Event*), void (QObject::*any)(Event*)>
void specialEvent(QObject& object, Given<Event> event)
{
    if (PythonQObject* const made = dynamic_cast<PythonQObject*>(&object))
        (made->*own)(event);
    else if (!isMadeByPython(object))
        (object.*any)(event);
}

void ignoreNotification(QObject&, const char*) {}

PyMethodDef methods[] = {
    method<&QObject::objectName>("objectName"),
    method<&QObject::setObjectName>("setObjectName"),
    method<&parent>("parent"),
    method<&setParent>("setParent"),
    method<&children>("children"),
    method<&findChild>("findChild"),
    method<&findChildren>("findChildren"),
    method<&property>("property"),
    method<&setProperty>("setProperty"),
    method<&QObject::dynamicPropertyNames>("dynamicPropertyNames"),
    method<&QObject::installEventFilter>("installEventFilter"),
    method<&QObject::removeEventFilter>("removeEventFilter"),
    method<&startTimer>("startTimer"),
    method<&QObject::killTimer>("killTimer"),
    method<&QObject::blockSignals>("blockSignals"),
    method<&QObject::signalsBlocked>("signalsBlocked"),
    method<&deleteLater>("deleteLater"),
    method<&inherits>("inherits"),
    method<&QObject::thread>("thread"),
    method<&QObject::moveToThread>("moveToThread"),
    method<&QObject::isWidgetType>("isWidgetType"),
    method<&sender>("sender"),
    method<&receivers>("receivers"),
    method<&tr>("tr"),
    method<&event>("event"),
    method<&eventFilter>("eventFilter"),
    method<&specialEvent<QTimerEvent, &PythonQObject::ownTimerEvent, &Protected::timerEvent>>("timerEvent"),
    method<&specialEvent<QChildEvent, &PythonQObject::ownChildEvent, &Protected::childEvent>>("childEvent"),
    method<&specialEvent<QEvent, &PythonQObject::ownCustomEvent, &Protected::customEvent>>("customEvent"),
    method<&ignoreNotification>("connectNotify"),
    method<&ignoreNotification>("disconnectNotify"),
    {"emit", &emitOldStyle, METH_VARARGS, nullptr},
    {}};

// `destroyed` without its argument is what scripts get who do not ask for the other one.
bool registerSignals(SbkObjectType* type)
{
    Signal::registerSignals(type, &QObject::staticMetaObject);
    PyObject* const destroyed = PyDict_GetItemString(type->super.ht_type.tp_dict, "destroyed");
    if (!destroyed)
        return false;
    std::vector<QByteArray>& overloads = signalData(destroyed).parameters;
    std::stable_partition(overloads.begin(), overloads.end(), [](const QByteArray& each) { return each.isEmpty(); });
    return true;
}

} // namespace

SbkObjectType qObjectTypeObject = {};

bool registerQObject(PyObject* module)
{
    if (!registerClass<QObject, ObjectShim<QObject>>(module, qObjectTypeObject, methods, &initialiseQObject<QObject>,
                                                     &deleteQObject))
        return false;
    finishQObjectClass<QObject>(qObjectTypeObject);
    return addOldStyleMethods(&qObjectTypeObject) && registerSignals(&qObjectTypeObject);
}

} // namespace QtCore
