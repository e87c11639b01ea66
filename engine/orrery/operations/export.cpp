// Project::export_rendered_shapes: the shapes of layers as sequences of mattes.

#include "export_plan.h"
#include "scope.h"
#include "shape_rendering.h"

#include <engine/clips/data.h>
#include <engine/clips/footage.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/operations/progress.h>
#include <engine/sequences/staged_files.h>

using namespace orrery;

namespace {

constexpr const char* viewFormat = "%v_";

struct Settings
{
    unsigned int length;
    std::pair<unsigned int, unsigned int> range; // that is exported when none is given
    int firstNumber;
    float frameRate;
    std::vector<ExportedView> views;
    ClipModel* clip; // tells the size of a frame
};

Settings settingsFor(STRM_ProjectManager& manager, const QVector<Layer>& layers, const QVector<View>& asked, bool all)
{
    const Stratum::Reading model(manager);
    Settings settings;
    settings.length = model->settings.length;
    settings.range = model->settings.inOutRange;
    settings.firstNumber = model->settings.firstFrameOffset;
    settings.frameRate = model->settings.frameRate;
    std::vector<int> ids = resolveViews(*model, asked);
    if (ids.empty() && !all)
        ids.push_back(model->settings.heroView);
    for (std::size_t id = 0; asked.isEmpty() && all && id < model->settings.views.size(); ++id)
        ids.push_back(static_cast<int>(id));
    for (const int id : ids)
        settings.views.push_back({id, model->settings.views[static_cast<std::size_t>(id)].abbreviation, {}});
    settings.clip = footageClip(*model, selectLayers(*model, layers));
    return settings;
}

pixels::Size frameSize(ClipModel* clip)
{
    if (!clip)
        raise<STRM_BadState>(text("No clip tells the size of a frame: the layers have none, nor has the project"));
    const QPair<unsigned int, unsigned int> size = knownFootageSize(*clip);
    return {static_cast<int>(size.first), static_cast<int>(size.second)};
}

std::unique_ptr<Clip> clipOver(const ExportPlan& plan, const QString& name, pixels::Size size, float frameRate)
{
    ClipState state;
    state.name = name;
    state.mode = VX_CLIP_RENDERED;
    state.frameRate = frameRate;
    state.size = {static_cast<unsigned int>(size.width), static_cast<unsigned int>(size.height)};
    for (const ExportedView& view : plan.views) {
        state.streams[view.id] = streamOf(plan.info(view));
        state.mapping[view.id] = view.id;
    }
    auto clip = std::make_unique<Clip>(QString(), QString(), false, 0, 0, 0, nullptr);
    ClipModel& model = *clip->data().model;
    model.setState(std::move(state));
    for (const ExportedView& view : plan.views)
        model.showFrom(view.id, plan.first);
    return clip;
}

} // namespace

Clip* Project::export_rendered_shapes(const QVector<Layer>& layers, ColorizeOutput colorize, const QString& clip_name,
                                      const QString& path, const QString& prefix, const QString& suffix,
                                      unsigned int first, unsigned int last, unsigned int index_width,
                                      const QVector<View>& views, bool separate_streams)
{
    requireText("clip_name", clip_name);
    if (colorize < Grayscale || colorize > ByLayer)
        raise<STRM_BadArgument>(text("colorize: %1 is no way to colour", static_cast<int>(colorize)));
    // From the first report on the project may be gone: only what is held here is used.
    const boost::shared_ptr<STRM_ProjectManager> held = m_data->manager;
    STRM_ProjectManager& manager = *held;
    const Settings settings = settingsFor(manager, layers, views, separate_streams);
    const ExportPlan plan(
        {path, prefix, suffix, QString::fromLatin1(viewFormat), first == unknownFrame ? settings.range.first : first,
         last == unknownFrame ? settings.range.second : last, index_width, separate_streams, settings.firstNumber},
        settings.length, settings.views);
    const pixels::Size size = frameSize(settings.clip);

    OperationProgress progress(presentWatcher(m_data->progressWatcher));
    const BusyProject busy(*m_data);
    progress.begin(text("Exporting shapes"));
    std::vector<std::vector<Stratum::LayerSnapshot>> shapes;
    for (const ExportedView& view : plan.views)
        shapes.push_back(snapshotLayers(manager, layers, plan.first, plan.last, view.id));
    std::unique_ptr<Clip> clip = clipOver(plan, clip_name, size, settings.frameRate);
    StagedFiles files(plan.folder);
    const pixels::WriteOptions options{depthFor(suffix, pixels::Depth::EightBit)};
    forEachFrame(
        progress, plan.count(),
        [&](int n) {
            const auto& layersOfView = shapes[static_cast<std::size_t>(n) % shapes.size()];
            files.write(plan.fileName(n), shapePicture(layersOfView, plan.frame(n), size, colorize), options);
        },
        [&plan](int done) { return text("%1 of %2 frames", done, plan.count()); });
    files.commit();
    return clip.release();
}
