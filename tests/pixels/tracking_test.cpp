// Tracking made footage whose truth is known.

#include "test_images.h"

#include <algorithm>
#include <made_footage.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>

using namespace pixels;

namespace {

Outline outlineOf(const std::array<Point, 4>& corners)
{
    Outline outline;
    for (const Point corner : corners)
        outline.push_back({corner.x, corner.y, 0});
    return outline;
}

Image regionOf(const MadeFootage& footage, int frame)
{
    return library().coverage({outlineOf(footage.corners(frame))}, footage.options().size);
}

double cornerError(const MadeFootage& footage, int from, int to, const Matrix& transform)
{
    double worst = 0;
    const auto start = footage.corners(from), truth = footage.corners(to);
    for (std::size_t i = 0; i < 4; ++i) {
        const Point found = transform.map(start[i]);
        worst = std::max(worst, std::hypot(found.x - truth[i].x, found.y - truth[i].y));
    }
    return worst;
}

FootageOptions smallFootage()
{
    FootageOptions options;
    options.size = {192, 108};
    options.frames = 24;
    return options;
}

// The worst corner error from frame `from` to frame `to`, in either direction.
double worstError(const MadeFootage& footage, int from, int to, bool maskOccluder = false)
{
    const auto tracker = library().track(library().prepare(footage.frame(from)), regionOf(footage, from));
    double worst = 0;
    for (int frame = from; frame != to;) {
        frame += from < to ? 1 : -1;
        Image excluded;
        if (maskOccluder)
            excluded = library().coverage({footage.occluder(frame)}, footage.options().size);
        const TrackResult result = tracker->advance(library().prepare(footage.frame(frame)), excluded);
        EXPECT_TRUE(result.aligned) << frame << ": " << result.problem;
        EXPECT_GT(result.quality, 0.7);
        worst = std::max(worst, cornerError(footage, from, frame, result.transform));
    }
    return worst;
}

TEST(Tracking, FollowsTheSurface)
{
    const FootageOptions usual = smallFootage();
    FootageOptions poor = usual, occluded = usual, leaving = usual;
    poor.noise = 0.03;
    poor.blur = 1.2;
    poor.brightness = -0.5;
    occluded.occluder = true;
    occluded.motion = 0.6;
    leaving.size = {384, 216};
    leaving.frames = 40;
    leaving.leaving = 0.7;
    EXPECT_LT(worstError(MadeFootage(usual), 0, 23), 0.8);
    EXPECT_LT(worstError(MadeFootage(usual), 12, 0), 0.8);
    EXPECT_LT(worstError(MadeFootage(poor), 0, 23), 1.2);
    EXPECT_LT(worstError(MadeFootage(occluded), 0, 23, true), 0.8);
    EXPECT_LT(worstError(MadeFootage(occluded), 0, 23, false), 2.5);
    EXPECT_LT(worstError(MadeFootage(leaving), 0, 39), 2.5);
}

// Fast motion, of which a third is hidden from one frame to the next.
TEST(Tracking, IsRightOrLostWhenMuchIsHiddenAtOnce)
{
    int aligned = 0;
    for (unsigned seed = 1; seed <= 4; ++seed) { // two masked, two not
        FootageOptions options = smallFootage();
        options.frames = 12;
        options.seed = seed;
        const MadeFootage footage(options);
        const auto tracker = library().track(library().prepare(footage.frame(0)), regionOf(footage, 0));
        for (int frame = 1; frame < options.frames; ++frame) {
            const auto corners = footage.corners(frame);
            const auto between = [](Point a, Point b) { return Point{a.x / 3 + b.x * 2 / 3, a.y / 3 + b.y * 2 / 3}; };
            const Outline third =
                outlineOf({between(corners[0], corners[1]), corners[1], corners[2], between(corners[3], corners[2])});
            Image image = footage.frame(frame), hidden;
            if (frame >= 2) {
                hidden = library().coverage({third}, options.size);
                library().insert(image, hidden, {0.7f, 0.2f, 0.1f});
            }
            const TrackResult result = tracker->advance(library().prepare(image), seed > 2 ? Image() : hidden);
            if (!result.aligned)
                continue;
            ++aligned;
            EXPECT_LT(result.visible, frame >= 2 ? 0.85 : 1.01);
            EXPECT_LT(cornerError(footage, 0, frame, result.transform), 4) << seed << ", " << frame;
        }
    }
    EXPECT_GT(aligned, 28); // of 44
}

TEST(Tracking, IsRightOrLostWhenAlmostAllHasLeftTheView)
{
    FootageOptions options = smallFootage();
    options.frames = 30;
    options.leaving = 1.2;
    int lost = 0;
    for (options.seed = 1; options.seed <= 4; ++options.seed) {
        const MadeFootage footage(options);
        const auto tracker = library().track(library().prepare(footage.frame(0)), regionOf(footage, 0));
        for (int frame = 1; frame < options.frames; ++frame) {
            const TrackResult result = tracker->advance(library().prepare(footage.frame(frame)));
            if (!result.aligned) {
                ++lost;
                break;
            }
            EXPECT_LT(cornerError(footage, 0, frame, result.transform), 4) << options.seed << ", " << frame;
        }
    }
    EXPECT_EQ(lost, 4);
}

// Where nothing is hidden, both maximise the same.
TEST(Tracking, AgreesWithOpenCvsCorrelationOfCleanImages)
{
    FootageOptions options;
    options.size = {640, 360};
    options.noise = 0;
    const MadeFootage footage(options);
    const Image reference = footage.frame(0);
    Image region(options.size, 1);
    const cv::Rect box(220, 122, 200, 116);
    cv::Mat(360, 640, CV_32F, region.values.data())(box) = 1;
    const auto grey = [](Image image) {
        cv::Mat luminance;
        cv::cvtColor(cv::Mat(360, 640, CV_32FC3, image.values.data()), luminance, cv::COLOR_RGB2GRAY);
        cv::GaussianBlur(luminance, luminance, {}, 0.8); // before the box is cut out: its border is not to be smoothed
        return luminance;
    };
    const auto tracker = library().track(library().prepare(reference), region);
    double apart = 0;
    for (int frame = 1; frame <= 3; ++frame) {
        const Matrix ours = tracker->advance(library().prepare(footage.frame(frame))).transform;
        cv::Mat warp = (cv::Mat_<float>(3, 3) << 1, 0, box.x, 0, 1, box.y, 0, 0, 1);
        cv::findTransformECC(grey(reference)(box), grey(footage.frame(frame)), warp, cv::MOTION_HOMOGRAPHY,
                             {cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 100, 1e-7}, cv::noArray(), 1);
        Matrix fromBox;
        std::copy_n(warp.ptr<float>(), 9, fromBox.values.begin());
        const Matrix theirs = Matrix::translation(0.5, 0.5) * fromBox * Matrix::translation(-box.x - 0.5, -box.y - 0.5);
        for (const double x : {220, 320, 420})
            for (const double y : {122, 180, 238})
                apart +=
                    std::hypot(ours.map({x, y}).x - theirs.map({x, y}).x, ours.map({x, y}).y - theirs.map({x, y}).y);
    }
    EXPECT_LT(apart / 27, 0.05);
}

TEST(Tracking, SimplerModelsFollowWhatTheyCan)
{
    FootageOptions options = smallFootage();
    options.motion = 0.15; // hardly turns or tilts
    const MadeFootage footage(options);
    const auto reference = library().prepare(footage.frame(0));
    const Image region = regionOf(footage, 0);
    for (const MotionModel model : {MotionModel::Translation, MotionModel::Affine}) {
        const auto tracker = library().track(reference, region, model);
        TrackResult result;
        for (int frame = 1; frame < 12; ++frame)
            result = tracker->advance(library().prepare(footage.frame(frame)));
        EXPECT_TRUE(result.aligned) << result.problem;
        EXPECT_LT(cornerError(footage, 0, 11, result.transform), model == MotionModel::Affine ? 1.5 : 8);
        EXPECT_EQ(result.transform(2, 0), 0);
        if (model == MotionModel::Translation) {
            EXPECT_NEAR(result.transform(0, 0), 1, 1e-12);
            EXPECT_NEAR(result.transform(0, 1), 0, 1e-12);
        }
    }
}

TEST(Tracking, FindsWhatJumped)
{
    FootageOptions options = smallFootage();
    options.motion = 0;
    options.brightness = 0;
    const MadeFootage footage(options);
    const Image still = footage.frame(0);
    const auto tracker = library().track(library().prepare(still), regionOf(footage, 0));
    const Matrix jump = Matrix::translation(21, -13);
    const TrackResult result = tracker->advance(library().prepare(library().warp(still, jump, still.size)));
    EXPECT_TRUE(result.aligned) << result.problem;
    EXPECT_LT(std::hypot(result.transform.map({90, 50}).x - 111, result.transform.map({90, 50}).y - 37), 0.1);
}

TEST(Tracking, SaysWhyAFrameCannotBeAlignedAndGoesOnFromTheLast)
{
    const MadeFootage footage(smallFootage());
    const Size size = footage.options().size;
    const auto tracker = library().track(library().prepare(footage.frame(0)), regionOf(footage, 0));
    const Matrix last = tracker->advance(library().prepare(footage.frame(1))).transform;

    const TrackResult other = tracker->advance(library().prepare(grain(size, 3)));
    EXPECT_FALSE(other.aligned);
    EXPECT_TRUE(contains(other.problem, "does not look like"));
    EXPECT_EQ(other.transform.values, last.values);
    for (const float plain : {0.0f, 0.5f, 1.0f})
        EXPECT_FALSE(tracker->advance(library().prepare(Image(size, 3, plain))).aligned);
    const TrackResult hidden = tracker->advance(library().prepare(footage.frame(2)), Image(size, 1, 1));
    EXPECT_TRUE(contains(hidden.problem, "is hidden"));
    EXPECT_EQ(hidden.visible, 0);

    const TrackResult back = tracker->advance(library().prepare(footage.frame(2)));
    EXPECT_TRUE(back.aligned);
    EXPECT_LT(cornerError(footage, 0, 2, back.transform), 0.8);
}

TEST(Tracking, RefusesRegionsWithNothingToFollow)
{
    const Image plain({64, 48}, 3, 0.5f), picture = gradient({64, 48}, 3);
    Image region({64, 48}, 1), dot({64, 48}, 1);
    for (int y = 10; y < 40; ++y)
        std::fill(region.at(10, y), region.at(50, y), 1.0f);
    *dot.at(20, 20) = 1;
    const auto problem = [](const Image& frame, const Image& mask) {
        return errorOf<RegionError>([&] { library().track(library().prepare(frame), mask); });
    };
    EXPECT_TRUE(contains(problem(plain, region), "nothing in it"));
    EXPECT_TRUE(contains(problem(picture, Image({64, 48}, 1)), "covers no pixel"));
    EXPECT_TRUE(contains(problem(picture, dot), "too few pixels"));

    const auto tracker = library().track(library().prepare(picture), region);
    EXPECT_THROW(library().track(library().prepare(picture), Image({32, 48}, 1, 1)), std::invalid_argument);
    EXPECT_THROW(tracker->advance(library().prepare(Image({32, 48}, 3))), std::invalid_argument);
    EXPECT_THROW(tracker->advance(library().prepare(picture), Image({32, 48}, 1)), std::invalid_argument);
    EXPECT_THROW(tracker->advance(nullptr), std::invalid_argument);
}

TEST(Tracking, SurvivesValuesThatAreNoNumbers)
{
    const MadeFootage footage(smallFootage());
    Image spoiled = footage.frame(1);
    spoiled.at(90, 50)[0] = NAN;
    spoiled.at(100, 55)[1] = INFINITY;
    const auto tracker = library().track(library().prepare(footage.frame(0)), regionOf(footage, 0));
    const TrackResult result = tracker->advance(library().prepare(spoiled));
    EXPECT_TRUE(result.aligned) << result.problem;
    EXPECT_LT(cornerError(footage, 0, 1, result.transform), 0.8);
}

} // namespace
