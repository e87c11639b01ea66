// Smoothing is by the same width whatever the footage: enough to keep grain and the sampling grid out of the alignment,
// too little to lose what there is to align.

#include "frame_pyramid.h"

#include "arguments.h"

#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr double smoothing = 0.8;
constexpr int smallestLevel = 24;
constexpr std::size_t mostLevels = 7;

// Footage of floating point may hold what is no number, or light sources that would outweigh all else.
void tame(cv::Mat& luminance)
{
    cv::patchNaNs(luminance, 0);
    cv::min(cv::max(luminance, -1), 16, luminance);
}

} // namespace

cv::Mat viewOf(const Image& image)
{
    return {image.size.height, image.size.width, CV_32FC(image.channels), const_cast<float*>(image.values.data())};
}

std::shared_ptr<const FramePyramid> framePyramid(const Image& frame)
{
    checkImage(frame, "a frame to track in");
    auto pyramid = std::make_shared<FramePyramid>();
    pyramid->size = frame.size;
    cv::Mat luminance;
    if (frame.channels == 1)
        luminance = viewOf(frame).clone();
    else
        cv::cvtColor(viewOf(frame), luminance, frame.channels == 3 ? cv::COLOR_RGB2GRAY : cv::COLOR_RGBA2GRAY);
    tame(luminance);
    cv::GaussianBlur(luminance, luminance, {}, smoothing);
    pyramid->levels.push_back(luminance);
    while (pyramid->levels.size() < mostLevels &&
           std::min(pyramid->levels.back().cols, pyramid->levels.back().rows) >= 2 * smallestLevel) {
        cv::Mat half;
        cv::pyrDown(pyramid->levels.back(), half);
        pyramid->levels.push_back(half);
    }
    return pyramid;
}

std::vector<cv::Mat> maskPyramid(const Image& mask, std::size_t levels)
{
    std::vector<cv::Mat> pyramid{viewOf(mask)};
    while (pyramid.size() < levels) {
        cv::Mat half;
        cv::pyrDown(pyramid.back(), half);
        pyramid.push_back(half);
    }
    return pyramid;
}

} // namespace pixels
