// Project::track_layers: takes a snapshot, has it tracked, and writes the tracks as one step.

#include "export_plan.h"
#include "scope.h"
#include "shape_rendering.h"
#include "tracking_run.h"

#include <algorithm>
#include <engine/clips/data.h>
#include <engine/errors/message.h>
#include <engine/handles/layer_items.h>
#include <engine/operations/progress.h>

using namespace orrery;

namespace {

struct Range
{
    int first;
    int last;
};

// What is to be tracked in one view, with the surfaces that the tracks are written for.
struct Plan
{
    int view;
    std::vector<const Stratum::LayerModel*> wanted;
    std::vector<TrackedLayer> layers; // all that are shown, and those that are wanted
    std::vector<Stratum::Corners> surfaces;
    std::vector<ClipModel*> clips;
    Range reach; // the range and the in points
};

// The end of the work range is no end that somebody asked for: footage that is shorter ends the track.
unsigned int defaultStop(const Stratum::Model& project, const std::vector<const Stratum::LayerModel*>& layers)
{
    std::int64_t longest = 0;
    for (const Stratum::LayerModel* layer : layers)
        longest = std::max(longest, clipModel(project, layer->clip)->frameEnd());
    const unsigned int stop = project.settings.inOutRange.second;
    return longest > 0 ? static_cast<unsigned int>(std::min<std::int64_t>(stop, longest - 1)) : stop;
}

Range rangeOf(const Stratum::Model& project, const std::vector<const Stratum::LayerModel*>& layers, unsigned int start,
              unsigned int stop)
{
    const Stratum::Settings& settings = project.settings;
    if (start == unknownFrame || (start == 0 && stop == unknownFrame)) // no range was given
        start = settings.inOutRange.first;
    if (stop == unknownFrame)
        stop = defaultStop(project, layers);
    if (start > stop)
        raise<STRM_BadArgument>(text("start_index: the frame %1 comes after stop_index, %2", start, stop));
    if (stop >= settings.length)
        raise<STRM_OutOfRange>(text("stop_index: there is no frame %1, the project has %2", stop, settings.length));
    requireBearable(start, stop);
    return {static_cast<int>(start), static_cast<int>(stop)};
}

// Those that were named must be able to be tracked; of all layers, those are tracked that can be.
std::vector<const Stratum::LayerModel*> layersToTrack(const Stratum::Model& project, const QVector<Layer>& named)
{
    std::vector<const Stratum::LayerModel*> layers;
    for (const Stratum::LayerModel* layer : selectLayers(project, named)) {
        const bool clip = clipModel(project, layer->clip);
        const bool able = !layer->trackedWith() && clip && !layer->contours.empty();
        if (able)
            layers.push_back(layer);
        if (able || named.isEmpty())
            continue;
        if (layer->trackedWith())
            raise<STRM_BadState>(text("The layer %1 follows the track of the layer %2, which is the one to track",
                                      quoted(layer->name), quoted(layer->trackSource().name)));
        if (!clip)
            raise<STRM_BadState>(text("The layer %1 has no clip to be tracked on", quoted(layer->name)));
        raise<STRM_BadState>(text("The layer %1 has no shape that tells what to track", quoted(layer->name)));
    }
    return layers;
}

Plan planFor(const Stratum::Model& project, const std::vector<const Stratum::LayerModel*>& wanted, int view,
             Range range)
{
    Plan plan{view, wanted, {}, {}, {}, range};
    for (const Stratum::LayerModel* layer : wanted) {
        plan.reach.first = std::min(plan.reach.first, static_cast<int>(layer->inPoint()));
        plan.reach.last = std::max(plan.reach.last, static_cast<int>(layer->inPoint()));
    }
    requireBearable(static_cast<unsigned int>(plan.reach.first), static_cast<unsigned int>(plan.reach.last));
    for (const Stratum::LayerModel* layer : Stratum::allLayers(project)) {
        const bool tracked = std::find(wanted.begin(), wanted.end(), layer) != wanted.end();
        if (!tracked && (!layer->shown() || layer->contours.empty()))
            continue;
        TrackedLayer item;
        item.snapshot = Stratum::snapshot(*layer, plan.reach.first, plan.reach.last, view);
        item.source = layer->trackSource().id();
        if (tracked) {
            ClipModel* const clip = clipModel(project, layer->clip);
            const auto known = std::find(plan.clips.begin(), plan.clips.end(), clip);
            item.footage = static_cast<int>(known - plan.clips.begin());
            if (known == plan.clips.end())
                plan.clips.push_back(clip);
        }
        plan.surfaces.push_back(layer->surface(view));
        plan.layers.push_back(std::move(item));
    }
    return plan;
}

std::vector<Stratum::TrackKey> keysOf(const TrackedLayer& layer, const Stratum::Corners& surface, Range range)
{
    std::vector<Stratum::TrackKey> keys;
    if (layer.places.size() < 2)
        return keys;
    for (const auto& [frame, place] : layer.places) {
        if (frame != layer.inPoint() && (frame < range.first || frame > range.last))
            continue;
        Stratum::TrackKey key{static_cast<double>(frame), {}, place.quality, place.visible};
        const pixels::Matrix matrix = matrixOf(place.transform);
        for (std::size_t i = 0; i < surface.size(); ++i) {
            const pixels::Point corner = matrix.map({surface[i].x, surface[i].y});
            key.corners[i] = {corner.x, corner.y};
        }
        keys.push_back(key);
    }
    return keys;
}

// What was found for one view, to be written once everything is there.
struct Found
{
    const Stratum::LayerModel* layer;
    int view;
    std::vector<Stratum::TrackKey> keys;
};

// "frames 3, 7 to 11": the frames in which a layer was not found.
QString framesOf(const std::map<int, QString>& missing)
{
    QStringList runs;
    for (auto at = missing.begin(); at != missing.end();) {
        const int first = at->first;
        int last = first;
        for (++at; at != missing.end() && at->first == last + 1; ++at)
            ++last;
        runs << (first == last ? text("%1", first) : text("%1 to %2", first, last));
    }
    return text(missing.size() == 1 ? "frame %1" : "frames %1", runs.join(QLatin1String(", ")));
}

// Of one layer.
QString missingText(const TrackedLayer& layer)
{
    return text("The layer %1 was not found in %2: %3", quoted(layer.snapshot.name), framesOf(layer.missing),
                layer.missing.begin()->second);
}

// Runs the plan and moves the planned layers, now tracked, back into it.
void trackView(Plan& plan, Range range, OperationProgress& progress, double share, double offset)
{
    std::vector<Footage> footage;
    for (ClipModel* clip : plan.clips)
        footage.push_back(Footage::forProjectView(*clip, plan.view, plan.reach.first, plan.reach.last));
    TrackingRun run(std::move(plan.layers), std::move(footage), range.first, range.last);
    const int steps = std::max(1, run.stepCount());
    run.run([&](int frame, int done) {
        progress.report(offset + share * done / steps, text("frame %1, %2 of %3", frame, done + 1, steps));
    });
    plan.layers = std::move(run.layers());
}

void writeTracks(STRM_ProjectManager& manager, const std::vector<Found>& tracks)
{
    requireOpen(manager);
    Stratum::Edit edit(manager);
    for (const Found& track : tracks)
        if (track.layer->present())
            Stratum::writeTrack(edit, edit.of(*track.layer), track.view, track.keys, false);
    edit.commit();
}

} // namespace

void Project::track_layers(unsigned int start_index, unsigned int stop_index, const QVector<Layer>& layers,
                           const QVector<View>& views)
{
    // From the first report on the project may be gone: only what is held here is used.
    const boost::shared_ptr<STRM_ProjectManager> held = m_data->manager;
    STRM_ProjectManager& manager = *held;
    OperationProgress progress(presentWatcher(m_data->progressWatcher));
    const BusyProject busy(*m_data);
    Range range;
    std::vector<Plan> plans;
    {
        const Stratum::Reading model(manager);
        const std::vector<const Stratum::LayerModel*> wanted = layersToTrack(*model, layers);
        range = rangeOf(*model, wanted, start_index, stop_index);
        std::vector<int> ids = resolveViews(*model, views);
        if (ids.empty())
            ids.push_back(model->settings.heroView);
        for (const int id : ids)
            plans.push_back(planFor(*model, wanted, id, range));
    }

    progress.begin(text("Tracking"));
    std::vector<Found> tracks;
    QStringList missing;
    const double share = 1.0 / static_cast<double>(plans.size());
    for (std::size_t i = 0; i < plans.size(); ++i) {
        Plan& plan = plans[i];
        trackView(plan, range, progress, share, share * static_cast<double>(i));
        for (std::size_t n = 0; n < plan.layers.size(); ++n) {
            const TrackedLayer& layer = plan.layers[n];
            if (!layer.tracked())
                continue;
            tracks.push_back({layer.snapshot.layer, plan.view, keysOf(layer, plan.surfaces[n], range)});
            if (!layer.missing.empty())
                missing << missingText(layer);
        }
    }
    progress.report(1, text("done"));
    writeTracks(manager, tracks);
    if (!missing.isEmpty())
        raise<STRM_OperationFailed>(missing.join(QLatin1String("; ")));
}
