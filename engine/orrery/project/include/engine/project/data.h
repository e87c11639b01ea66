// What is behind a Project: the manager of its model, and the objects that scripts can see and the project owns.
#pragma once

#include <QPointer>
#include <QString>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <engine/clips/data.h>
#include <engine/stratum/manager.h>
#include <memory>
#include <mutex>
#include <orrery/project.h>
#include <vector>

struct Project::Data : Stratum::Listener, orrery::ClipOwner
{
    Data(Project& project, boost::shared_ptr<STRM_ProjectManager> manager);
    ~Data();

    void announce(const Stratum::Notices& notices) override;
    void forget(Clip& clip) override;

    Project& project;
    const boost::shared_ptr<STRM_ProjectManager> manager;
    Knob::Branch& parameters; // what can be animated of the project itself

    // Guarded by the model lock.
    QString file;
    // Every clip that the project ever had: the undo history may bring it back. Those that it has now are
    // the model's. Destroyed with the project, without a lock. A clip that somebody else destroyed is null.
    std::vector<std::shared_ptr<Clip*>> allClips;
    void ownClip(std::unique_ptr<Clip> clip); // with the lock held

    std::mutex saving; // one save at a time; never held while waiting for an interpreter's lock
    // Tracking, rendering or an export runs. Shared with it: it may see the project go.
    const std::shared_ptr<std::atomic<bool>> busy = std::make_shared<std::atomic<bool>>(false);
    const QPointer<ProgressWatcher> progressWatcher; // a child object; null once a script destroyed it

private:
    Clip* takeClip();
};

namespace orrery {

// Called by the destructor: the project can no longer be the current one.
void forgetProject(Project* project);

} // namespace orrery
