// The operations on whole images; OpenCV does the sampling.

#include "operations.h"

#include "arguments.h"
#include "frame_pyramid.h"

#include <algorithm>
#include <cmath>
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

} // namespace

void insertColor(Image& image, const Image& matte, Color color, float opacity)
{
    checkImage(image, "the image");
    checkMask(matte, image.size, "the matte");
    const float grey = 0.2126f * color.red + 0.7152f * color.green + 0.0722f * color.blue;
    const bool isGrey = image.channels == 1;
    const float target[] = {isGrey ? grey : color.red, color.green, color.blue, 1};
    float* pixel = image.values.data();
    for (const float covered : matte.values) {
        const float share = covered * opacity;
        for (int channel = 0; channel < image.channels; ++channel, ++pixel)
            *pixel += (target[channel] - *pixel) * share;
    }
}

Image warped(const Image& image, const Matrix& transform, Size size, Image* covered)
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

double fillFrom(Image& image, Image& missing, const Image& source, const Matrix& transform, const Image& valid)
{
    constexpr float whollyCovered = 0.999f;
    checkImage(image, "the image");
    checkMask(missing, image.size, "the mask of what is missing");
    checkImage(source, "the source");
    checkTransform(transform, "the transform");
    if (source.channels != image.channels)
        throw std::invalid_argument("the source and the image differ in their channels");
    if (!valid.empty())
        checkMask(valid, source.size, "the mask of what is valid");
    const cv::Rect bounds = boundsOf(missing);
    if (bounds.empty())
        return 0;

    const Matrix toBounds = Matrix::translation(-bounds.x, -bounds.y) * transform;
    const Size size{bounds.width, bounds.height};
    const Image moved = warped(source, toBounds, size, nullptr);
    const Image usable = sampled(valid.empty() ? Image(source.size, 1, 1) : valid, toBounds, size, cv::INTER_LINEAR);
    std::size_t wanted = 0, left = 0;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            float& share = *missing.at(bounds.x + x, bounds.y + y);
            if (share <= 0)
                continue;
            ++wanted;
            if (*usable.at(x, y) < whollyCovered) {
                ++left;
                continue;
            }
            float* pixel = image.at(bounds.x + x, bounds.y + y);
            for (int channel = 0; channel < image.channels; ++channel)
                pixel[channel] += (moved.at(x, y)[channel] - pixel[channel]) * share;
            share = 0;
        }
    return double(left) / double(wanted);
}

void fillSmoothly(Image& image, const Image& missing)
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
