// Moving layers between groups, with what both sides check.
#include <engine/handles/layer_items.h>

namespace orrery {

void requireSameProject(const char* argument, const Stratum::TreeItem& item, const STRM_ProjectManager& manager)
{
    if (&item.manager() != &manager)
        raise<STRM_BadArgument>(
            QString::fromLatin1("%1: the object belongs to another project").arg(QString::fromLatin1(argument)));
}

void moveInto(const char* argument, LayerGroup* group, Stratum::LayerModel& layer, unsigned int index)
{
    const boost::shared_ptr<Stratum::LayerGroup> object =
        group ? argumentObject<Stratum::LayerGroup>(argument, *group) : boost::shared_ptr<Stratum::LayerGroup>();
    Stratum::GroupModel* const target = object ? &Stratum::model(*object) : nullptr;
    if (target)
        requireSameProject(argument, *target, layer.manager());
    ItemEdit edit(layer);
    if (target)
        target->requirePresent();
    Stratum::moveLayer(edit, layer, target, index);
    edit.commit();
}

} // namespace orrery
