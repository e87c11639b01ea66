// Follows a patch from frame to frame: guesses where it is, searches where the guess is poor, aligns from coarse to
// fine, and judges the outcome.
#pragma once

#include "alignment.h"
#include "finder.h"

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
        const Image& mask;             // the same as an image

        const cv::Mat& excludedAt(int level) const;
    };

    // A place of the patch, and what there is to say for it.
    struct Attempt
    {
        Fit fit;
        BlockLooks looks;
        double uncertainty = 1e9; // of the corners, in pixels
    };

    // What is known of where an alignment starts: it follows from the frames before; or a search says that it is about
    // there; or features say so that agree on it.
    enum class Start { Expected, Searched, Found };

    // A frame that was dealt with, for as long as the next one may say more of it.
    struct Before
    {
        SharedTrackingFrame frame;
        Image excluded;
        Matrix toFrame;
        bool aligned = true;
        double uncertainty = 0;
        double worth = 0;
    };

    Expectation expected() const;
    std::vector<Pair> pairs(const FramePyramid& frame, const Matrix& toFrame) const;
    LevelAlignment alignmentOf(const Scene& scene, const Pair& pair) const;
    std::vector<Matrix> searched(const Scene& scene, const std::vector<Matrix>& around, int reach) const;
    Attempt alignNearby(const Scene& scene) const;
    Attempt alignFarAway(const Scene& scene) const;
    const Attempt& better(const Attempt& one, const Attempt& other) const;
    Attempt alignFound(const Scene& scene) const;
    Attempt alignAbout(const Scene& scene, const Matrix& place, Start kind) const;
    Attempt align(const Scene& scene, const Matrix& start, const Expectation& expectation, Start kind) const;
    static double worthOf(const Attempt& attempt);
    double apart(const Matrix& one, const Matrix& other) const; // of the corners, in pixels
    double blurredEdge(const Matrix& now) const;
    bool judgesBlocks(const PatchLevel& level) const;
    std::string problemOf(const Attempt& attempt) const;
    bool doubtful(const Attempt& attempt) const;
    Attempt attemptIn(const Scene& scene) const;
    void accept(const Attempt& attempt);
    TrackResult resultOf(const Attempt& attempt) const;
    void reconsider(TrackResult& result);

    static Scene sceneOf(const FramePyramid& frame, const Image& excluded);

    std::shared_ptr<const FramePyramid> m_reference;
    Patch m_patch;
    int m_parameters;
    Finder m_finder;
    Matrix m_last;                   // from the patch's plane to the last aligned frame
    std::optional<Matrix> m_motion;  // of the patch in its own plane, between the last two aligned frames
    std::vector<float> m_belief;     // by block, in the last aligned frame
    std::vector<float> m_usual;      // by block, by how much it has not looked like itself of late
    double m_seen = 1;               // the share of the patch that was seen in that frame
    double m_mismatch;               // by how much the correlation has missed 1 of late
    int m_missed = 0;                // frames since the last one that was aligned
    std::optional<Before> m_before;  // the last frame
    std::optional<Matrix> m_earlier; // the place in the one before it, if it was aligned
};

} // namespace pixels
