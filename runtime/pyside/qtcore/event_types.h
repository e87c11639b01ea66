// The items of QEvent.Type, a list of its own because they are many.
#ifndef EVENT_TYPES_H
#define EVENT_TYPES_H

#include "class_registration.h"

namespace QtCore {

constexpr std::size_t eventTypeCount = 175;
extern const EnumerationItem eventTypes[eventTypeCount];

} // namespace QtCore

#endif
