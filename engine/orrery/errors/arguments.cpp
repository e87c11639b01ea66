// The checks of arguments that all classes share.
#include <cmath>
#include <engine/errors/arguments.h>
#include <knob/time.h>

namespace orrery {

void requireFinite(const char* argument, double value)
{
    if (!std::isfinite(value))
        raise<STRM_BadArgument>(
            QString::fromLatin1("%1: %2 is not a finite number").arg(QString::fromLatin1(argument)).arg(value));
}

double requireTime(double time, const char* argument)
{
    requireFinite(argument, time);
    return Knob::Time::fromDouble(time);
}

void requireColor(const char* argument, const Fundo::Colour3<float>& color)
{
    for (const float component : {color.red, color.green, color.blue}) {
        requireFinite(argument, component);
        if (component < 0 || component > 1)
            raise<STRM_OutOfRange>(QString::fromLatin1("%1: the component %2 is not from 0 to 1")
                                       .arg(QString::fromLatin1(argument))
                                       .arg(component));
    }
}

void requireText(const char* argument, const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool paired = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (paired)
            ++i;
        else if (text[i].isHighSurrogate() || text[i].isLowSurrogate())
            raise<STRM_BadArgument>(QString::fromLatin1("%1: half a character (0x%2) at place %3")
                                        .arg(QString::fromLatin1(argument), QString::number(text[i].unicode(), 16))
                                        .arg(i));
    }
}

void requireName(const char* argument, const QString& name)
{
    constexpr int longest = 65535;
    if (name.isEmpty())
        raise<STRM_BadArgument>(QString::fromLatin1("%1: a name must not be empty").arg(QString::fromLatin1(argument)));
    if (name.size() > longest)
        raise<STRM_BadArgument>(QString::fromLatin1("%1: a name of %2 characters is longer than %3")
                                    .arg(QString::fromLatin1(argument))
                                    .arg(name.size())
                                    .arg(longest));
    requireText(argument, name);
}

QString quoted(const QString& text)
{
    constexpr int shown = 80;
    const QString part = text.size() <= shown ? text : text.left(shown) + QString::fromLatin1("...");
    return QLatin1Char('\'') + part + QLatin1Char('\'');
}

} // namespace orrery
