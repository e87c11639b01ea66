// What the visible pixels leave open, because most of the patch is hidden or has left the view, is held by what the
// frames before let expect; where they say enough the expectation weighs nothing.

#include "patch_tracker.h"

#include "arguments.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

constexpr double leastSearched = 0.04; // of the patch, that must be in view where it is looked for
constexpr double leastCorrelation = 0.5;
// By how much the correlation may miss 1, given by how much it did in the frames before: a wrong place looks alike by
// chance, but not nearly as much.
constexpr double mismatchAtFirst = 0.1, mismatchGrowth = 3, alwaysTolerated = 0.1;
constexpr double suspiciousGrowth = 1.5, neverSuspicious = 0.03; // from where on other places are tried as well
constexpr double leastRegular = 0.3;
constexpr double poorGuess = 0.8;                  // a correlation on the coarsest level that calls for a search
constexpr int searchReach = 5, farSearchReach = 9; // pixels of that level
constexpr std::size_t mostPlaces = 3;              // to try of a search
constexpr double farDeviation = 0.2;               // of the patch's size
constexpr double largestChange = 3;                // of the patch's size between two frames
constexpr double coarseTolerance = 0.05, fineTolerance = 0.01; // pixels of a level
constexpr int mostCoarseSteps = 20, mostFineSteps = 15;

// How far a frame may be from what the one before let expect, in pixels.
constexpr double steadiness = 1.5;
constexpr double shareOfMotion = 0.5;
constexpr double perspectiveSteadiness = 0.3; // the perspective changes less than the place

int parametersFor(std::size_t pixels, int wanted)
{
    constexpr std::size_t enoughForAffine = 40, enoughForPerspective = 160;
    return std::min(wanted, pixels < enoughForAffine ? 2 : pixels < enoughForPerspective ? 6 : mostParameters);
}

// How much of the patch must be seen for its corners to be known: the more freely it moves, the more.
double leastVisible(int parameters) { return parameters == 2 ? 0.04 : parameters == mostParameters ? 0.2 : 0.08; }

// Of areas, by a transform from the patch's plane, at the plane's origin.
double areaScale(const Matrix& m)
{
    const double w = m(2, 2);
    const Point at = m.map({0, 0});
    const double a = (m(0, 0) - at.x * m(2, 0)) / w, b = (m(0, 1) - at.x * m(2, 1)) / w;
    const double c = (m(1, 0) - at.y * m(2, 0)) / w, d = (m(1, 1) - at.y * m(2, 1)) / w;
    return a * d - b * c;
}

bool sound(const Matrix& toFrame, const std::array<Point, 4>& corners)
{
    return std::all_of(corners.begin(), corners.end(), [&](Point corner) {
        const double w = toFrame(2, 0) * corner.x + toFrame(2, 1) * corner.y + toFrame(2, 2);
        return w > 0.05 * toFrame(2, 2) && toFrame(2, 2) > 0;
    });
}

Matrix normalised(Matrix matrix)
{
    const double scale = 1 / matrix(2, 2);
    for (double& value : matrix.values)
        value *= scale;
    return matrix;
}

} // namespace

const cv::Mat& PatchTracker::Scene::excludedAt(int level) const
{
    static const cv::Mat none;
    return excluded.empty() ? none : excluded[std::size_t(level)];
}

PatchTracker::PatchTracker(std::shared_ptr<const FramePyramid> reference, const Image& region, MotionModel model)
    : m_reference(std::move(reference)), m_patch(*m_reference, region), m_parameters(parameterCount(model)),
      m_last(m_patch.toReference()), m_mismatch(mismatchAtFirst)
{}

Expectation PatchTracker::expected() const
{
    Expectation expectation;
    expectation.toFrame = m_motion ? normalised(m_last * *m_motion) : m_last;
    if (!sound(expectation.toFrame, m_patch.corners()))
        expectation.toFrame = m_last;
    double moved = m_motion ? 0 : m_patch.extent();
    for (const Point corner : m_patch.corners()) {
        const Point from = m_last.map(corner), to = expectation.toFrame.map(corner);
        moved = std::max(moved, std::hypot(to.x - from.x, to.y - from.y));
    }
    const double extent = std::sqrt(std::abs(areaScale(m_last)));
    const double deviation = (steadiness + shareOfMotion * moved) / extent;
    expectation.deviation.fill(deviation);
    expectation.deviation[6] = expectation.deviation[7] = perspectiveSteadiness * deviation;
    return expectation;
}

std::vector<PatchTracker::Pair> PatchTracker::pairs(const FramePyramid& frame) const
{
    const double scale = std::sqrt(std::abs(areaScale(m_last))) / m_patch.extent();
    const int finer = int(std::lround(std::log2(std::max(scale, 1e-3))));
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < frame.levels.size(); ++i) {
        const std::size_t patchLevel = i + std::size_t(std::max(0, -finer));
        const std::size_t frameLevel = i + std::size_t(std::max(0, finer));
        if (patchLevel < m_patch.levels().size() && frameLevel < frame.levels.size())
            pairs.push_back({&m_patch.levels()[patchLevel], int(frameLevel)});
    }
    if (pairs.empty())
        pairs.push_back({&m_patch.levels().back(), std::clamp(finer, 0, int(frame.levels.size()) - 1)});
    return pairs;
}

LevelAlignment PatchTracker::alignmentOf(const Scene& scene, const Pair& pair) const
{
    return {*pair.patch, scene.frame.levels[std::size_t(pair.frameLevel)], pair.frameLevel,
            scene.excludedAt(pair.frameLevel)};
}

// The best of a grid of places around each of the given transforms, each away from the better ones.
std::vector<Matrix> PatchTracker::searched(const Scene& scene, const std::vector<Matrix>& around, int reach) const
{
    struct Candidate
    {
        Matrix toFrame;
        double quality;
    };
    const Pair coarsest = pairs(scene.frame).back();
    LevelAlignment alignment = alignmentOf(scene, coarsest);
    const double step = double(1 << coarsest.frameLevel);
    std::vector<Candidate> candidates;
    for (const Matrix& start : around)
        for (int y = -reach; y <= reach; ++y)
            for (int x = -reach; x <= reach; ++x) {
                const Matrix tried = Matrix::translation(x * step, y * step) * start;
                const Fit fit = alignment.evaluate(tried);
                if (fit.visible > leastSearched)
                    candidates.push_back({tried, fit.correlation * fit.visible});
            }
    std::sort(candidates.begin(), candidates.end(),
              [](const Candidate& a, const Candidate& b) { return a.quality > b.quality; });
    std::vector<Matrix> best;
    for (const Candidate& candidate : candidates) {
        const Point at = candidate.toFrame.map({0, 0});
        const bool isNew = std::none_of(best.begin(), best.end(), [&](const Matrix& other) {
            const Point there = other.map({0, 0});
            return std::max(std::abs(there.x - at.x), std::abs(there.y - at.y)) < 2.5 * step;
        });
        if (isNew)
            best.push_back(candidate.toFrame);
        if (best.size() == mostPlaces)
            break;
    }
    return best;
}

// Of two, the one that can be right, and of two such the more alike.
const Fit& PatchTracker::better(const Fit& one, const Fit& other) const
{
    const bool works = problemOf(other).empty();
    return works && (!problemOf(one).empty() || other.correlation > one.correlation) ? other : one;
}

Fit PatchTracker::alignNearby(const Scene& scene) const
{
    const Expectation expectation = expected();
    LevelAlignment alignment = alignmentOf(scene, pairs(scene.frame).back());
    const double there = alignment.evaluate(expectation.toFrame).correlation;
    const double before = alignment.evaluate(m_last).correlation;
    const Matrix& guess = there >= before ? expectation.toFrame : m_last;
    if (std::max(there, before) >= poorGuess)
        return align(scene, guess, expectation);
    Fit best;
    for (const Matrix& start : searched(scene, {guess}, searchReach)) {
        const Fit fit = align(scene, start, expectation);
        best = best.pixels == 0 ? fit : better(best, fit);
    }
    return best;
}

// Where the patch could be when it is not near where it was: further away, turned, larger or smaller.
Fit PatchTracker::alignFarAway(const Scene& scene) const
{
    std::vector<Matrix> turned;
    for (const double scale : {1.0, 0.84, 1.19})
        for (const double angle : {0.0, -0.22, 0.22}) {
            const double c = scale * std::cos(angle), s = scale * std::sin(angle);
            turned.push_back(m_last * Matrix{{c, -s, 0, s, c, 0, 0, 0, 1}});
        }
    if (m_parameters == 2)
        turned.resize(1);
    Fit best;
    for (const Matrix& start : searched(scene, turned, farSearchReach)) {
        Expectation expectation;
        expectation.toFrame = start;
        expectation.deviation.fill(farDeviation);
        best = better(best, align(scene, start, expectation));
    }
    return best;
}

Fit PatchTracker::align(const Scene& scene, const Matrix& start, const Expectation& expectation) const
{
    Fit fit;
    fit.toFrame = start;
    const std::vector<Pair> pairs = this->pairs(scene.frame);
    for (std::size_t i = pairs.size(); i-- > 0;) {
        LevelAlignment alignment = alignmentOf(scene, pairs[i]);
        const int parameters = parametersFor(pairs[i].patch->size(), m_parameters);
        const bool finest = i == 0;
        if (i + 1 == pairs.size() && parameters > 2)
            fit = alignment.refine(fit.toFrame, 2, expectation, m_patch.corners(), coarseTolerance, mostCoarseSteps);
        const Fit refined =
            alignment.refine(fit.toFrame, finest ? m_parameters : parameters, expectation, m_patch.corners(),
                             finest ? fineTolerance : coarseTolerance, finest ? mostFineSteps : mostCoarseSteps);
        if (finest || refined.correlation >= fit.correlation || sound(refined.toFrame, m_patch.corners()))
            fit = refined;
    }
    fit.toFrame = normalised(fit.toFrame);
    return fit;
}

std::string PatchTracker::problemOf(const Fit& fit) const
{
    if (fit.visible < leastVisible(m_parameters))
        return "the region has left the view or is hidden";
    const double tolerated = std::clamp(mismatchGrowth * m_mismatch, alwaysTolerated, 1 - leastCorrelation);
    if (1 - fit.correlation > tolerated || fit.regular < leastRegular)
        return "the region does not look like it does in the reference frame";
    const double change = areaScale(fit.toFrame) / areaScale(m_last);
    if (!sound(fit.toFrame, m_patch.corners()) || !(change < largestChange && change > 1 / largestChange))
        return "the region changes its form too much from one frame to the next";
    return {};
}

TrackResult PatchTracker::advance(const SharedTrackingFrame& frame, const Image& excluded)
{
    const auto* pyramid = dynamic_cast<const FramePyramid*>(frame.get());
    if (!pyramid)
        throw std::invalid_argument("a frame to track in was not made by this library");
    if (pyramid->size != m_reference->size)
        throw std::invalid_argument("a frame to track in has not the size of the reference frame");
    Scene scene{*pyramid, {}};
    if (!excluded.empty()) {
        checkMask(excluded, pyramid->size, "the mask of what hides the region");
        scene.excluded = maskPyramid(excluded, pyramid->levels.size());
    }

    Fit fit = alignNearby(scene);
    if (1 - fit.correlation > std::max(suspiciousGrowth * m_mismatch, neverSuspicious) || !problemOf(fit).empty())
        fit = better(fit, alignFarAway(scene));
    TrackResult result;
    result.problem = problemOf(fit);
    result.aligned = result.problem.empty();
    result.quality = std::clamp(fit.correlation, 0.0, 1.0);
    result.visible = fit.visible;
    if (result.aligned) {
        const double mismatch = 1 - fit.correlation;
        m_mismatch = m_motion ? (m_mismatch + mismatch) / 2 : mismatch;
        m_motion = normalised(m_last.inverse() * fit.toFrame);
        m_last = fit.toFrame;
    }
    result.transform = normalised(m_last * m_patch.toReference().inverse());
    return result;
}

} // namespace pixels
