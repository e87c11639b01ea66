// A pass goes frame by frame, so that layers share each frame; within a frame the layers from the top to the bottom are
// tasks of their own, of which one waits for those above that may hide it. The next frame is decoded meanwhile.

#include "tracking_run.h"

#include "shape_rendering.h"

#include <algorithm>
#include <engine/sequences/pixel_access.h>

namespace orrery {

// One tracked layer on its way.
struct TrackingRun::Follower
{
    std::size_t layer;
    std::unique_ptr<pixels::Tracker> tracker;
    int missing = 0;       // frames in a row in which it was not found
    bool ended = false;    // in this direction
    bool hopeless = false; // could not even begin
    int due = -1;          // the frame that it is followed to in this step, if at all
    int reached = -1;      // the last that was dealt with
};

namespace {

struct Box
{
    double left = 1e30, top = 1e30, right = -1e30, bottom = -1e30;

    void add(const pixels::Point& point)
    {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        top = std::min(top, point.y);
        bottom = std::max(bottom, point.y);
    }
    double extent() const { return std::max(right - left, bottom - top); }
    // Also when either has moved by half its size, or a little, since the frame that its place was taken from.
    bool mayTouch(const Box& other) const
    {
        const double margin = std::max({16.0, extent() / 2, other.extent() / 2});
        return left - margin < other.right && other.left - margin < right && top - margin < other.bottom &&
               other.top - margin < bottom;
    }
};

Box boxOf(const Stratum::LayerFrame& frame, const Lum_Matrix33& transform)
{
    Box box;
    const pixels::Matrix matrix = matrixOf(transform);
    for (const auto& polygon : Stratum::outlines(frame, 1))
        for (const Stratum::CurveVertex& vertex : polygon) {
            const pixels::Point point = matrix.map({vertex.x, vertex.y});
            box.add({point.x - vertex.edgeWidth, point.y - vertex.edgeWidth});
            box.add({point.x + vertex.edgeWidth, point.y + vertex.edgeWidth});
        }
    return box;
}

pixels::MotionModel modelOf(int motionModel)
{
    return motionModel == TrackTranslation ? pixels::MotionModel::Translation
           : motionModel == TrackAffine    ? pixels::MotionModel::Affine
                                           : pixels::MotionModel::Perspective;
}

Lum_Matrix33 matrixFrom(const pixels::Matrix& matrix)
{
    Lum_Matrix33 result;
    std::copy(matrix.values.begin(), matrix.values.end(), std::begin(result.values));
    return result;
}

} // namespace

TrackingRun::TrackingRun(std::vector<TrackedLayer> layers, std::vector<Footage> footage, int first, int last)
    : m_layers(std::move(layers)), m_footage(std::move(footage)), m_first(first), m_last(last)
{
    for (std::size_t i = m_layers.size(); i-- > 0;)
        if (m_layers[i].tracked()) {
            m_followers.push_back(std::make_unique<Follower>());
            m_followers.back()->layer = i;
        }
}

TrackingRun::~TrackingRun() = default;

int TrackingRun::end(std::size_t layer, int direction) const
{
    const int inPoint = m_layers[layer].inPoint();
    return direction > 0 ? std::max(m_last, inPoint) : std::min(m_first, inPoint);
}

TrackingRun::Span TrackingRun::span(int direction) const
{
    Span span{direction > 0 ? 0x7fffffff : -1, direction > 0 ? -1 : 0x7fffffff};
    for (const auto& follower : m_followers) {
        const int inPoint = m_layers[follower->layer].inPoint(), last = end(follower->layer, direction);
        span.start = direction > 0 ? std::min(span.start, inPoint) : std::max(span.start, inPoint);
        span.end = direction > 0 ? std::max(span.end, last) : std::min(span.end, last);
    }
    return span;
}

int TrackingRun::stepCount() const
{
    const Span forward = span(1), backward = span(-1);
    return m_followers.empty() ? 0 : forward.end - forward.start + 1 + backward.start - backward.end + 1;
}

void TrackingRun::run(const std::function<void(int frame, int done)>& step)
{
    m_done = 0;
    if (m_followers.empty())
        return;
    pass(1, step);
    pass(-1, step);
}

void TrackingRun::runTasks(const std::vector<std::function<void()>>& tasks)
{
    m_workers.run(static_cast<int>(tasks.size()), [&tasks](int i) { tasks[static_cast<std::size_t>(i)](); });
}

void TrackingRun::pass(int direction, const std::function<void(int frame, int done)>& step)
{
    m_frames.clear();
    for (const auto& follower : m_followers) {
        follower->tracker.reset();
        follower->ended = follower->hopeless;
        follower->due = follower->reached = -1;
        follower->missing = 0;
    }
    const Span frames = span(direction);
    for (int frame = frames.start; (frames.end - frame) * direction >= 0; frame += direction) {
        step(frame, m_done++);
        std::vector<std::function<void()>> reading;
        prepare(frame, direction, reading);
        runTasks(reading);
        std::vector<std::function<void()>> tasks;
        prepare(frame + direction, direction, tasks);
        for (const auto& follower : m_followers)
            if (isActive(*follower, frame, direction)) {
                follower->due = frame;
                tasks.push_back([this, &follower, frame, direction] { follow(*follower, frame, direction); });
            }
        runTasks(tasks);
        for (std::size_t i = 0; i < m_footage.size(); ++i)
            m_frames.erase({static_cast<int>(i), frame});
    }
}

// From its in point on, as long as it could be aligned. A layer without a further frame is not begun.
bool TrackingRun::isActive(const Follower& follower, int frame, int direction) const
{
    const int inPoint = m_layers[follower.layer].inPoint(), last = end(follower.layer, direction);
    return !follower.ended && inPoint != last && (frame - inPoint) * direction >= 0 && (last - frame) * direction >= 0;
}

void TrackingRun::prepare(int frame, int direction, std::vector<std::function<void()>>& tasks)
{
    for (std::size_t i = 0; i < m_footage.size(); ++i) {
        const int footage = static_cast<int>(i);
        const bool wanted = std::any_of(m_followers.begin(), m_followers.end(), [&](const auto& follower) {
            return m_layers[follower->layer].footage == footage && isActive(*follower, frame, direction);
        });
        if (!wanted || m_frames.count({footage, frame}))
            continue;
        tasks.push_back([this, footage, frame] {
            const Footage& source = m_footage[static_cast<std::size_t>(footage)];
            const pixels::SharedImage image = source.read(frame);
            const auto prepared = withPixels(source.file(frame), [&](pixels::Library& library) {
                return library.prepare(library.luminance(*image, source.luminance()));
            });
            std::lock_guard<std::mutex> lock(m_mutex);
            m_frames[{footage, frame}] = prepared;
            m_sizes[footage] = image->size;
        });
    }
}

pixels::SharedTrackingFrame TrackingRun::frameOf(const Follower& follower, int frame)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_frames.at({m_layers[follower.layer].footage, frame});
}

pixels::Size TrackingRun::sizeOf(int footage)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_sizes.at(footage);
}

void TrackingRun::follow(Follower& follower, int frame, int direction)
{
    // The tasks that wait for this layer go on, whatever happens here.
    struct Reached
    {
        TrackingRun& run;
        Follower& follower;
        int frame;
        ~Reached()
        {
            std::lock_guard<std::mutex> lock(run.m_mutex);
            follower.reached = frame;
            run.m_followed.notify_all();
        }
    } reached{*this, follower, frame};

    TrackedLayer& layer = m_layers[follower.layer];
    if (frame == layer.inPoint()) {
        begin(follower, frame);
        return;
    }
    const pixels::Image covered = hidden(follower, frame);
    const pixels::TrackResult result =
        withPixels(text("Layer %1, frame %2", quoted(layer.snapshot.name), frame),
                   [&](pixels::Library&) { return follower.tracker->advance(frameOf(follower, frame), covered); });
    std::lock_guard<std::mutex> lock(m_mutex);
    note(layer, frame, result);
    int before = frame - direction * static_cast<int>(result.before.size());
    for (const pixels::TrackResult& revised : result.before) {
        note(layer, before, revised);
        before += direction;
    }
    follower.missing = result.aligned ? 0 : follower.missing + 1;
    follower.ended = follower.missing == mostMissing;
    if (follower.ended)
        for (int rest = frame; rest != end(follower.layer, direction); rest += direction)
            layer.missing[rest + direction] = layer.missing[frame];
}

void TrackingRun::note(TrackedLayer& layer, int frame, const pixels::TrackResult& result)
{
    layer.places.erase(frame);
    layer.missing.erase(frame);
    if (result.aligned)
        layer.places[frame] = {matrixFrom(result.transform), result.quality, result.visible};
    else
        layer.missing[frame] = asText(result.problem);
}

void TrackingRun::begin(Follower& follower, int frame)
{
    TrackedLayer& layer = m_layers[follower.layer];
    try {
        pixels::Image region = matteOf(layer.snapshot.frame(frame), sizeOf(layer.footage), Lum_Matrix33::identity());
        const pixels::Image covered = hidden(follower, frame);
        pixelLibrary().cutOut(region, covered);
        follower.tracker = pixelLibrary().track(frameOf(follower, frame), region, modelOf(layer.snapshot.motionModel));
        std::lock_guard<std::mutex> lock(m_mutex);
        layer.places[frame] = {Lum_Matrix33::identity()};
    } catch (const pixels::RegionError& error) {
        std::lock_guard<std::mutex> lock(m_mutex);
        follower.ended = follower.hopeless = true;
        layer.missing[frame] = asText(error.what());
    } catch (...) {
        rethrowPixelError(text("Layer %1, frame %2", quoted(layer.snapshot.name), frame));
    }
}

pixels::Image TrackingRun::hidden(const Follower& follower, int frame)
{
    const TrackedLayer& layer = m_layers[follower.layer];
    const Box own = boxOf(layer.snapshot.frame(frame), transformOf(follower.layer, frame));
    pixels::Image covered;
    for (std::size_t above = follower.layer + 1; above < m_layers.size(); ++above) {
        const Stratum::LayerSnapshot& other = m_layers[above].snapshot;
        // What moves with the layer is a part of what is followed.
        if (!other.shown || !isDrawn(other, frame) || m_layers[above].source == layer.snapshot.id)
            continue;
        if (!own.mayTouch(boxOf(other.frame(frame), transformOf(above, frame))))
            continue;
        waitFor(above, frame);
        pixelLibrary().unite(covered, matteOf(other.frame(frame), sizeOf(layer.footage), transformOf(above, frame)));
    }
    return covered;
}

// What this run has found for the frame, or last before it; else what the layer's track said before.
Lum_Matrix33 TrackingRun::transformOf(std::size_t index, int frame)
{
    const TrackedLayer& layer = m_layers[index];
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!layer.tracked() || layer.places.empty())
        return layer.snapshot.frame(frame).transform;
    const auto after = layer.places.upper_bound(frame);
    return (after == layer.places.begin() ? after : std::prev(after))->second.transform;
}

void TrackingRun::waitFor(std::size_t layer, int frame)
{
    const auto found = std::find_if(m_followers.begin(), m_followers.end(),
                                    [layer](const auto& follower) { return follower->layer == layer; });
    if (found == m_followers.end())
        return;
    const Follower& other = **found;
    if (other.due != frame)
        return;
    std::unique_lock<std::mutex> lock(m_mutex);
    m_followed.wait(lock, [&] { return other.reached == frame; });
}

} // namespace orrery
