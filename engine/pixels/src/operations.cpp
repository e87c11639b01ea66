// What the render operations do to whole images: lay over, fill a hole from other frames, move by a transform. OpenCV
// does the sampling.

#include "arguments.h"
#include "frame_pyramid.h"
#include "light.h"

#include <algorithm>
#include <functional>
#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr int largestSide = 32766; // that OpenCV's sampling can address

cv::Matx33d sampleTransform(const Matrix& transform)
{
    const Matrix m = Matrix::translation(-0.5, -0.5) * transform * Matrix::translation(0.5, 0.5);
    return cv::Matx33d(m.values.data());
}

// A transform shows what lies behind the viewer as well, upside down.
void blankBehindViewer(Image& image, const Matrix& fromResult)
{
    const auto depth = [&](double x, double y) {
        return fromResult(2, 0) * x + fromResult(2, 1) * y + fromResult(2, 2);
    };
    const double right = image.size.width, bottom = image.size.height;
    if (std::min({depth(0, 0), depth(right, 0), depth(0, bottom), depth(right, bottom)}) > 0)
        return;
    for (int y = 0; y < image.size.height; ++y)
        for (int x = 0; x < image.size.width; ++x)
            if (depth(x + 0.5, y + 0.5) <= 0)
                std::fill_n(image.at(x, y), image.channels, 0.0f);
}

Image sampled(const Image& image, const Matrix& transform, Size size, int interpolation)
{
    Image result(size, image.channels);
    cv::Mat view = viewOf(result);
    cv::warpPerspective(viewOf(image), view, sampleTransform(transform), view.size(), interpolation,
                        cv::BORDER_CONSTANT, cv::Scalar::all(0));
    blankBehindViewer(result, transform.inverse());
    return result;
}

cv::Rect boundsOf(const Image& mask) { return cv::boundingRect(viewOf(mask) > 0); }

// Colours of known pixels spread into the unknown ones through ever smaller images.
void spread(cv::Mat& colors, const cv::Mat& known)
{
    if (colors.cols <= 1 && colors.rows <= 1)
        return;
    const cv::Size half((colors.cols + 1) / 2, (colors.rows + 1) / 2);
    const auto repeated = [&](const cv::Mat& single) {
        std::vector<cv::Mat> planes(std::size_t(colors.channels()), single);
        cv::Mat all;
        cv::merge(planes, all);
        return all;
    };
    cv::Mat weighted = colors.mul(repeated(known)), halfColors, halfKnown, larger;
    cv::resize(weighted, halfColors, half, 0, 0, cv::INTER_AREA);
    cv::resize(known, halfKnown, half, 0, 0, cv::INTER_AREA);
    cv::divide(halfColors, repeated(cv::max(halfKnown, 1e-12)), halfColors);
    cv::min(halfKnown * 4, 1, halfKnown);
    spread(halfColors, halfKnown);
    cv::resize(halfColors, larger, colors.size(), 0, 0, cv::INTER_LINEAR);
    colors = weighted + larger.mul(repeated(1 - known));
}

void mix(float* pixel, const float* other, float share, int channels)
{
    for (int channel = 0; channel < channels; ++channel)
        pixel[channel] += (other[channel] - pixel[channel]) * share;
}

// How many pixels are missing, and how many of them the source does not show.
struct Shown
{
    std::size_t wanted = 0;
    std::size_t left = 0;
};

// Calls `take` with the place of every missing pixel that the source shows, and with what it shows there.
template <class Take>
Shown takeShown(Library& library, const Image& missing, const Image& source, const Matrix& transform,
                const Image& valid, Take take)
{
    constexpr float whollyCovered = 0.999f;
    checkImage(missing, "the mask of what is missing");
    checkImage(source, "the source");
    checkTransform(transform, "the transform");
    if (!valid.empty())
        checkMask(valid, source.size, "the mask of what is valid");
    const cv::Rect bounds = boundsOf(missing);
    if (bounds.empty())
        return {};
    const Matrix toBounds = Matrix::translation(-bounds.x, -bounds.y) * transform;
    const Size size{bounds.width, bounds.height};
    const Image moved = library.warp(source, toBounds, size);
    const Image usable = sampled(valid.empty() ? Image(source.size, 1, 1) : valid, toBounds, size, cv::INTER_LINEAR);
    Shown shown;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            if (*missing.at(bounds.x + x, bounds.y + y) <= 0)
                continue;
            ++shown.wanted;
            if (*usable.at(x, y) < whollyCovered)
                ++shown.left;
            else
                take(bounds.x + x, bounds.y + y, moved.at(x, y));
        }
    return shown;
}

void checkFilled(const Image& image, const Image& missing, const Image& source)
{
    checkImage(image, "the image");
    checkMask(missing, image.size, "the mask of what is missing");
    if (source.channels != image.channels)
        throw std::invalid_argument("the source and the image differ in their channels");
}

} // namespace

void Library::insert(Image& image, const Image& matte, Color color, float opacity)
{
    checkImage(image, "the image");
    checkMask(matte, image.size, "the matte");
    const float first = image.channels == 1 ? rec709(color.red, color.green, color.blue) : color.red;
    const float target[] = {first, color.green, color.blue, 1};
    float* pixel = image.values.data();
    for (const float covered : matte.values) {
        mix(pixel, target, covered * opacity, image.channels);
        pixel += image.channels;
    }
}

void Library::layOver(Image& image, const Image& picture, float opacity)
{
    checkImage(image, "the image");
    checkImage(picture, "the picture");
    if (picture.channels != 4 || picture.size != image.size)
        throw std::invalid_argument("a picture to be laid over has four channels and the image's size");
    float* out = image.values.data();
    for (auto in = picture.values.begin(); in != picture.values.end(); in += 4) {
        const float first = image.channels == 1 ? rec709(in[0], in[1], in[2]) : in[0];
        const float over[] = {first, in[1], in[2], in[3]};
        for (int channel = 0; channel < image.channels; ++channel)
            out[channel] = out[channel] * (1 - in[3] * opacity) + over[channel] * opacity;
        out += image.channels;
    }
}

Image Library::warp(const Image& image, const Matrix& transform, Size size, Image* covered)
{
    checkImage(image, "the image");
    checkSize(size, "the moved image");
    checkTransform(transform, "the transform");
    if (std::max({size.width, size.height, image.size.width, image.size.height}) > largestSide)
        throw std::invalid_argument("an image to be moved cannot be wider or higher than " +
                                    std::to_string(largestSide) + " pixels");
    if (covered)
        *covered = sampled(Image(image.size, 1, 1), transform, size, cv::INTER_LINEAR);
    return sampled(image, transform, size, cv::INTER_CUBIC);
}

double Library::fill(Image& image, Image& missing, const Image& source, const Matrix& transform, const Image& valid)
{
    checkFilled(image, missing, source);
    const auto take = [&](int x, int y, const float* shown) {
        float& share = *missing.at(x, y);
        mix(image.at(x, y), shown, share, image.channels);
        share = 0;
    };
    const Shown shown = takeShown(*this, missing, source, transform, valid, take);
    return shown.wanted ? double(shown.left) / double(shown.wanted) : 0;
}

bool Library::gather(Image& sum, Image& count, const Image& missing, const Image& source, const Matrix& transform,
                     const Image& valid)
{
    checkFilled(sum, missing, source);
    checkMask(count, sum.size, "the counts");
    const Shown shown = takeShown(*this, missing, source, transform, valid, [&](int x, int y, const float* pixel) {
        ++*count.at(x, y);
        std::transform(pixel, pixel + sum.channels, sum.at(x, y), sum.at(x, y), std::plus<float>());
    });
    return shown.left < shown.wanted;
}

void Library::fillWithMean(Image& image, Image& missing, const Image& sum, const Image& count)
{
    checkFilled(image, missing, sum);
    checkMask(count, sum.size, "the counts");
    Image means = sum;
    for (std::size_t i = 0; i < count.values.size(); ++i) {
        if (count.values[i] <= 0)
            continue;
        const std::size_t first = i * std::size_t(image.channels);
        float* const mean = means.values.data() + first;
        std::transform(mean, mean + image.channels, mean, [&](float value) { return value / count.values[i]; });
        mix(image.values.data() + first, mean, missing.values[i], image.channels);
        missing.values[i] = 0;
    }
}

void Library::fillFromSurroundings(Image& image, const Image& missing)
{
    checkImage(image, "the image");
    checkMask(missing, image.size, "the mask of what is missing");
    if (boundsOf(missing).empty())
        return;
    cv::Mat known;
    cv::Mat(viewOf(missing) <= 0).convertTo(known, CV_32F, 1 / 255.0);
    cv::Mat colors = viewOf(image).clone();
    spread(colors, known);
    const float* color = colors.ptr<float>();
    float* pixel = image.values.data();
    for (const float share : missing.values)
        for (int channel = 0; channel < image.channels; ++channel, ++pixel, ++color)
            *pixel += (*color - *pixel) * share;
}

} // namespace pixels
