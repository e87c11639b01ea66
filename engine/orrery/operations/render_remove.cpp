// Removing: what the layers cover is filled with what other frames show there, seen through the layer's track; and
// where no frame shows it, with its surroundings.

#include "render_scene.h"
#include "shape_rendering.h"

#include <algorithm>
#include <engine/errors/message.h>
#include <engine/sequences/pixel_access.h>
#include <stratum/enumerations.h>

namespace orrery {
namespace {

constexpr double enough = 1e-6; // of the region may stay to be filled from around
constexpr std::size_t blended = 8;
constexpr int ring = 12; // pixels around the region whose brightness is compared

// Whether anything of a pixel is covered: an edge pixel shows the object too.
pixels::Image anyOf(pixels::Image matte)
{
    for (float& covered : matte.values)
        covered = covered > 0 ? 1 : 0;
    return matte;
}

// What all the layers cover in a frame.
pixels::Image coveredBy(const RenderScene& scene, int frame, pixels::Size size)
{
    pixels::Image covered(size, 1);
    for (const Stratum::LayerSnapshot& layer : scene.layers)
        if (isDrawn(layer, frame)) {
            const pixels::Image matte = matteOf(layer.frame(frame), size);
            for (std::size_t i = 0; i < covered.values.size(); ++i)
                if (matte.values[i] > 0)
                    covered.values[i] = 1;
        }
    return covered;
}

// Frames to fill from, nearest first: every one close by, and further away ever fewer, since what a frame does not show
// its neighbours rarely do.
std::vector<int> sources(const RenderScene& scene, int frame)
{
    const int mode = scene.valuesAt(frame).removeSource;
    std::vector<int> frames;
    for (int distance = 1; distance <= scene.reachLast - scene.reachFirst; distance += std::max(1, distance / 4))
        for (const int source : {frame - distance, frame + distance}) {
            const bool wanted = mode == VX_REMOVESOURCE_BOTH || (source < frame) == (mode == VX_REMOVESOURCE_BEFORE);
            if (wanted && source >= scene.reachFirst && source <= scene.reachLast && scene.footage->has(source))
                frames.push_back(source);
        }
    return frames;
}

// A source frame, brought in line with the frame that is filled.
struct Source
{
    pixels::Image image;
    pixels::Image valid;
    pixels::Matrix transform; // from the source to the frame
};

// Sums for fitting one brightness to another.
struct Fit
{
    double count = 0, x = 0, y = 0, xx = 0, xy = 0;

    void add(double source, double target)
    {
        ++count;
        x += source;
        y += target;
        xx += source * source;
        xy += source * target;
    }
    // Gain and offset.
    std::pair<float, float> solve(int model) const
    {
        const double determinant = count * xx - x * x;
        if (model == VX_ILLUMINATION_GAIN_OFFSET && count > 1 && determinant > 1e-9 * count * count) {
            const double gain = (count * xy - x * y) / determinant;
            return {static_cast<float>(gain), static_cast<float>((y - gain * x) / count)};
        }
        return {xx > 0 ? static_cast<float>(xy / xx) : 1.0f, 0.0f};
    }
};

// The pixels in which what is missing and what lies close to it is.
struct Window
{
    int left, top, right, bottom;
};

Window windowAround(const pixels::Image& missing)
{
    const int width = missing.size.width, height = missing.size.height;
    Window window{width, height, 0, 0};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (*missing.at(x, y) > 0)
                window = {std::min(window.left, x), std::min(window.top, y), std::max(window.right, x + 1),
                          std::max(window.bottom, y + 1)};
    return {std::max(0, window.left - ring), std::max(0, window.top - ring), std::min(width, window.right + ring),
            std::min(height, window.bottom + ring)};
}

// Compares the source with the frame around what is missing.
std::pair<float, float> illumination(const Source& source, const pixels::Image& image, const pixels::Image& missing,
                                     const RenderValues& values, pixels::Library& library)
{
    const auto model = static_cast<VX_LUMINANCE_MODEL>(values.luminance);
    const pixels::Image moved = luminanceOf(library.warp(source.image, source.transform, image.size), model);
    const pixels::Image valid = library.warp(source.valid, source.transform, image.size);
    const pixels::Image target = luminanceOf(image, model);
    const Window window = windowAround(missing);
    Fit fit;
    for (int y = window.top; y < window.bottom; ++y)
        for (int x = window.left; x < window.right; ++x)
            if (*missing.at(x, y) <= 0 && *valid.at(x, y) > 0.99f)
                fit.add(*moved.at(x, y), *target.at(x, y));
    return fit.solve(values.illumination);
}

void light(pixels::Image& image, std::pair<float, float> gainAndOffset)
{
    for (std::size_t i = 0; i < image.values.size(); ++i)
        if (image.channels != 4 || i % 4 != 3)
            image.values[i] = image.values[i] * gainAndOffset.first + gainAndOffset.second;
}

// Fills one frame; used for one frame only.
class Removal
{
public:
    Removal(const RenderScene& scene, int frame, pixels::Library& library)
        : m_scene(scene), m_frame(frame), m_library(library), m_image(*scene.footage->read(frame)),
          m_covered(coveredBy(scene, frame, m_image.size))
    {}

    pixels::Image run()
    {
        for (const Stratum::LayerSnapshot& layer : m_scene.layers)
            if (isDrawn(layer, m_frame))
                fill(layer);
        return std::move(m_image);
    }

private:
    void fill(const Stratum::LayerSnapshot& layer)
    {
        pixels::Image missing = anyOf(matteOf(layer.frame(m_frame), m_image.size));
        if (m_scene.valuesAt(m_frame).fillAlgorithm == VX_FILL_BLEND_FRAMES)
            blend(layer, missing);
        else
            for (const int source : sources(m_scene, m_frame)) {
                const Source from = sourceAt(layer, source);
                if (m_library.fill(m_image, missing, from.image, from.transform, from.valid) < enough)
                    break;
            }
        m_library.fillFromSurroundings(m_image, missing);
    }

    // The mean of what the nearest frames that show a pixel show there.
    void blend(const Stratum::LayerSnapshot& layer, pixels::Image& missing)
    {
        pixels::Image sum(m_image.size, m_image.channels);
        std::vector<float> shown(missing.values.size());
        std::size_t used = 0;
        for (const int source : sources(m_scene, m_frame)) {
            const Source from = sourceAt(layer, source);
            pixels::Image image = m_image, left = missing;
            m_library.fill(image, left, from.image, from.transform, from.valid);
            bool helped = false;
            for (std::size_t i = 0; i < shown.size(); ++i)
                if (missing.values[i] > 0 && left.values[i] <= 0) {
                    helped = true;
                    ++shown[i];
                    for (std::size_t channel = 0; channel < channels(); ++channel)
                        sum.values[i * channels() + channel] += image.values[i * channels() + channel];
                }
            if (helped && ++used == blended)
                break;
        }
        for (std::size_t i = 0; i < shown.size(); ++i)
            if (shown[i] > 0) {
                missing.values[i] = 0;
                for (std::size_t channel = 0; channel < channels(); ++channel)
                    m_image.values[i * channels() + channel] = sum.values[i * channels() + channel] / shown[i];
            }
    }

    Source sourceAt(const Stratum::LayerSnapshot& layer, int frame)
    {
        Source source{*m_scene.footage->read(frame), {}, {}};
        source.image = m_library.withChannels(source.image, m_image.channels);
        source.valid = coveredBy(m_scene, frame, source.image.size);
        for (float& value : source.valid.values)
            value = 1 - value;
        source.transform = matrixOf(layer.frame(m_frame).transform) * matrixOf(layer.frame(frame).transform).inverse();
        const RenderValues& values = m_scene.valuesAt(m_frame);
        if (values.illumination != VX_ILLUMINATION_NONE)
            light(source.image, illumination(source, m_image, m_covered, values, m_library));
        return source;
    }

    std::size_t channels() const { return static_cast<std::size_t>(m_image.channels); }

    const RenderScene& m_scene;
    const int m_frame;
    pixels::Library& m_library;
    pixels::Image m_image;
    const pixels::Image m_covered;
};

} // namespace
} // namespace orrery

using namespace orrery;

VX::IClip* RenderRemoveOperation::onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                           View view)
{
    const RenderScene scene(manager, first, last, layers, view, true);
    return renderFrames(scene, presentWatcher(get_progress_watcher()), text("Removing"), "remove", [&scene](int frame) {
        return withPixels(text("Frame %1", frame),
                          [&](pixels::Library& library) { return Removal(scene, frame, library).run(); });
    });
}
