// The hidden companion of a QObject. A user-data slot of QObject carries it: that one is deleted at the very end of the
// QObject's destruction, and unlike a dynamic property or a child no script sees it.
#include "object_life.h"

#include "dynamic_meta_object.h"
#include "pyside.h"
#include "qobject_wrappers.h"
#include "signal_hub.h"

#include <QAbstractEventDispatcher>
#include <QThread>
#include <algorithm>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations" // user data, which Qt 6 will not have

namespace PySide {

namespace {

class Companion : public QObjectUserData
{
public:
    explicit Companion(QObject* object) : m_object(object) {}
    ~Companion() override
    {
        if (isPythonAlive()) {
            const Shiboken::GilState lock;
            const ErrorAside aside;
            m_life.hub.reset();
        }
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(m_object), m_object);
    }

    ObjectLife& life() { return m_life; }

private:
    void* const m_object; // only its address is good for anything by then
    ObjectLife m_life;
};

typedef std::vector<QPointer<QObject>> Family;

// Guarded by the lock; never destroyed, as objects may outlive it.
struct Deletions
{
    // What isBeingDeleted() is asked about: what is being deleted, an entry for each call, and what will be.
    std::list<Family> running;
    Family posted;

    std::list<QPointer<QObject>> used; // an entry for each InUse
    Family waiting;                    // for the end of those

    static Deletions& all()
    {
        static auto* const all = new Deletions;
        return *all;
    }
};

bool contains(const Family& family, const QObject* object)
{
    return std::find(family.begin(), family.end(), object) != family.end();
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

// Timers, sockets and queued calls must not be pulled from under a thread that is at work on them. A thread that has
// just been started may have no event dispatcher yet; one that Qt has not started itself is its own object's thread.
bool isAtWorkElsewhere(const QObject* object)
{
    QThread* const thread = object->thread();
    return thread && thread != QThread::currentThread() && thread->isRunning() &&
           (QAbstractEventDispatcher::instance(thread) || thread->thread() != thread);
}

// Nobody asks Python before they are deleted: for Python they are gone now.
void forget(const Family& family)
{
    Family& posted = Deletions::all().posted;
    posted.erase(std::remove(posted.begin(), posted.end(), nullptr), posted.end());
    posted.insert(posted.end(), family.begin(), family.end());
    for (const QPointer<QObject>& each : family)
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(each), each);
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

// The main thread, and those that Qt has only met, end with Qt.
bool isQtsOwnThread(const QObject* object)
{
    return object->thread() == object && !dynamic_cast<const PythonQObject*>(object);
}

void deleteQObject(void* address)
{
    QObject* const object = static_cast<QObject*>(address);
    if (isQtsOwnThread(object))
        return;
    const QPointer<QObject> guard = object;
    Deletions& all = Deletions::all();
    Family family;
    collectFamily(object, family);
    if (std::any_of(all.used.begin(), all.used.end(),
                    [&](const auto& used) { return used && contains(family, used); })) {
        all.waiting.push_back(guard);
        return forget(family);
    }
    // A thread cannot wait for its own end either.
    if (isAtWorkElsewhere(object) || contains(family, QThread::currentThread())) {
        forget(family);
        return guard ? guard->deleteLater() : void();
    }
    const auto own = all.running.insert(all.running.end(), std::move(family));
    {
        const Unlocked unlocked;
        delete object;
    }
    all.running.erase(own);
}

InUse::InUse(QObject* object) : m_place(Deletions::all().used.insert(Deletions::all().used.end(), guarded(object))) {}

InUse::~InUse()
{
    Deletions& all = Deletions::all();
    all.used.erase(m_place);
    if (!all.used.empty())
        return;
    const Family waiting = std::exchange(all.waiting, {});
    for (const QPointer<QObject>& each : waiting)
        if (each)
            each->deleteLater();
}

bool isBeingDeleted(const QObject* object)
{
    const Deletions& all = Deletions::all();
    return contains(all.posted, object) ||
           std::any_of(all.running.begin(), all.running.end(),
                       [object](const Family& family) { return contains(family, object); });
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
