// Aligns a patch with one level of a frame: finds the transform, and the gain and offset of brightness, under which the
// frame looks most like the patch. What is maximised is the correlation coefficient, as ECC does.
#pragma once

#include "patch.h"

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
    double regular = 0; // share of what is visible that looks as it should
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
    std::vector<float> m_value;   // of the frame, per pixel of the patch
    std::vector<float> m_visible; // weight by what can be seen
    std::vector<float> m_weight;  // the same, less what looks irregular
    double m_gain = 1;
    double m_offset = 0;
    double m_noise = 0;
};

// A motion within the patch's plane, of as many parameters as are given.
Matrix smallMotion(const std::vector<double>& parameters);

} // namespace pixels
