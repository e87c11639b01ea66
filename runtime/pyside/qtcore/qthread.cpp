// QThread, with run() for Python subclasses.
#include "object_shim.h"

#include <QCoreApplication>

namespace QtCore {

namespace {

class ThreadShim : public ObjectShim<QThread>
{
public:
    using ObjectShim::ObjectShim;
    // Qt ends the process when a thread's object goes before the thread. Python drops objects when it likes.
    ~ThreadShim() override
    {
        if (!isRunning())
            return;
        requestInterruption();
        quit();
        if (QThread::currentThread() != this)
            wait();
    }

    void ownRun() { QThread::run(); }

    // A thread that lives in itself cannot wait for its own end: it dies in the application's thread, or not at all.
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::DeferredDelete || QThread::currentThread() != this || !isRunning())
            return ObjectShim::event(event);
        quit();
        if (QCoreApplication* const application = QCoreApplication::instance()) {
            moveToThread(application->thread());
            deleteLater();
        }
        return true;
    }

protected:
    void run() override
    {
        handOn("run", [this] { QThread::run(); });
    }
};

// As in QObject: an override that calls the base class means C++'s own.
void run(QThread& thread)
{
    if (ThreadShim* const own = dynamic_cast<ThreadShim*>(&thread))
        own->ownRun();
}

// A number that differs from every other thread's.
unsigned long currentThreadId() { return reinterpret_cast<unsigned long>(QThread::currentThreadId()); }

bool wait(QThread& thread, unsigned long time) { return thread.wait(time); }

int execute(QThread& thread)
{
    struct Protected : QThread
    {
        using QThread::exec;
    };
    return (thread.*&Protected::exec)();
}

constexpr auto members =
    memberTable(noArguments("run", operation<&run>),
                keywords("start", operation<&QThread::start>, optional<InheritPriority>("priority")),
                noArguments("priority", operation<&QThread::priority>),
                one("setPriority", operation<&QThread::setPriority>), noArguments("quit", operation<&QThread::quit>),
                keywords("exit", operation<&QThread::exit>, optional<Zero>("retcode")),
                keywords("wait", operation<&wait>, optional<Forever>("time")),
                noArguments("exec_", operation<&execute>), noArguments("isRunning", operation<&QThread::isRunning>),
                noArguments("isFinished", operation<&QThread::isFinished>),
                noArguments("requestInterruption", operation<&QThread::requestInterruption>),
                noArguments("isInterruptionRequested", operation<&QThread::isInterruptionRequested>),
                noArguments("currentThread", staticOperation<&QThread::currentThread>),
                noArguments("currentThreadId", staticOperation<&currentThreadId>),
                noArguments("idealThreadCount", staticOperation<&QThread::idealThreadCount>),
                noArguments("yieldCurrentThread", staticOperation<&QThread::yieldCurrentThread>),
                one("sleep", staticOperation<&QThread::sleep>), one("msleep", staticOperation<&QThread::msleep>),
                one("usleep", staticOperation<&QThread::usleep>));

} // namespace

template <>
ClassTable tableOf<QThread>()
{
    return qObjectClass<QThread, QObject, members, ThreadShim>();
}

} // namespace QtCore
