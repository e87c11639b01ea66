// Clip: streams, views and settings. Its frames are read in footage.cpp.

#include "color_link.h"

#include <engine/clips/data.h>
#include <engine/clips/footage.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/handles/access.h>
#include <engine/handles/destruction_hook.h>
#include <orrery/progress_watcher.h>

using namespace orrery;

namespace {

void requireOrder(unsigned int first, unsigned int last) { requireFit<&Stream::last>(Stream{{}, first, last}); }

// The description as a clip keeps it: checked, its folder absolute, and unknown numbers as they are on disk.
StreamInfo checked(const StreamInfo& info)
{
    StreamInfo absolute = info;
    absolute.set_path(absolutePath("path", info.get_path()));
    requireFolderOrNothing(absolute.get_path());
    const SequenceName name = nameOf(absolute);
    Knob::forEachField<SequenceName>(
        [&name](const auto& field) { require(field.name, field.problemOf(name.*field.member)); });
    requireOrder(absolute.get_start_frame(), absolute.get_end_frame());
    const StreamInfo found = foundOnDisk(absolute);
    requireOrder(found.get_start_frame(), found.get_end_frame());
    return found;
}

StreamInfo located(const QString& location, unsigned int start, unsigned int end, bool validate)
{
    requireOrder(start, end);
    return checked(describe(parseLocation(location, validate), start, end));
}

// A folder keeps the names that the files had. Anything else is a location, and so is a folder where they had none.
SequenceName movedTo(const QString& path, SequenceName name)
{
    const QString folder = absolutePath("path", path);
    if (!name.isKnown() || standing(folder) != Standing::Folder)
        return parseLocation(folder, true);
    name.folder = folder;
    return name;
}

// The first `length` frames of what was found; those that were not found count from 1.
void setLength(StreamInfo& info, unsigned int length)
{
    if (info.get_start_frame() == unknownFrame)
        info.set_start_frame(1);
    if (length > unknownFrame - info.get_start_frame())
        raise<STRM_OutOfRange>(text("A length of %1 frames is too long", length));
    info.set_end_frame(info.get_start_frame() + length - 1);
}

[[noreturn]] void raiseNoStream(int view) { raise<STRM_OutOfRange>(text("The clip has no stream for view %1", view)); }

const Stream& streamAt(const ClipState& state, int view)
{
    const auto found = state.streams.find(view);
    if (found == state.streams.end())
        raiseNoStream(view);
    return found->second;
}

} // namespace

Clip::Clip(const QString& location, const QString& clip_name, bool validate, unsigned int width, unsigned int height,
           unsigned int length, QObject* parent)
    : QObject(parent), m_data(new Data(*this))
{
    require("clip_name", checkClipName(clip_name));
    requireField<&ClipState::size>(FrameSize(width, height));
    requireField<&ClipState::length>(length);
    ClipState state;
    state.name = clip_name;
    state.size = {width, height};
    state.length = length;
    if (!location.isEmpty()) {
        StreamInfo info = located(location, unknownFrame, unknownFrame, validate);
        if (length)
            setLength(info, length);
        if (validate)
            requireFrames(info);
        setStream(state, *m_data->model, true, 0, info);
    }
    m_data->model->setState(std::move(state));
}

Clip::~Clip()
{
    tellDestruction(this);
    setParent(nullptr); // its Qt parent may be among the objects destroyed with it
    if (m_data->owner)
        m_data->owner->forget(*this);
}

// ---- Streams --------------------------------------------------------------------------------------------------------

void Clip::add_stream(const QString& location, View view, unsigned int start_frame, unsigned int end_frame,
                      bool validate)
{
    const StreamInfo info = located(location, start_frame, end_frame, validate);
    if (validate)
        requireFrames(info);
    m_data->change(
        [&](ClipState& state) {
            const int id = m_data->model->resolveView(idOf(view));
            if (state.streams.count(id))
                raise<STRM_BadArgument>(text("The clip has a stream for view %1 already", id));
            setStream(state, *m_data->model, m_data->detached, id, info);
        },
        m_data->streamsChanged());
}

void Clip::apply(const StreamInfo& info, const View& view)
{
    const StreamInfo applied = checked(info);
    m_data->change(
        [&](ClipState& state) {
            setStream(state, *m_data->model, m_data->detached, m_data->model->resolveView(idOf(view)), applied);
        },
        m_data->streamsChanged());
}

void Clip::relink(const StreamInfo& info, const View& view)
{
    get_info(view); // the stream must exist, whatever the files
    const StreamInfo relinked =
        checked(describe(movedTo(info.get_path(), nameOf(info)), info.get_start_frame(), info.get_end_frame()));
    requireFrames(relinked);
    requireFootageSize(*m_data->model, relinked);
    m_data->change(
        [&](ClipState& state) {
            const int id = m_data->model->resolveView(idOf(view));
            streamAt(state, id);
            state.streams[id] = streamOf(relinked);
        },
        m_data->streamsChanged());
}

void Clip::relink(const QString& path, const QString& prefix, const QString& suffix, unsigned int start_frame,
                  unsigned int end_frame, const View& view)
{
    const StreamInfo info = get_info(view);
    SequenceName name = nameOf(info);
    const auto changeNames = [&] {
        name.prefix = prefix.isEmpty() ? name.prefix : prefix;
        name.suffix = suffix.isEmpty() ? name.suffix : suffix;
    };
    changeNames();
    name = movedTo(path.isEmpty() ? name.folder : path, name);
    changeNames();
    relink(describe(name, start_frame == unknownFrame ? info.get_start_frame() : start_frame,
                    end_frame == unknownFrame ? info.get_end_frame() : end_frame),
           view);
}

void Clip::delete_stream(View view)
{
    m_data->change(
        [&](ClipState& state) {
            const int id = m_data->model->resolveView(idOf(view));
            streamAt(state, id);
            state.streams.erase(id);
            state.mapping.erase(id);
        },
        m_data->streamsChanged());
}

StreamInfo Clip::get_info(const View& view)
{
    Stratum::Reading reading(*m_data->manager);
    return streamAt(m_data->model->state, m_data->model->resolveView(idOf(view))).info();
}

QVector<View> Clip::get_views()
{
    QVector<View> views;
    for (const auto& stream : m_data->state().streams)
        views.append(View(stream.first));
    return views;
}

void Clip::assign_project_view(View clip_view, View project_view)
{
    m_data->change(
        [&](ClipState& state) {
            const int from = m_data->model->resolveView(idOf(clip_view));
            streamAt(state, from);
            int to = idOf(project_view);
            if (!m_data->detached || to == Knob::View::defaultViewId())
                to = m_data->model->project().resolveView(to);
            else if (to < 0)
                raise<STRM_OutOfRange>(text("No project has a view with the id %1", project_view.get_id()));
            for (auto entry = state.mapping.begin(); entry != state.mapping.end();)
                entry = entry->second == to ? state.mapping.erase(entry) : std::next(entry);
            state.mapping[from] = to;
        },
        m_data->settingChanged("view_mapping"));
}

QMap<View, View> Clip::get_view_mapping()
{
    QMap<View, View> mapping;
    for (const auto& entry : m_data->state().mapping)
        mapping.insert(View(entry.first), View(entry.second));
    return mapping;
}

// ---- Settings -------------------------------------------------------------------------------------------------------

QString Clip::get_name() { return m_data->state().name; }

unsigned int Clip::get_id() const { return m_data->id; }

QPair<unsigned int, unsigned int> Clip::get_frame_size() { return footageSize(*m_data->model); }

void Clip::set_frame_size(const QPair<unsigned int, unsigned int>& size)
{
    requireField<&ClipState::size>(size);
    if (!size.first || !size.second)
        raise<STRM_BadArgument>(text("frame_size: %1 x %2 pixels is no size", size.first, size.second));
    m_data->change([&](ClipState& state) { state.size = size; }, m_data->settingChanged("frame_size"));
}

float Clip::get_frame_rate() const { return m_data->state().frameRate; }

void Clip::set_frame_rate(float rate)
{
    requireField<&ClipState::frameRate>(rate);
    m_data->change([&](ClipState& state) { state.frameRate = rate; }, m_data->settingChanged("frame_rate"));
}

int Clip::get_first_frame_offset() const { return m_data->state().firstFrameOffset; }

void Clip::set_first_frame_offset(int offset)
{
    m_data->change([&](ClipState& state) { state.firstFrameOffset = offset; },
                   m_data->settingChanged("first_frame_offset"));
}

ColorParameters* Clip::get_color_parameters() { return m_data->colorParameters(); }

void Clip::set_color_parameters(ColorParameters* parameters) { m_data->adopt(parameters); }

ProgressWatcher* Clip::get_progress_watcher() const { return m_data->progressWatcher; }

Parameter Clip::parameter(const QStringList& name_components)
{
    return parameterAt(*m_data->model, *m_data->manager, name_components);
}

ParameterSet Clip::parameter_set(const QStringList& name_components)
{
    return parameterSetAt(*m_data->model, *m_data->manager, name_components);
}

ParameterSet Clip::base_parameter_set(const QStringList& name_components)
{
    return parameterSetAt(m_data->model->base(), *m_data->manager, name_components);
}

bool Clip::operator==(const Clip& other) const { return this == &other; }

bool Clip::operator!=(const Clip& other) const { return this != &other; }
