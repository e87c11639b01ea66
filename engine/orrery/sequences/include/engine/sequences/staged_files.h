// Files that an operation writes and that appear all together or not at all: they are written into a hidden folder
// beside their place, and renamed once the last of them is whole.
#pragma once

#include <QString>
#include <engine/pixels/pixels.h>
#include <mutex>
#include <vector>

namespace orrery {

class StagedFiles
{
public:
    // Makes the folder when there is none. What processes that were killed have left there is cleared away.
    // STRM_BadFile when it cannot be written to.
    explicit StagedFiles(const QString& folder);
    StagedFiles(const StagedFiles&) = delete;
    StagedFiles& operator=(const StagedFiles&) = delete;
    // What was not committed is removed, and so is the folder when it was made for it.
    ~StagedFiles();

    // Any number of threads. Throws STRM_BadFile that names the file as it would have been called at last.
    void write(const QString& fileName, const pixels::Image& image, const pixels::WriteOptions& options);

    // Gives the files their names, over what had them before. When one cannot be renamed, everything is as it was.
    void commit();

private:
    struct Placed
    {
        std::string name;
        bool replaced; // what had the name before is kept aside
    };
    void makeStaging();
    void removeMade() noexcept;
    void place(const std::string& name, std::vector<Placed>& placed);
    void takeBack(const std::vector<Placed>& placed) noexcept;
    std::string staged(const std::string& name) const { return m_staging + "/" + name; }
    std::string aside(const std::string& name) const { return m_staging + "/" + name + ".before"; }
    std::string final(const std::string& name) const { return m_folder + "/" + name; }

    std::string m_folder;
    std::vector<std::string> m_made; // folders that were not there, the innermost last
    std::string m_staging;
    int m_lock = -1;
    std::mutex m_mutex;
    std::vector<std::string> m_names;
};

} // namespace orrery
