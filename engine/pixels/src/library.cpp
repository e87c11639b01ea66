// The factory that the shared object exports, and the functions of the interface, each passed on to the file that
// implements it.

#include "arguments.h"
#include "coverage.h"
#include "drawing.h"
#include "frame_cache.h"
#include "frame_pyramid.h"
#include "image_files.h"
#include "interpretation.h"
#include "operations.h"
#include "patch_tracker.h"

#include <OpenImageIO/imageio.h>
#include <sstream>

namespace pixels {
namespace {

constexpr std::size_t usualCacheLimit = std::size_t(512) << 20;

std::string sizeText(Size size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

std::string cacheKey(const std::string& path, const Interpretation& in)
{
    std::ostringstream key;
    key << path << '\0' << fileStamp(path) << std::hexfloat << ' ' << int(in.colorspace) << ' ' << int(in.conversion)
        << ' ' << in.offset << ' ' << in.softclip << ' ' << in.referenceWhite << ' ' << in.referenceBlack << ' '
        << in.gamma;
    return key.str();
}

class PixelLibrary final : public Library
{
public:
    // The callers use all cores already, a layer or a frame each; threads below them would only be in the way.
    PixelLibrary()
    {
        cv::setNumThreads(1);
        OIIO::attribute("threads", 1);
        OIIO::attribute("exr_threads", -1);
    }

    FrameInfo readHeader(const std::string& path) override { return readImageHeader(path); }

    SharedImage readFrame(const std::string& path, const Interpretation& interpretation, Size expected) override
    {
        check(interpretation);
        SharedImage frame = m_cache.get(cacheKey(path, interpretation), [&] {
            Image image = readImage(path);
            interpret(image, interpretation);
            return image;
        });
        if (expected != Size() && frame->size != expected)
            throw FileError(path, "is " + sizeText(frame->size) + " pixels large, not " + sizeText(expected));
        return frame;
    }

    void writeFrame(const std::string& path, const Image& image, const WriteOptions& options) override
    {
        checkImage(image, "an image to be written");
        writeImage(path, image, options);
    }

    void setCacheLimit(std::size_t bytes) override { m_cache.setLimit(bytes); }
    CacheStatistics cacheStatistics() override { return m_cache.statistics(); }

    Image coverage(const std::vector<Outline>& outlines, Size size, const Matrix& transform, FillRule rule) override
    {
        return coverageOf(outlines, size, transform, rule);
    }

    SharedTrackingFrame prepare(const Image& frame) override { return framePyramid(frame); }

    std::unique_ptr<Tracker> track(const SharedTrackingFrame& reference, const Image& region,
                                   MotionModel model) override
    {
        auto frame = std::dynamic_pointer_cast<const FramePyramid>(reference);
        if (!frame)
            throw std::invalid_argument("the reference frame was not made by this library");
        checkMask(region, frame->size, "the region");
        return std::make_unique<PatchTracker>(std::move(frame), region, model);
    }

    void insert(Image& image, const Image& matte, Color color, float opacity) override
    {
        insertColor(image, matte, color, opacity);
    }

    double fill(Image& image, Image& missing, const Image& source, const Matrix& transform, const Image& valid) override
    {
        return fillFrom(image, missing, source, transform, valid);
    }

    void fillFromSurroundings(Image& image, const Image& missing) override { fillSmoothly(image, missing); }

    Image warp(const Image& image, const Matrix& transform, Size size, Image* covered) override
    {
        return warped(image, transform, size, covered);
    }

    Image resize(const Image& image, Size size) override { return resized(image, size); }
    Image withChannels(const Image& image, int channels) override { return inChannels(image, channels); }
    void place(Image& target, const Image& image, int x, int y) override { placeImage(target, image, x, y); }

    void drawOutline(Image& image, const std::vector<Point>& points, Color color, double width) override
    {
        drawLine(image, points, color, width);
    }

    void drawText(Image& image, const std::string& text, Point baseline, double height, Color color) override
    {
        drawWords(image, text, baseline, height, color);
    }

private:
    FrameCache m_cache{usualCacheLimit};
};

} // namespace
} // namespace pixels

extern "C" __attribute__((visibility("default"))) pixels::Library* vireo_pixels_library(unsigned version)
{
    static pixels::PixelLibrary library;
    return version == pixels::interfaceVersion ? &library : nullptr;
}
