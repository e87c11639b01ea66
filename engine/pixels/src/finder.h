// Finds a region anywhere in a frame by its features, whatever it did since it was seen last.
#pragma once

#include "frame_pyramid.h"

#include <optional>

namespace pixels {

class Finder
{
public:
    Finder(std::shared_ptr<const FramePyramid> reference, const Image& region, MotionModel model);

    // From the reference frame to this one; nothing where too few features agree on a place. `excluded` is empty or of
    // the frame's size.
    std::optional<Matrix> find(const FramePyramid& frame, const Image& excluded) const;

private:
    struct Features
    {
        std::vector<cv::Point2f> points; // in pixels of the whole frame
        cv::Mat descriptors;
    };

    Features featuresOf(const FramePyramid& frame, const cv::Mat& mask, int most) const;
    std::optional<Matrix> placeOf(const std::vector<cv::Point2f>& from, const std::vector<cv::Point2f>& to) const;

    std::shared_ptr<const FramePyramid> m_reference;
    cv::Mat m_mask; // of the region, of bytes
    MotionModel m_model;
    std::size_t m_level;                        // of the pyramid that is looked at
    mutable std::optional<Features> m_features; // of the region, once they are asked for
};

} // namespace pixels
