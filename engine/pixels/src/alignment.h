// Aligns a patch with one level of a frame: finds the transform, and the gain and offset of brightness, under which the
// frame looks most like the patch. What is maximised is the correlation coefficient, as ECC does.
#pragma once

#include "patch.h"

namespace pixels {

// What is known of the transform before the frame is looked at: it decides what the visible pixels leave open.
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

    // How the frame fits under a transform.
    Fit evaluate(const Matrix& toFrame);

    // Improves `start` by steps of the first `parameters` parameters until none moves a corner by more than
    // `tolerance` pixels of the level.
    Fit refine(const Matrix& start, int parameters, const Expectation* expectation, const std::array<Point, 4>& corners,
               double tolerance, int mostSteps);

private:
    void sample(const Matrix& toFrame);
    void fitBrightness();
    void weighResiduals();
    bool solveStep(const Matrix& toFrame, int parameters, const Expectation* expectation, double* step);
    void addNormalEquations(int parameters, cv::Mat1d& normal, cv::Mat1d& right) const;
    void addExpectation(const Expectation& expectation, const Matrix& toFrame, int parameters, cv::Mat1d& normal,
                        cv::Mat1d& right) const;
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

// A point of the patch's plane after a small motion with the given parameters.
Matrix smallMotion(const double* parameters, int count);

} // namespace pixels
