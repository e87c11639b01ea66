// JPEG and PNG files are chains of marked pieces that end with an end mark; what follows it does not matter.

#include "cut_off_files.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <vector>

namespace pixels {
namespace {

bool reachesEndOfPng(std::ifstream& file)
{
    constexpr int signature = 8, checksum = 4;
    file.seekg(0, std::ios::end);
    const std::int64_t size = file.tellg();
    for (std::int64_t at = signature; at + 8 <= size;) {
        std::array<unsigned char, 8> head{};
        file.seekg(at);
        if (!file.read(reinterpret_cast<char*>(head.data()), head.size()))
            return false;
        const std::int64_t length = (head[0] << 24 | head[1] << 16 | head[2] << 8 | head[3]) & 0x7fffffff;
        at += std::int64_t(head.size()) + length + checksum;
        if (std::string(head.begin() + 4, head.end()) == "IEND")
            return at <= size;
    }
    return false;
}

bool reachesEndOfJpeg(std::ifstream& file)
{
    constexpr unsigned char mark = 0xff, endOfImage = 0xd9, startOfScan = 0xda;
    const std::vector<unsigned char> bytes(std::istreambuf_iterator<char>(file), {});
    bool inScan = false; // where marks may stand anywhere; elsewhere each piece says how long it is
    for (std::size_t at = 2; at + 1 < bytes.size();) {
        if (bytes[at] != mark || bytes[at + 1] == mark || (inScan && bytes[at + 1] != endOfImage)) {
            ++at;
            continue;
        }
        if (bytes[at + 1] == endOfImage)
            return true;
        inScan = bytes[at + 1] == startOfScan;
        if (at + 3 >= bytes.size())
            return false;
        at += 2u + (std::size_t(bytes[at + 2]) << 8 | bytes[at + 3]);
    }
    return false;
}

} // namespace

bool isCutOff(const std::string& path, const std::string& format)
{
    if (format != "png" && format != "jpeg")
        return false;
    std::ifstream file(path, std::ios::binary);
    return !(format == "png" ? reachesEndOfPng(file) : reachesEndOfJpeg(file));
}

} // namespace pixels
