// A project as a document, and the file that holds it.
#pragma once

#include <engine/project/data.h>
#include <string>

namespace orrery {

// The document of the project. Takes the lock.
std::string writeProject(Project::Data& project);
// Fills a project that nobody else knows yet. Throws STRM_BadFile that names the file.
void readProject(Project::Data& project, const QString& file);

// Replaces a file as a whole: what stands under its name is always the old or the new one. Throws STRM_BadFile.
void replaceFile(const QString& file, const std::string& content);
std::string readFile(const QString& file, std::size_t limit);

} // namespace orrery
