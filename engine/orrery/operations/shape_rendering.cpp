// Composites layers from the mattes that the pixel library draws.

#include "shape_rendering.h"

#include <algorithm>
#include <engine/sequences/pixel_access.h>
#include <stratum/enumerations.h>

namespace orrery {
namespace {

static_assert(static_cast<int>(pixels::Blend::Intersect) == VX_BlendIntersect, "one enumeration is cast to the other");

// What each layer is painted with; as many values as the picture has channels.
using Paint = std::vector<float> (*)(const Stratum::LayerSnapshot& layer, std::size_t index, std::size_t count);

std::vector<float> white(const Stratum::LayerSnapshot&, std::size_t, std::size_t) { return {1}; }

// Evenly spaced greys, the top layer in white.
std::vector<float> ownGrey(const Stratum::LayerSnapshot&, std::size_t index, std::size_t count)
{
    return {static_cast<float>(index + 1) / static_cast<float>(count)};
}

std::vector<float> matteColor(const Stratum::LayerSnapshot& layer, std::size_t, std::size_t)
{
    return {layer.matteColor.red, layer.matteColor.green, layer.matteColor.blue};
}

std::vector<float> matteColorAndCoverage(const Stratum::LayerSnapshot& layer, std::size_t, std::size_t)
{
    return {layer.matteColor.red, layer.matteColor.green, layer.matteColor.blue, 1};
}

pixels::Image draw(const std::vector<Stratum::LayerSnapshot>& layers, int frame, pixels::Size size, Paint paint,
                   int channels)
{
    pixels::Image picture(size, channels);
    for (std::size_t i = 0; i < layers.size(); ++i) {
        if (!isDrawn(layers[i], frame))
            continue;
        const Stratum::LayerFrame& shape = layers[i].frame(frame);
        const pixels::Image matte = matteOf(shape, size);
        withPixels(QString(), [&](pixels::Library& library) {
            library.blend(picture, matte, paint(layers[i], i, layers.size()), static_cast<float>(shape.opacity),
                          static_cast<pixels::Blend>(shape.blendMode));
        });
    }
    return picture;
}

} // namespace

pixels::Matrix matrixOf(const Lum_Matrix33& matrix)
{
    pixels::Matrix result;
    std::copy(std::begin(matrix.values), std::end(matrix.values), result.values.begin());
    return result;
}

bool isDrawn(const Stratum::LayerSnapshot& layer, int frame)
{
    return frame >= static_cast<int>(layer.inPoint) && frame <= static_cast<int>(layer.outPoint) &&
           !layer.frame(frame).contours.empty();
}

pixels::Image matteOf(const Stratum::LayerFrame& frame, pixels::Size size)
{
    return matteOf(frame, size, frame.transform);
}

pixels::Image matteOf(const Stratum::LayerFrame& frame, pixels::Size size, const Lum_Matrix33& transform)
{
    std::vector<pixels::Outline> outlines;
    for (const auto& polygon : Stratum::outlines(frame)) {
        pixels::Outline outline;
        outline.reserve(polygon.size());
        for (const Stratum::CurveVertex& vertex : polygon)
            outline.push_back({vertex.x, vertex.y, vertex.edgeWidth});
        outlines.push_back(std::move(outline));
    }
    return withPixels(QString(), [&](pixels::Library& library) {
        return library.coverage(outlines, size, matrixOf(transform), pixels::FillRule::EvenOdd);
    });
}

pixels::Image colorPicture(const std::vector<Stratum::LayerSnapshot>& layers, int frame, pixels::Size size)
{
    return draw(layers, frame, size, matteColorAndCoverage, 4);
}

pixels::Image shapePicture(const std::vector<Stratum::LayerSnapshot>& layers, int frame, pixels::Size size,
                           ColorizeOutput colorize)
{
    if (colorize == ByMatteColor)
        return draw(layers, frame, size, matteColor, 3);
    return draw(layers, frame, size, colorize == ByLayer ? ownGrey : white, 1);
}

} // namespace orrery
