// Raising the library's exceptions, and the checks of arguments that all classes share.
#pragma once

#include <QString>
#include <engine/knob/fields.h>
#include <stratum/exception.h>

namespace orrery {

// Throws the exception with this place in the source: raise<STRM_BadArgument>(message).
template <class Exception>
[[noreturn]] void raise(const QString& message, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    throw Exception(file, line, message, message);
}

// ---- Checks; each names the argument and the value that it refuses ----

// STRM_BadArgument or STRM_OutOfRange, unless there is no problem.
void require(const char* argument, const Knob::Problem& problem);
inline void requireFinite(const char* argument, double value) { require(argument, Knob::checkFinite(value)); }
// Normalised; finite.
double requireTime(double time, const char* argument = "time");
inline void requireText(const char* argument, const QString& text) { require(argument, Knob::checkText(text)); }
inline void requireName(const char* argument, const QString& name) { require(argument, Knob::checkName(name)); }

// By the row of a member: the value alone, and beside the record's others.
template <auto member, class T>
void requireField(const T& value)
{
    constexpr auto field = Knob::fieldOf<member>();
    require(field.name, field.problemOf(value));
}
template <auto member, class Record>
void requireFit(const Record& record)
{
    constexpr auto field = Knob::fieldOf<member>();
    require(field.name, field.problemIn(record));
}

// A value as messages show it: shortened, in quotes.
QString quoted(const QString& text);

} // namespace orrery
