// Raising the library's exceptions, and the checks of arguments that all classes share.
#pragma once

#include <QString>
#include <fundo/colour.h>
#include <stratum/exception.h>

namespace orrery {

// Throws the exception with this place in the source: raise<STRM_BadArgument>(message).
template <class Exception>
[[noreturn]] void raise(const QString& message, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    throw Exception(file, line, message, message);
}

// ---- Checks; each names the argument and the value that it refuses ----

void requireFinite(const char* argument, double value); // STRM_BadArgument
// Normalised; finite.
double requireTime(double time, const char* argument = "time");
void requireColor(const char* argument, const Fundo::Colour3<float>& color); // STRM_BadArgument, STRM_OutOfRange
// Any text without unpaired surrogates (STRM_BadArgument): what can be written to a file and read back.
void requireText(const char* argument, const QString& text);
// Such a text that is not empty and has at most 65535 characters.
void requireName(const char* argument, const QString& name);

// A value as messages show it: shortened, in quotes.
QString quoted(const QString& text);

} // namespace orrery
