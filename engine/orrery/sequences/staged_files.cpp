// Staging. A process holds a lock in its staging folder, which ends with the process: a folder without one is litter.

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <engine/sequences/pixel_access.h>
#include <engine/sequences/staged_files.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orrery {
namespace {

constexpr const char* stagingPrefix = ".staged-";
constexpr const char* lockName = ".lock";

[[noreturn]] void raiseUnwritable(const std::string& path, int error)
{
    raise<STRM_BadFile>(text("%1: cannot be written: %2", path, std::generic_category().message(error)));
}

// Makes the folder and those above it; returns those that were not there.
std::vector<std::string> makeFolder(const std::string& folder)
{
    struct stat found;
    if (::stat(folder.c_str(), &found) == 0) {
        if (!S_ISDIR(found.st_mode))
            raiseUnwritable(folder, ENOTDIR);
        return {};
    }
    const std::size_t slash = folder.rfind('/');
    std::vector<std::string> made;
    if (slash != std::string::npos && slash > 0)
        made = makeFolder(folder.substr(0, slash));
    if (::mkdir(folder.c_str(), 0777) == 0)
        made.push_back(folder);
    else if (errno != EEXIST)
        raiseUnwritable(folder, errno);
    return made;
}

// The lock last: as long as there is anything else, the folder can be told to be litter.
void removeFlatFolder(const std::string& folder) noexcept
{
    const QDir dir(QString::fromUtf8(folder.c_str()));
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (name != QLatin1String(lockName))
            ::unlink(toPath(dir.filePath(name)).c_str());
    ::unlink((folder + "/" + lockName).c_str());
    ::rmdir(folder.c_str());
}

// The lock, or -1 when a living process has it or there is none to be had.
int takeLock(const std::string& folder, int flags)
{
    const int lock = ::open((folder + "/" + lockName).c_str(), flags | O_CLOEXEC, 0600);
    if (lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) == 0)
        return lock;
    if (lock >= 0)
        ::close(lock);
    return -1;
}

void clearLitter(const std::string& folder)
{
    const QDir dir(QString::fromUtf8(folder.c_str()));
    const QStringList pattern(QString::fromLatin1(stagingPrefix) + QLatin1Char('*'));
    for (const QString& name : dir.entryList(pattern, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks)) {
        const std::string litter = toPath(dir.filePath(name));
        if (::rmdir(litter.c_str()) == 0) // without even a lock
            continue;
        const int lock = takeLock(litter, O_RDWR);
        if (lock < 0)
            continue;
        removeFlatFolder(litter);
        ::close(lock);
    }
}

} // namespace

StagedFiles::StagedFiles(const QString& folder)
    : m_folder(toPath(QDir::cleanPath(QFileInfo(folder).absoluteFilePath())))
{
    m_made = makeFolder(m_folder);
    clearLitter(m_folder);
    try {
        makeStaging();
    } catch (...) {
        removeMade();
        throw;
    }
}

// Another process may take the new folder for litter before it is locked.
void StagedFiles::makeStaging()
{
    do {
        std::string pattern = m_folder + "/" + stagingPrefix + "XXXXXX";
        if (!::mkdtemp(&pattern[0]))
            raiseUnwritable(m_folder, errno);
        m_staging = pattern;
        m_lock = takeLock(m_staging, O_RDWR | O_CREAT);
    } while (m_lock < 0 && ::access(m_staging.c_str(), F_OK) != 0);
}

void StagedFiles::removeMade() noexcept
{
    std::for_each(m_made.rbegin(), m_made.rend(), [](const std::string& made) { ::rmdir(made.c_str()); });
}

StagedFiles::~StagedFiles()
{
    removeFlatFolder(m_staging);
    if (m_lock >= 0)
        ::close(m_lock);
    removeMade(); // only those that nothing was put into
}

void StagedFiles::write(const QString& fileName, const pixels::Image& image, const pixels::WriteOptions& options)
{
    const std::string name = toPath(fileName);
    try {
        pixelLibrary().writeFrame(staged(name), image, options);
    } catch (const pixels::FileError& error) {
        std::string problem = error.what();
        if (const std::size_t place = problem.find(m_staging); place != std::string::npos)
            problem.replace(place, m_staging.size(), m_folder);
        raise<STRM_BadFile>(asText(problem));
    } catch (...) {
        rethrowPixelError(asText(final(name)));
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_names.push_back(name);
}

void StagedFiles::commit()
{
    std::vector<Placed> placed;
    placed.reserve(m_names.size());
    try {
        for (const std::string& name : m_names)
            place(name, placed);
    } catch (...) {
        takeBack(placed);
        throw;
    }
    m_names.clear();
}

void StagedFiles::place(const std::string& name, std::vector<Placed>& placed)
{
    const bool replaced = ::link(final(name).c_str(), aside(name).c_str()) == 0;
    if (::rename(staged(name).c_str(), final(name).c_str()) != 0)
        raiseUnwritable(final(name), errno);
    placed.push_back({name, replaced});
}

void StagedFiles::takeBack(const std::vector<Placed>& placed) noexcept
{
    for (const Placed& file : placed)
        if (!file.replaced || ::rename(aside(file.name).c_str(), final(file.name).c_str()) != 0)
            ::unlink(final(file.name).c_str());
}

} // namespace orrery
