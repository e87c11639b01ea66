// What projects need of clips beyond their public interface.
#pragma once

#include <QString>
#include <boost/shared_ptr.hpp>
#include <engine/clips/data.h>
#include <memory>

namespace orrery {

// A clip that the project of the manager can adopt, with that state.
std::unique_ptr<Clip> newClip(const boost::shared_ptr<STRM_ProjectManager>& manager, ClipState state);

// A clip like the given one that uses the manager's lock and history for all its changes, for a project to adopt. Takes
// the source's lock while it reads, so no lock may be held. Changes of a clip that is in no project yet are not
// recorded: what its manager's history does is up to the edit in which it is adopted.
std::unique_ptr<Clip> copyForProject(const Clip& source, const QString& name,
                                     const boost::shared_ptr<STRM_ProjectManager>& manager);

// The name can change as long as no other thread can reach the clip.
void renameNewClip(Clip& clip, const QString& name);
// The same: its streams, in their order, serve the project's views.
void mapInOrder(Clip& clip);
// Part of an edit: the clip's views that are mapped to the project's view `first` or a later one are mapped no more.
void unmapViewsFrom(Stratum::Edit& edit, Clip& clip, int first);
// As get_name(), with the manager's lock held.
QString lockedName(const Clip& clip);

// The clip's parameters as a branch of the project's tree. Without a lock.
Knob::Branch& clipBranch(Clip& clip);

} // namespace orrery
