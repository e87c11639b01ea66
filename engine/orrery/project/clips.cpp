// The clips of a project, and the one that a layer is tracked on.
#include <algorithm>
#include <cassert>
#include <engine/clips/project_clip.h>
#include <engine/errors/message.h>
#include <engine/handles/access.h>
#include <engine/handles/layer_items.h>
#include <engine/project/clips.h>
#include <set>

using namespace orrery;

namespace orrery {

Clip* clipWithId(const Stratum::Model& project, unsigned int id)
{
    for (Clip* clip : project.clips)
        if (clip->get_id() == id)
            return clip;
    return nullptr;
}

QString freeClipName(const Stratum::Model& project, const QString& wanted)
{
    const std::vector<Clip*>& clips = project.clips;
    if (std::none_of(clips.begin(), clips.end(), [&wanted](const Clip* clip) { return lockedName(*clip) == wanted; }))
        return wanted;
    std::set<QString> taken;
    for (const Clip* clip : clips)
        taken.insert(lockedName(*clip));
    QString name = wanted;
    for (int number = 2; taken.count(name); ++number)
        name = text("%1 %2", wanted, number);
    return name;
}

std::shared_ptr<Clip*> adoptClip(Stratum::Edit& edit, Project::Data& project, std::unique_ptr<Clip> clip)
{
    renameNewClip(*clip, freeClipName(*edit, lockedName(*clip)));
    return adoptNamedClip(edit, project, std::move(clip));
}

std::shared_ptr<Clip*> adoptNamedClip(Stratum::Edit& edit, Project::Data& project, std::unique_ptr<Clip> clip)
{
    std::vector<Clip*>& clips = edit->clips;
    unmapViewsFrom(edit, *clip, static_cast<int>(edit->settings.views.size()));
    project.ownClip(std::move(clip));
    const std::shared_ptr<Clip*> adopted = project.allClips.back();
    if (clips.capacity() < project.allClips.size()) // room for all, so that undo and redo need none
        clips.reserve(2 * project.allClips.size());
    Stratum::Notices notices;
    notices.clips = true;
    edit.perform(Stratum::change(
        [&clips, adopted] {
            if (*adopted)
                clips.push_back(*adopted);
        },
        [&clips, adopted] {
            if (!*adopted)
                return;
            const auto place = std::find(clips.begin(), clips.end(), *adopted);
            assert(place != clips.end());
            clips.erase(place);
        },
        notices));
    return adopted;
}

} // namespace orrery

Clip* Project::add_clip(Clip* clip, const QString& name)
{
    if (!clip)
        raise<STRM_BadArgument>(QString::fromLatin1("clip: there is none"));
    requireName("name", name);
    std::unique_ptr<Clip> own = copyForProject(*clip, name, m_data->manager);
    Stratum::Edit edit(*m_data->manager);
    const std::shared_ptr<Clip*> adopted = adoptClip(edit, *m_data, std::move(own));
    edit.commit();
    return *adopted;
}

QHash<QString, Clip*> Project::get_clips()
{
    const Stratum::Reading model(*m_data->manager);
    QHash<QString, Clip*> clips;
    for (Clip* clip : model->clips)
        clips.insert(lockedName(*clip), clip);
    return clips;
}

Clip* Project::get_default_trackable_clip() const
{
    const Stratum::Reading model(*m_data->manager);
    return model->clips.empty() ? nullptr : model->clips.front();
}

Clip* Layer::tracking_input_clip(bool use_linked_layer)
{
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    const Stratum::LayerModel& source = use_linked_layer ? layer->trackSource() : *layer;
    return clipWithId(source.project(), source.clip);
}
