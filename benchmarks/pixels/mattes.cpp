// Mattes against sixteen by sixteen samples per pixel, and the time to make and write them against the time that
// OpenImageIO alone takes to write the same images.

#include "measure.h"

#include <OpenImageIO/imageio.h>
#include <cmath>
#include <cstdio>

using namespace pixels;

namespace {

constexpr Size frameSize{1920, 1080};

Outline petals(double x, double y, double radius, int count, double edgeWidth)
{
    constexpr int vertices = 720;
    constexpr double turn = 6.283185307179586;
    Outline outline;
    for (int i = 0; i < vertices; ++i) {
        const double angle = turn * i / vertices, r = radius * (1 + 0.3 * std::cos(count * angle));
        outline.push_back({x + r * std::cos(angle), y + r * std::sin(angle), edgeWidth});
    }
    return outline;
}

bool isInside(const std::vector<Outline>& outlines, double x, double y)
{
    bool inside = false;
    for (const Outline& outline : outlines)
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const OutlineVertex &a = outline[i], &b = outline[(i + 1) % outline.size()];
            if ((a.y <= y) != (b.y <= y) && a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y) < x)
                inside = !inside;
        }
    return inside;
}

struct MatteError
{
    double mean;
    double worst;
    int pixels;
};

// Over the pixels that are partly covered, and their neighbours.
MatteError errorOf(const std::vector<Outline>& outlines, const Image& matte)
{
    MatteError error{};
    const auto partial = [&](int x, int y) { return *matte.at(x, y) > 0 && *matte.at(x, y) < 1; };
    for (int y = 1; y + 1 < matte.size.height; ++y)
        for (int x = 1; x + 1 < matte.size.width; ++x) {
            bool near = false;
            for (int i = 0; i < 9; ++i)
                near |= partial(x + i % 3 - 1, y + i / 3 - 1);
            if (!near)
                continue;
            int inside = 0;
            for (int i = 0; i < 256; ++i)
                inside += isInside(outlines, x + (i % 16 + 0.5) / 16, y + (i / 16 + 0.5) / 16);
            const double difference = std::abs(*matte.at(x, y) - inside / 256.0);
            error.mean += difference;
            error.worst = std::max(error.worst, difference);
            ++error.pixels;
        }
    error.mean /= error.pixels;
    return error;
}

void writeAlone(const std::string& path, const Image& matte)
{
    const auto output = OIIO::ImageOutput::create(path);
    OIIO::ImageSpec spec(matte.size.width, matte.size.height, 1, OIIO::TypeDesc::UINT8);
    spec.attribute("png:compressionLevel", 1); // as the library does
    if (!output || !output->open(path, spec) || !output->write_image(OIIO::TypeDesc::FLOAT, matte.values.data()) ||
        !output->close())
        throw FileError(path, "cannot be written");
}

void compareWriting(const char* name, double edgeWidth, const char* suffix)
{
    constexpr int frames = 40;
    const WorkFolder folder;
    Watch ours, alone, making;
    for (int frame = 0; frame < frames; ++frame) {
        const std::vector<Outline> outlines = {petals(960 + 3 * frame, 540, 320, 5, edgeWidth),
                                               petals(960 + 3 * frame, 540, 90, 3, 0)};
        const std::string path = folder / ("matte." + std::to_string(frame) + "." + suffix);
        ours.start();
        making.start();
        const Image matte = library().coverage(outlines, frameSize);
        making.stop();
        library().writeFrame(path, matte);
        ours.stop();
        alone.start();
        writeAlone(path, matte);
        alone.stop();
    }
    std::printf("%-28s %-6s %14.1f %18.1f %22.1f %8.2f\n", name, suffix, 1000 * making.seconds() / frames,
                1000 * ours.seconds() / frames, 1000 * alone.seconds() / frames, ours.seconds() / alone.seconds());
}

} // namespace

void measureMattes()
{
    std::printf("Mattes against 16 x 16 samples per pixel\n%-28s %14s %10s %10s\n", "outlines", "mean error", "worst",
                "pixels");
    const std::pair<const char*, std::vector<Outline>> shapes[] = {
        {"flower", {petals(160.3, 120.7, 70, 5, 0)}},
        {"flower with a hole", {petals(160.3, 120.7, 70, 5, 0), petals(158.1, 121.2, 20, 3, 0)}},
        {"small", {petals(40.2, 30.9, 6, 4, 0)}}};
    for (const auto& [name, outlines] : shapes) {
        const MatteError error = errorOf(outlines, library().coverage(outlines, {320, 240}));
        std::printf("%-28s %14.5f %10.5f %10d\n", name, error.mean, error.worst, error.pixels);
    }
    std::printf("\nMaking and writing mattes of 1920 x 1080, 8 bit; milliseconds of processor time per frame\n");
    std::printf("%-28s %-6s %14s %18s %22s %8s\n", "outlines", "format", "making", "making, writing",
                "OpenImageIO alone", "ratio");
    for (const char* suffix : {"png", "tif"}) {
        compareWriting("flower with a hole", 0, suffix);
        compareWriting("the same, feathered by 12", 12, suffix);
    }
}
