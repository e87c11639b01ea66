// The owner of one project's model: its lock, its undo history, its settings and its tree of layers.
//
// Locks. There is one model lock per manager, held for short reads and writes of the model only. It is never held while
// a signal is emitted, a virtual operation of a class that scripts can see is called, a file is read or written, a
// variant is copied, or an object that scripts can see is destroyed. Reading, Edit and
// Exclusive below are the ways to hold it, and the only ways to what it guards.
#pragma once

#include <QString>
#include <atomic>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <cassert>
#include <engine/stratum/history.h>
#include <engine/stratum/model_lock.h>
#include <engine/stratum/settings.h>
#include <memory>
#include <stratum/project_manager.h>
#include <utility>
#include <vector>

class Clip;

namespace Stratum {

class GroupModel;
class Guard;
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

// What the model lock guards. Only Reading, Edit and Exclusive lead to it; who has it, or an object of it, holds the
// lock.
class Model
{
public:
    explicit Model(STRM_ProjectManager& manager);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;
    ~Model();

    STRM_ProjectManager& manager() const { return m_manager; }

    History history;
    Settings settings;
    RootModel& root() { return *m_root; }
    const RootModel& root() const { return *m_root; }
    // The project's clips, in the order in which they were added; the first is the default trackable one. The project
    // owns them (the object model's classes are not known here).
    std::vector<Clip*> clips;
    // What can be animated of the project itself.
    ProjectParameters& parameters() { return *m_parameters; }
    const ProjectParameters& parameters() const { return *m_parameters; }

    // New objects, which are not in the tree yet: addLayer() and addGroup() put them there.
    boost::shared_ptr<LayerModel> makeLayer();
    boost::shared_ptr<GroupModel> makeGroup();
    // The same with ids of a saved project, in any order and each once; idsGiven() ends it, and says from which id on
    // none was ever used.
    boost::shared_ptr<LayerModel> makeLayer(unsigned int id);
    boost::shared_ptr<GroupModel> makeGroup(unsigned int id);
    void idsGiven(unsigned int nextId);
    unsigned int nextId() const { return m_lastId + 1; }

    // Null when the project has no such layer now.
    LayerModel* findLayer(unsigned int id) const;
    GroupModel* findGroup(unsigned int id) const;

    // Keeps what is behind an object that scripts can see (a clip's model) for as long as handles may reach it: until
    // the manager goes.
    void keep(boost::shared_ptr<void> object) { m_kept.push_back(std::move(object)); }

    // The id of the view that a script's view id stands for. STRM_OutOfRange names the id.
    int resolveView(int id) const;

private:
    unsigned int newId() const; // STRM_OutOfRange when there is none left

    STRM_ProjectManager& m_manager;
    unsigned int m_lastId = 0;
    boost::shared_ptr<RootModel> m_root;
    std::unique_ptr<ProjectParameters> m_parameters;
    // Every layer and group that ever was, by id: pointers between them stay good until the manager goes.
    std::vector<boost::shared_ptr<LayerModel>> m_layers;
    std::vector<boost::shared_ptr<GroupModel>> m_groups;
    std::vector<boost::shared_ptr<void>> m_kept;
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

private:
    friend class Stratum::Guard;
    STRM_ProjectManager();

    Stratum::ModelLock m_lock;
    std::atomic<bool> m_open{true};
    std::atomic<Stratum::Listener*> m_listener{nullptr};
    Stratum::Model m_model VIREO_GUARDED_BY(m_lock);
};

namespace Stratum {

// STRM_BadState "Invalid object", of a removed object or a handle of one.
[[noreturn]] void throwInvalidObject();

// Holds the model lock. The one class that opens a manager: what its subclasses do not show cannot be reached.
class Guard
{
public:
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

protected:
    explicit Guard(STRM_ProjectManager& manager) VIREO_UNCHECKED;
    ~Guard();
    Model& model() const { return m_model; }
    bool holds() const { return m_lock; }
    template <class Object>
    Object& present(const Object& object) const
    {
        assert(holds());
        if (!object.present() || !m_model.manager().isOpen())
            throwInvalidObject();
        return const_cast<Object&>(object); // subclasses say what it may be used for
    }
    void release() VIREO_UNCHECKED;

private:
    Model& m_model;
    ModelLock* m_lock;
};

// For a read. Objects of the model are had from it (and from an edit) with of(): STRM_BadState "Invalid object" for one
// that was removed.
class Reading : public Guard
{
public:
    explicit Reading(STRM_ProjectManager& manager) : Guard(manager) {}
    const Model& operator*() const { return model(); }
    const Model* operator->() const { return &model(); }
    template <class Object>
    const Object& of(const Object& object) const
    {
        return present(object);
    }
};

// For what is not undone: loading, transactions of the history itself, forgetting what somebody else destroyed, and
// what is only made when it is first asked for.
class Exclusive : public Guard
{
public:
    explicit Exclusive(STRM_ProjectManager& manager) : Guard(manager) {}
    Model& operator*() const { return model(); }
    Model* operator->() const { return &model(); }
    template <class Object>
    Object& of(const Object& object) const
    {
        return present(object);
    }
};

// Holds the model lock for a change, which may be of many parts and is made as a whole: what was performed is taken
// back when the edit ends without a commit, as it does when an exception is thrown. The model stays there as long as
// the edit does, also when whoever is told of the change destroys the project.
//
//     Stratum::Edit edit(manager);
//     LayerModel& layer = edit.of(removedOrNot);    // check everything
//     edit.assign(layer.name, name, Notices::layersChanged());
//     edit.commit();                                // records, releases the lock, then announces
class Edit : public Guard
{
public:
    explicit Edit(STRM_ProjectManager& manager);
    ~Edit();

    Model& operator*() const { return model(); }
    Model* operator->() const { return &model(); }
    template <class Object>
    Object& of(const Object& object) const
    {
        return present(object);
    }
    // For changes of shapes and parameters: STRM_BadState for those of a locked layer too.
    template <class Object>
    Object& writable(const Object& object) const
    {
        Object& found = present(object);
        found.requireWritable();
        return found;
    }

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
    Changes m_changes;
    Notices m_notices;
};

} // namespace Stratum
