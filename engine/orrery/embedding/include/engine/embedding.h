// What an application tells the library that embeds an interpreter: that it does, and which project is open.
#pragma once

#include <QString>

class Project;

namespace orrery {

// Says that an application embeds the interpreter; getCurrentProject() then answers it. To be called before the
// interpreter starts. Any thread.
void setEmbedded(bool embedded);

// The project that the application has open, or null. The application keeps it alive and says null (or another project)
// before it destroys it; a project that is destroyed all the same is current no more. Any thread.
void setCurrentProject(Project* project);

// Told of the long operations of the process, whichever watcher they report to, by the threads that run them: several
// may be told of at a time.
class OperationListener
{
public:
    virtual ~OperationListener() = default;
    virtual void started(const QString& title) = 0;
    // From 0 to 1, and what is being done; some tens a second at most.
    virtual void progressed(double fraction, const QString& text) = 0;
    virtual void finished(bool cancelled) = 0;
};

// Null for none. The application keeps the listener alive while operations run.
void setOperationListener(OperationListener* listener);

// Asks all long operations that run now to stop at their next frame; false when none runs. A signal handler may call
// it.
bool cancelOperations();

// Called by the thread of each long operation at its very end, which says whether it was cancelled: a wish that came
// too late for that may still be answered. Null for none.
void setOperationEndHook(void (*hook)(bool cancelled));

} // namespace orrery
