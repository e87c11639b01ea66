// Formatting of error messages.
#pragma once

#include <QString>
#include <string>

namespace orrery {

inline QString asText(const QString& text) { return text; }
inline QString asText(const char* text) { return QString::fromUtf8(text); }
inline QString asText(const std::string& text) { return QString::fromUtf8(text.c_str()); }
template <class Number>
QString asText(Number number)
{
    return QString::number(number);
}

// The pattern with %1, %2 ... replaced in one pass, so that arguments may contain such markers, as file names do.
template <class... Arguments>
QString text(const char* pattern, const Arguments&... arguments)
{
    if constexpr (sizeof...(arguments) == 0)
        return QString::fromUtf8(pattern);
    else
        return QString::fromUtf8(pattern).arg(asText(arguments)...);
}

} // namespace orrery
