// Gauss-Newton in the inverse compositional form (S. Baker and I. Matthews, "Lucas-Kanade 20 years on", 2004): how the
// patch changes with its parameters is known beforehand, so a step costs one sampling of the frame and one small linear
// system, in which gain and offset of brightness are unknowns as well. The library's own ECC is not used because it can
// neither weigh pixels of the patch nor be told what is known of the motion; both are needed where the patch is partly
// hidden or out of view.

#include "alignment.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

constexpr float hidden = 0.1f;        // excluded by more than this share, a pixel is not looked at
constexpr double regularResidual = 2; // in standard deviations; beyond, a residual's weight falls
constexpr double leastNoise = 5e-4;
constexpr std::size_t blockSize = 512; // pixels whose columns fit the nearest cache together
// Neighbouring pixels share grain through the smoothing, so many of them say less than they seem to.
constexpr double pixelsPerMeasurement = 8;

// Of a parameter at once; more is outside of what a linear view of the patch can say.
constexpr double longestStep = 0.25;

bool smaller(double a, double b) { return std::abs(a) < std::abs(b); }

struct BrightnessSums
{
    double weight = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0;

    double covariance() const { return xy - x * y / weight; }
    double varianceX() const { return xx - x * x / weight; }
    double varianceY() const { return yy - y * y / weight; }
};

BrightnessSums sumsOf(const std::vector<float>& weight, const std::vector<float>& x, const std::vector<float>& y)
{
    BrightnessSums sums;
    for (std::size_t i = 0; i < weight.size(); ++i) {
        const double w = weight[i], wx = w * x[i], wy = w * y[i];
        sums.weight += w;
        sums.x += wx;
        sums.y += wy;
        sums.xx += wx * x[i];
        sums.xy += wx * y[i];
        sums.yy += wy * y[i];
    }
    return sums;
}

float dot(const float* a, const float* b, std::size_t count)
{
    float sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += a[i] * b[i];
    return sum;
}

// To the sample positions of a level, whose first sample is the origin.
Matrix toLevel(int level)
{
    const double part = 1.0 / (1 << level);
    return {{part, 0, -0.5 * part, 0, part, -0.5 * part, 0, 0, 1}};
}

} // namespace

Matrix smallMotion(const double* p, int count)
{
    Matrix motion = Matrix::translation(p[0], p[1]);
    if (count >= 6)
        motion = {{1 + p[2], p[3], p[0], p[4], 1 + p[5], p[1], 0, 0, 1}};
    if (count == mostParameters) {
        motion(2, 0) = p[6];
        motion(2, 1) = p[7];
    }
    return motion;
}

LevelAlignment::LevelAlignment(const PatchLevel& patch, const cv::Mat& frame, int frameLevel, const cv::Mat& excluded)
    : m_patch(patch), m_frame(frame), m_toLevel(toLevel(frameLevel)), m_excluded(excluded), m_value(patch.size()),
      m_visible(patch.size()), m_weight(patch.size())
{}

void LevelAlignment::sample(const Matrix& toFrame)
{
    const Matrix whole = m_toLevel * toFrame;
    std::array<float, 9> m;
    std::transform(whole.values.begin(), whole.values.end(), m.begin(), [](double v) { return float(v); });
    const auto right = float(m_frame.cols - 1), bottom = float(m_frame.rows - 1);
    const auto stride = std::ptrdiff_t(m_frame.step1());
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const float u = m_patch.x[i], v = m_patch.y[i];
        const float w = m[6] * u + m[7] * v + m[8];
        const float x = (m[0] * u + m[1] * v + m[2]) / w, y = (m[3] * u + m[4] * v + m[5]) / w;
        m_visible[i] = m_value[i] = 0;
        if (!(w > 0 && x >= 0 && y >= 0 && x < right && y < bottom))
            continue;
        const auto column = int(x), row = int(y);
        if (!m_excluded.empty() && m_excluded.at<float>(int(y + 0.5f), int(x + 0.5f)) > hidden)
            continue;
        const float* at = m_frame.ptr<float>(row) + column;
        const float fx = x - float(column), fy = y - float(row);
        const float above = at[0] + fx * (at[1] - at[0]), below = at[stride] + fx * (at[stride + 1] - at[stride]);
        m_value[i] = above + fy * (below - above);
        m_visible[i] = m_patch.weight[i];
    }
}

void LevelAlignment::fitBrightness()
{
    const BrightnessSums sums = sumsOf(m_weight, m_patch.value, m_value);
    if (sums.weight <= 0)
        return;
    const double variance = sums.varianceX();
    m_gain = variance > 0 ? std::clamp(sums.covariance() / variance, 0.1, 10.0) : 1;
    m_offset = (sums.y - m_gain * sums.x) / sums.weight;
}

// Brightness is fitted twice: what looks irregular under the first fit has less to say in the second.
void LevelAlignment::weighResiduals()
{
    const auto gain = float(m_gain), offset = float(m_offset);
    const std::size_t step = m_patch.size() / 4096 + 1;
    std::vector<float> residuals;
    for (std::size_t i = 0; i < m_patch.size(); i += step)
        if (m_visible[i] > 0)
            residuals.push_back(std::abs(m_value[i] - gain * m_patch.value[i] - offset));
    if (residuals.empty())
        return;
    const auto middle = residuals.begin() + std::ptrdiff_t(residuals.size() / 2);
    std::nth_element(residuals.begin(), middle, residuals.end());
    m_noise = std::max(1.4826 * *middle, leastNoise);
    const auto limit = float(regularResidual * m_noise);
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const float residual = std::abs(m_value[i] - gain * m_patch.value[i] - offset);
        const float excess = residual > limit ? limit / residual : 1;
        m_weight[i] = m_visible[i] * excess * excess;
    }
}

void LevelAlignment::addNormalEquations(int parameters, cv::Mat1d& normal, cv::Mat1d& right) const
{
    const int unknowns = parameters + 2;
    std::vector<float> columns(std::size_t(unknowns + 1) * blockSize), weighted(blockSize);
    for (std::size_t begin = 0; begin < m_patch.size(); begin += blockSize) {
        const std::size_t count = std::min(blockSize, m_patch.size() - begin);
        std::vector<const float*> column;
        for (int i = 0; i < parameters; ++i)
            column.push_back(m_patch.change[std::size_t(i)].data() + begin);
        float* ones = columns.data();
        std::fill_n(ones, count, 1.0f);
        column.insert(column.end(), {m_patch.value.data() + begin, ones, m_value.data() + begin});
        for (int i = 0; i <= unknowns; ++i) {
            for (std::size_t k = 0; k < count; ++k)
                weighted[k] = m_weight[begin + k] * column[std::size_t(i)][k];
            if (i == unknowns)
                break;
            for (int j = 0; j <= i; ++j)
                normal(i, j) += dot(weighted.data(), column[std::size_t(j)], count);
            right(i, 0) += dot(weighted.data(), column.back(), count);
        }
    }
    for (int i = 0; i < unknowns; ++i)
        for (int j = i + 1; j < unknowns; ++j)
            normal(i, j) = normal(j, i);
}

// The unknowns of the motion are scaled by the gain, and so is what is expected of them.
void LevelAlignment::addExpectation(const Expectation& expectation, const Matrix& toFrame, int parameters,
                                    cv::Mat1d& normal, cv::Mat1d& right) const
{
    Matrix deviation = expectation.toFrame.inverse() * toFrame;
    const double scale = 1 / deviation(2, 2);
    for (double& value : deviation.values)
        value *= scale;
    const double from[] = {deviation(0, 2), deviation(1, 2),     deviation(0, 0) - 1, deviation(0, 1),
                           deviation(1, 0), deviation(1, 1) - 1, deviation(2, 0),     deviation(2, 1)};
    const double variance = pixelsPerMeasurement * m_noise * m_noise;
    for (int i = 0; i < parameters; ++i) {
        const double expected = expectation.deviation[std::size_t(i)] * m_gain;
        const double trust = variance / (expected * expected);
        normal(i, i) += trust;
        right(i, 0) += trust * from[i] * m_gain;
    }
}

bool LevelAlignment::solveStep(const Matrix& toFrame, int parameters, const Expectation* expectation, double* step)
{
    const int unknowns = parameters + 2;
    cv::Mat1d normal = cv::Mat1d::zeros(unknowns, unknowns), right = cv::Mat1d::zeros(unknowns, 1), solution;
    addNormalEquations(parameters, normal, right);
    if (expectation)
        addExpectation(*expectation, toFrame, parameters, normal, right);
    for (int i = 0; i < unknowns; ++i)
        normal(i, i) *= 1 + 1e-9;
    if (!cv::solve(normal, right, solution, cv::DECOMP_CHOLESKY))
        return false;
    m_gain = std::clamp(solution(parameters, 0), 0.1, 10.0);
    m_offset = solution(parameters + 1, 0);
    for (int i = 0; i < parameters; ++i)
        step[i] = solution(i, 0) / m_gain;
    return std::all_of(step, step + parameters, [](double value) { return std::isfinite(value); });
}

Fit LevelAlignment::summary(const Matrix& toFrame) const
{
    Fit fit;
    fit.toFrame = toFrame;
    const BrightnessSums sums = sumsOf(m_weight, m_patch.value, m_value);
    double whole = 0, visible = 0;
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        whole += m_patch.weight[i];
        visible += m_visible[i];
        fit.pixels += m_visible[i] > 0;
    }
    if (sums.weight <= 0)
        return fit;
    fit.visible = visible / whole;
    fit.regular = sums.weight / visible;
    fit.noise = m_noise;
    const double product = sums.varianceX() * sums.varianceY();
    fit.correlation = product > 1e-12 * sums.weight * sums.weight ? sums.covariance() / std::sqrt(product) : 0;
    return fit;
}

Fit LevelAlignment::evaluate(const Matrix& toFrame)
{
    sample(toFrame);
    m_weight = m_visible;
    fitBrightness();
    weighResiduals();
    return summary(toFrame);
}

Fit LevelAlignment::refine(const Matrix& start, int parameters, const Expectation* expectation,
                           const std::array<Point, 4>& corners, double tolerance, int mostSteps)
{
    Matrix toFrame = start;
    for (int count = 0; count < mostSteps; ++count) {
        sample(toFrame);
        m_weight = m_visible;
        fitBrightness();
        weighResiduals();
        double step[mostParameters] = {};
        if (!solveStep(toFrame, parameters, expectation, step))
            break;
        const double largest = std::abs(*std::max_element(step, step + parameters, smaller));
        if (largest > longestStep)
            std::for_each(step, step + parameters, [&](double& value) { value *= longestStep / largest; });
        const Matrix next = toFrame * smallMotion(step, parameters).inverse();
        double moved = 0;
        for (const Point corner : corners) {
            const Point from = (m_toLevel * toFrame).map(corner), to = (m_toLevel * next).map(corner);
            moved = std::max({moved, std::abs(to.x - from.x), std::abs(to.y - from.y)});
        }
        if (!std::isfinite(moved))
            break;
        toFrame = next;
        if (moved < tolerance)
            break;
    }
    return evaluate(toFrame);
}

} // namespace pixels
