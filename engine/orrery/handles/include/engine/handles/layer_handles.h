// From the model's layers and groups to the handles that scripts hold.
#pragma once

#include <engine/handles/access.h>
#include <engine/stratum/tree.h>
#include <orrery/layer_group.h>

namespace orrery {

inline Layer handleOf(const Stratum::LayerModel& layer)
{
    return Layer(boost::static_pointer_cast<STRM_Layer>(referred(layer).shared_from_this()),
                 layer.manager().shared_from_this());
}

inline LayerGroup handleOf(const Stratum::GroupModel& group)
{
    return LayerGroup(boost::static_pointer_cast<Stratum::LayerGroup>(referred(group).shared_from_this()),
                      group.manager().shared_from_this());
}

} // namespace orrery
