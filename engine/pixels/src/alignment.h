// Aligns a patch with one level of a frame: finds the transform, and the gain and offset of brightness, under which the
// frame looks most like the patch. What is maximised is the correlation coefficient, as ECC does.
#pragma once

#include "blocks.h"

namespace pixels {

// What is known of the transform before the frame is looked at: it fixes what the visible pixels do not determine.
struct Expectation
{
    Matrix toFrame;
    std::array<double, mostParameters> deviation{}; // of each parameter
};

struct Fit
{
    Matrix toFrame; // from the patch's plane to the pixels of the whole frame
    double correlation = 0;
    double visible = 0; // share of the patch that lies in view
    double seen = 0;    // share of the patch that is in view and believed
    double regular = 0; // share of what is seen that looks as it should
    double noise = 0;   // standard deviation of what is left
    std::size_t pixels = 0;
};

class LevelAlignment
{
public:
    // The two levels need not be the same: a surface that comes nearer is seen finer. `excluded` is empty or of the
    // size of the frame's level. All must outlive the alignment.
    LevelAlignment(const PatchLevel& patch, const cv::Mat& frame, int frameLevel, const cv::Mat& excluded);

    // How well the frame fits the patch under a transform.
    Fit evaluate(const Matrix& toFrame);

    // By block, what each pixel of it is to weigh; must outlive the alignment. Without it, all are believed.
    void believe(const std::vector<float>& blocks) { m_belief = &blocks; }

    // What lies nearer to the region's edge, in units of the patch's plane, weighs nothing.
    void leaveEdge(double depth) { m_edge = float(depth); }

    // At the place that was looked at last: whether what lies nearer to the edge than `depth` fits worse than the rest.
    bool edgeDiffers(double depth) const;

    // Likewise.
    BlockLooks looks(const BlockGrid& grid, const std::vector<float>& usualMismatch) const;

    // How far the corners may be from where the last fit has them, by what is seen: a standard deviation, in units of
    // the patch's plane.
    double uncertainty(int parameters, const std::array<Point, 4>& corners) const;

    // Improves `start` by steps of the first `parameters` parameters until none moves a corner by more than
    // `tolerance` pixels of the level.
    Fit refine(const Matrix& start, int parameters, const Expectation& expectation, const std::array<Point, 4>& corners,
               double tolerance, int mostSteps);

private:
    void look(const Matrix& toFrame); // samples, and decides what each pixel weighs
    void sample(const Matrix& toFrame);
    bool isVisible(float x, float y) const;
    float interpolated(float x, float y) const;
    void fitBrightness();
    void fitCurve();
    void weighResiduals();
    template <class Use>
    void forEachBlock(int parameters, const Use& use) const;
    cv::Mat1d normalMatrix(int parameters) const;
    cv::Mat1d rightSide(int parameters) const;
    void addExpectation(const Expectation& expectation, const Matrix& toFrame, int parameters, cv::Mat1d& normal,
                        cv::Mat1d& right) const;
    bool solveStep(const Matrix& toFrame, const cv::Mat1d& ofPixels, const Expectation& expectation,
                   std::vector<double>& step) const;
    Fit summary(const Matrix& toFrame) const;

    const PatchLevel& m_patch;
    const cv::Mat& m_frame;
    Matrix m_toLevel; // from the frame's pixels to the sample positions of its level
    const cv::Mat& m_excluded;
    std::vector<float> m_value; // of the frame, per pixel of the patch
    const std::vector<float>* m_belief = nullptr;
    float m_edge = 0;
    std::vector<float> m_visible;  // weight by what is in view
    std::vector<float> m_seen;     // the same, less what is not believed
    std::vector<float> m_weight;   // the same, less what looks irregular
    cv::Mat1d m_normal;            // of the last step that had one made
    std::vector<float> m_expected; // of the frame, were it the patch
    std::vector<float> m_slope;    // empty, or what m_expected changes by with the patch's value, in units of the gain
    double m_gain = 1;
    double m_offset = 0;
    double m_noise = 0;
};

// A motion within the patch's plane, of as many parameters as are given.
Matrix smallMotion(const std::vector<double>& parameters);

} // namespace pixels
