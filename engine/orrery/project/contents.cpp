// What a project contains: layers, groups and parameters.
#include <algorithm>
#include <engine/handles/layer_handles.h>
#include <engine/handles/layer_items.h>
#include <engine/project/data.h>
#include <orrery/clip.h>

using namespace orrery;

// ---- Layers ----

Layer Project::add_layer(Clip* clip, const QString& name, unsigned int frame_number, unsigned int view)
{
    requireName("name", name);
    Stratum::Edit edit(*m_data->manager);
    if (clip && std::find(edit->clips.begin(), edit->clips.end(), clip) == edit->clips.end())
        raise<STRM_BadArgument>(QString::fromLatin1("clip: it is none of the project's"));
    if (frame_number >= edit->settings.length)
        raise<STRM_OutOfRange>(QString::fromLatin1("frame_number: frame %1 is past the last, %2")
                                   .arg(frame_number)
                                   .arg(edit->settings.length - 1));
    const int id = edit->resolveView(static_cast<int>(view));
    if (!clip && !edit->clips.empty())
        clip = edit->clips.front();
    Stratum::LayerModel& layer = *edit->makeLayer();
    layer.name = name;
    layer.clip = clip ? clip->get_id() : 0;
    layer.inFrame = frame_number;
    layer.inView = id;
    Stratum::addLayer(edit, layer);
    edit.commit();
    return handleOf(layer);
}

LayerGroup Project::add_group(const QString& name, QVector<Layer> layers)
{
    requireName("name", name);
    STRM_ProjectManager& manager = *m_data->manager;
    std::vector<boost::shared_ptr<STRM_Layer>> members;
    for (const Layer& layer : layers) {
        members.push_back(argumentObject<STRM_Layer>("layers", layer));
        requireSameProject("layers", Stratum::model(*members.back()), manager);
    }
    Stratum::Edit edit(manager);
    for (const auto& member : members)
        edit.of(Stratum::model(*member));
    Stratum::GroupModel& group = *edit->makeGroup();
    group.name = name;
    Stratum::addGroup(edit, group);
    for (const auto& member : members)
        Stratum::moveLayer(edit, Stratum::model(*member), &group, group.layers.size());
    edit.commit();
    return handleOf(group);
}

Layer Project::layer(unsigned int index)
{
    const Stratum::Reading model(*m_data->manager);
    const Stratum::LayerModel* layer = Stratum::layerAt(*model, index);
    return layer ? handleOf(*layer) : Layer();
}

QVector<Layer> Project::find_layers(const QString& text)
{
    const Stratum::Reading model(*m_data->manager);
    QVector<Layer> found;
    for (const Stratum::LayerModel* layer : Stratum::allLayers(*model))
        if (layer->name.contains(text, Qt::CaseInsensitive))
            found.append(handleOf(*layer));
    return found;
}

QVector<LayerGroup> Project::find_groups(const QString& text)
{
    const Stratum::Reading model(*m_data->manager);
    QVector<LayerGroup> found;
    for (const Stratum::GroupModel* group : Stratum::allGroups(*model))
        if (group->name.contains(text, Qt::CaseInsensitive))
            found.append(handleOf(*group));
    return found;
}

QVector<Layer> Project::get_layers() { return find_layers(QString()); }

QVector<LayerGroup> Project::get_groups() { return find_groups(QString()); }

// ---- Parameters ----

Parameter Project::parameter(const QStringList& name_components)
{
    return parameterAt(m_data->parameters, *m_data->manager, name_components);
}

ParameterSet Project::parameter_set(const QStringList& name_components)
{
    return parameterSetAt(m_data->parameters, *m_data->manager, name_components);
}
