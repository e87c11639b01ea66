// QEvent, QTimerEvent and QChildEvent.
#include "bound_function.h"
#include "class_registration.h"
#include "event_types.h"

#include <typeinfo>

namespace QtCore {

namespace {

// An event that Python made: Qt may keep it, and deletes it when it has been delivered.
template <class Event>
class EventShim : public Event
{
public:
    using Event::Event;
    ~EventShim() override
    {
        QEvent* const address = this;
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(address), address);
    }
};

void deleteEvent(void* event)
{
    const Unlocked unlocked;
    delete static_cast<QEvent*>(event);
}

template <class Event, class... A>
bool attachEvent(PyObject* self, A... arguments)
{
    EventShim<Event>* const event = new EventShim<Event>(arguments...);
    const bool isTaken = takeCppObject(self, typeOf<Event>(), event, true);
    if (!isTaken)
        delete event;
    return isTaken;
}

// A constructor with these parameters, all required.
template <class Event, class... A>
struct EventConstructor
{
    template <std::size_t... i>
    static bool make(PyObject* self, PyObject* arguments, std::index_sequence<i...>)
    {
        PythonToCppFunc conversions[sizeof...(A)] = {};
        const bool fits =
            PyTuple_GET_SIZE(arguments) == sizeof...(A) &&
            (true && ... && static_cast<bool>(conversions[i] = Crossing<A>::accepts(PyTuple_GET_ITEM(arguments, i))));
        if (!fits) {
            raiseWrong(arguments);
            return false;
        }
        std::tuple<A...> values;
        const bool areValid = (true && ... && Shiboken::Object::isValid(PyTuple_GET_ITEM(arguments, i)));
        if (!areValid)
            return false;
        (conversions[i](PyTuple_GET_ITEM(arguments, i), &std::get<i>(values)), ...);
        return !PyErr_Occurred() && attachEvent<Event>(self, static_cast<A>(std::get<i>(values))...);
    }

    static void raiseWrong(PyObject* arguments)
    {
        std::string signature;
        ((signature += (signature.empty() ? "" : ", "), signature += Crossing<A>::text()), ...);
        const char* signatures[] = {signature.c_str(), nullptr};
        Shiboken::setErrorAboutWrongArguments(arguments, Wrapped<Event>::name, signatures);
    }

    static int initialise(PyObject* self, PyObject* arguments, PyObject*)
    {
        return canInitialise(self, typeOf<Event>()) && make(self, arguments, std::index_sequence_for<A...>()) ? 0 : -1;
    }
};

int registerEventType(std::optional<int> hint) { return QEvent::registerEventType(hint.value_or(-1)); }

PyMethodDef eventMethods[] = {method<&QEvent::type>("type"),
                              method<&QEvent::isAccepted>("isAccepted"),
                              method<&QEvent::setAccepted>("setAccepted"),
                              method<&QEvent::accept>("accept"),
                              method<&QEvent::ignore>("ignore"),
                              method<&QEvent::spontaneous>("spontaneous"),
                              staticMethod<QEvent, &registerEventType>("registerEventType"),
                              {}};

PyMethodDef timerEventMethods[] = {method<&QTimerEvent::timerId>("timerId"), {}};

PyMethodDef childEventMethods[] = {method<&QChildEvent::child>("child"),
                                   method<&QChildEvent::added>("added"),
                                   method<&QChildEvent::removed>("removed"),
                                   method<&QChildEvent::polished>("polished"),
                                   {}};

SbkObjectType eventType = {}, timerEventType = {}, childEventType = {};

} // namespace

bool registerEvents(PyObject* module)
{
    return registerClass<QEvent, EventShim<QEvent>>(
               module, eventType, eventMethods, &EventConstructor<QEvent, QEvent::Type>::initialise, &deleteEvent) &&
           registerClass<QTimerEvent, EventShim<QTimerEvent>>(module, timerEventType, timerEventMethods,
                                                              &EventConstructor<QTimerEvent, int>::initialise,
                                                              &deleteEvent, &eventType) &&
           registerClass<QChildEvent, EventShim<QChildEvent>>(
               module, childEventType, childEventMethods,
               &EventConstructor<QChildEvent, QEvent::Type, QObject*>::initialise, &deleteEvent, &eventType) &&
           registerEnumeration<QEvent::Type>(&eventType, "QEvent::Type", eventTypes);
}

} // namespace QtCore
