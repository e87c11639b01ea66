// Where a QObject's signals become calls of Python callables: one receiver per sender, one slot per connection.
#ifndef SIGNAL_HUB_H
#define SIGNAL_HUB_H

#include "python_callable.h"
#include "value_type.h"

#include <QMutex>
#include <QObject>
#include <atomic>
#include <map>
#include <memory>

namespace PySide {

// A callable that is to be called with certain values: what a connection, or a call that was put off, holds on to.
class PythonSlot : public std::enable_shared_from_this<PythonSlot>
{
public:
    // Needs the lock. The call is made in the thread of the callable's owner, without one in the thread that makes
    // this; when that one has no event loop to wait for, in the application's, or at once where there is none.
    PythonSlot(PythonCallable callable, ValueTypes types, Qt::ConnectionType type);
    PythonSlot(const PythonSlot&) = delete;
    PythonSlot& operator=(const PythonSlot&) = delete;
    ~PythonSlot();

    // Calls now, or has it called in its thread, as the connection's type says. Any thread, with or without the lock.
    void deliver(QObject* sender, void** arguments);
    // Calls now, whatever the thread. An exception is printed.
    void call(QObject* sender, void** arguments);
    // Nothing is called any more. Needs the lock.
    void cut();

    const PythonCallable& callable() const { return m_callable; }
    // The object of the method is gone.
    bool isDead() const;

private:
    PythonCallable m_callable;
    const ValueTypes m_types;
    const Qt::ConnectionType m_type;
    QPointer<QObject> m_context;
    std::atomic<bool> m_isCut{false};
};

// The receiver of all signals of one sender that are connected to Python. Connection with it is always direct, in the
// thread that emits; it has no meta-object of its own, as Qt calls it by number.
class SignalHub : public QObject
{
public:
    explicit SignalHub(QObject* sender) : m_sender(sender) {}
    ~SignalHub() override;

    // All with the lock held. The signal is given by its place in the sender's meta-object, no clone.
    bool connectSignal(int signal, PythonCallable callable, ValueTypes types, Qt::ConnectionType type);
    bool isConnected(int signal, PyObject* callable) const { return find(signal, callable) != 0; }
    // Ends one connection. False when there is none.
    bool disconnectSignal(int signal, PyObject* callable);
    // Forgets the connections of a signal that Qt has ended already.
    void forgetSignal(int signal);

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;

    // Ends all connections of all hubs, for good.
    static void cutAll();

private:
    struct Connection
    {
        int signal;
        std::shared_ptr<PythonSlot> slot;
    };
    int find(int signal, PyObject* callable) const;
    std::shared_ptr<PythonSlot> slot(int id) const;
    std::shared_ptr<PythonSlot> take(int id);
    void purge();
    int freeId();

    QObject* const m_sender;
    mutable QMutex m_mutex; // held for look-ups and changes of the map only
    std::map<int, Connection> m_connections;
    int m_lastId = 0;
    std::size_t m_purgeSize = 16;
};

// The sender of the signal for which a method of `receiver` runs on this thread, or null.
QObject* currentSender(const QObject* receiver);

} // namespace PySide

#endif
