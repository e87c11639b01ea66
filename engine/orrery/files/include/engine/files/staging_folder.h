// A hidden folder beside the place of what is written in it, for files that appear under their names when they are
// whole. What a process that was killed leaves there is cleared away by the next that writes into the same folder.
#pragma once

#include <QString>
#include <string>
#include <vector>

namespace orrery {

// Folders that were missing: those that nothing was put into go again.
class MadeFolders
{
public:
    MadeFolders() = default;
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;
    ~MadeFolders();

    // The folder and those above it. STRM_BadFile.
    void make(const std::string& folder);

private:
    std::vector<std::string> m_made; // the innermost last
};

class StagingFolder
{
public:
    enum class Missing { Refused, Made };

    // Below a folder that is there, or is made. STRM_BadFile when that cannot be written to.
    StagingFolder(const QString& folder, Missing missing);
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;
    // With all that is still in it.
    ~StagingFolder();

    // As it is called in the staging folder, and at last.
    std::string staged(const std::string& name) const { return m_staging + "/" + name; }
    std::string final(const std::string& name) const { return m_folder + "/" + name; }
    // A text in which staged files are called by their last names.
    std::string withFinalNames(std::string text) const;

    // Makes it a folder like others, beside, with all that is in it: name_1, or the first number that is free. Returns
    // its path. STRM_BadFile.
    std::string keepAs(const std::string& name);
    // Nobody is to clear it away: it holds what could not be put back.
    void abandon() noexcept;

private:
    bool tryToMake(Missing missing);

    const std::string m_folder;
    MadeFolders m_made;
    std::string m_staging; // empty: no longer this one's
    int m_lock = -1;
};

} // namespace orrery
