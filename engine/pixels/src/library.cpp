// The factory that the shared object exports, and the functions of the interface that several files of this folder
// implement together: frames are read through a cache and interpreted, trackers are made of prepared frames.

#include "arguments.h"
#include "frame_cache.h"
#include "frame_pyramid.h"
#include "image_files.h"
#include "interpretation.h"
#include "patch_tracker.h"

#include <OpenImageIO/imageio.h>
#include <sstream>

namespace pixels {
namespace {

constexpr std::size_t usualCacheLimit = std::size_t(512) << 20;

FrameCache& cache()
{
    static FrameCache frames{usualCacheLimit};
    return frames;
}

std::string sizeText(Size size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

std::string cacheKey(const std::string& path, const Interpretation& in)
{
    std::ostringstream key;
    key << path << '\0' << fileStamp(path) << std::hexfloat << ' ' << int(in.colorspace) << ' ' << int(in.conversion)
        << ' ' << in.offset << ' ' << in.softclip << ' ' << in.referenceWhite << ' ' << in.referenceBlack << ' '
        << in.gamma;
    return key.str();
}

} // namespace

// The callers use all cores already, a layer or a frame each; threads below them would only be in the way.
Library::Library()
{
    cv::setNumThreads(1);
    OIIO::attribute("threads", 1);
    OIIO::attribute("exr_threads", -1);
}

Library::~Library() = default;

FrameInfo Library::readHeader(const std::string& path) { return readImageHeader(path); }

SharedImage Library::readFrame(const std::string& path, const Interpretation& interpretation, Size expected)
{
    check(interpretation);
    SharedImage frame = cache().get(cacheKey(path, interpretation), [&] {
        Image image = readImage(path);
        interpret(image, interpretation);
        return image;
    });
    if (expected != Size() && frame->size != expected)
        throw FileError(path, "is " + sizeText(frame->size) + " pixels large, not " + sizeText(expected));
    return frame;
}

void Library::writeFrame(const std::string& path, const Image& image, const WriteOptions& options)
{
    checkImage(image, "an image to be written");
    check(options.interpretation);
    if (options.interpretation == Interpretation()) {
        writeImage(path, image, options);
        return;
    }
    Image encoded = image;
    encode(encoded, options.interpretation);
    writeImage(path, encoded, options);
}

void Library::setCacheLimit(std::size_t bytes) { cache().setLimit(bytes); }
CacheStatistics Library::cacheStatistics() { return cache().statistics(); }

SharedTrackingFrame Library::prepare(const Image& frame) { return framePyramid(frame); }

std::unique_ptr<Tracker> Library::track(const SharedTrackingFrame& reference, const Image& region, MotionModel model)
{
    auto frame = std::dynamic_pointer_cast<const FramePyramid>(reference);
    if (!frame)
        throw std::invalid_argument("the reference frame was not made by this library");
    checkMask(region, frame->size, "the region");
    return std::make_unique<PatchTracker>(std::move(frame), region, model);
}

} // namespace pixels

extern "C" __attribute__((visibility("default"))) pixels::Library* vireo_pixels_library(unsigned version)
{
    static pixels::Library library;
    return version == pixels::interfaceVersion ? &library : nullptr;
}
