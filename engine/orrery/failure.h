// How the library's own errors are raised: with the place of the caller, and a text alone.
#pragma once

#include <QString>
#include <stratum/exception.h>

namespace orrery {

template <class Error>
[[noreturn]] void fail(const QString& message, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    throw Error(file, line, message, QString());
}

} // namespace orrery
