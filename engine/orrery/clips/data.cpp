// Changes of a clip's state, for clips of a project and for clips that belong to none.

#include "color_link.h"

#include <engine/clips/data.h>
#include <orrery/progress_watcher.h>

using namespace orrery;

namespace {

unsigned int nextId()
{
    static std::atomic<unsigned int> last{0};
    return ++last;
}

// Kept by the manager, for as long as handles may reach it.
boost::shared_ptr<ClipModel> newModel(STRM_ProjectManager& manager)
{
    const Stratum::Exclusive project(manager);
    const boost::shared_ptr<ClipModel> model = boost::make_shared<ClipModel>(*project);
    project->keep(model);
    return model;
}

} // namespace

Clip::Data::Data(Clip& clip)
    : clip(clip), id(nextId()), manager(STRM_ProjectManager::createDetached()), model(newModel(*manager)),
      progressWatcher(new ProgressWatcher(nullptr)), m_colorLink(new ColorLink(*this))
{
    manager->setListener(this);
}

Clip::Data::~Data()
{
    m_alive.reset();
    model->close();
    if (detached) {
        manager->close();
        manager->setListener(nullptr);
    }
    destroy(exchange(nullptr));
    delete progressWatcher.data();
}

void Clip::Data::moveTo(const boost::shared_ptr<STRM_ProjectManager>& projectManager, ClipState state)
{
    manager->close();
    manager->setListener(nullptr);
    const boost::shared_ptr<ClipModel> moved = newModel(*projectManager);
    moved->setState(std::move(state));
    manager = projectManager;
    model = moved;
    detached = false;
}

void Clip::Data::change(const std::function<void(ClipState&)>& function, const Stratum::Notices& notices)
{
    Stratum::Edit edit(*manager);
    ClipState next = model->state;
    function(next);
    if (next == model->state)
        return;
    Stratum::Notices all = notices;
    if (!(next.color == model->state.color))
        all.add(whileAlive([this] { showColor(); }));
    edit.perform(model->stateChange(std::move(next), std::move(all)));
    edit.commit();
}

ClipState Clip::Data::state() const
{
    Stratum::Reading reading(*manager);
    return model->state;
}

Stratum::Notices Clip::Data::whileAlive(std::function<void()> call)
{
    return Stratum::Notices::other([alive = std::weak_ptr<bool>(m_alive), call = std::move(call)] {
        if (alive.lock())
            call();
    });
}

Stratum::Notices Clip::Data::settingChanged(const char* property)
{
    return whileAlive([this, property] { emit clip.settingChanged(QString::fromLatin1(property)); });
}

Stratum::Notices Clip::Data::streamsChanged()
{
    return whileAlive([this] { emit clip.streamsChanged(); });
}

void Clip::Data::announce(const Stratum::Notices& notices)
{
    for (const std::function<void()>& other : notices.others)
        other();
}
