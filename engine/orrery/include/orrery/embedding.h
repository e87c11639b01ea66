// What an application tells the library that embeds an interpreter: that it does, and which project is open.
#pragma once

class Project;

namespace orrery {

// Says that an application embeds the interpreter; getCurrentProject() then answers it. To be called before the
// interpreter starts. Any thread.
void setEmbedded(bool embedded);

// The project that the application has open, or null. The application keeps it alive and says null (or another project)
// before it destroys it; a project that is destroyed all the same is current no more. Any thread.
void setCurrentProject(Project* project);

} // namespace orrery
