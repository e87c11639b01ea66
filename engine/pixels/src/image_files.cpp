// Reading and encoding are OpenImageIO's. A file is encoded in memory and brought to the disk by our own checked
// writes, because a format's writer may take a full disk for success.

#include "image_files.h"

#include "cut_off_files.h"
#include "image_headers.h"
#include "written_file.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace pixels {
namespace {

// The first line of a message; the others repeat it for other parts of the file.
std::string oneLine(std::string text)
{
    text.resize(std::min(text.find('\n'), text.size()));
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

std::string problemWith(const std::string& text, const std::string& detail)
{
    const std::string line = oneLine(detail);
    return line.empty() ? text : text + " (" + line + ")";
}

struct stat status(const std::string& path)
{
    struct stat found
    {};
    if (::stat(path.c_str(), &found) != 0)
        throw FileError(path, errno == ENOENT ? "there is no such file" : "cannot be read: " + errorText(errno));
    if (S_ISDIR(found.st_mode))
        throw FileError(path, "is a folder, not an image");
    if (!S_ISREG(found.st_mode))
        throw FileError(path, "is not a file");
    if (::access(path.c_str(), R_OK) != 0)
        throw FileError(path, "cannot be read: " + errorText(errno));
    if (found.st_size == 0)
        throw FileError(path, "is empty");
    return found;
}

Depth depthOf(OIIO::TypeDesc type)
{
    switch (type.basetype) {
    case OIIO::TypeDesc::UINT8:
    case OIIO::TypeDesc::INT8:
        return Depth::EightBit;
    case OIIO::TypeDesc::HALF:
        return Depth::Half;
    case OIIO::TypeDesc::FLOAT:
    case OIIO::TypeDesc::DOUBLE:
        return Depth::Float;
    default:
        return Depth::SixteenBit;
    }
}

std::unique_ptr<OIIO::ImageInput> open(const std::string& path)
{
    const auto fileSize = std::uint64_t(status(path).st_size);
    checkHeader(path, fileSize);
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1); // values as they stand in the file
    auto input = OIIO::ImageInput::open(path, &wishes);
    if (!input)
        throw FileError(path, problemWith("is not an image that can be read", OIIO::geterror()));
    const OIIO::ImageSpec& spec = input->spec();
    const auto tooMany = [&](int width, int height) {
        const std::uint64_t most = mostValues(fileSize) / std::uint64_t(std::max(spec.nchannels, 1));
        return width <= 0 || height <= 0 || std::uint64_t(width) > most / std::uint64_t(height);
    };
    if (spec.nchannels <= 0 || tooMany(spec.width, spec.height) || tooMany(spec.full_width, spec.full_height))
        throw FileError(path, "is damaged: its header says " + std::to_string(spec.width) + " x " +
                                  std::to_string(spec.height) + " pixels of " + std::to_string(spec.nchannels) +
                                  " channels");
    return input;
}

// The channels to take, in the order to take them: R, G, B, A by name, or else the first ones.
std::vector<int> chosenChannels(const OIIO::ImageSpec& spec)
{
    const auto index = [&](const char* name) {
        const auto& names = spec.channelnames;
        return int(std::find(names.begin(), names.end(), name) - names.begin());
    };
    if (spec.nchannels < 3)
        return spec.alpha_channel == 1 ? std::vector<int>{0, 0, 0, 1} : std::vector<int>{0};
    std::vector<int> channels{index("R"), index("G"), index("B")};
    if (std::any_of(channels.begin(), channels.end(), [&](int channel) { return channel >= spec.nchannels; }))
        channels = {0, 1, 2};
    int alpha = spec.alpha_channel;
    if (alpha < 0)
        alpha = index("A");
    if (alpha < spec.nchannels)
        channels.push_back(alpha);
    return channels;
}

// The part of the frame that the file holds, put where it belongs in the whole frame.
Image arranged(const std::vector<float>& pixels, const OIIO::ImageSpec& spec)
{
    const std::vector<int> channels = chosenChannels(spec);
    Image image({spec.full_width, spec.full_height}, int(channels.size()));
    const int left = spec.x - spec.full_x, top = spec.y - spec.full_y;
    const int firstX = std::max(0, left), lastX = std::min(spec.full_width, left + spec.width);
    for (int y = std::max(0, top); y < std::min(spec.full_height, top + spec.height); ++y) {
        float* to = image.at(firstX, y);
        for (int x = firstX; x < lastX; ++x) {
            const float* from =
                pixels.data() +
                (std::size_t(y - top) * std::size_t(spec.width) + std::size_t(x - left)) * std::size_t(spec.nchannels);
            for (int channel : channels)
                *to++ = from[channel];
        }
    }
    return image;
}

OIIO::TypeDesc typeOf(Depth depth)
{
    switch (depth) {
    case Depth::SixteenBit:
        return OIIO::TypeDesc::UINT16;
    case Depth::Half:
        return OIIO::TypeDesc::HALF;
    case Depth::Float:
        return OIIO::TypeDesc::FLOAT;
    case Depth::EightBit:
        break;
    }
    return OIIO::TypeDesc::UINT8;
}

OIIO::ImageSpec specFor(const OIIO::ImageOutput& output, const Image& image, const WriteOptions& options)
{
    Depth depth = options.depth;
    const std::string format = output.format_name();
    if (format == "openexr" && (depth == Depth::EightBit || depth == Depth::SixteenBit))
        depth = Depth::Half;
    if ((format == "png" || format == "dpx") && depth != Depth::EightBit)
        depth = Depth::SixteenBit;
    OIIO::ImageSpec spec(image.size.width, image.size.height, image.channels, typeOf(depth));
    spec.attribute("oiio:UnassociatedAlpha", 1);
    if (format == "jpeg")
        spec.attribute("Compression", "jpeg:" + std::to_string(std::clamp(options.jpegQuality, 1, 100)));
    if (format == "png")
        spec.attribute("png:compressionLevel", 1); // four times as fast as the default, a tenth larger
    return spec;
}

std::vector<unsigned char> encoded(const std::string& path, const Image& image, const WriteOptions& options)
{
    const auto output = OIIO::ImageOutput::create(path);
    if (!output) {
        OIIO::geterror();
        throw FileError(path, "its suffix names no image format that can be written");
    }
    if (!output->supports("ioproxy"))
        throw FileError(path, std::string("images in the format ") + output->format_name() + " cannot be written");
    std::vector<unsigned char> bytes;
    OIIO::Filesystem::IOVecOutput memory(bytes);
    OIIO::ImageSpec spec = specFor(*output, image, options);
    OIIO::Filesystem::IOProxy* proxy = &memory;
    spec.attribute("oiio:ioproxy", OIIO::TypeDesc::PTR, &proxy);
    if (!output->open(path, spec) || !output->write_image(OIIO::TypeDesc::FLOAT, image.values.data()) ||
        !output->close())
        throw FileError(path, problemWith("cannot be written", output->geterror()));
    return bytes;
}

} // namespace

FrameInfo readImageHeader(const std::string& path)
{
    const auto input = open(path);
    const OIIO::ImageSpec& spec = input->spec();
    return {{spec.full_width, spec.full_height}, spec.nchannels, depthOf(spec.format), input->format_name()};
}

Image readImage(const std::string& path)
{
    const auto input = open(path);
    if (isCutOff(path, input->format_name()))
        throw FileError(path, "is cut off (its end is missing)");
    const OIIO::ImageSpec spec = input->spec();
    std::vector<float> pixels(std::size_t(spec.width) * std::size_t(spec.height) * std::size_t(spec.nchannels));
    const bool read = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, pixels.data());
    // The TIFF reader leaves missing strips black, calls that a success, and leaves a message.
    const std::string problem = input->geterror();
    if (!read || !problem.empty())
        throw FileError(path, problemWith("is damaged or cut off", problem));
    const bool plain = spec.width == spec.full_width && spec.height == spec.full_height && spec.x == spec.full_x &&
                       spec.y == spec.full_y && (spec.nchannels == 1 || spec.nchannels == 3);
    if (!plain)
        return arranged(pixels, spec);
    Image image;
    image.size = {spec.width, spec.height};
    image.channels = spec.nchannels;
    image.values = std::move(pixels);
    return image;
}

void writeImage(const std::string& path, const Image& image, const WriteOptions& options)
{
    const std::vector<unsigned char> bytes = encoded(path, image, options);
    WrittenFile file(path);
    file.write(bytes.data(), bytes.size());
    file.commit();
}

std::string fileStamp(const std::string& path)
{
    const struct stat found = status(path);
    return std::to_string(found.st_size) + ' ' + std::to_string(found.st_mtim.tv_sec) + ' ' +
           std::to_string(found.st_mtim.tv_nsec) + ' ' + std::to_string(found.st_ino);
}

} // namespace pixels
