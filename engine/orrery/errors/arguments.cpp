// The checks of arguments that all classes share.
#include <engine/errors/arguments.h>
#include <knob/time.h>

namespace orrery {

void require(const char* argument, const Knob::Problem& problem)
{
    if (!problem)
        return;
    const QString message = QString::fromLatin1(argument) + QLatin1String(": ") + problem.text();
    if (problem.kind() == Knob::Problem::Range)
        raise<STRM_OutOfRange>(message);
    raise<STRM_BadArgument>(message);
}

double requireTime(double time, const char* argument)
{
    requireFinite(argument, time);
    return Knob::Time::fromDouble(time);
}

QString quoted(const QString& text)
{
    constexpr int shown = 80;
    const QString part = text.size() <= shown ? text : text.left(shown) + QString::fromLatin1("...");
    return QLatin1Char('\'') + part + QLatin1Char('\'');
}

} // namespace orrery
