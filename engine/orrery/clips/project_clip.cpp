// Making the clips that belong to projects.
#include <engine/clips/project_clip.h>

namespace orrery {
std::unique_ptr<Clip> newClip(const boost::shared_ptr<STRM_ProjectManager>& manager, ClipState state)
{
    auto clip = std::make_unique<Clip>(QString(), QString(), false, 0, 0, 0, nullptr);
    clip->data().moveTo(manager, std::move(state));
    return clip;
}

std::unique_ptr<Clip> copyForProject(const Clip& source, const QString& name,
                                     const boost::shared_ptr<STRM_ProjectManager>& manager)
{
    const Clip::Data& from = source.data();
    ClipState state = from.state();
    state.name = name;
    std::unique_ptr<Clip> clip = newClip(manager, std::move(state));
    // No other thread can reach the copy yet, so the source's lock guards all that is read here.
    ClipModel& to = *clip->data().model;
    Stratum::Reading reading(*from.manager);
    to.values = from.model->values;
    for (const auto& stream : to.state.streams)
        if (const StreamBranch* branch = from.model->stream(stream.first))
            to.stream(stream.first)->values = branch->values;
    return clip;
}

void renameNewClip(Clip& clip, const QString& name) { clip.data().model->state.name = name; }

void mapInOrder(Clip& clip)
{
    ClipState& state = clip.data().model->state;
    state.mapping.clear();
    int view = 0;
    for (const auto& stream : state.streams)
        state.mapping[stream.first] = view++;
}

void unmapViewsFrom(Stratum::Edit& edit, Clip& clip, int first)
{
    ClipModel& model = *clip.data().model;
    std::map<int, int> mapping;
    for (const auto& entry : model.state.mapping)
        if (entry.second < first)
            mapping.insert(entry);
    edit.assign(model.state.mapping, std::move(mapping), clip.data().settingChanged("view_mapping"));
}

QString lockedName(const Clip& clip) { return clip.data().model->state.name; }

Knob::Branch& clipBranch(Clip& clip) { return *clip.data().model; }

} // namespace orrery
