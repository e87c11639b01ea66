// Calls of Python callables for signals: in which thread, with what, and for how long.
#include "signal_hub.h"

#include "object_life.h"
#include "qobject_wrappers.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>
#include <cassert>
#include <limits>
#include <set>

namespace PySide {

namespace {

// All slots there are, for cutAll(). Guarded by the interpreter's lock; never destroyed, as slots may outlive it all.
std::set<PythonSlot*>& allSlots()
{
    static auto* const all = new std::set<PythonSlot*>;
    return *all;
}

bool areCut = false;

// The call of a method that a signal is running on this thread.
struct RunningCall
{
    QPointer<QObject> sender;
    const QObject* owner;
    RunningCall* outer;
};

thread_local RunningCall* runningCall = nullptr;

class RunningCallScope
{
public:
    RunningCallScope(QObject* sender, const QObject* owner) : m_call{guarded(sender), owner, runningCall}
    {
        runningCall = &m_call;
    }
    RunningCallScope(const RunningCallScope&) = delete;
    RunningCallScope& operator=(const RunningCallScope&) = delete;
    ~RunningCallScope() { runningCall = m_call.outer; }

private:
    RunningCall m_call;
};

// An object that lives in the current thread, and as long as it. It goes with the lock held, like all that slots look
// at.
QObject* threadContext()
{
    struct Context
    {
        ~Context()
        {
            const Shiboken::GilState lock;
            object.reset();
        }
        std::unique_ptr<QObject> object = std::make_unique<QObject>();
    };
    static thread_local Context context;
    return context.object.get();
}

// Threads of Python's own, and the main one of a program without an application, have no event loop and never look for
// calls. A thread that Qt has not started itself is its own object's thread.
bool looksForCalls(const QObject* context)
{
    QThread* const thread = context->thread();
    return thread && (QAbstractEventDispatcher::instance(thread) || thread->thread() != thread);
}

// Where a call that is put off will be made: the application's thread stands in for one that does not look for calls.
// Null where there is no application.
QObject* waitingContext(QObject* context)
{
    return context && looksForCalls(context) ? context : QCoreApplication::instance();
}

} // namespace

QObject* currentSender(const QObject* receiver)
{
    return runningCall && runningCall->owner == receiver ? runningCall->sender.data() : nullptr;
}

PythonSlot::PythonSlot(PythonCallable callable, ValueTypes types, Qt::ConnectionType type)
    : m_callable(std::move(callable)), m_types(std::move(types)),
      m_type(static_cast<Qt::ConnectionType>(type & ~Qt::UniqueConnection)),
      m_context(m_callable.hasOwner() ? m_callable.owner() : threadContext())
{
    assert(Shiboken::GilState::isHeld());
    allSlots().insert(this);
    if (areCut)
        cut();
}

PythonSlot::~PythonSlot()
{
    if (!isPythonAlive()) {
        m_callable.abandon();
        return;
    }
    const Shiboken::GilState lock;
    const ErrorAside aside;
    allSlots().erase(this);
    m_callable.clear();
}

bool PythonSlot::isDead() const { return m_isCut || m_callable.isDead(); }

void PythonSlot::cut()
{
    assert(Shiboken::GilState::isHeld());
    m_isCut = true;
    m_callable.clear();
}

void PythonSlot::deliver(QObject* sender, void** arguments)
{
    if (!isPythonAlive())
        return;
    const Shiboken::GilState lock;
    QObject* const context = isBeingDeleted(m_context) ? nullptr : m_context.data();
    if (m_isCut || (m_callable.hasOwner() && !context))
        return;
    const bool isHere = context && context->thread() == QThread::currentThread();
    QObject* const waiting = m_type == Qt::DirectConnection || (isHere && m_type != Qt::QueuedConnection)
                                 ? nullptr
                                 : waitingContext(context);
    // Blocking for one's own thread would be waiting for ever.
    if (!waiting || (waiting->thread() == QThread::currentThread() && m_type != Qt::QueuedConnection))
        return call(sender, arguments);
    const auto copies = std::make_shared<CallArguments>(m_types, arguments);
    if (!copies->isComplete()) {
        qWarning("A signal's argument of type '%s' cannot wait to be delivered; register the type with "
                 "qRegisterMetaType()",
                 copies->missing().constData());
        return;
    }
    auto deferred = [self = shared_from_this(), guardedSender = guarded(sender), copies] {
        self->call(guardedSender, copies->data());
    };
    const UnlockedFor unlocked(waiting);
    QMetaObject::invokeMethod(waiting, deferred,
                              m_type == Qt::BlockingQueuedConnection ? m_type : Qt::QueuedConnection);
}

void PythonSlot::call(QObject* sender, void** arguments)
{
    if (!isPythonAlive())
        return;
    const Shiboken::GilState lock;
    const ErrorAside aside;
    if (m_isCut || (m_callable.hasOwner() && !m_callable.owner()))
        return;
    const std::shared_ptr<PythonSlot> kept = shared_from_this();
    const Reference callable = m_callable.resolve();
    if (callable) {
        const RunningCallScope scope(sender, m_callable.owner());
        const std::size_t most = static_cast<std::size_t>(PythonCallable::mostArguments(callable.get()));
        const Reference tuple(argumentTuple(m_types, std::min(most, m_types.size()), arguments));
        const Reference result(tuple ? PyObject_CallObject(callable.get(), tuple.get()) : nullptr);
    }
    if (PyErr_Occurred())
        PyErr_Print();
}

namespace {

// The number by which Qt calls a connection.
int methodOf(int id) { return QObject::staticMetaObject.methodCount() + id; }

} // namespace

SignalHub::~SignalHub()
{
    std::map<int, Connection> connections;
    {
        const QMutexLocker locker(&m_mutex);
        connections.swap(m_connections);
    }
}

bool SignalHub::connectSignal(int signal, PythonCallable callable, ValueTypes types, Qt::ConnectionType type)
{
    auto slot = std::make_shared<PythonSlot>(std::move(callable), std::move(types), type);
    const int id = freeId();
    if (!id)
        return false;
    {
        const QMutexLocker locker(&m_mutex);
        m_connections.emplace(id, Connection{signal, std::move(slot)});
    }
    const QPointer<SignalHub> guard(this);
    bool isDone;
    {
        const UnlockedFor unlocked(m_sender); // Qt tells the sender, which may run any code
        isDone = static_cast<bool>(QMetaObject::connect(m_sender, signal, this, methodOf(id), Qt::DirectConnection));
    }
    if (!isDone && guard)
        take(id);
    if (guard)
        purge();
    return isDone;
}

// Qt keeps the number of a receiver's method in 16 bits, so those of connections that have ended come round again.
int SignalHub::freeId()
{
    const int most = std::numeric_limits<quint16>::max() - methodOf(0);
    if (m_connections.size() >= static_cast<std::size_t>(most))
        return 0;
    do
        m_lastId = m_lastId % most + 1;
    while (m_connections.count(m_lastId));
    return m_lastId;
}

int SignalHub::find(int signal, PyObject* callable) const
{
    std::vector<std::pair<int, std::shared_ptr<PythonSlot>>> candidates;
    for (const auto& entry : m_connections)
        if (entry.second.signal == signal)
            candidates.emplace_back(entry.first, entry.second.slot);
    // Comparing may run Python code, which may connect and disconnect.
    for (const auto& [id, slot] : candidates)
        if (slot->callable().isFrom(callable))
            return id;
    return 0;
}

bool SignalHub::disconnectSignal(int signal, PyObject* callable)
{
    const int id = find(signal, callable);
    const std::shared_ptr<PythonSlot> slot = id ? take(id) : nullptr;
    if (!slot)
        return false;
    slot->cut();
    const UnlockedFor unlocked(m_sender);
    return QMetaObject::disconnect(m_sender, signal, this, methodOf(id));
}

void SignalHub::forgetSignal(int signal)
{
    std::vector<int> ids;
    for (const auto& entry : m_connections)
        if (entry.second.signal == signal)
            ids.push_back(entry.first);
    for (int id : ids)
        if (const std::shared_ptr<PythonSlot> slot = take(id))
            slot->cut();
}

// Methods whose objects have gone leave their connections behind. Looking for them at every doubling keeps them few.
void SignalHub::purge()
{
    if (m_connections.size() < m_purgeSize)
        return;
    std::vector<std::pair<int, int>> dead;
    for (const auto& entry : m_connections)
        if (entry.second.slot->isDead())
            dead.emplace_back(entry.first, entry.second.signal);
    for (const auto& each : dead)
        take(each.first);
    m_purgeSize = std::max<std::size_t>(16, 2 * m_connections.size());
    const QPointer<SignalHub> guard(this);
    const UnlockedFor unlocked(m_sender);
    for (const auto& [id, signal] : dead)
        if (guard)
            QMetaObject::disconnect(m_sender, signal, this, methodOf(id));
}

std::shared_ptr<PythonSlot> SignalHub::slot(int id) const
{
    const QMutexLocker locker(&m_mutex);
    const auto found = m_connections.find(id);
    return found == m_connections.end() ? nullptr : found->second.slot;
}

std::shared_ptr<PythonSlot> SignalHub::take(int id)
{
    const QMutexLocker locker(&m_mutex);
    const auto found = m_connections.find(id);
    if (found == m_connections.end())
        return nullptr;
    std::shared_ptr<PythonSlot> slot = std::move(found->second.slot);
    m_connections.erase(found);
    return slot;
}

int SignalHub::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    // The slot may delete the sender, and this with it.
    if (const std::shared_ptr<PythonSlot> target = slot(id))
        target->deliver(m_sender, arguments);
    return -1;
}

void SignalHub::cutAll()
{
    areCut = true;
    const std::set<PythonSlot*> before = allSlots();
    for (PythonSlot* slot : before) {
        if (!allSlots().count(slot))
            continue;
        // Its callable may be the last to hold the sender, whose end is the slot's. One that is ending clears itself.
        if (const std::shared_ptr<PythonSlot> kept = slot->weak_from_this().lock())
            kept->cut();
    }
}

} // namespace PySide
