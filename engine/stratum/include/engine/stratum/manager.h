// The owner of one project's model: its lock, its undo history, its settings and its tree of layers.
//
// Locks. There is one model lock per manager, held for short reads and writes of the model only. It is never held while
// a signal is emitted, a virtual operation of a class that scripts can see is called, a file is read or written, a
// variant is copied, or an object that scripts can see is destroyed. Reading and Edit below are the ways to hold it.
#pragma once

#include <QString>
#include <atomic>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <engine/stratum/history.h>
#include <engine/stratum/settings.h>
#include <memory>
#include <mutex>
#include <stratum/project_manager.h>
#include <utility>
#include <vector>

class Clip;

namespace Stratum {

class GroupModel;
class LayerModel;
class RootModel;
class ProjectParameters;

// Is told of changes, without a lock, from the thread that made them.
class Listener
{
public:
    virtual void announce(const Notices& notices) = 0;

protected:
    ~Listener() = default;
};

} // namespace Stratum

class STRM_ProjectManager : public boost::enable_shared_from_this<STRM_ProjectManager>
{
public:
    // An empty project with one view.
    static boost::shared_ptr<STRM_ProjectManager> create();

    // A manager of an object that belongs to no project: nothing is kept for undo.
    static boost::shared_ptr<STRM_ProjectManager> createDetached();

    STRM_ProjectManager(const STRM_ProjectManager&) = delete;
    STRM_ProjectManager& operator=(const STRM_ProjectManager&) = delete;
    ~STRM_ProjectManager();

    // The project is going: from now on every handle is null.
    void close() { m_open.store(false, std::memory_order_release); }
    bool isOpen() const { return m_open.load(std::memory_order_acquire); }

    void setListener(Stratum::Listener* listener) { m_listener.store(listener, std::memory_order_release); }
    // Called without a lock.
    void announce(const Stratum::Notices& notices);

    // ---- With the model lock held ----

    Stratum::History history;
    Stratum::Settings settings;
    Stratum::RootModel& root() { return *m_root; }
    // The project's clips, in the order in which they were added; the first is the default trackable one. The project
    // owns them (the object model's classes are not known here).
    std::vector<Clip*> clips;
    // What can be animated of the project itself.
    Stratum::ProjectParameters& parameters() { return *m_parameters; }

    // New objects, which are not in the tree yet: addLayer() and addGroup() put them there.
    boost::shared_ptr<Stratum::LayerModel> makeLayer();
    boost::shared_ptr<Stratum::GroupModel> makeGroup();
    // The same with ids of a saved project, in any order and each once; idsGiven() ends it, and says from which id on
    // none was ever used.
    boost::shared_ptr<Stratum::LayerModel> makeLayer(unsigned int id);
    boost::shared_ptr<Stratum::GroupModel> makeGroup(unsigned int id);
    void idsGiven(unsigned int nextId);
    unsigned int nextId() const { return m_lastId + 1; }

    // Null when the project has no such layer now.
    Stratum::LayerModel* findLayer(unsigned int id) const;
    Stratum::GroupModel* findGroup(unsigned int id) const;

    // Keeps what is behind an object that scripts can see (a clip's model) for as long as handles may reach it: until
    // the manager goes.
    void keep(boost::shared_ptr<void> object) { m_kept.push_back(std::move(object)); }

    // The id of the view that a script's view id stands for. STRM_OutOfRange names the id.
    int resolveView(int id) const;

private:
    friend std::mutex& modelMutex(STRM_ProjectManager& manager);
    STRM_ProjectManager();
    unsigned int newId() const; // STRM_OutOfRange when there is none left

    std::mutex m_mutex;
    std::atomic<bool> m_open{true};
    std::atomic<Stratum::Listener*> m_listener{nullptr};
    unsigned int m_lastId = 0;
    boost::shared_ptr<Stratum::RootModel> m_root;
    std::unique_ptr<Stratum::ProjectParameters> m_parameters;
    // Every layer and group that ever was, by id: pointers between them stay good until the manager goes.
    std::vector<boost::shared_ptr<Stratum::LayerModel>> m_layers;
    std::vector<boost::shared_ptr<Stratum::GroupModel>> m_groups;
    std::vector<boost::shared_ptr<void>> m_kept;
};

std::mutex& modelMutex(STRM_ProjectManager& manager);

namespace Stratum {

// STRM_BadState "Invalid object", of a removed object or a handle of one.
[[noreturn]] void throwInvalidObject();

// Holds the model lock, for a read or for a change of the history itself.
class Reading
{
public:
    explicit Reading(STRM_ProjectManager& manager) : m_lock(modelMutex(manager)) {}

private:
    std::lock_guard<std::mutex> m_lock;
};

// Holds the model lock for a change, which may be of many parts and is made as a whole: what was performed is taken
// back when the edit ends without a commit, as it does when an exception is thrown. The model stays there as long as
// the edit does, also when whoever is told of the change destroys the project.
//
//     Stratum::Edit edit(manager);
//     layer.requirePresent();                       // check everything
//     edit.assign(layer.name, name, Notices::layersChanged());
//     edit.commit();                                // records, releases the lock, then announces
class Edit
{
public:
    explicit Edit(STRM_ProjectManager& manager);
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;
    ~Edit();

    void perform(std::unique_ptr<Change> change);

    // Nothing is recorded for a value that is there already.
    template <class T>
    void assign(T& place, T value, Notices notices = {})
    {
        if (!(place == value))
            perform(std::make_unique<Assignment<T>>(place, std::move(value), std::move(notices)));
    }

    void commit();

    STRM_ProjectManager& manager() { return *m_manager; }

private:
    const boost::shared_ptr<STRM_ProjectManager> m_manager;
    std::unique_lock<std::mutex> m_lock;
    Changes m_changes;
    Notices m_notices;
};

} // namespace Stratum
