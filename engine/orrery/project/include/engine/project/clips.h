// The clips that a project has: how one becomes the project's, and how it is found.
#pragma once

#include <QString>
#include <engine/project/data.h>
#include <memory>
#include <orrery/clip.h>

namespace orrery {

// All of these are called with the lock held.

// Makes the clip one of the project's, as part of an edit: in the list, with undo. The project owns it from then on,
// also when the edit is taken back. The name is made unlike the others' by a number. The result points to null
// once the clip is gone, as it may be when the edit has been announced.
std::shared_ptr<Clip*> adoptClip(Stratum::Edit& edit, Project::Data& project, std::unique_ptr<Clip> clip);
// The same with a name that is known to be unlike the others'.
std::shared_ptr<Clip*> adoptNamedClip(Stratum::Edit& edit, Project::Data& project, std::unique_ptr<Clip> clip);
QString freeClipName(const Stratum::Model& project, const QString& wanted);

// The project's clip with that id (Clip::get_id()), or null.
Clip* clipWithId(const Stratum::Model& project, unsigned int id);

} // namespace orrery
