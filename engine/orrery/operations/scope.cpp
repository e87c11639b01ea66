// Selecting the layers, views and footage that an operation works on.

#include "scope.h"

#include <algorithm>
#include <engine/clips/data.h>
#include <engine/errors/message.h>
#include <engine/handles/layer_items.h>
#include <engine/project/clips.h>
#include <set>

namespace orrery {

BusyProject::BusyProject(Project::Data& project) : m_busy(project.busy)
{
    if (m_busy->exchange(true))
        raise<STRM_OperationInProgress>(text("The project is being tracked, rendered or exported already"));
}

void requireOpen(const STRM_ProjectManager& manager)
{
    if (!manager.isOpen())
        raise<STRM_BadState>(text("The project was destroyed while it was worked on"));
}

std::vector<const Stratum::LayerModel*> selectLayers(const Stratum::Model& project, const QVector<Layer>& layers)
{
    std::set<const Stratum::LayerModel*> wanted;
    for (const Layer& layer : layers) {
        const boost::shared_ptr<STRM_Layer> object = argumentObject<STRM_Layer>("layers", layer);
        requireSameProject("layers", Stratum::model(*object), project.manager());
        wanted.insert(&Stratum::model(*object));
    }
    std::vector<const Stratum::LayerModel*> selected;
    for (const Stratum::LayerModel* layer : Stratum::allLayers(project))
        if (layers.isEmpty() ? layer->shown() : wanted.count(layer) != 0)
            selected.push_back(layer);
    return selected;
}

std::vector<Stratum::LayerSnapshot> snapshotLayers(STRM_ProjectManager& manager, const QVector<Layer>& layers,
                                                   int first, int last, int view)
{
    const Stratum::Reading model(manager);
    std::vector<Stratum::LayerSnapshot> snapshots;
    for (const Stratum::LayerModel* layer : selectLayers(*model, layers))
        snapshots.push_back(Stratum::snapshot(*layer, first, last, view));
    return snapshots;
}

std::vector<int> resolveViews(const Stratum::Model& project, const QVector<View>& views)
{
    std::vector<int> ids;
    for (const View& view : views) {
        const int id = resolveView(project, view);
        if (std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    }
    return ids;
}

ClipModel* clipModel(const Stratum::Model& project, unsigned int id)
{
    Clip* clip = clipWithId(project, id);
    return clip ? clip->data().model.get() : nullptr;
}

ClipModel* footageClip(const Stratum::Model& project, const std::vector<const Stratum::LayerModel*>& layers)
{
    for (const Stratum::LayerModel* layer : layers)
        if (ClipModel* clip = clipModel(project, layer->clip))
            return clip;
    return project.clips.empty() ? nullptr : project.clips.front()->data().model.get();
}

} // namespace orrery
