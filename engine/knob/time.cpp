// Time values on a fine grid, so that equal times have equal values.
#include <cmath>
#include <engine/knob/animation.h>
#include <knob/time.h>
#include <limits>

namespace Knob {

namespace {

constexpr double ticks = 4096; // of a frame

} // namespace

double Time::fromDouble(double frames)
{
    // Beyond single precision, and for infinities and not-a-number, the comparison is false.
    if (!(std::fabs(frames) < double(std::numeric_limits<float>::max())) || isUnanimated(frames))
        return frames;
    return std::round(double(static_cast<float>(frames)) * ticks) / ticks + 0.0; // no negative zero
}

double timeBefore(double time)
{
    const double finest = time - 1 / ticks, next = Time::fromDouble(finest);
    return next < time ? next
                       : double(std::nextafter(static_cast<float>(time), -std::numeric_limits<float>::infinity()));
}

} // namespace Knob
