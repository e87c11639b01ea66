// QEvent, QTimerEvent and QChildEvent.
#include "defaults.h"

namespace QtCore {

namespace {

// An event that Python made: Qt may keep it, and deletes it when it has been delivered.
template <class Event, class... A>
constexpr auto making = constructors(Form::Positional, signature(constructs<Wrapper<Event>, A...>));

constexpr auto ofEvents = memberTable(
    noArguments("type", operation<&QEvent::type>), noArguments("isAccepted", operation<&QEvent::isAccepted>),
    one("setAccepted", operation<&QEvent::setAccepted>), noArguments("accept", operation<&QEvent::accept>),
    noArguments("ignore", operation<&QEvent::ignore>), noArguments("spontaneous", operation<&QEvent::spontaneous>),
    keywords("registerEventType", staticOperation<&QEvent::registerEventType>, optional<MinusOne>("hint")));

constexpr auto ofTimerEvents = memberTable(noArguments("timerId", operation<&QTimerEvent::timerId>));

constexpr auto ofChildEvents = memberTable(noArguments("child", operation<&QChildEvent::child>),
                                           noArguments("added", operation<&QChildEvent::added>),
                                           noArguments("removed", operation<&QChildEvent::removed>),
                                           noArguments("polished", operation<&QChildEvent::polished>));

template <class Event, const auto& members, class... A>
ClassTable eventClass()
{
    ClassTable table = objectClass<Event, Wrapper<Event>, making<Event, A...>, members>();
    if constexpr (!std::is_same_v<Event, QEvent>)
        table.base = wrapperType<QEvent>();
    return table;
}

} // namespace

template <>
ClassTable tableOf<QEvent>()
{
    return eventClass<QEvent, ofEvents, QEvent::Type>();
}

template <>
ClassTable tableOf<QTimerEvent>()
{
    return eventClass<QTimerEvent, ofTimerEvents, int>();
}

template <>
ClassTable tableOf<QChildEvent>()
{
    return eventClass<QChildEvent, ofChildEvents, QEvent::Type, QObject*>();
}

} // namespace QtCore
