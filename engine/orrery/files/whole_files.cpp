// The new content is written into a staging folder, flushed to the disk, and renamed over the old file.
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/files/staging_folder.h>
#include <engine/files/whole_files.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orrery {

namespace {

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    operator int() const { return m_descriptor; }
    int close()
    {
        const int result = m_descriptor >= 0 ? ::close(m_descriptor) : 0;
        m_descriptor = -1;
        return result;
    }

private:
    int m_descriptor;
};

// What symbolic links lead to.
QString resolved(const QString& file)
{
    QFileInfo info(file);
    for (int links = 0; info.isSymLink() && links < 40; ++links)
        info = QFileInfo(info.symLinkTarget());
    return info.absoluteFilePath();
}

bool writeAll(int descriptor, const std::string& content)
{
    for (std::size_t written = 0; written < content.size();) {
        const ssize_t count = ::write(descriptor, content.data() + written, content.size() - written);
        if (count < 0 && errno != EINTR)
            return false;
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

} // namespace

void replaceFile(const QString& file, const std::string& content)
{
    const std::string target = toPath(resolved(file));
    requireReplaceable(target);
    const std::size_t slash = target.rfind('/');
    const std::string above = target.substr(0, std::max<std::size_t>(slash, 1));
    if (standing(above) != Standing::Folder)
        raiseSystemError(target, "cannot be written", ENOENT);
    const StagingFolder folder(asText(above), StagingFolder::Missing::Refused);
    const std::string staged = folder.staged(target.substr(slash + 1));
    struct stat old;
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    Descriptor descriptor(::open(staged.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666));
    if (descriptor < 0 || !writeAll(descriptor, content) ||
        (replaces && ::fchmod(descriptor, old.st_mode & 07777) != 0) || ::fsync(descriptor) != 0 ||
        descriptor.close() != 0)
        raiseSystemError(target, "cannot be written", errno);
    if (std::rename(staged.c_str(), target.c_str()) != 0)
        raiseSystemError(target, "cannot be replaced", errno);
    // The rename is on the disk once the folder is flushed. A file system that cannot flush folders still has a whole
    // file.
    const Descriptor flushed(::open(above.c_str(), O_RDONLY | O_CLOEXEC));
    if (flushed >= 0)
        ::fsync(flushed);
}

std::string readFile(const QString& file, std::size_t limit)
{
    // Without O_NONBLOCK a FIFO would be waited for.
    const Descriptor descriptor(::open(toPath(file).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        raiseSystemError(toPath(file), "cannot be read", errno);
    if (!S_ISREG(status.st_mode))
        raise<STRM_BadFile>(text("%1: is no file", file));
    if (static_cast<std::size_t>(status.st_size) > limit)
        raise<STRM_BadFile>(
            text("%1: is no project file: %2 bytes are too many", file, static_cast<long long>(status.st_size)));
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t size = 0;
    while (size < content.size()) {
        const ssize_t count = ::read(descriptor, &content[size], content.size() - size);
        if (count < 0 && errno != EINTR)
            raiseSystemError(toPath(file), "cannot be read", errno);
        if (count == 0)
            break;
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    content.resize(size);
    return content;
}

} // namespace orrery
