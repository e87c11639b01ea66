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
constexpr double suspiciousLoss = 0.15;                          // of what is seen of the patch
constexpr double sharpMotion = 2;                                // pixels between two frames that are not taken to blur
constexpr double widestEdge = 0.15;                              // of half the patch's size
constexpr double leastRegular = 0.3;
constexpr double mostAstray = 0.25;                // of what is seen of the patch
constexpr double mostUncertainty = 4;              // of a corner, in pixels
constexpr double poorGuess = 0.8;                  // a correlation on the coarsest level that calls for a search
constexpr int searchReach = 5, farSearchReach = 9; // pixels of that level
constexpr std::size_t mostPlaces = 3;              // to try of a search
constexpr double farDeviation = 0.2;               // of the patch's size
// From where on a frame does not lie between its neighbours: in pixels, by its uncertainty, by how far they are apart.
constexpr double leastGlitch = 1.5, glitchByUncertainty = 4, glitchByMotion = 0.1;
constexpr double largestChange = 3;                            // of the patch's size between two frames
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
      m_finder(m_reference, region, model), m_last(m_patch.toReference()), m_belief(m_patch.blocks().count(), 1),
      m_usual(m_belief.size(), 0), m_mismatch(mismatchAtFirst)
{}

Expectation PatchTracker::expected() const
{
    Expectation expectation;
    expectation.toFrame = m_motion && m_missed == 0 ? normalised(m_last * *m_motion) : m_last;
    if (!sound(expectation.toFrame, m_patch.corners()))
        expectation.toFrame = m_last;
    double moved = m_motion && m_missed == 0 ? 0 : m_patch.extent();
    for (const Point corner : m_patch.corners()) {
        const Point from = m_last.map(corner), to = expectation.toFrame.map(corner);
        moved = std::max(moved, std::hypot(to.x - from.x, to.y - from.y));
    }
    const double extent = std::sqrt(std::abs(areaScale(m_last)));
    const double deviation = (1 + m_missed) * (steadiness + shareOfMotion * moved) / extent;
    expectation.deviation.fill(deviation);
    expectation.deviation[6] = expectation.deviation[7] = perspectiveSteadiness * deviation;
    return expectation;
}

std::vector<PatchTracker::Pair> PatchTracker::pairs(const FramePyramid& frame, const Matrix& toFrame) const
{
    const double scale = std::sqrt(std::abs(areaScale(toFrame))) / m_patch.extent();
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
    const Pair coarsest = pairs(scene.frame, m_last).back();
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

double PatchTracker::worthOf(const Attempt& attempt)
{
    return attempt.looks.seen * (1 - attempt.looks.astray) * attempt.fit.correlation;
}

// Of two, the one that can be right, and of two such the one of which more is seen that is alike.
const PatchTracker::Attempt& PatchTracker::better(const Attempt& one, const Attempt& other) const
{
    const bool works = problemOf(other).empty();
    return works && (!problemOf(one).empty() || worthOf(other) > worthOf(one)) ? other : one;
}

PatchTracker::Attempt PatchTracker::alignNearby(const Scene& scene) const
{
    const Expectation expectation = expected();
    LevelAlignment alignment = alignmentOf(scene, pairs(scene.frame, m_last).back());
    alignment.believe(m_belief);
    const double there = alignment.evaluate(expectation.toFrame).correlation;
    const double before = alignment.evaluate(m_last).correlation;
    const Matrix& guess = there >= before ? expectation.toFrame : m_last;
    Attempt best = align(scene, guess, expectation, Start::Expected);
    if (std::max(there, before) >= poorGuess || !doubtful(best))
        return best;
    for (const Matrix& start : searched(scene, {guess}, searchReach))
        best = better(best, align(scene, start, expectation, Start::Expected));
    return best;
}

// Where the patch could be when it is not near where it was: further away, turned, larger or smaller.
PatchTracker::Attempt PatchTracker::alignFarAway(const Scene& scene) const
{
    std::vector<Matrix> turned;
    for (const double scale : {1.0, 0.84, 1.19})
        for (const double angle : {0.0, -0.22, 0.22}) {
            const double c = scale * std::cos(angle), s = scale * std::sin(angle);
            turned.push_back(m_last * Matrix{{c, -s, 0, s, c, 0, 0, 0, 1}});
        }
    if (m_parameters == 2)
        turned.resize(1);
    Attempt best;
    for (const Matrix& start : searched(scene, turned, farSearchReach))
        best = better(best, alignAbout(scene, start, Start::Searched));
    return best;
}

PatchTracker::Attempt PatchTracker::alignFound(const Scene& scene) const
{
    const std::optional<Matrix> found = m_finder.find(scene.frame, scene.mask);
    if (!found)
        return {};
    const Matrix place = normalised(*found * m_patch.toReference());
    return sound(place, m_patch.corners()) ? alignAbout(scene, place, Start::Found) : Attempt();
}

PatchTracker::Attempt PatchTracker::alignAbout(const Scene& scene, const Matrix& place, Start kind) const
{
    Expectation expectation;
    expectation.toFrame = place;
    expectation.deviation.fill(farDeviation);
    return align(scene, place, expectation, kind);
}

// Blocks are judged where they have enough pixels, and no more than are needed.
bool PatchTracker::judgesBlocks(const PatchLevel& level) const
{
    constexpr std::size_t enough = 20, most = 60000;
    return level.size() >= enough * m_patch.blocks().count() && level.size() <= most;
}

// While the shutter is open, what moves is mixed along its edge with what lies behind it.
double PatchTracker::blurredEdge(const Matrix& now) const
{
    if (m_missed > 0)
        return 0;
    const double scale = std::sqrt(std::abs(areaScale(now))), moved = apart(now, m_last);
    return moved < sharpMotion ? 0 : std::min(0.5 * moved / scale, widestEdge);
}

PatchTracker::Attempt PatchTracker::align(const Scene& scene, const Matrix& start, const Expectation& expectation,
                                          Start kind) const
{
    Attempt attempt;
    Fit& fit = attempt.fit;
    fit.toFrame = start;
    std::vector<float> belief =
        kind == Start::Expected ? shrunk(m_belief, m_patch.blocks()) : std::vector<float>(m_belief.size(), 1);
    std::vector<Pair> pairs = this->pairs(scene.frame, start);
    // What features say is exact enough to begin where blocks can be judged.
    if (kind == Start::Found &&
        std::any_of(pairs.begin(), pairs.end(), [&](const Pair& p) { return judgesBlocks(*p.patch); }))
        while (!judgesBlocks(*pairs.back().patch))
            pairs.pop_back();
    const double edge = blurredEdge(start);
    double left = 0;
    const Pair* judging = nullptr;
    for (std::size_t i = pairs.size(); i-- > 0;) {
        LevelAlignment alignment = alignmentOf(scene, pairs[i]);
        const int parameters = parametersFor(pairs[i].patch->size(), m_parameters);
        const bool finest = i == 0, judges = judgesBlocks(*pairs[i].patch);
        alignment.believe(belief);
        if (judges) {
            judging = &pairs[i];
            alignment.evaluate(fit.toFrame);
            left = edge > 0 && alignment.edgeDiffers(edge) ? edge : 0;
            belief = alignment.looks(m_patch.blocks(), m_usual).belief;
        }
        alignment.leaveEdge(left);
        if (i + 1 == pairs.size() && parameters > 2)
            fit = alignment.refine(fit.toFrame, 2, expectation, m_patch.corners(), coarseTolerance, mostCoarseSteps);
        const Fit refined =
            alignment.refine(fit.toFrame, finest ? m_parameters : parameters, expectation, m_patch.corners(),
                             finest ? fineTolerance : coarseTolerance, finest ? mostFineSteps : mostCoarseSteps);
        if (finest || refined.correlation >= fit.correlation || sound(refined.toFrame, m_patch.corners()))
            fit = refined;
        if (finest)
            attempt.uncertainty =
                alignment.uncertainty(m_parameters, m_patch.corners()) * std::sqrt(std::abs(areaScale(fit.toFrame)));
    }
    if (judging) {
        LevelAlignment alignment = alignmentOf(scene, *judging);
        alignment.believe(belief);
        alignment.leaveEdge(left);
        alignment.evaluate(fit.toFrame);
        attempt.looks = alignment.looks(m_patch.blocks(), m_usual);
    } else {
        attempt.looks.belief = m_belief;
        attempt.looks.mismatch = m_usual;
        attempt.looks.seen = fit.seen;
    }
    fit.toFrame = normalised(fit.toFrame);
    return attempt;
}

std::string PatchTracker::problemOf(const Attempt& attempt) const
{
    const Fit& fit = attempt.fit;
    const bool again = m_missed > 0; // to be found again takes more than to be followed
    const double least = (again ? 1.2 : 1) * leastVisible(m_parameters);
    if (std::min(fit.visible, attempt.looks.seen) < least)
        return "the region has left the view or is hidden";
    const double tolerated = std::clamp(mismatchGrowth * m_mismatch, alwaysTolerated, 1 - leastCorrelation);
    if (1 - fit.correlation > tolerated || fit.regular < leastRegular)
        return "the region does not look like it does in the reference frame";
    const double change = areaScale(fit.toFrame) / areaScale(m_last), most = again ? 27 : largestChange;
    if (!sound(fit.toFrame, m_patch.corners()) || !(change < most && change > 1 / most))
        return "the region changes its form too much from one frame to the next";
    if (m_parameters == mostParameters && attempt.looks.astray > mostAstray)
        return "the region does not move as one plane";
    if (attempt.uncertainty > (again ? 0.5 : 1) * mostUncertainty)
        return "too little is seen of the region to tell where it is";
    return {};
}

bool PatchTracker::doubtful(const Attempt& attempt) const
{
    return !problemOf(attempt).empty() || attempt.looks.seen < m_seen - suspiciousLoss ||
           1 - attempt.fit.correlation > std::max(suspiciousGrowth * m_mismatch, neverSuspicious);
}

PatchTracker::Attempt PatchTracker::attemptIn(const Scene& scene) const
{
    Attempt attempt = alignNearby(scene);
    if (doubtful(attempt))
        attempt = better(attempt, alignFound(scene));
    if (doubtful(attempt))
        attempt = better(attempt, alignFarAway(scene));
    return attempt;
}

void PatchTracker::accept(const Attempt& attempt)
{
    const double mismatch = 1 - attempt.fit.correlation;
    m_mismatch = m_motion ? (m_mismatch + mismatch) / 2 : mismatch;
    m_motion = m_missed == 0 ? std::optional<Matrix>(normalised(m_last.inverse() * attempt.fit.toFrame)) : std::nullopt;
    m_last = attempt.fit.toFrame;
    m_belief = attempt.looks.belief;
    m_seen = attempt.looks.seen;
    for (std::size_t i = 0; i < m_usual.size(); ++i)
        m_usual[i] += 0.5f * m_belief[i] * (attempt.looks.mismatch[i] - m_usual[i]);
    m_missed = 0;
}

TrackResult PatchTracker::resultOf(const Attempt& attempt) const
{
    TrackResult result;
    result.problem = problemOf(attempt);
    result.aligned = result.problem.empty();
    result.quality = std::clamp(attempt.fit.correlation, 0.0, 1.0);
    result.visible = std::min(attempt.fit.visible, attempt.looks.seen);
    result.transform = normalised((result.aligned ? attempt.fit.toFrame : m_last) * m_patch.toReference().inverse());
    return result;
}

double PatchTracker::apart(const Matrix& one, const Matrix& other) const
{
    double worst = 0;
    for (const Point corner : m_patch.corners()) {
        const Point a = one.map(corner), b = other.map(corner);
        worst = std::max(worst, std::hypot(a.x - b.x, a.y - b.y));
    }
    return worst;
}

// A frame that is lost between two that are not, or lies far from both, is tried again from between them.
void PatchTracker::reconsider(TrackResult& result)
{
    if (!m_before || !m_earlier)
        return;
    Before& before = *m_before;
    Matrix between;
    for (std::size_t i = 0; i < between.values.size(); ++i)
        between.values[i] = (m_last.values[i] + m_earlier->values[i]) / 2;
    const double reach =
        std::max({leastGlitch, glitchByUncertainty * before.uncertainty, glitchByMotion * apart(m_last, *m_earlier)});
    const double off = before.aligned ? apart(before.toFrame, between) : 0;
    if (before.aligned && off < reach)
        return;
    const auto& frame = static_cast<const FramePyramid&>(*before.frame);
    const Attempt again = alignAbout(sceneOf(frame, before.excluded), between, Start::Expected);
    TrackResult revised = resultOf(again);
    if (revised.aligned && apart(again.fit.toFrame, between) > std::max(off, 2 * reach))
        revised.aligned = false;
    if (before.aligned) {
        const bool confirmed = revised.aligned && apart(again.fit.toFrame, before.toFrame) < leastGlitch / 2;
        const bool worse = revised.aligned ? worthOf(again) < before.worth - 0.02 : off < 4 * reach;
        if (confirmed || worse)
            return;
    } else if (!revised.aligned)
        return;
    if (!revised.aligned)
        revised.problem = "the region is where neither the frame before nor the one after lets it be";
    before.aligned = revised.aligned;
    before.toFrame = again.fit.toFrame;
    m_motion.reset();
    if (before.aligned)
        m_motion = normalised(before.toFrame.inverse() * m_last);
    result.before.push_back(revised);
}

PatchTracker::Scene PatchTracker::sceneOf(const FramePyramid& frame, const Image& excluded)
{
    return {frame, excluded.empty() ? std::vector<cv::Mat>() : maskPyramid(excluded, frame.levels.size()), excluded};
}

TrackResult PatchTracker::advance(const SharedTrackingFrame& frame, const Image& excluded)
{
    const auto* pyramid = dynamic_cast<const FramePyramid*>(frame.get());
    if (!pyramid)
        throw std::invalid_argument("a frame to track in was not made by this library");
    if (pyramid->size != m_reference->size)
        throw std::invalid_argument("a frame to track in has not the size of the reference frame");
    if (!excluded.empty())
        checkMask(excluded, pyramid->size, "the mask of what hides the region");

    const Attempt attempt = attemptIn(sceneOf(*pyramid, excluded));
    TrackResult result = resultOf(attempt);
    if (result.aligned) {
        accept(attempt);
        reconsider(result);
    } else
        ++m_missed;
    m_earlier.reset();
    if (!m_before || m_before->aligned)
        m_earlier = m_before ? m_before->toFrame : m_patch.toReference();
    m_before = Before{frame, excluded, attempt.fit.toFrame, result.aligned, attempt.uncertainty, worthOf(attempt)};
    return result;
}

} // namespace pixels
