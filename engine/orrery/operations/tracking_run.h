// Tracks the surfaces of layers through the frames of one view, from plain values to transforms, without the model.
// Layers share each frame's decoding, all cores work, and what is hidden by the layers above is left out.
#pragma once

#include "parallel_tasks.h"

#include <QString>
#include <condition_variable>
#include <engine/clips/footage.h>
#include <engine/pixels/pixels.h>
#include <engine/stratum/snapshot.h>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace orrery {

// Where a layer was found in a frame.
struct TrackedPlace
{
    Lum_Matrix33 transform; // from the in point
    double quality = 1;     // 0 to 1, as what is visible
    double visible = 1;
};

// A layer that is tracked, or that hides others.
struct TrackedLayer
{
    Stratum::LayerSnapshot snapshot;
    unsigned int source = 0; // the id of the layer whose track it follows: its own, or another's
    int footage = -1;        // which of the run's; -1 for a layer that only hides others

    std::map<int, TrackedPlace> places; // by frame
    std::map<int, QString> missing;     // the frames in which it was not found, and why

    int inPoint() const { return static_cast<int>(snapshot.inPoint); }
    bool tracked() const { return footage >= 0; }
};

class TrackingRun
{
public:
    // Layers from the bottom of the drawing order to its top. The footage and the snapshots reach over `first` to
    // `last` and the in points of all layers that are tracked.
    TrackingRun(std::vector<TrackedLayer> layers, std::vector<Footage> footage, int first, int last);
    ~TrackingRun();

    // From every layer's in point forwards to `last` and backwards to `first`. `step` is called in the calling thread
    // before every frame, with the number of frames that are done; it may throw. Frames that cannot be read throw. One
    // in which a layer is not found is a gap; after `mostMissing` of them in a row the layer is not looked for any
    // longer.
    static constexpr int mostMissing = 100;
    void run(const std::function<void(int frame, int done)>& step);
    int stepCount() const;

    std::vector<TrackedLayer>& layers() { return m_layers; }

private:
    struct Follower;
    using Frames = std::map<std::pair<int, int>, pixels::SharedTrackingFrame>; // by footage and frame

    void pass(int direction, const std::function<void(int frame, int done)>& step);
    // Where a pass begins and ends, and where it ends for one layer: that has to be followed from its in point on, even
    // when this lies outside of the frames that are asked for.
    struct Span
    {
        int start;
        int end;
    };
    Span span(int direction) const;
    int end(std::size_t layer, int direction) const;
    bool isActive(const Follower& follower, int frame, int direction) const;
    void prepare(int frame, int direction, std::vector<std::function<void()>>& tasks);
    void runTasks(const std::vector<std::function<void()>>& tasks);
    void follow(Follower& follower, int frame, int direction);
    void begin(Follower& follower, int frame);
    void note(TrackedLayer& layer, int frame, const pixels::TrackResult& result);
    pixels::Size sizeOf(int footage);
    pixels::SharedTrackingFrame frameOf(const Follower& follower, int frame);
    // Of the layers above that may touch the layer: what they cover; empty when there is none.
    pixels::Image hidden(const Follower& follower, int frame);
    Lum_Matrix33 transformOf(std::size_t layer, int frame);
    void waitFor(std::size_t layer, int frame);

    std::vector<TrackedLayer> m_layers;
    std::vector<Footage> m_footage;
    const int m_first;
    const int m_last;
    int m_done = 0;

    Workers m_workers;

    std::mutex m_mutex; // guards what follows, and the layers' places
    std::condition_variable m_followed;
    Frames m_frames;
    std::map<int, pixels::Size> m_sizes;                // of the frames, by footage
    std::vector<std::unique_ptr<Follower>> m_followers; // the topmost layer first
};

} // namespace orrery
