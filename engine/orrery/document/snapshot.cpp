// A project's model as records.
#include "records.h"

#include <algorithm>
#include <engine/clips/project_clip.h>
#include <unordered_map>

namespace orrery {

namespace {

using namespace Stratum;

ClipRecord recordOf(const Clip& clip)
{
    const ClipModel& model = *clip.data().model;
    ClipRecord record{model.state, model.values, {}};
    record.state.streams.clear();
    record.state.mapping.clear();
    record.streams.reserve(model.state.streams.size());
    for (const auto& [view, stream] : model.state.streams) {
        const auto mapped = model.state.mapping.find(view);
        record.streams.push_back(
            {view, stream,
             mapped == model.state.mapping.end() ? std::optional<int>() : std::optional<int>(mapped->second),
             model.stream(view)->values});
    }
    return record;
}

std::optional<MasterRecord> masterOf(const PointModel& point)
{
    const PointModel* const master = point.masterModel();
    if (!master)
        return std::nullopt;
    const ContourModel& contour = master->contourModel();
    return MasterRecord{contour.layer().id(), contour.id(), master->id(), *point.link()};
}

ContourRecord recordOf(const ContourModel& contour)
{
    ContourRecord record{contour.id(), contour.type(), contour.nextPointId, contour.settings[1], {}};
    record.points.reserve(contour.points.size());
    for (const PointModel& point : contour.points)
        record.points.push_back({point.id(), point.fields, masterOf(point)});
    return record;
}

class Snapshot
{
public:
    explicit Snapshot(const Model& model) : m_model(model)
    {
        for (const Clip* clip : model.clips)
            m_places.emplace(clip->get_id(), static_cast<unsigned int>(m_places.size()));
    }

    ProjectRecord all() const
    {
        ProjectRecord record;
        record.nextId = m_model.nextId();
        record.settings = m_model.settings;
        for (std::size_t i = 0; i < record.render.size(); ++i)
            record.render[i] = m_model.parameters().animation(static_cast<ProjectParameters::RenderValue>(i));
        for (const Clip* clip : m_model.clips)
            record.clips.push_back(recordOf(*clip));
        record.items.reserve(m_model.root().items.size());
        for (const TreeItem& item : m_model.root().items)
            record.items.push_back(itemOf(item));
        return record;
    }

private:
    ItemRecord itemOf(const TreeItem& item) const
    {
        ItemRecord record;
        if (const auto* layer = dynamic_cast<const LayerModel*>(&item)) {
            record.layers.push_back(layerOf(*layer));
            return record;
        }
        const auto& group = static_cast<const GroupModel&>(item);
        record.group = GroupRecord{group.id(), group, {}};
        if (const Knob::Animation* opacity = group.opacityIfAny())
            record.group->opacity = *opacity;
        record.layers.reserve(group.layers.size());
        for (const LayerModel& layer : group.layers)
            record.layers.push_back(layerOf(layer));
        return record;
    }

    LayerRecord layerOf(const LayerModel& layer) const
    {
        LayerRecord record{layer.id(), layer, layer, {}, {}, {}, layer.nextContourId, {}};
        const auto clip = m_places.find(layer.clip);
        if (clip != m_places.end())
            record.clip = clip->second;
        if (layer.trackedWith())
            record.trackedWith = layer.trackedWith()->id();
        if (const LayerAnimations* animations = layer.animationsIfAny())
            record.animations =
                std::make_unique<LayerAnimationsRecord>(LayerAnimationsRecord{animations->values, animations->corners});
        record.contours.reserve(layer.contours.size());
        for (const ContourModel& contour : layer.contours)
            record.contours.push_back(recordOf(contour));
        return record;
    }

    const Model& m_model;
    std::unordered_map<unsigned int, unsigned int> m_places; // of clips, by their ids
};

} // namespace

ProjectRecord snapshotOf(Project::Data& project)
{
    const Reading model(*project.manager);
    return Snapshot(*model).all();
}

} // namespace orrery
