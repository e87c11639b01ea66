// Single files that are read and replaced as a whole.
#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace orrery {

// Replaces a file, or makes it: under its name there is always either the old or the new content, with the permissions
// of the old. A link stays one: what it leads to is replaced. STRM_BadFile.
void replaceFile(const QString& file, const std::string& content);

// STRM_BadFile, also for what is no regular file and for one of more bytes.
std::string readFile(const QString& file, std::size_t limit);

} // namespace orrery
