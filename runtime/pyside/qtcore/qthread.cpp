// QThread, with run() for Python subclasses.
#include "class_registration.h"
#include "qobject_constructor.h"

#include <QCoreApplication>

namespace QtCore {

namespace {

class ThreadShim : public ObjectShim<QThread>
{
public:
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
        dispatch(
            "run", [] { return nullptr; }, [this] { QThread::run(); });
    }
};

// As in QObject: an override that calls the base class means C++'s own.
void run(QThread& thread)
{
    if (ThreadShim* const own = dynamic_cast<ThreadShim*>(&thread))
        own->ownRun();
}

void start(QThread& thread) { thread.start(); }
void quit(QThread& thread) { thread.quit(); }
void leave(QThread& thread, std::optional<int> code) { thread.exit(code.value_or(0)); }
bool wait(QThread& thread, std::optional<unsigned long> time) { return thread.wait(time.value_or(ULONG_MAX)); }

int execute(QThread& thread)
{
    struct Protected : QThread
    {
        using QThread::exec;
    };
    return (thread.*&Protected::exec)();
}

PyMethodDef methods[] = {method<&run>("run"),
                         method<&start>("start"),
                         method<&quit>("quit"),
                         method<&leave>("exit"),
                         method<&wait>("wait"),
                         method<&execute>("exec_"),
                         method<&QThread::isRunning>("isRunning"),
                         method<&QThread::isFinished>("isFinished"),
                         method<&QThread::requestInterruption>("requestInterruption"),
                         method<&QThread::isInterruptionRequested>("isInterruptionRequested"),
                         staticMethod<QThread, &QThread::currentThread>("currentThread"),
                         staticMethod<QThread, &QThread::idealThreadCount>("idealThreadCount"),
                         staticMethod<QThread, &QThread::yieldCurrentThread>("yieldCurrentThread"),
                         staticMethod<QThread, &QThread::sleep>("sleep"),
                         staticMethod<QThread, &QThread::msleep>("msleep"),
                         staticMethod<QThread, &QThread::usleep>("usleep"),
                         {}};

SbkObjectType type = {};

} // namespace

bool registerQThread(PyObject* module)
{
    if (!registerClass<QThread, ThreadShim>(module, type, methods, &initialiseQObject<QThread, ThreadShim>,
                                            &deleteQObject, &qObjectTypeObject))
        return false;
    finishQObjectClass<QThread>(type);
    Signal::registerSignals(&type, &QThread::staticMetaObject);
    return true;
}

} // namespace QtCore
