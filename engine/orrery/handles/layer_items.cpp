// The checks that layers and groups share.
#include <engine/handles/layer_items.h>

namespace orrery {

void requireSameProject(const char* argument, const Stratum::TreeItem& item, const STRM_ProjectManager& manager)
{
    if (&item.manager() != &manager)
        raise<STRM_BadArgument>(
            QString::fromLatin1("%1: the object belongs to another project").arg(QString::fromLatin1(argument)));
}

} // namespace orrery
