// The parameter library's time values.
#ifndef KNOB_TIME_H
#define KNOB_TIME_H

namespace Knob {

class Time
{
public:
    // The time value for a time in frames: rounded to single precision and to the nearest 1/4096 of a frame, so that
    // times that a script computes in different ways (0.1 * 3, 0.3), and times that reach one operation in single
    // precision and another in double, name the same keyframe. Infinities, not-a-number and the default time
    // 4294967295.0 pass unchanged: the operation that is given one refuses or interprets it.
    static double fromDouble(double frames);
};

} // namespace Knob

#endif
