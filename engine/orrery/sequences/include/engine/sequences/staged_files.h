// Frames that an operation writes and that appear all together or not at all.
#pragma once

#include <QString>
#include <engine/files/staging_folder.h>
#include <engine/pixels/pixels.h>
#include <mutex>
#include <vector>

namespace orrery {

class StagedFiles
{
public:
    // As of StagingFolder; a folder that is missing is made, and goes with what was not committed.
    explicit StagedFiles(const QString& folder) : m_staging(folder, StagingFolder::Missing::Made) {}

    // Any number of threads. Throws STRM_BadFile that names the file as it would have been called at last.
    void write(const QString& fileName, const pixels::Image& image, const pixels::WriteOptions& options);

    // Gives the files their names, over what had them before. When one cannot be renamed, everything is as it was.
    // STRM_BadFile.
    void commit();
    // Puts them all into a new folder: name_1, or the first number that is free. Returns its path. STRM_BadFile.
    QString commitAsFolder(const QString& name);

private:
    struct Placed
    {
        std::string name;
        std::string before; // what had the name is kept there; empty: nothing had
    };
    void place(const std::string& name, std::vector<Placed>& placed);
    void takeBack(const std::vector<Placed>& placed) noexcept;

    StagingFolder m_staging;
    std::mutex m_mutex;
    std::vector<std::string> m_names;
};

} // namespace orrery
