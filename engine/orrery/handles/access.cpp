// Looking up what a handle refers to.
#include <engine/handles/access.h>

namespace orrery {

boost::shared_ptr<STRM_ProjectManager> openManager(const boost::weak_ptr<STRM_ProjectManager>& manager)
{
    boost::shared_ptr<STRM_ProjectManager> open = manager.lock();
    if (!open || !open->isOpen())
        Stratum::throwInvalidObject();
    return open;
}

namespace {

boost::shared_ptr<Knob::ParameterSet> nodeAt(Knob::Branch& branch, STRM_ProjectManager& manager,
                                             const QStringList& path)
{
    const Stratum::Exclusive model(manager); // the nodes are made when they are first asked for
    return model.of(branch).rootNode()->descendant(path);
}

} // namespace

Parameter parameterAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path)
{
    const boost::shared_ptr<Knob::ParameterSet> node = nodeAt(branch, manager, path);
    return node && node->isParameter() ? Parameter(node, manager.shared_from_this()) : Parameter();
}

ParameterSet parameterSetAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path)
{
    const boost::shared_ptr<Knob::ParameterSet> node = nodeAt(branch, manager, path);
    return node && !node->isParameter() ? ParameterSet(node, manager.shared_from_this()) : ParameterSet();
}

} // namespace orrery
