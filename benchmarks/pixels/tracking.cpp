// Tracks made footage, and does the same with OpenCV's ECC alone: three levels, each frame started from the one before,
// the reference cut to the surface's box.

#include "measure.h"

#include <cstdio>
#include <made_footage.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>

using namespace pixels;

namespace {

struct Scene
{
    const char* name;
    FootageOptions options;
};

struct Outcome
{
    PointError inView; // of the corners that are in view
    PointError all;
    Watch watch;
    int lost = 0;
};

bool isInView(Point point, Size size)
{
    return point.x >= 0 && point.y >= 0 && point.x <= size.width && point.y <= size.height;
}

void judge(Outcome& outcome, const MadeFootage& footage, int frame, const Matrix& transform)
{
    const auto start = footage.corners(0), truth = footage.corners(frame);
    for (std::size_t i = 0; i < start.size(); ++i) {
        const Point found = transform.map(start[i]);
        outcome.all.add(found, truth[i]);
        if (isInView(truth[i], footage.options().size))
            outcome.inView.add(found, truth[i]);
    }
}

Image regionOf(const MadeFootage& footage)
{
    Outline outline;
    for (const Point corner : footage.corners(0))
        outline.push_back({corner.x, corner.y, 0});
    return library().coverage({outline}, footage.options().size);
}

class EccAlone
{
public:
    EccAlone(const Image& reference, const Image& region)
    {
        const cv::Mat mask(region.size.height, region.size.width, CV_32F, const_cast<float*>(region.values.data()));
        m_box = cv::boundingRect(mask > 0.5);
        m_box.width -= m_box.width % 4;
        m_box.height -= m_box.height % 4;
        m_reference = pyramid(grey(reference)(m_box).clone());
        m_warp = cv::Mat::eye(3, 3, CV_32F);
        m_warp.at<float>(0, 2) = float(m_box.x);
        m_warp.at<float>(1, 2) = float(m_box.y);
    }

    bool advance(const Image& frame)
    {
        const std::vector<cv::Mat> levels = pyramid(grey(frame));
        const cv::TermCriteria criteria(cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 50, 1e-5);
        cv::Mat warp = scaled(m_warp, 0.25f);
        try {
            for (std::size_t level = levels.size(); level-- > 0;) {
                cv::findTransformECC(m_reference[level], levels[level], warp, cv::MOTION_HOMOGRAPHY, criteria,
                                     cv::noArray(), 5);
                if (level > 0)
                    warp = scaled(warp, 2);
            }
        } catch (const cv::Exception&) {
            return false;
        }
        m_warp = warp;
        return true;
    }

    Matrix transform() const
    {
        Matrix fromBox;
        for (int i = 0; i < 9; ++i)
            fromBox(i / 3, i % 3) = double(m_warp.at<float>(i / 3, i % 3));
        return Matrix::translation(0.5, 0.5) * fromBox * Matrix::translation(-m_box.x - 0.5, -m_box.y - 0.5);
    }

private:
    static cv::Mat grey(const Image& image)
    {
        const cv::Mat view(image.size.height, image.size.width, CV_32FC3, const_cast<float*>(image.values.data()));
        cv::Mat luminance;
        cv::cvtColor(view, luminance, cv::COLOR_RGB2GRAY);
        return luminance;
    }

    static std::vector<cv::Mat> pyramid(const cv::Mat& image)
    {
        std::vector<cv::Mat> levels{image};
        while (levels.size() < 3) {
            cv::Mat half;
            cv::pyrDown(levels.back(), half);
            levels.push_back(half);
        }
        return levels;
    }

    static cv::Mat scaled(const cv::Mat& warp, float by)
    {
        const cv::Mat scale = (cv::Mat_<float>(3, 3) << by, 0, 0, 0, by, 0, 0, 0, 1);
        return scale * warp * scale.inv();
    }

    cv::Rect m_box;
    std::vector<cv::Mat> m_reference;
    cv::Mat m_warp;
};

void compare(const Scene& scene)
{
    const MadeFootage footage(scene.options);
    const Image first = footage.frame(0), region = regionOf(footage);
    const auto tracker = library().track(library().prepare(first), region);
    EccAlone ecc(first, region);
    Outcome ours, plain;
    for (int frame = 1; frame < scene.options.frames; ++frame) {
        const Image image = footage.frame(frame);
        ours.watch.start();
        const TrackResult result = tracker->advance(library().prepare(image));
        ours.watch.stop();
        if (result.aligned)
            judge(ours, footage, frame, result.transform);
        else
            ++ours.lost;
        plain.watch.start();
        const bool found = ecc.advance(image);
        plain.watch.stop();
        if (found)
            judge(plain, footage, frame, ecc.transform());
        else
            ++plain.lost;
    }
    for (const auto& [name, outcome] : {std::pair<const char*, const Outcome&>{"tracker", ours}, {"ECC alone", plain}})
        std::printf("%-34s %-10s %9.3f %8.3f %9.3f %8.3f %6d %9.1f\n", scene.name, name, outcome.inView.rms(),
                    outcome.inView.worst(), outcome.all.rms(), outcome.all.worst(), outcome.lost,
                    1000 * outcome.watch.seconds() / (scene.options.frames - 1));
}

std::vector<Scene> scenes()
{
    const FootageOptions usual;
    FootageOptions leaving = usual, grainy = usual, blurred = usual, small = usual, occluded = usual;
    leaving.leaving = 0.7;
    grainy.noise = 0.03;
    blurred.blur = 1.5;
    small.size = {480, 270};
    occluded.occluder = true;
    return {{"usual: grain 0.01, light +20 %", usual},
            {"most of it leaves the view", leaving},
            {"grain 0.03", grainy},
            {"blur 1.5 pixels", blurred},
            {"480 x 270", small},
            {"a bar in front, not masked", occluded}};
}

} // namespace

void measureTracking()
{
    std::printf("Tracking 100 frames of 960 x 540, perspective model; corner errors in pixels\n");
    std::printf("%-34s %-10s %18s %18s %6s %9s\n", "", "", "corners in view", "all corners", "", "");
    std::printf("%-34s %-10s %9s %8s %9s %8s %6s %9s\n", "footage", "", "rms", "worst", "rms", "worst", "lost",
                "ms/frame");
    cv::setNumThreads(1); // for both alike
    for (const Scene& scene : scenes())
        compare(scene);
}

void measureLength()
{
    FootageOptions options;
    options.size = {480, 270};
    options.frames = 1000;
    options.motion = 1;
    const MadeFootage footage(options);
    const WorkFolder folder;
    const auto path = [&](int frame) { return folder / ("plate." + std::to_string(frame) + ".png"); };
    for (int frame = 0; frame < options.frames; ++frame)
        library().writeFrame(path(frame), footage.frame(frame));
    library().setCacheLimit(std::size_t(64) << 20);
    std::printf("Reading and tracking a sequence of 480 x 270, with 64 MB for decoded frames\n");
    std::printf("%8s %10s %12s %16s\n", "frames", "seconds", "ms/frame", "peak memory MB");
    for (const int frames : {100, 1000}) {
        const auto tracker = library().track(library().prepare(*library().readFrame(path(0))), regionOf(footage));
        Watch watch;
        watch.start();
        for (int frame = 1; frame < frames; ++frame)
            tracker->advance(library().prepare(*library().readFrame(path(frame))));
        watch.stop();
        std::printf("%8d %10.2f %12.2f %16.0f\n", frames, watch.seconds(), 1000 * watch.seconds() / frames,
                    peakMegabytes());
    }
}
