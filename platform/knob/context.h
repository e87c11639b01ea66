// Where in time, and in which view, a parameter is evaluated.
#ifndef KNOB_CONTEXT_H
#define KNOB_CONTEXT_H

#include <cstdint>

namespace Knob {

struct Context
{
    double time;         // frames, from Knob::Time::fromDouble
    std::int32_t viewId; // a view of the project, or Knob::View::defaultViewId()
    std::int32_t flags;  // what is evaluated: 1 the value, 2 the links, 3 both
};

} // namespace Knob

#endif
