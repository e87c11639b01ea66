// The model, its manager, and the ways to hold its lock.
#include <QCoreApplication>
#include <algorithm>
#include <boost/make_shared.hpp>
#include <cassert>
#include <engine/stratum/by_id.h>
#include <engine/stratum/manager.h>
#include <engine/stratum/tree.h>
#include <stratum/exception.h>

STRM_ProjectManager::STRM_ProjectManager() : m_model(*this) {}

STRM_ProjectManager::~STRM_ProjectManager() = default;

boost::shared_ptr<STRM_ProjectManager> STRM_ProjectManager::create()
{
    return boost::shared_ptr<STRM_ProjectManager>(new STRM_ProjectManager);
}

boost::shared_ptr<STRM_ProjectManager> STRM_ProjectManager::createDetached()
{
    const boost::shared_ptr<STRM_ProjectManager> manager = create();
    Stratum::Exclusive(*manager)->history.keepNothing();
    return manager;
}

void STRM_ProjectManager::announce(const Stratum::Notices& notices)
{
    Stratum::Listener* listener = m_listener.load(std::memory_order_acquire);
    if (listener && !notices.empty())
        listener->announce(notices);
}

namespace Stratum {

Model::Model(STRM_ProjectManager& manager)
    : m_manager(manager), m_root(boost::make_shared<RootModel>()),
      m_parameters(std::make_unique<ProjectParameters>(*this))
{}

Model::~Model() = default;

unsigned int Model::newId() const
{
    if (m_lastId < largestId)
        return m_lastId + 1;
    const QString message = QString::fromLatin1("the project has used up the numbers of layers and groups");
    throw STRM_OutOfRange(__FILE__, __LINE__, message, message);
}

boost::shared_ptr<LayerModel> Model::makeLayer() { return makeLayer(newId()); }

boost::shared_ptr<GroupModel> Model::makeGroup() { return makeGroup(newId()); }

boost::shared_ptr<LayerModel> Model::makeLayer(unsigned int id)
{
    m_layers.push_back(boost::make_shared<LayerModel>(*this, id));
    m_lastId = std::max(m_lastId, id);
    return m_layers.back();
}

boost::shared_ptr<GroupModel> Model::makeGroup(unsigned int id)
{
    m_groups.push_back(boost::make_shared<GroupModel>(*this, id));
    m_lastId = std::max(m_lastId, id);
    return m_groups.back();
}

void Model::idsGiven(unsigned int nextId)
{
    if (nextId > 0)
        m_lastId = std::max(m_lastId, nextId - 1);
    const auto byId = [](const auto& a, const auto& b) { return a->id() < b->id(); };
    std::sort(m_layers.begin(), m_layers.end(), byId);
    std::sort(m_groups.begin(), m_groups.end(), byId);
    assert(m_layers.empty() || m_layers.back()->id() <= m_lastId);
    assert(m_groups.empty() || m_groups.back()->id() <= m_lastId);
}

namespace {

template <class Model>
Model* presentWithId(const std::vector<boost::shared_ptr<Model>>& items, unsigned int id)
{
    Model* const found = withId(items, id);
    return found && found->present() ? found : nullptr;
}

} // namespace

LayerModel* Model::findLayer(unsigned int id) const { return presentWithId(m_layers, id); }

GroupModel* Model::findGroup(unsigned int id) const { return presentWithId(m_groups, id); }

int Model::resolveView(int id) const
{
    if (id == -1)
        return settings.heroView;
    if (id >= 0 && static_cast<std::size_t>(id) < settings.views.size())
        return id;
    const QString message = QString::fromLatin1("view %1 does not exist: the project has %2")
                                .arg(static_cast<unsigned int>(id))
                                .arg(settings.views.size());
    throw STRM_OutOfRange(__FILE__, __LINE__, message, message);
}

void throwInvalidObject()
{
    const QString message = QCoreApplication::translate("PyHandle", "Invalid object");
    throw STRM_BadState(__FILE__, __LINE__, message, message);
}

Guard::Guard(STRM_ProjectManager& manager) : m_model(manager.m_model), m_lock(&manager.m_lock) { m_lock->lock(); }

Guard::~Guard() { release(); }

void Guard::release()
{
    if (ModelLock* const held = std::exchange(m_lock, nullptr))
        held->unlock();
}

Edit::Edit(STRM_ProjectManager& manager) : Guard(manager), m_manager(manager.shared_from_this()) {}

Edit::~Edit()
{
    if (holds())
        takeBack(m_changes.begin(), m_changes.end());
}

void Edit::perform(std::unique_ptr<Change> change)
{
    assert(holds());
    m_notices.add(change->notices());
    m_changes.push_back(std::move(change));
    try {
        m_changes.back()->make();
    } catch (...) {
        m_changes.pop_back(); // never made
        throw;
    }
}

void Edit::commit()
{
    assert(holds()); // an edit is committed once
    model().history.record(m_changes, m_notices);
    m_changes.clear();
    release();
    m_manager->announce(m_notices);
}

} // namespace Stratum
