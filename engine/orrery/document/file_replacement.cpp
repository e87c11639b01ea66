// Atomic replacement of files: the new content is written to a temporary file in the same folder, flushed to the disk,
// and renamed over the old file.
#include <QFile>
#include <QFileInfo>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <engine/document/document.h>
#include <engine/errors/arguments.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orrery {

namespace {

[[noreturn]] void refuse(const QString& file, const char* what, int error)
{
    raise<STRM_BadFile>(QString::fromLatin1("%1: %2: %3")
                            .arg(file, QString::fromLatin1(what), QString::fromLocal8Bit(std::strerror(error))));
}

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

// Removes the file unless it was renamed.
class TemporaryFile
{
public:
    explicit TemporaryFile(const QByteArray& name) : m_name(name) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (!m_name.isEmpty())
            ::unlink(m_name.constData());
    }
    int renameTo(const QByteArray& target)
    {
        const int result = std::rename(m_name.constData(), target.constData());
        if (result == 0)
            m_name.clear();
        return result;
    }

private:
    QByteArray m_name;
};

// The target of symbolic links: replacing the target keeps the link.
QString resolved(const QString& file)
{
    QFileInfo info(file);
    for (int links = 0; info.isSymLink() && links < 40; ++links)
        info = QFileInfo(info.symLinkTarget());
    return info.absoluteFilePath();
}

QByteArray nameBeside(const QFileInfo& target)
{
    static std::atomic<unsigned int> counter{0};
    const QString name = QString::fromLatin1(".vireo-%1-%2.tmp").arg(::getpid()).arg(++counter);
    return QFile::encodeName(target.absolutePath() + QLatin1Char('/') + name);
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

// The permissions of the file that is replaced, or those of any new file.
mode_t permissionsFor(const QByteArray& target)
{
    struct stat status;
    if (::stat(target.constData(), &status) == 0)
        return status.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

void replaceFile(const QString& file, const std::string& content)
{
    const QFileInfo target(resolved(file));
    if (target.isDir())
        raise<STRM_BadFile>(QString::fromLatin1("%1 is a folder").arg(file));
    const QByteArray targetName = QFile::encodeName(target.absoluteFilePath());
    const QByteArray name = nameBeside(target);
    Descriptor descriptor(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (descriptor < 0)
        refuse(file, "cannot be written", errno);
    TemporaryFile temporary(name);
    if (!writeAll(descriptor, content) || ::fchmod(descriptor, permissionsFor(targetName)) != 0 ||
        ::fsync(descriptor) != 0 || descriptor.close() != 0)
        refuse(file, "cannot be written", errno);
    if (temporary.renameTo(targetName) != 0)
        refuse(file, "cannot be replaced", errno);
    // The rename is on the disk once the folder is flushed. A file system that cannot flush folders still has a whole
    // file.
    const Descriptor folder(::open(QFile::encodeName(target.absolutePath()).constData(), O_RDONLY | O_CLOEXEC));
    if (folder >= 0)
        ::fsync(folder);
}

std::string readFile(const QString& file, std::size_t limit)
{
    const Descriptor descriptor(::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        refuse(file, "cannot be read", errno);
    if (!S_ISREG(status.st_mode))
        raise<STRM_BadFile>(QString::fromLatin1("%1 is no file").arg(file));
    if (static_cast<std::size_t>(status.st_size) > limit)
        raise<STRM_BadFile>(QString::fromLatin1("%1 is no project file: %2 bytes are too many")
                                .arg(file)
                                .arg(static_cast<qlonglong>(status.st_size)));
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t size = 0;
    while (size < content.size()) {
        const ssize_t count = ::read(descriptor, &content[size], content.size() - size);
        if (count < 0 && errno != EINTR)
            refuse(file, "cannot be read", errno);
        if (count == 0)
            break;
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    content.resize(size);
    return content;
}

} // namespace orrery
