// Time values on a fine grid, so that equal times have equal values.
#include <cmath>
#include <engine/knob/animation.h>
#include <knob/time.h>

namespace Knob {

double Time::fromDouble(double frames)
{
    // Beyond this a double holds no finer fractions anyway; infinities and not-a-number compare false.
    constexpr double ticks = 4096, largest = 9007199254740992.0 / ticks;
    if (!(std::fabs(frames) < largest) || isUnanimated(frames))
        return frames;
    return std::round(frames * ticks) / ticks + 0.0; // no negative zero
}

} // namespace Knob
