// Clip::exportClip: writes a clip's frames, colour interpretation applied, as a new sequence.

#include "export_plan.h"

#include <algorithm>
#include <engine/clips/data.h>
#include <engine/clips/footage.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/operations/progress.h>
#include <engine/sequences/staged_files.h>

using namespace orrery;

namespace {

// The views to write, each once: those that are asked for, or all.
std::vector<ExportedView> viewsToWrite(Clip::Data& clip, const QVector<View>& asked)
{
    Stratum::Reading reading(*clip.manager);
    const ClipState& state = clip.model->state;
    std::vector<int> ids;
    for (const View& view : asked)
        ids.push_back(clip.model->resolveView(idOf(view)));
    if (asked.isEmpty())
        for (const auto& stream : state.streams)
            ids.push_back(stream.first);
    std::vector<ExportedView> views;
    for (const int id : ids) {
        if (!state.streams.count(id))
            raise<STRM_OutOfRange>(text("views: the clip %1 has no stream for view %2", quoted(state.name), id));
        const bool known = std::any_of(views.begin(), views.end(), [id](const auto& view) { return view.id == id; });
        if (known)
            continue;
        // A clip of no project has only numbers for its views.
        const auto mapped = state.mapping.find(id);
        const auto& names = reading->settings.views;
        const bool named =
            !clip.detached && mapped != state.mapping.end() && static_cast<std::size_t>(mapped->second) < names.size();
        views.push_back({id, named ? names[static_cast<std::size_t>(mapped->second)].abbreviation : asText(id), {}});
    }
    return views;
}

unsigned int frameEnd(Clip::Data& clip)
{
    Stratum::Reading reading(*clip.manager);
    return static_cast<unsigned int>(std::max<std::int64_t>(clip.model->state.frameCount(), clip.model->frameEnd()));
}

pixels::Depth depthOf(const Footage& footage, int frame, int conversion, const QString& suffix)
{
    if (conversion == _8BitConversion)
        return depthFor(suffix, pixels::Depth::EightBit);
    if (conversion == FloatConversion)
        return depthFor(suffix, pixels::Depth::Float);
    return depthFor(suffix, footage.header(frame).depth);
}

void giveStreams(Clip::Data& destination, const ExportPlan& plan)
{
    destination.change(
        [&](ClipState& state) {
            for (const ExportedView& view : plan.views)
                setStream(state, *destination.model, destination.detached, view.id, plan.info(view));
        },
        destination.streamsChanged());
}

} // namespace

void Clip::exportClip(Clip* destination, const QString& path, const QString& prefix, const QString& suffix,
                      const QString& view_format, unsigned int first, unsigned int last, unsigned int index_width,
                      const QVector<View>& views, bool separate_streams)
{
    // From the first report on both clips may be gone: only what is held here is used.
    const boost::shared_ptr<STRM_ProjectManager> manager = m_data->manager;
    const boost::shared_ptr<ClipModel> model = m_data->model;
    const QPointer<Clip> target = destination;
    const ClipState source = m_data->state();
    const ExportPlan plan({path, prefix, suffix, view_format, first, last, index_width, separate_streams},
                          frameEnd(*m_data), viewsToWrite(*m_data, views));
    OperationProgress progress(presentWatcher(m_data->progressWatcher));
    progress.begin(text("Exporting %1", quoted(source.name)));
    std::vector<Footage> footage;
    std::vector<pixels::WriteOptions> options(plan.views.size());
    for (const ExportedView& view : plan.views) {
        footage.emplace_back(*model, view.id, plan.first, plan.last);
        options[footage.size() - 1].depth = depthOf(footage.back(), plan.first, source.color.conversion, suffix);
    }
    StagedFiles files(plan.folder);
    forEachFrame(
        progress, plan.count(),
        [&](int n) {
            const std::size_t view = static_cast<std::size_t>(n) % plan.views.size();
            files.write(plan.fileName(n), *footage[view].read(plan.frame(n)), options[view]);
        },
        [&plan](int done) { return text("%1 of %2 frames", done, plan.count()); });
    files.commit();
    if (target)
        giveStreams(*target->m_data, plan);
}
