// Committing: what had a name before is kept in the staging folder until the last file has its name.

#include <cerrno>
#include <cstdio>
#include <engine/sequences/pixel_access.h>
#include <engine/sequences/staged_files.h>
#include <unistd.h>

namespace orrery {
namespace {

// Whether there was anything to keep. It stays under its name meanwhile, where the file system has links.
bool keep(const std::string& file, const std::string& before)
{
    requireReplaceable(file);
    if (::link(file.c_str(), before.c_str()) == 0)
        return true;
    if (errno != ENOENT && std::rename(file.c_str(), before.c_str()) == 0)
        return true;
    if (errno != ENOENT)
        raiseSystemError(file, "cannot be replaced", errno);
    return false;
}

} // namespace

void StagedFiles::write(const QString& fileName, const pixels::Image& image, const pixels::WriteOptions& options)
{
    const std::string name = toPath(fileName);
    try {
        pixelLibrary().writeFrame(m_staging.staged(name), image, options);
    } catch (const pixels::FileError& error) {
        raise<STRM_BadFile>(asText(m_staging.withFinalNames(error.what())));
    } catch (...) {
        rethrowPixelError(asText(m_staging.final(name)));
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
}

QString StagedFiles::commitAsFolder(const QString& name) { return asText(m_staging.keepAs(toPath(name))); }

void StagedFiles::place(const std::string& name, std::vector<Placed>& placed)
{
    const std::string file = m_staging.final(name), before = m_staging.staged(std::to_string(placed.size()));
    const bool replaces = keep(file, before);
    placed.push_back({name, replaces ? before : std::string()});
    if (std::rename(m_staging.staged(name).c_str(), file.c_str()) == 0)
        return;
    const int error = errno;
    if (!replaces)
        placed.pop_back(); // what stands there now is not ours
    raiseSystemError(file, "cannot be written", error);
}

void StagedFiles::takeBack(const std::vector<Placed>& placed) noexcept
{
    bool restored = true;
    for (const Placed& file : placed)
        if (file.before.empty())
            ::unlink(m_staging.final(file.name).c_str());
        else
            restored &= std::rename(file.before.c_str(), m_staging.final(file.name).c_str()) == 0;
    if (!restored)
        m_staging.abandon();
}

} // namespace orrery
