// A frame as tracking sees it: its luminance, lightly smoothed, in steps of half the size.
#pragma once

#include <engine/pixels/pixels.h>
#include <opencv2/core.hpp>

namespace pixels {

struct FramePyramid final : TrackingFrame
{
    Size size;
    std::vector<cv::Mat> levels; // of float; pixel (x, y) of a level lies over pixel (2x, 2y) of the one before
};

std::shared_ptr<const FramePyramid> framePyramid(const Image& frame);

// A mask in the same steps.
std::vector<cv::Mat> maskPyramid(const Image& mask, std::size_t levels);

// The image's values as a matrix that shares them; never written to.
cv::Mat viewOf(const Image& image);

} // namespace pixels
