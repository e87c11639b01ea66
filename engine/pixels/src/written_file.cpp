// The name beside starts with a dot and ends in a suffix of no image format, so that no program takes it for a frame.

#include "written_file.h"

#include <atomic>
#include <cerrno>
#include <engine/pixels/pixels.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace pixels {
namespace {

// However long the file's own name is.
std::string nameBeside(const std::string& path)
{
    static std::atomic<unsigned> count{0};
    const auto slash = path.rfind('/');
    return path.substr(0, slash == std::string::npos ? 0 : slash + 1) + '.' + std::to_string(::getpid()) + '-' +
           std::to_string(count++) + ".part";
}

} // namespace

std::string errorText(int number) { return std::generic_category().message(number); }

WrittenFile::WrittenFile(const std::string& path) : m_path(path)
{
    struct stat found
    {};
    if (::stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode))
        fail(EISDIR);
    do { // past what a process of the same number has left
        m_beside = nameBeside(path);
        m_descriptor = ::open(m_beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (m_descriptor < 0 && errno == EEXIST);
    if (m_descriptor < 0)
        fail(errno);
}

WrittenFile::~WrittenFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    if (!m_beside.empty())
        ::unlink(m_beside.c_str());
}

void WrittenFile::fail(int number) const { throw FileError(m_path, "cannot be written: " + errorText(number)); }

void WrittenFile::write(const void* data, std::size_t size)
{
    const char* next = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = ::write(m_descriptor, next, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail(errno);
        next += written;
        size -= static_cast<std::size_t>(written);
    }
}

void WrittenFile::commit()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    if (::close(descriptor) != 0 && errno != EINTR)
        fail(errno);
    if (::rename(m_beside.c_str(), m_path.c_str()) != 0)
        fail(errno);
    m_beside.clear();
}

} // namespace pixels
