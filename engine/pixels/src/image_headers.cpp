// The readers of DPX, EXR and JPEG allocate by their headers when they open a file, or trust them with worse; the other
// formats' readers can be asked for the size first.

#include "image_headers.h"

#include <algorithm>
#include <engine/pixels/pixels.h>
#include <fstream>

namespace pixels {
namespace {

using Bytes = std::basic_string<unsigned char>;

constexpr std::uint64_t mostOfAny = std::uint64_t(1) << 29;
constexpr std::uint64_t mostOfSmall = std::uint64_t(1) << 26; // an EXR file may hold a small part of a large frame
constexpr std::uint64_t mostPerByte = 5000;
constexpr std::size_t mostHeader = std::size_t(1) << 20;

class Header
{
public:
    Header(const std::string& path, std::uint64_t fileSize)
        : m_path(path), m_fileSize(fileSize), m_bytes(std::size_t(std::min<std::uint64_t>(fileSize, mostHeader)), 0)
    {
        std::ifstream file(path, std::ios::binary);
        file.read(reinterpret_cast<char*>(m_bytes.data()), std::streamsize(m_bytes.size()));
        m_bytes.resize(std::size_t(file.gcount()));
    }

    void check() const
    {
        if (begins("SDPX") || begins("XPDS"))
            checkDpx(begins("SDPX"));
        else if (begins("\x76\x2f\x31\x01"))
            checkExr();
        else if (begins("\xff\xd8\xff"))
            checkJpeg();
    }

private:
    bool begins(const std::string& mark) const
    {
        return m_bytes.size() >= mark.size() &&
               std::equal(mark.begin(), mark.end(), m_bytes.begin(),
                          [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
    }

    // A number of `size` bytes; 0 past the end.
    std::uint32_t number(std::size_t at, std::size_t size, bool bigEndian) const
    {
        std::uint32_t value = 0;
        if (at + size > m_bytes.size())
            return 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | m_bytes[bigEndian ? at + i : at + size - 1 - i];
        return value;
    }

    [[noreturn]] void refuse(const std::string& problem) const
    {
        throw FileError(m_path, "is damaged: its header says " + problem);
    }

    void checkSize(std::int64_t width, std::int64_t height) const
    {
        const auto most = std::int64_t(mostValues(m_fileSize));
        if (width <= 0 || height <= 0 || width > most / height)
            refuse(std::to_string(width) + " x " + std::to_string(height) + " pixels");
    }

    void checkDpx(bool bigEndian) const
    {
        constexpr std::uint32_t unset = 0xffffffff, fixedPart = 2048;
        for (const std::size_t place : {std::size_t(4), std::size_t(32)}) { // the pixels' place, the user data's size
            const std::uint32_t size = number(place, 4, bigEndian);
            if (size != unset &&
                (place == 4 ? 0 : fixedPart) + std::uint64_t(size) > std::max<std::uint64_t>(m_fileSize, fixedPart))
                refuse(std::to_string(size) + " bytes where the file has " + std::to_string(m_fileSize));
        }
        const std::uint64_t width = number(772, 4, bigEndian), height = number(776, 4, bigEndian);
        checkSize(std::int64_t(width), std::int64_t(height));
        const bool plain = number(806, 2, bigEndian) != 1; // not run-length encoded: every pixel is there
        if (plain && width * height > m_fileSize * 8 / std::max(number(803, 1, bigEndian), 1U))
            refuse(std::to_string(width) + " x " + std::to_string(height) + " pixels");
    }

    // Attributes follow one another: name, type, size, value; an empty name ends them.
    void checkExr() const
    {
        const auto text = [this](std::size_t& at) {
            const std::size_t end = std::min(m_bytes.find(static_cast<unsigned char>(0), at), m_bytes.size());
            const std::string found(m_bytes.begin() + std::ptrdiff_t(at), m_bytes.begin() + std::ptrdiff_t(end));
            at = end + 1;
            return found;
        };
        for (std::size_t at = 8; at < m_bytes.size();) {
            const std::string name = text(at);
            if (name.empty() || at >= m_bytes.size())
                return;
            const std::string type = text(at);
            const auto side = [&](std::size_t from, std::size_t to) {
                const auto corner = [&](std::size_t n) {
                    return std::int64_t(std::int32_t(number(at + 4 + 4 * n, 4, false)));
                };
                return corner(to) - corner(from) + 1;
            };
            if (type == "box2i")
                checkSize(side(0, 2), side(1, 3));
            const std::size_t size = number(at, 4, false);
            if (size > m_fileSize)
                refuse("an attribute of " + std::to_string(size) + " bytes");
            at += 4 + size;
        }
    }

    // Segments say how long they are; the one that begins the frame holds its size.
    void checkJpeg() const
    {
        for (std::size_t at = 2; at + 9 < m_bytes.size();) {
            const std::uint32_t kind = m_bytes[at + 1];
            if (m_bytes[at] != 0xff || kind == 0xff) {
                ++at;
                continue;
            }
            const bool beginsFrame = kind >= 0xc0 && kind <= 0xcf && kind != 0xc4 && kind != 0xc8 && kind != 0xcc;
            if (beginsFrame)
                return checkSize(number(at + 7, 2, true), number(at + 5, 2, true));
            at += 2 + std::max<std::size_t>(number(at + 2, 2, true), 2);
        }
    }

    const std::string& m_path;
    const std::uint64_t m_fileSize;
    Bytes m_bytes;
};

} // namespace

std::uint64_t mostValues(std::uint64_t fileSize)
{
    return fileSize > mostOfAny / mostPerByte ? mostOfAny : std::min(mostOfAny, mostOfSmall + fileSize * mostPerByte);
}

void checkHeader(const std::string& path, std::uint64_t fileSize) { Header(path, fileSize).check(); }

} // namespace pixels
