// Project::render: has an operation write its sequence, and adds a clip over it to the project.

#include "render_scene.h"
#include "scope.h"

#include <engine/clips/project_clip.h>
#include <engine/errors/message.h>
#include <engine/handles/layer_handles.h>
#include <engine/handles/layer_items.h>
#include <engine/operations/progress.h>
#include <engine/project/clips.h>

using namespace orrery;

namespace {

void requireFrames(STRM_ProjectManager& manager, int first, int last)
{
    const Stratum::Reading model(manager);
    const unsigned int length = model->settings.length;
    if (first < 0 || static_cast<unsigned int>(first) >= length)
        raise<STRM_OutOfRange>(text("first: there is no frame %1, the project has %2", first, length));
    if (last < 0 || static_cast<unsigned int>(last) >= length)
        raise<STRM_OutOfRange>(text("last: there is no frame %1, the project has %2", last, length));
    if (first > last)
        raise<STRM_BadArgument>(text("first: the frame %1 comes after the last, %2", first, last));
}

// Those that are given, in their order, or all that are visible.
QVector<Layer> layersToRender(STRM_ProjectManager& manager, const QVector<Layer>& layers)
{
    const Stratum::Reading model(manager);
    const std::vector<const Stratum::LayerModel*> selected = selectLayers(*model, layers);
    QVector<Layer> handles = layers;
    for (const Stratum::LayerModel* layer : selected)
        if (layers.isEmpty())
            handles.append(handleOf(*layer));
    return handles;
}

ClipState stateOver(const RenderedClip& rendered, const Stratum::Settings& settings)
{
    ClipState state;
    state.name = rendered.title;
    state.mode = VX_CLIP_RENDERED;
    state.streams[rendered.view] = rendered.stream;
    state.mapping[rendered.view] = rendered.view;
    state.size = {static_cast<unsigned int>(rendered.size.width), static_cast<unsigned int>(rendered.size.height)};
    state.frameRate = settings.frameRate;
    state.firstFrameOffset = settings.firstFrameOffset;
    state.color = rendered.color;
    return state;
}

} // namespace

Clip* Project::render(RenderOperation* operation, int first, int last, const QVector<Layer>& layers, View view)
{
    if (!operation)
        raise<STRM_BadArgument>(text("operation: there is none"));
    // From the first report on the project may be gone: only what is held here is used.
    const boost::shared_ptr<STRM_ProjectManager> held = m_data->manager;
    STRM_ProjectManager& manager = *held;
    requireFrames(manager, first, last);
    OperationProgress progress(presentWatcher(operation->get_progress_watcher()));
    const BusyProject busy(*m_data);
    const QVector<Layer> selected = layersToRender(manager, layers);
    if (selected.isEmpty())
        raise<STRM_BadState>(text("There is no visible layer to render"));
    const std::unique_ptr<VX::IClip> result(operation->onRender(manager, first, last, selected, view));
    auto* rendered = dynamic_cast<RenderedClip*>(result.get());
    if (!rendered)
        raise<STRM_OperationFailed>(text("The operation rendered nothing that a project can keep"));
    requireOpen(manager);
    Stratum::Settings settings;
    {
        const Stratum::Reading model(manager);
        settings = model->settings;
    }
    std::unique_ptr<Clip> clip = newClip(m_data->manager, stateOver(*rendered, settings));
    clip->data().model->showFrom(rendered->view, rendered->first);
    Stratum::Edit edit(manager);
    const std::shared_ptr<Clip*> adopted = adoptClip(edit, *m_data, std::move(clip));
    edit.commit();
    rendered->keep();
    return *adopted;
}
