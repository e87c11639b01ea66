// A process holds a lock in its staging folder, which ends with the process: a folder without one is litter. A lock
// counts when the locked file still stands there: another process may have cleared it away in between.

#include <QDir>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <engine/files/paths.h>
#include <engine/files/staging_folder.h>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orrery {
namespace {

constexpr const char* stagingPrefix = ".staged-";
constexpr const char* lockName = "/.lock";

// The locked file, or -1: ENOENT when it is not there or goes, EWOULDBLOCK when a living process has it.
int takeLock(const std::string& folder, int flags)
{
    const std::string name = folder + lockName;
    const int lock = ::open(name.c_str(), flags | O_CLOEXEC, 0600);
    if (lock < 0)
        return -1;
    struct stat locked, named;
    int error = ENOENT;
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0)
        error = errno;
    else if (::fstat(lock, &locked) == 0 && ::stat(name.c_str(), &named) == 0 && locked.st_ino == named.st_ino)
        return lock;
    ::close(lock);
    errno = error;
    return -1;
}

// The lock last: as long as there is anything else, the folder can be told to be litter.
void removeFlatFolder(const std::string& folder) noexcept
{
    const QDir dir(QString::fromUtf8(folder.c_str()));
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (name != QLatin1String(lockName + 1))
            ::unlink(toPath(dir.filePath(name)).c_str());
    ::unlink((folder + lockName).c_str());
    ::rmdir(folder.c_str());
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

std::string randomName()
{
    char name[9];
    std::snprintf(name, sizeof name, "%08x", static_cast<unsigned int>(std::random_device()()));
    return stagingPrefix + std::string(name);
}

} // namespace

MadeFolders::~MadeFolders()
{
    std::for_each(m_made.rbegin(), m_made.rend(), [](const std::string& made) { ::rmdir(made.c_str()); });
}

void MadeFolders::make(const std::string& folder)
{
    const Standing found = standing(folder);
    if (found == Standing::Folder)
        return;
    if (found != Standing::Nothing)
        raiseSystemError(folder, "cannot be written", ENOTDIR);
    if (const std::size_t slash = folder.rfind('/'); slash != std::string::npos && slash > 0)
        make(folder.substr(0, slash));
    if (::mkdir(folder.c_str(), 0777) == 0)
        m_made.push_back(folder);
    else if (errno != EEXIST)
        raiseSystemError(folder, "cannot be written", errno);
}

StagingFolder::StagingFolder(const QString& folder, Missing missing) : m_folder(toPath(folder))
{
    clearLitter(m_folder);
    while (!tryToMake(missing))
        ;
}

// False when another process has made it, or has cleared it away before it was locked. Where there are no locks
// nothing is ever cleared away.
bool StagingFolder::tryToMake(Missing missing)
{
    if (missing == Missing::Made) // at every try: another process may have taken it away again
        m_made.make(m_folder);
    m_staging = final(randomName());
    if (::mkdir(m_staging.c_str(), 0777) != 0) {
        if (errno == EEXIST || (errno == ENOENT && missing == Missing::Made))
            return false;
        raiseSystemError(m_folder, "cannot be written", errno);
    }
    m_lock = takeLock(m_staging, O_RDWR | O_CREAT);
    if (m_lock < 0 && (errno == ENOENT || errno == EWOULDBLOCK))
        return false;
    const bool hasLocks = errno != ENOLCK && errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL;
    if (m_lock < 0 && hasLocks) {
        const int error = errno;
        removeFlatFolder(m_staging);
        raiseSystemError(m_folder, "cannot be written", error);
    }
    return true;
}

StagingFolder::~StagingFolder()
{
    if (!m_staging.empty())
        removeFlatFolder(m_staging);
    if (m_lock >= 0)
        ::close(m_lock);
}

std::string StagingFolder::withFinalNames(std::string text) const
{
    if (const std::size_t place = text.find(m_staging); place != std::string::npos)
        text.replace(place, m_staging.size(), m_folder);
    return text;
}

std::string StagingFolder::keepAs(const std::string& name)
{
    for (int number = 1;; ++number) {
        const std::string wanted = final(name + "_" + std::to_string(number));
        if (standing(wanted) != Standing::Nothing) // an empty folder would be replaced
            continue;
        if (::rename(m_staging.c_str(), wanted.c_str()) == 0) {
            m_staging.clear();
            ::unlink((wanted + lockName).c_str());
            return wanted;
        }
        if (errno != EEXIST && errno != ENOTEMPTY && errno != ENOTDIR)
            raiseSystemError(wanted, "cannot be written", errno);
    }
}

void StagingFolder::abandon() noexcept
{
    ::unlink((m_staging + lockName).c_str());
    m_staging.clear();
}

} // namespace orrery
