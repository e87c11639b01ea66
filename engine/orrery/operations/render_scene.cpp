// Taking the snapshot of a scene, and writing the sequence that is rendered from it.

#include "render_scene.h"

#include "export_plan.h"
#include "scope.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/sequences/pixel_access.h>
#include <engine/sequences/staged_files.h>

namespace orrery {
namespace {

using Parameters = Stratum::ProjectParameters;

constexpr unsigned int frameDigits = 4;
constexpr std::int64_t farthest = 10000; // frames that a frame may be filled from lie no further away

RenderValues valuesOf(const Parameters& parameters, int frame, int view)
{
    const auto value = [&](Parameters::RenderValue which) { return parameters.render(which, frame, view).x; };
    return {static_cast<float>(value(Parameters::InsertOpacity)), static_cast<int>(value(Parameters::FillAlgorithm)),
            static_cast<int>(value(Parameters::RemoveSource)), static_cast<int>(value(Parameters::Illumination)),
            static_cast<int>(value(Parameters::Luminance))};
}

// What lies behind a layer moves as the layers below that are tracked and stay in the picture, the nearest first. A
// layer that is linked says itself what it moves with, and one with nothing tracked below is taken for a part of the
// plane.
std::vector<const Stratum::LayerModel*> planesBehind(const Stratum::Model& project, const Stratum::LayerModel& layer,
                                                     const std::vector<const Stratum::LayerModel*>& selected, int view)
{
    std::vector<const Stratum::LayerModel*> planes;
    for (const Stratum::LayerModel* below : Stratum::allLayers(project)) {
        if (below == &layer || layer.trackedWith())
            break;
        const Stratum::LayerModel& source = below->trackSource();
        const bool moves = source.tracked(view) || source.tracked(project.settings.heroView);
        if (moves && &source != &layer && std::find(selected.begin(), selected.end(), below) == selected.end())
            planes.insert(planes.begin(), below);
    }
    if (planes.empty())
        planes.push_back(&layer);
    return planes;
}

} // namespace

RenderScene::RenderScene(STRM_ProjectManager& manager, int first, int last, const QVector<Layer>& wanted, View asked,
                         bool around)
    : first(first), last(last), reachFirst(first), reachLast(last)
{
    ClipModel* clip;
    {
        const Stratum::Reading model(manager);
        view = resolveView(*model, asked);
        outputFolder = model->settings.outputFolder;
        firstNumber = model->settings.firstFrameOffset;
        requireNumbers(first, last, firstNumber);
        const std::vector<const Stratum::LayerModel*> selected = selectLayers(*model, wanted);
        if (selected.empty())
            raise<STRM_BadState>(text("There is no layer to render"));
        clip = footageClip(*model, selected);
        if (!clip)
            raise<STRM_BadState>(text("There is no clip to render the layers with"));
        if (around) {
            const std::int64_t count = std::min<std::int64_t>(model->settings.length, clip->frameEnd());
            reachFirst = static_cast<int>(std::max<std::int64_t>(0, first - farthest));
            reachLast = static_cast<int>(std::max<std::int64_t>(last, std::min(count - 1, last + farthest)));
        }
        requireBearable(static_cast<unsigned int>(reachFirst), static_cast<unsigned int>(reachLast));
        const auto snapshots = [this](const std::vector<const Stratum::LayerModel*>& models) {
            std::vector<Stratum::LayerSnapshot> taken;
            for (const Stratum::LayerModel* model : models)
                taken.push_back(Stratum::snapshot(*model, reachFirst, reachLast, view));
            return taken;
        };
        layers = snapshots(selected);
        for (const Stratum::LayerModel* layer : selected)
            if (around)
                planes.push_back(snapshots(planesBehind(*model, *layer, selected, view)));
        for (int frame = first; frame <= last; ++frame)
            values.push_back(valuesOf(model->parameters(), frame, view));
    }
    if (outputFolder.isEmpty())
        raise<STRM_BadState>(text("The project has no output folder to render to"));
    footage = std::make_unique<Footage>(Footage::forProjectView(*clip, view, reachFirst, reachLast));
}

RenderedClip::~RenderedClip()
{
    if (m_kept)
        return;
    for (unsigned int frame = stream.first; frame <= stream.last; ++frame)
        QFile::remove(stream.name.path(frame));
    QDir().rmdir(stream.name.folder);
}

VX::IClip* renderFrames(const RenderScene& scene, ProgressWatcher& watcher, const QString& title, const char* name,
                        const std::function<pixels::Image(int frame)>& make)
{
    const int count = scene.last - scene.first + 1;
    OperationProgress& progress = *watcher.data().operation;
    progress.begin(title);
    const pixels::FrameInfo header = scene.footage->header(scene.first);
    const QString source = scene.footage->file(scene.first);
    const QString suffix = QLatin1Char('.') + QFileInfo(source).suffix();
    pixels::WriteOptions options{depthFor(suffix, header.depth)};
    options.interpretation = scene.footage->interpretation();
    SequenceName sequence{QString(), asText(name) + QLatin1Char('.'), suffix, frameDigits};
    StagedFiles files(scene.outputFolder);
    forEachFrame(
        progress, count,
        [&](int n) {
            const int frame = scene.first + n;
            files.write(sequence.fileName(scene.number(frame)), make(frame), options);
        },
        [count](int done) { return text("%1 of %2 frames", done, count); });
    sequence.folder = files.commitAsFolder(asText(name));
    return new RenderedClip(asText(name), Stream{sequence, scene.number(scene.first), scene.number(scene.last)},
                            scene.first, scene.view, header.size, scene.footage->color());
}

} // namespace orrery
