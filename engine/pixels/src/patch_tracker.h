// Follows a patch from frame to frame: guesses where it is, searches where the guess is poor, aligns from coarse to
// fine, and judges the outcome.
#pragma once

#include "alignment.h"

#include <optional>

namespace pixels {

class PatchTracker final : public Tracker
{
public:
    PatchTracker(std::shared_ptr<const FramePyramid> reference, const Image& region, MotionModel model);

    TrackResult advance(const SharedTrackingFrame& frame, const Image& excluded) override;

private:
    // The levels of patch and frame to compare, the finest first.
    struct Pair
    {
        const PatchLevel* patch;
        int frameLevel;
    };

    struct Scene
    {
        const FramePyramid& frame;
        std::vector<cv::Mat> excluded; // as many as the frame has levels, or none

        const cv::Mat& excludedAt(int level) const;
    };

    Expectation expected() const;
    std::vector<Pair> pairs(const FramePyramid& frame) const;
    LevelAlignment alignmentOf(const Scene& scene, const Pair& pair) const;
    std::vector<Matrix> searched(const Scene& scene, const std::vector<Matrix>& around, int reach) const;
    Fit alignNearby(const Scene& scene) const;
    Fit alignFarAway(const Scene& scene) const;
    const Fit& better(const Fit& one, const Fit& other) const;
    Fit align(const Scene& scene, const Matrix& start, const Expectation& expectation) const;
    std::string problemOf(const Fit& fit) const;

    std::shared_ptr<const FramePyramid> m_reference;
    Patch m_patch;
    int m_parameters;
    Matrix m_last;                  // from the patch's plane to the last aligned frame
    std::optional<Matrix> m_motion; // of the patch in its own plane, between the last two aligned frames
    double m_mismatch;              // by how much the correlation has missed 1 of late
};

} // namespace pixels
