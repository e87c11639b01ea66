// Paths that scripts give: which texts can be one, and what stands there.
#pragma once

#include <QString>
#include <QStringList>
#include <string>

namespace orrery {

// As the system's functions take it: UTF-8.
std::string toPath(const QString& path);

// Absolute and clean, seen from the working folder of this moment. STRM_BadArgument, which names the argument, for a
// text that can be no path: an empty one, one with a NUL or with half a character.
QString absolutePath(const char* argument, const QString& path);

// What stands under a path; a link stands for what it leads to. Other: a FIFO, a device, a socket.
enum class Standing { Nothing, File, Folder, Other };

Standing standing(const std::string& path);
inline Standing standing(const QString& path) { return standing(toPath(path)); }
// Why nothing can be found there: "there is no such file or folder", or what the system says.
QString whyNothing(const QString& path);

// STRM_BadFile where something else than a folder stands, which nothing can be put into or found in.
void requireFolderOrNothing(const QString& path);

// STRM_BadFile where a folder, a FIFO, a device or the like stands, or a file that may not be written to: what takes
// the place of a file must be allowed to write it.
void requireReplaceable(const std::string& path);

// The names of the files in a folder, in no order; none when it is not there. A folder that may not be listed has none
// or, with `required`, is refused with STRM_BadFile.
QStringList filesIn(const QString& folder, bool required);

// STRM_BadFile: "/shots/a: cannot be written: No space left on device".
[[noreturn]] void raiseSystemError(const std::string& path, const char* problem, int error);

} // namespace orrery
