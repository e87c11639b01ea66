// A file that appears under its name only when it is whole: it is written beside under another name and renamed.
#pragma once

#include <cstddef>
#include <string>

namespace pixels {

// The system's text for an error number, for any thread.
std::string errorText(int number);

class WrittenFile
{
public:
    explicit WrittenFile(const std::string& path); // throws FileError, as all below
    ~WrittenFile();                                // removes what was not committed
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;

    void write(const void* data, std::size_t size);
    void commit();

private:
    [[noreturn]] void fail(int number) const;

    std::string m_path;
    std::string m_beside;
    int m_descriptor = -1;
};

} // namespace pixels
