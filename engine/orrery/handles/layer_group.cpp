// LayerGroup, and moving layers into groups and out of them.
#include <engine/handles/layer_handles.h>
#include <engine/handles/layer_items.h>

using namespace orrery;

LayerGroup::LayerGroup() = default;
LayerGroup::LayerGroup(const LayerGroup& other) = default;
LayerGroup::LayerGroup(boost::shared_ptr<Stratum::LayerGroup> group, boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(group, manager)
{}
LayerGroup& LayerGroup::operator=(const LayerGroup& other) = default;
LayerGroup::~LayerGroup() = default;

bool LayerGroup::isNull() const { return isGone(m_object, m_manager); }

// ---- Members ----

namespace {

// Moves the layer into the group at that index, or to the top level of the project for null.
void moveInto(LayerGroup* group, Stratum::LayerModel& layer, unsigned int index)
{
    const boost::shared_ptr<Stratum::LayerGroup> object =
        group ? argumentObject<Stratum::LayerGroup>("group", *group) : boost::shared_ptr<Stratum::LayerGroup>();
    Stratum::GroupModel* const target = object ? &Stratum::model(*object) : nullptr;
    if (target)
        requireSameProject("group", *target, layer.manager());
    ItemEdit edit(layer);
    if (target)
        edit.of(*target);
    Stratum::moveLayer(edit, layer, target, index);
    edit.commit();
}

} // namespace

void LayerGroup::insert_child(Layer layer, unsigned int index)
{
    const boost::shared_ptr<Stratum::LayerGroup> self = handledObject();
    const boost::shared_ptr<STRM_Layer> child = argumentObject<STRM_Layer>("layer", layer);
    requireSameProject("layer", Stratum::model(*child), Stratum::model(*self).manager());
    moveInto(this, Stratum::model(*child), index);
}

void Layer::set_parent(LayerGroup* group, unsigned int index)
{
    const boost::shared_ptr<STRM_Layer> self = handledObject();
    moveInto(group, Stratum::model(*self), index);
}

QVector<Layer> LayerGroup::find_layers(const QString& text)
{
    const LockedItem<Stratum::GroupModel> group(handledObject());
    QVector<Layer> found;
    for (const Stratum::LayerModel& layer : group->layers)
        if (layer.name.contains(text, Qt::CaseInsensitive))
            found.append(handleOf(layer));
    return found;
}

QVector<Layer> LayerGroup::get_layers() { return find_layers(QString()); }

Parameter LayerGroup::parameter(const QStringList& name_components)
{
    const boost::shared_ptr<Stratum::LayerGroup> self = handledObject();
    return parameterAt(Stratum::model(*self), Stratum::model(*self).manager(), name_components);
}

ParameterSet LayerGroup::parameter_set(const QStringList& name_components)
{
    const boost::shared_ptr<Stratum::LayerGroup> self = handledObject();
    return parameterSetAt(Stratum::model(*self), Stratum::model(*self).manager(), name_components);
}

QString LayerGroup::get_name() { return LockedItem<Stratum::GroupModel>(handledObject())->name; }
void LayerGroup::set_name(const QString& name) { setName(handledObject(), name); }
bool LayerGroup::get_visibility() const { return LockedItem<Stratum::GroupModel>(handledObject())->visible; }
void LayerGroup::set_visibility(bool visible) { assign<&Stratum::ItemSettings::visible>(handledObject(), visible); }
Fundo::Colour3<float> LayerGroup::get_matte_color()
{
    return LockedItem<Stratum::GroupModel>(handledObject())->matteColor;
}
void LayerGroup::set_matte_color(Fundo::Colour3<float> color)
{
    assign<&Stratum::ItemSettings::matteColor>(handledObject(), color);
}
Fundo::Colour3<float> LayerGroup::get_stroke_color()
{
    return LockedItem<Stratum::GroupModel>(handledObject())->strokeColor;
}
void LayerGroup::set_stroke_color(Fundo::Colour3<float> color)
{
    assign<&Stratum::ItemSettings::strokeColor>(handledObject(), color);
}
bool LayerGroup::get_locked() const { return LockedItem<Stratum::GroupModel>(handledObject())->locked; }
void LayerGroup::set_locked(bool locked) { assign<&Stratum::ItemSettings::locked>(handledObject(), locked); }
int LayerGroup::get_z_order() const { return zOrder(handledObject()); }
void LayerGroup::set_z_order(int z_order) { setZOrder(handledObject(), z_order); }

bool LayerGroup::operator==(const LayerGroup& other) const { return refersToSame(other); }
