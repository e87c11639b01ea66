// Taking snapshots of layers.
#include <cassert>
#include <engine/stratum/shapes.h>
#include <engine/stratum/snapshot.h>

namespace Stratum {

namespace {

bool same(const Curve& a, const Curve& b) { return a.type == b.type && a.points == b.points; }

LayerFrame frameAt(const LayerModel& layer, const GroupModel* group, int frame, int view, const LayerFrame* before)
{
    LayerFrame result;
    for (const ContourModel& contour : layer.contours) {
        Curve curve = contour.curve(frame, view);
        const std::size_t place = result.contours.size();
        assert(!before || place < before->contours.size()); // a layer has the same contours in every frame
        if (before && same(*before->contours[place], curve))
            result.contours.push_back(before->contours[place]);
        else
            result.contours.push_back(std::make_shared<const Curve>(std::move(curve)));
    }
    result.transform = layer.transform(frame, view);
    result.opacity = layer.value(LayerOpacity, frame, view).x * (group ? group->opacity(frame, view).x : 1);
    result.blendMode = static_cast<int>(layer.value(LayerBlendMode, frame, view).x);
    return result;
}

} // namespace

LayerSnapshot snapshot(const LayerModel& layer, int firstFrame, int lastFrame, int view)
{
    LayerSnapshot snapshot;
    snapshot.layer = &layer;
    snapshot.id = layer.id();
    snapshot.name = layer.name;
    snapshot.matteColor = layer.matteColor;
    snapshot.shown = layer.shown();
    snapshot.inPoint = layer.inPoint();
    snapshot.outPoint = layer.outPoint();
    snapshot.motionModel = static_cast<int>(layer.value(LayerMotionModel, layer.inPoint(), view).x);
    snapshot.clip = layer.clip;
    snapshot.linked = layer.trackedWith();
    snapshot.firstFrame = firstFrame;
    const GroupModel* group = layer.group();
    for (int frame = firstFrame; frame <= lastFrame; ++frame)
        snapshot.frames.push_back(
            frameAt(layer, group, frame, view, snapshot.frames.empty() ? nullptr : &snapshot.frames.back()));
    return snapshot;
}

std::vector<std::vector<CurveVertex>> outlines(const LayerFrame& frame, double tolerance)
{
    std::vector<std::vector<CurveVertex>> outlines;
    for (const auto& contour : frame.contours)
        if (contour->points.size() > 1)
            outlines.push_back(flatten(*contour, tolerance));
    return outlines;
}

} // namespace Stratum
