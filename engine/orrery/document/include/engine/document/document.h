// A project as a document, and the file that holds it.
#pragma once

#include <engine/project/data.h>
#include <string>

namespace orrery {

// The document of the project, as it is to stand in the file. Takes the lock while it copies the model, not while it
// makes text. Throws STRM_OutOfRange and STRM_OperationFailed for a project that could not be opened again.
std::string writeProject(Project::Data& project, const QString& file);
// Fills a project that no other thread can reach yet. Throws STRM_BadFile naming the file.
void readProject(Project::Data& project, const QString& file);

} // namespace orrery
