// The hidden companion of a QObject. A user-data slot of QObject carries it: that one is deleted at the very end of the
// QObject's destruction, and unlike a dynamic property or a child no script sees it.
#include "object_life.h"

#include "qobject_wrappers.h"
#include "signal_hub.h"

#include <QAbstractEventDispatcher>
#include <QThread>
#include <algorithm>
#include <list>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations" // user data, which Qt 6 will not have

namespace PySide {

namespace {

class Companion : public QObjectUserData
{
public:
    explicit Companion(QObject* object) : m_object(object) {}
    ~Companion() override
    {
        if (!isPythonAlive())
            return;
        const Shiboken::GilState lock;
        const ErrorAside aside;
        m_life.hub.reset();
        Shiboken::BindingManager& manager = Shiboken::BindingManager::instance();
        if (SbkObject* const wrapper = manager.retrieveWrapper(m_object))
            Shiboken::Object::destroy(wrapper, m_object);
    }

    ObjectLife& life() { return m_life; }

private:
    void* const m_object; // only its address is good for anything by then
    ObjectLife m_life;
};

typedef std::vector<QPointer<QObject>> Family;

// The objects that isBeingDeleted() is asked about. Guarded by the lock; never destroyed, as objects may outlive it.
std::list<Family>& deletions()
{
    static auto* const all = new std::list<Family>;
    return *all;
}

// The object and all that is below it.
void collectFamily(QObject* object, Family& family)
{
    const QPointer<QObject> guard = guarded(object);
    if (!guard)
        return;
    family.push_back(guard);
    for (QObject* child : object->children())
        collectFamily(child, family);
}

uint slot()
{
    static const uint slot = QObject::registerUserData();
    return slot;
}

} // namespace

ObjectLife::ObjectLife() = default;
ObjectLife::~ObjectLife() = default;

ObjectLife* ObjectLife::find(const QObject* object)
{
    QObjectUserData* const data = object->userData(slot());
    return data ? &static_cast<Companion*>(data)->life() : nullptr;
}

ObjectLife& ObjectLife::of(QObject* object)
{
    if (ObjectLife* const life = find(object))
        return *life;
    Companion* const companion = new Companion(object);
    object->setUserData(slot(), companion);
    return companion->life();
}

void deleteQObject(void* address)
{
    QObject* const object = static_cast<QObject*>(address);
    std::list<Family>& all = deletions();
    all.remove_if([](const Family& each) {
        return std::all_of(each.begin(), each.end(), [](const QPointer<QObject>& object) { return object.isNull(); });
    });
    // Timers, sockets and queued calls must not be pulled from under a thread that is at work on them.
    if (object->thread() != QThread::currentThread() && QAbstractEventDispatcher::instance(object->thread())) {
        all.push_back({guarded(object)});
        object->deleteLater();
        return;
    }
    const auto own = all.emplace(all.end());
    collectFamily(object, *own);
    {
        const Unlocked unlocked;
        delete object;
    }
    all.erase(own);
}

bool isBeingDeleted(const QObject* object)
{
    const std::list<Family>& all = deletions();
    return std::any_of(all.begin(), all.end(), [object](const Family& family) {
        return std::find(family.begin(), family.end(), object) != family.end();
    });
}

std::vector<Reference> UnlockedFor::familyOf(const QObject* object, const QObject* other)
{
    std::vector<Reference> kept;
    for (const QObject* start : {object, other}) {
        for (; start; start = start->parent()) {
            if (SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(start))
                kept.push_back(Reference::borrow(reinterpret_cast<PyObject*>(wrapper)));
        }
    }
    return kept;
}

} // namespace PySide
