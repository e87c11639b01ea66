// A project's own settings, its life and its signals.
#include <QFileInfo>
#include <algorithm>
#include <engine/clips/data.h>
#include <engine/clips/project_clip.h>
#include <engine/files/paths.h>
#include <engine/handles/access.h>
#include <engine/handles/announcement.h>
#include <engine/handles/destruction_hook.h>
#include <engine/handles/undo_group_data.h>
#include <engine/project/clips.h>
#include <orrery/clip.h>
#include <orrery/progress_watcher.h>

using namespace orrery;
using Stratum::Notices;

namespace {

static_assert(Stratum::interlaceModes == InvalidInterlaceMode);

// The project's clips as a branch of its parameters.
class ClipsBranch : public Knob::NamedBranch
{
public:
    explicit ClipsBranch(const Stratum::Model& project)
        : NamedBranch(project.parameters(), QT_TRANSLATE_NOOP("Parameter", "Clips")), m_project(project)
    {}

    std::vector<Knob::Member> members() override
    {
        std::vector<Knob::Member> members;
        for (Clip* clip : m_project.clips)
            members.push_back({lockedName(*clip), &clipBranch(*clip), nullptr, nullptr});
        return members;
    }

private:
    const Stratum::Model& m_project;
};

// Checked by the member's row, alone and beside the other settings.
template <auto member, class T>
void assign(Project::Data& data, T value)
{
    requireField<member>(value);
    Stratum::Edit edit(*data.manager);
    Stratum::Settings& settings = edit->settings;
    Stratum::Settings next = settings;
    next.*member = value;
    requireFit<member>(next);
    edit.assign(settings.*member, std::move(value), Notices::setting(Knob::fieldOf<member>().name));
    edit.commit();
}

template <class T>
T read(const Project::Data& data, T Stratum::Settings::*place)
{
    return Stratum::Reading(*data.manager)->settings.*place;
}

void requireWritableFolder(const QString& folder)
{
    const QFileInfo info(folder);
    const char* const problem = !info.exists()       ? "does not exist"
                                : !info.isWritable() ? "cannot be written to"
                                                     : nullptr;
    if (problem)
        raise<STRM_BadFile>(
            QString::fromLatin1("the output folder %1 %2").arg(quoted(folder), QString::fromLatin1(problem)));
}

// As many views as the clip has.
std::vector<Stratum::ViewSettings> viewsFor(std::size_t count)
{
    std::vector<Stratum::ViewSettings> views;
    for (std::size_t i = 1; i <= count; ++i)
        views.push_back(count == 1
                            ? Stratum::ViewSettings{QString::fromLatin1("Main"), QString::fromLatin1("M"), {1, 1, 1}}
                            : Stratum::ViewSettings{
                                  QString::fromLatin1("View %1").arg(i), QString::fromLatin1("V%1").arg(i), {1, 1, 1}});
    return views;
}

} // namespace

// ---- The data ----

Project::Data::Data(Project& project, boost::shared_ptr<STRM_ProjectManager> manager)
    : project(project), manager(std::move(manager)), parameters(Stratum::Exclusive(*this->manager)->parameters()),
      progressWatcher(new ProgressWatcher(&project))
{
    {
        const Stratum::Exclusive model(*this->manager);
        const auto clips = boost::make_shared<ClipsBranch>(*model);
        model->parameters().addBranch(QString::fromLatin1("clips"), clips.get());
        model->keep(clips);
    }
    this->manager->setListener(this);
}

Project::Data::~Data()
{
    manager->close();
    manager->setListener(nullptr);
    // One by one: a clip may take others with it, which are forgotten then.
    while (Clip* const clip = takeClip())
        delete clip;
}

// The next clip to destroy; null when none is left.
Clip* Project::Data::takeClip()
{
    const Stratum::Exclusive model(*manager);
    model->clips.clear();
    for (; !allClips.empty(); allClips.pop_back())
        if (Clip* const clip = std::exchange(*allClips.back(), nullptr))
            return clip;
    return nullptr;
}

void Project::Data::ownClip(std::unique_ptr<Clip> clip)
{
    allClips.push_back(std::make_shared<Clip*>(nullptr));
    clip->data().owner = this;
    *allClips.back() = clip.release();
}

void Project::Data::forget(Clip& clip)
{
    Notices notices;
    {
        const Stratum::Exclusive model(*manager);
        for (const auto& owned : allClips)
            if (*owned == &clip)
                *owned = nullptr;
        std::vector<Clip*>& clips = model->clips;
        const auto end = std::remove(clips.begin(), clips.end(), &clip);
        notices.clips = end != clips.end();
        clips.erase(end, clips.end());
    }
    announce(notices);
}

void Project::Data::announce(const Notices& notices)
{
    Project* const sender = &project;
    const Announcement announcement(*sender);
    for (const auto& call : notices.others)
        call();
    for (const char* name : notices.settings)
        announcement([=] { emit sender->settingChanged(QString::fromLatin1(name)); });
    if (notices.views)
        announcement([=] { emit sender->viewsChanged(); });
    if (notices.clips)
        announcement([=] { emit sender->clipsChanged(); });
    if (notices.layers)
        announcement([=] { emit sender->layersChanged(); });
    if (notices.history)
        announcement([=] { emit sender->historyChanged(); });
}

// ---- The project ----

Project::Project(Clip* clip, InterlaceMode interlace_mode, QObject* parent)
    : QObject(parent), m_data(std::make_unique<Data>(*this, STRM_ProjectManager::create()))
{
    Stratum::Settings settings = Stratum::Reading(*m_data->manager)->settings;
    settings.interlaceMode = interlace_mode;
    ClipState state;
    if (clip) {
        state = clip->data().state();
        settings.frameRate = state.frameRate;
        settings.firstFrameOffset = state.firstFrameOffset;
        settings.views = viewsFor(std::max<std::size_t>(1, state.streams.size()));
        if (const unsigned int frames = std::min(state.frameCount(), Stratum::longestProject)) {
            settings.length = frames;
            settings.playbackOutPoint = frames - 1;
            settings.inOutRange = {0, frames - 1};
        }
    }
    Knob::forEachField<Stratum::Settings>(
        [&settings](const auto& field) { require(field.name, field.problemOf(settings.*field.member)); });
    Stratum::Exclusive(*m_data->manager)->settings = settings;
    if (!clip)
        return;
    std::unique_ptr<Clip> own = copyForProject(*clip, state.name, m_data->manager);
    mapInOrder(*own);
    Stratum::Edit edit(*m_data->manager);
    adoptClip(edit, *m_data, std::move(own));
    edit.commit();
    Stratum::Exclusive(*m_data->manager)->history = Stratum::History();
}

Project::~Project()
{
    tellDestruction(this);
    setParent(nullptr); // its Qt parent may be among the objects destroyed with it
    forgetProject(this);
}

bool Project::operator==(const Project& other) const { return this == &other; }

bool Project::operator!=(const Project& other) const { return this != &other; }

UndoGroup Project::undo_group()
{
    const auto data = boost::make_shared<UndoGroupData>();
    data->manager = m_data->manager;
    return UndoGroup(data);
}

ProgressWatcher* Project::get_progress_watcher() const { return m_data->progressWatcher; }

// ---- Timing ----

float Project::get_frame_rate() const { return read(*m_data, &Stratum::Settings::frameRate); }

void Project::set_frame_rate(float rate) { assign<&Stratum::Settings::frameRate>(*m_data, rate); }

int Project::get_first_frame_offset() const { return read(*m_data, &Stratum::Settings::firstFrameOffset); }

void Project::set_first_frame_offset(int offset) { assign<&Stratum::Settings::firstFrameOffset>(*m_data, offset); }

unsigned int Project::get_length() const { return read(*m_data, &Stratum::Settings::length); }

void Project::set_length(unsigned int length)
{
    requireField<&Stratum::Settings::length>(length);
    Stratum::Edit edit(*m_data->manager);
    Stratum::Settings& now = edit->settings;
    Stratum::Settings cut = now;
    cut.cutTo(length);
    edit.assign(now.length, cut.length, Notices::setting("length"));
    edit.assign(now.playbackInPoint, cut.playbackInPoint, Notices::setting("playback_in_point"));
    edit.assign(now.playbackOutPoint, cut.playbackOutPoint, Notices::setting("playback_out_point"));
    edit.assign(now.inOutRange, cut.inOutRange, Notices::setting("in_out_range"));
    edit.commit();
}

unsigned int Project::get_playback_in_point() const { return read(*m_data, &Stratum::Settings::playbackInPoint); }

void Project::set_playback_in_point(unsigned int frame) { assign<&Stratum::Settings::playbackInPoint>(*m_data, frame); }

unsigned int Project::get_playback_out_point() const { return read(*m_data, &Stratum::Settings::playbackOutPoint); }

void Project::set_playback_out_point(unsigned int frame)
{
    assign<&Stratum::Settings::playbackOutPoint>(*m_data, frame);
}

QPair<unsigned int, unsigned int> Project::get_in_out_range()
{
    const auto range = read(*m_data, &Stratum::Settings::inOutRange);
    return qMakePair(range.first, range.second);
}

void Project::set_in_out_range(const QPair<unsigned int, unsigned int>& range)
{
    assign<&Stratum::Settings::inOutRange>(*m_data, std::make_pair(range.first, range.second));
}

InterlaceMode Project::get_interlace_mode()
{
    return static_cast<InterlaceMode>(read(*m_data, &Stratum::Settings::interlaceMode));
}

// ---- Notes, folders and files ----

QString Project::get_notes() { return read(*m_data, &Stratum::Settings::notes); }

void Project::set_notes(const QString& notes) { assign<&Stratum::Settings::notes>(*m_data, notes); }

QString Project::get_output_dir() { return read(*m_data, &Stratum::Settings::outputFolder); }

void Project::set_output_dir(const QString& folder, bool validate)
{
    const QString path = folder.isEmpty() ? folder : absolutePath("output_dir", folder);
    requireFolderOrNothing(path);
    if (validate)
        requireWritableFolder(path);
    assign<&Stratum::Settings::outputFolder>(*m_data, path);
}

QString Project::get_project_file()
{
    const Stratum::Reading lock(*m_data->manager);
    return m_data->file;
}

// ---- Views ----

QVector<ViewInfo> Project::get_views()
{
    QVector<ViewInfo> views;
    for (const Stratum::ViewSettings& view : read(*m_data, &Stratum::Settings::views))
        views.append(ViewInfo(view.name, view.abbreviation, view.color));
    return views;
}

void Project::set_views(const QVector<ViewInfo>& views)
{
    std::vector<Stratum::ViewSettings> next;
    for (const ViewInfo& view : views)
        next.push_back({view.get_name(), view.get_abbr(), view.get_color()});
    requireField<&Stratum::Settings::views>(next);
    Stratum::Edit edit(*m_data->manager);
    Stratum::Settings& settings = edit->settings;
    Notices notices;
    notices.views = true;
    edit.assign(settings.views, next, notices);
    if (static_cast<std::size_t>(settings.heroView) >= next.size())
        edit.assign(settings.heroView, 0, Notices::setting("default_hero_view"));
    for (Clip* clip : edit->clips)
        unmapViewsFrom(edit, *clip, static_cast<int>(next.size()));
    edit.commit();
}

View Project::get_default_hero_view() { return View(read(*m_data, &Stratum::Settings::heroView)); }

void Project::set_default_hero_view(View view)
{
    Stratum::Edit edit(*m_data->manager);
    const int id = resolveView(*edit, view);
    edit.assign(edit->settings.heroView, id, Notices::setting("default_hero_view"));
    edit.commit();
}
