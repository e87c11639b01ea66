// The brightness of images, and how one is fitted to another.

#include "light.h"

#include "arguments.h"
#include "frame_pyramid.h"

#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr int ring = 12;             // pixels around what is hidden that are compared
constexpr float whollyShown = 0.99f; // cubic sampling does not give 1 exactly

// Sums for fitting one brightness to another.
struct BrightnessFit
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
    std::pair<float, float> solve(LightModel model) const
    {
        const double determinant = count * xx - x * x;
        if (model == LightModel::GainAndOffset && count > 1 && determinant > 1e-9 * count * count) {
            const double gain = (count * xy - x * y) / determinant;
            return {float(gain), float((y - gain * x) / count)};
        }
        return {xx > 0 ? float(xy / xx) : 1.0f, 0.0f};
    }
};

cv::Rect around(const Image& mask)
{
    const cv::Rect bounds = cv::boundingRect(viewOf(mask) > 0);
    const cv::Rect wide(bounds.x - ring, bounds.y - ring, bounds.width + 2 * ring, bounds.height + 2 * ring);
    return bounds.empty() ? bounds : wide & cv::Rect(0, 0, mask.size.width, mask.size.height);
}

} // namespace

Image luminanceOf(const Image& image, Luminance model)
{
    checkImage(image, "the image");
    if (image.channels == 1)
        return image;
    Image grey(image.size, 1);
    const float* in = image.values.data();
    for (float& out : grey.values) {
        if (model == Luminance::Maximum)
            out = std::max({in[0], in[1], in[2]});
        else if (model == Luminance::Average)
            out = (in[0] + in[1] + in[2]) / 3;
        else
            out = rec709(in[0], in[1], in[2]);
        in += image.channels;
    }
    return grey;
}

Image Library::luminance(const Image& image, Luminance model) { return luminanceOf(image, model); }

void Library::adjust(Image& image, float gain, float offset)
{
    checkImage(image, "the image");
    mapColors(image, [gain, offset](float value) { return value * gain + offset; });
}

void Library::matchLight(Image& source, const Image& valid, const Matrix& transform, const Image& image,
                         const Image& hidden, LightModel model, Luminance luminance)
{
    checkImage(image, "the image");
    checkMask(hidden, image.size, "the mask of what is hidden");
    checkMask(valid, source.size, "the mask of what is valid");
    const cv::Rect window = around(hidden);
    if (model == LightModel::None || window.empty())
        return;
    const Matrix toWindow = Matrix::translation(-window.x, -window.y) * transform;
    const Size size{window.width, window.height};
    const Image moved = warp(luminanceOf(source, luminance), toWindow, size), shown = warp(valid, toWindow, size);
    const Image target = luminanceOf(image, luminance);
    BrightnessFit fit;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            if (*hidden.at(window.x + x, window.y + y) <= 0 && *shown.at(x, y) > whollyShown)
                fit.add(*moved.at(x, y), *target.at(window.x + x, window.y + y));
    const auto [gain, offset] = fit.solve(model);
    adjust(source, gain, offset);
}

} // namespace pixels
