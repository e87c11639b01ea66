// The one rule for what a path may lead to. Of the system's own functions, since a link, a FIFO and a folder that may
// not be listed must be told apart.

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <dirent.h>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orrery {
namespace {

bool isFile(const dirent& entry, int folder)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_REG;
    struct stat found;
    return ::fstatat(folder, entry.d_name, &found, 0) == 0 && S_ISREG(found.st_mode);
}

} // namespace

std::string toPath(const QString& path) { return std::string(path.toUtf8().constData()); }

QString absolutePath(const char* argument, const QString& path)
{
    require(argument, Knob::checkPath(path));
    if (path.isEmpty())
        raise<STRM_BadArgument>(text("%1: the path is empty", argument));
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

Standing standing(const std::string& path)
{
    struct stat found;
    if (::stat(path.c_str(), &found) != 0)
        return Standing::Nothing;
    return S_ISREG(found.st_mode) ? Standing::File : S_ISDIR(found.st_mode) ? Standing::Folder : Standing::Other;
}

QString whyNothing(const QString& path)
{
    struct stat found;
    if (::stat(toPath(path).c_str(), &found) == 0 || errno == ENOENT || errno == ENOTDIR)
        return text("there is no such file or folder");
    return asText(std::generic_category().message(errno));
}

void requireFolderOrNothing(const QString& path)
{
    const Standing found = standing(path);
    if (found == Standing::File || found == Standing::Other)
        raise<STRM_BadFile>(text("%1: is no folder", path));
}

void requireReplaceable(const std::string& path)
{
    const Standing found = standing(path);
    if (found == Standing::Folder)
        raise<STRM_BadFile>(text("%1: is a folder", path));
    if (found == Standing::Other)
        raise<STRM_BadFile>(text("%1: is no file", path));
    if (found == Standing::File && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        raiseSystemError(path, "cannot be replaced", errno);
}

QStringList filesIn(const QString& folder, bool required)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(::opendir(toPath(folder).c_str()), &::closedir);
    if (!opened && required && errno != ENOENT && errno != ENOTDIR)
        raiseSystemError(toPath(folder), "cannot be listed", errno);
    QStringList names;
    while (const dirent* entry = opened ? ::readdir(opened.get()) : nullptr)
        if (isFile(*entry, ::dirfd(opened.get())))
            names << QString::fromUtf8(entry->d_name);
    return names;
}

void raiseSystemError(const std::string& path, const char* problem, int error)
{
    raise<STRM_BadFile>(text("%1: %2: %3", path, problem, std::generic_category().message(error)));
}

} // namespace orrery
