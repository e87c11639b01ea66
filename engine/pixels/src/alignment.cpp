// The maximisation of the enhanced correlation coefficient in its inverse compositional form (G. Evangelidis and
// E. Psarakis, "Parametric image alignment using enhanced correlation coefficient maximization", PAMI 30(10), 2008).
//
// A step leaves the sampled frame f as it is and moves the patch p, which changes by G d with the parameters d. The
// correlation of f with p + G d, both without their means, is largest where a (p + G d) + b, for some gain a and offset
// b, comes nearest to f. That is linear in a, b and q = a d, so one small system gives the step d = q / a, and as G is
// known beforehand it costs one sampling of the frame.
//
// Two terms are added, which is why the library's own function is not used: each pixel has a weight, 0 where it is
// hidden and low where it does not look as it should, so that all means and products are weighted ones; and what is
// expected of the motion is added to the sum of squares, which decides what the visible pixels leave open. Without them
// both find the same transform.

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
constexpr int stepsWithNewMatrix = 2;

constexpr double differingEdge = 4;  // variance of what is left there, by that of the rest
constexpr double edgeMismatch = 0.1; // what may be left, by the square of the gradient

// Of the curve of brightness.
constexpr std::size_t fewestForCurve = 1000; // pixels
constexpr std::size_t curvePieces = 24;
constexpr double mostBend = 0.3;
constexpr double bendByNoise = 0.3;

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

Matrix smallMotion(const std::vector<double>& p)
{
    Matrix motion = Matrix::translation(p[0], p[1]);
    if (p.size() >= 6)
        motion = {{1 + p[2], p[3], p[0], p[4], 1 + p[5], p[1], 0, 0, 1}};
    if (p.size() == mostParameters) {
        motion(2, 0) = p[6];
        motion(2, 1) = p[7];
    }
    return motion;
}

LevelAlignment::LevelAlignment(const PatchLevel& patch, const cv::Mat& frame, int frameLevel, const cv::Mat& excluded)
    : m_patch(patch), m_frame(frame), m_toLevel(toLevel(frameLevel)), m_excluded(excluded), m_value(patch.size()),
      m_visible(patch.size()), m_seen(patch.size()), m_weight(patch.size()), m_expected(patch.size())
{}

void LevelAlignment::sample(const Matrix& toFrame)
{
    const Matrix whole = m_toLevel * toFrame;
    std::array<float, 9> m;
    std::transform(whole.values.begin(), whole.values.end(), m.begin(), [](double v) { return float(v); });
    std::array<float, blockSize> x, y, w;
    for (std::size_t begin = 0; begin < m_patch.size(); begin += blockSize) {
        const std::size_t count = std::min(blockSize, m_patch.size() - begin);
        const float *u = m_patch.x.data() + begin, *v = m_patch.y.data() + begin;
        for (std::size_t i = 0; i < count; ++i) {
            w[i] = m[6] * u[i] + m[7] * v[i] + m[8];
            x[i] = (m[0] * u[i] + m[1] * v[i] + m[2]) / w[i];
            y[i] = (m[3] * u[i] + m[4] * v[i] + m[5]) / w[i];
        }
        for (std::size_t i = 0; i < count; ++i) {
            const bool seen = w[i] > 0 && isVisible(x[i], y[i]);
            m_value[begin + i] = seen ? interpolated(x[i], y[i]) : 0;
            m_visible[begin + i] = seen ? m_patch.weight[begin + i] : 0;
        }
    }
}

bool LevelAlignment::isVisible(float x, float y) const
{
    return x >= 0 && y >= 0 && x < float(m_frame.cols - 1) && y < float(m_frame.rows - 1) &&
           (m_excluded.empty() || m_excluded.at<float>(int(y + 0.5f), int(x + 0.5f)) <= hidden);
}

float LevelAlignment::interpolated(float x, float y) const
{
    const auto column = int(x), row = int(y);
    const float *above = m_frame.ptr<float>(row) + column, *below = above + m_frame.step1();
    const float right = x - float(column), down = y - float(row);
    const float first = above[0] + right * (above[1] - above[0]), second = below[0] + right * (below[1] - below[0]);
    return first + down * (second - first);
}

void LevelAlignment::fitBrightness()
{
    const BrightnessSums sums = sumsOf(m_weight, m_patch.value, m_value);
    if (sums.weight <= 0)
        return;
    const double variance = sums.varianceX();
    m_gain = variance > 0 ? std::clamp(sums.covariance() / variance, 0.1, 10.0) : 1;
    m_offset = (sums.y - m_gain * sums.x) / sums.weight;
    m_slope.clear();
    const auto gain = float(m_gain), offset = float(m_offset);
    for (std::size_t i = 0; i < m_patch.size(); ++i)
        m_expected[i] = gain * m_patch.value[i] + offset;
}

// Where light that grows meets the limits of what a file can hold, brightness follows a curve instead of a line. It is
// fitted only where a line does not do, and is never steeper than the line by much.
void LevelAlignment::fitCurve()
{
    if (m_patch.size() < fewestForCurve)
        return;
    std::array<double, curvePieces + 1> weight{}, sum{};
    const auto [least, most] = std::minmax_element(m_patch.value.begin(), m_patch.value.end());
    const float first = *least, width = std::max((*most - first) / curvePieces, 1e-6f);
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const auto knot = std::size_t((m_patch.value[i] - first) / width + 0.5f);
        weight[knot] += m_weight[i];
        sum[knot] += m_weight[i] * (m_value[i] - m_expected[i]);
    }
    double all = 0, bend = 0;
    std::array<float, curvePieces + 1> curve;
    const double trust = 0.002 * double(m_patch.size());
    for (std::size_t knot = 0; knot <= curvePieces; ++knot) {
        const double from = std::clamp(sum[knot] / (weight[knot] + trust), -mostBend, mostBend);
        curve[knot] = float(from);
        bend += weight[knot] * from * from;
        all += weight[knot];
    }
    if (!(bend > all * bendByNoise * bendByNoise * m_noise * m_noise))
        return;
    m_slope.resize(m_patch.size());
    const auto perGain = float(1 / (m_gain * width));
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const float at = (m_patch.value[i] - first) / width;
        const auto knot = std::min(std::size_t(at), curvePieces - 1);
        const float step = curve[knot + 1] - curve[knot];
        m_expected[i] += curve[knot] + (at - float(knot)) * step;
        m_slope[i] = std::clamp(1 + step * perGain, 0.0f, 1.5f);
    }
}

// Brightness is fitted twice: what looks irregular under the first fit has less to say in the second.
void LevelAlignment::weighResiduals()
{
    const std::size_t step = m_patch.size() / 4096 + 1;
    std::vector<float> residuals;
    for (std::size_t i = 0; i < m_patch.size(); i += step)
        if (m_seen[i] > 0.5f)
            residuals.push_back(std::abs(m_value[i] - m_expected[i]));
    if (residuals.empty())
        return;
    const auto middle = residuals.begin() + std::ptrdiff_t(residuals.size() / 2);
    std::nth_element(residuals.begin(), middle, residuals.end());
    m_noise = std::max(1.4826 * *middle, leastNoise);
    const auto limit = float(regularResidual * m_noise);
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const float residual = std::abs(m_value[i] - m_expected[i]);
        const float excess = residual > limit ? limit / residual : 1;
        m_weight[i] = m_seen[i] * excess * excess;
    }
}

// Calls `use` with the first pixel and the number of pixels of each block, and with its columns of the linear system:
// the parameters, the patch's values (whose factor is the gain), and ones (the offset).
template <class Use>
void LevelAlignment::forEachBlock(int parameters, const Use& use) const
{
    const std::vector<float> ones(blockSize, 1);
    std::vector<const float*> columns(std::size_t(parameters + 2));
    std::vector<float> bent(m_slope.empty() ? 0 : blockSize * std::size_t(parameters));
    for (std::size_t begin = 0; begin < m_patch.size(); begin += blockSize) {
        const std::size_t count = std::min(blockSize, m_patch.size() - begin);
        for (std::size_t i = 0; i < std::size_t(parameters); ++i) {
            const float* const change = m_patch.change[i].data() + begin;
            columns[i] = change;
            if (m_slope.empty())
                continue;
            float* const column = bent.data() + i * blockSize;
            for (std::size_t k = 0; k < count; ++k)
                column[k] = m_slope[begin + k] * change[k];
            columns[i] = column;
        }
        columns[std::size_t(parameters)] = m_patch.value.data() + begin;
        columns[std::size_t(parameters + 1)] = ones.data();
        use(begin, count, columns);
    }
}

cv::Mat1d LevelAlignment::normalMatrix(int parameters) const
{
    cv::Mat1d normal = cv::Mat1d::zeros(parameters + 2, parameters + 2);
    std::vector<float> weighted(blockSize);
    forEachBlock(parameters, [&](std::size_t begin, std::size_t count, const std::vector<const float*>& columns) {
        for (int i = 0; i < normal.rows; ++i) {
            for (std::size_t k = 0; k < count; ++k)
                weighted[k] = m_weight[begin + k] * columns[std::size_t(i)][k];
            for (int j = 0; j <= i; ++j)
                normal(i, j) += dot(weighted.data(), columns[std::size_t(j)], count);
        }
    });
    cv::completeSymm(normal, true);
    return normal;
}

cv::Mat1d LevelAlignment::rightSide(int parameters) const
{
    cv::Mat1d right = cv::Mat1d::zeros(parameters + 2, 1);
    std::vector<float> residual(blockSize);
    forEachBlock(parameters, [&](std::size_t begin, std::size_t count, const std::vector<const float*>& columns) {
        const float *weight = m_weight.data() + begin, *seen = m_value.data() + begin;
        const float* expected = m_expected.data() + begin;
        for (std::size_t k = 0; k < count; ++k)
            residual[k] = weight[k] * (seen[k] - expected[k]);
        for (int i = 0; i < right.rows; ++i)
            right(i, 0) += dot(residual.data(), columns[std::size_t(i)], count);
    });
    return right;
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

bool LevelAlignment::solveStep(const Matrix& toFrame, const cv::Mat1d& ofPixels, const Expectation& expectation,
                               std::vector<double>& step) const
{
    const int parameters = int(step.size());
    cv::Mat1d normal = ofPixels.clone(), right = rightSide(parameters), solution;
    addExpectation(expectation, toFrame, parameters, normal, right);
    for (int i = 0; i < normal.rows; ++i)
        normal(i, i) *= 1 + 1e-9;
    if (!cv::solve(normal, right, solution, cv::DECOMP_CHOLESKY))
        return false;
    const double changed = m_gain + solution(parameters), gain = changed > 0 ? changed : m_gain;
    std::transform(solution.begin(), solution.begin() + parameters, step.begin(),
                   [gain](double value) { return value / gain; });
    const double largest = std::abs(*std::max_element(step.begin(), step.end(), smaller));
    if (largest > longestStep)
        std::for_each(step.begin(), step.end(), [&](double& value) { value *= longestStep / largest; });
    return std::isfinite(largest);
}

Fit LevelAlignment::summary(const Matrix& toFrame) const
{
    Fit fit;
    fit.toFrame = toFrame;
    const BrightnessSums sums = sumsOf(m_weight, m_expected, m_value);
    double whole = 0, visible = 0, seen = 0;
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        whole += m_patch.weight[i];
        visible += m_visible[i];
        seen += m_seen[i];
        fit.pixels += m_visible[i] > 0;
    }
    if (sums.weight <= 0)
        return fit;
    fit.visible = visible / whole;
    fit.seen = seen / whole;
    fit.regular = sums.weight / seen;
    fit.noise = m_noise;
    const double product = sums.varianceX() * sums.varianceY();
    fit.correlation = product > 1e-12 * sums.weight * sums.weight ? sums.covariance() / std::sqrt(product) : 0;
    return fit;
}

void LevelAlignment::look(const Matrix& toFrame)
{
    sample(toFrame);
    m_seen = m_visible;
    if (m_belief)
        for (std::size_t i = 0; i < m_seen.size(); ++i)
            m_seen[i] *= (*m_belief)[m_patch.block[i]];
    if (m_edge > 0)
        for (std::size_t i = 0; i < m_seen.size(); ++i)
            m_seen[i] = m_patch.depth[i] < m_edge ? 0 : m_seen[i];
    m_weight = m_seen;
    fitBrightness();
    weighResiduals();
    fitCurve();
    if (!m_slope.empty())
        weighResiduals();
}

Fit LevelAlignment::evaluate(const Matrix& toFrame)
{
    look(toFrame);
    return summary(toFrame);
}

BlockLooks LevelAlignment::looks(const BlockGrid& grid, const std::vector<float>& usualMismatch) const
{
    std::vector<BlockSums> blocks(grid.count());
    const auto gain = float(m_gain), perPixel = 1 / m_patch.perUnit;
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        if (!(m_visible[i] > 0))
            continue;
        BlockSums& b = blocks[m_patch.block[i]];
        const float p = m_expected[i] / gain, r = m_value[i] - m_expected[i];
        const float slope = m_slope.empty() ? perPixel : perPixel * m_slope[i];
        const float gx = m_patch.change[0][i] * slope, gy = m_patch.change[1][i] * slope;
        ++b.count;
        b.r += r;
        b.rr += r * r;
        b.gx += gx;
        b.gy += gy;
        b.gxx += gx * gx;
        b.gxy += gx * gy;
        b.gyy += gy * gy;
        b.gxr += gx * r;
        b.gyr += gy * r;
        b.p += p;
        b.pp += p * p;
    }
    return judge(blocks, grid, double(m_patch.size()), m_gain, m_noise, usualMismatch);
}

bool LevelAlignment::edgeDiffers(double depth) const
{
    std::array<double, 2> squares{}, weight{};
    for (std::size_t i = 0; i < m_patch.size(); ++i) {
        const std::size_t part = m_patch.depth[i] < depth;
        const double residual = m_value[i] - m_expected[i], gain = m_gain / m_patch.perUnit;
        const double gx = gain * m_patch.change[0][i], gy = gain * m_patch.change[1][i];
        squares[part] += m_seen[i] * residual * residual / (m_noise * m_noise + edgeMismatch * (gx * gx + gy * gy));
        weight[part] += m_seen[i];
    }
    return squares[1] * weight[0] > differingEdge * squares[0] * weight[1];
}

double LevelAlignment::uncertainty(int parameters, const std::array<Point, 4>& corners) const
{
    cv::Mat1d covariance;
    cv::Mat1d normal = m_normal.clone();
    if (normal.rows != parameters + 2)
        return 1e9;
    for (int i = 0; i < normal.rows; ++i)
        normal(i, i) = normal(i, i) * (1 + 1e-9) + 1e-12;
    if (cv::invert(normal, covariance, cv::DECOMP_CHOLESKY) == 0)
        return 1e9;
    covariance *= pixelsPerMeasurement * m_noise * m_noise / (m_gain * m_gain);
    double worst = 0;
    for (const Point c : corners) {
        const cv::Mat1d change = (cv::Mat1d(2, mostParameters) << 1, 0, c.x, c.y, 0, 0, -c.x * c.x, -c.x * c.y, //
                                  0, 1, 0, 0, c.x, c.y, -c.x * c.y, -c.y * c.y);
        const cv::Mat1d of = change.colRange(0, parameters);
        const cv::Mat1d spread = of * covariance(cv::Rect(0, 0, parameters, parameters)) * of.t();
        worst = std::max(worst, spread(0, 0) + spread(1, 1));
    }
    return std::sqrt(worst);
}

Fit LevelAlignment::refine(const Matrix& start, int parameters, const Expectation& expectation,
                           const std::array<Point, 4>& corners, double tolerance, int mostSteps)
{
    Matrix toFrame = start;
    std::vector<double> step(static_cast<std::size_t>(parameters));
    for (int count = 0; count < mostSteps; ++count) {
        look(toFrame);
        // Later the weights hardly change, and what is solved for is what is left, so an older matrix does.
        if (count < stepsWithNewMatrix)
            m_normal = normalMatrix(parameters);
        if (!solveStep(toFrame, m_normal, expectation, step))
            break;
        const Matrix next = toFrame * smallMotion(step).inverse();
        const Matrix before = m_toLevel * toFrame, after = m_toLevel * next;
        double moved = 0;
        for (const Point corner : corners) {
            const Point from = before.map(corner), to = after.map(corner);
            moved = std::max({moved, std::abs(to.x - from.x), std::abs(to.y - from.y)});
        }
        if (!std::isfinite(moved))
            break;
        toFrame = next;
        if (moved < tolerance)
            return summary(toFrame);
    }
    return evaluate(toFrame);
}

} // namespace pixels
