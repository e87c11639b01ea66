// Tracks made footage, and does the same with OpenCV's ECC alone.

#include "measure.h"
#include "peers.h"

#include <cstdio>
#include <made_footage.h>
#include <opencv2/core.hpp>

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

void compare(const Scene& scene)
{
    const MadeFootage footage(scene.options);
    const Image first = footage.frame(0), region = regionOf(footage);
    const auto tracker = library().track(library().prepare(first), region);
    const std::unique_ptr<Peer> ecc = eccAlone(first, region);
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
        const std::optional<Matrix> found = ecc->advance(image);
        plain.watch.stop();
        if (found)
            judge(plain, footage, frame, *found);
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
