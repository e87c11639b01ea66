// QCoreApplication: the event loop, and events sent and posted.
#include "class_registration.h"
#include "converters.h"
#include "qobject_constructor.h"

namespace QtCore {

namespace {

// The command line, which Qt refers to for as long as there is an application.
struct CommandLine
{
    int count = 0;
    char** texts = nullptr;
};

CommandLine& commandLine()
{
    static CommandLine line;
    return line;
}

typedef ObjectShim<QCoreApplication> ApplicationShim;

int initialise(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    PyObject* list = nullptr;
    if (!canInitialise(self, typeOf<QCoreApplication>()) || !PyArg_ParseTuple(arguments, "O:QCoreApplication", &list))
        return -1;
    if (QCoreApplication::instance()) {
        PyErr_SetString(PyExc_RuntimeError, "A QCoreApplication instance already exists.");
        return -1;
    }
    CommandLine line;
    if (!PySequence_Check(list) || isText(list)) {
        raiseWrongArguments({"PySide.QtCore", "QCoreApplication"}, arguments, "QStringList");
        return -1;
    }
    if (!Shiboken::sequenceToArgcArgv(list, &line.count, &line.texts, "PySideApp"))
        return -1;
    commandLine() = line;
    ApplicationShim* application;
    {
        const Unlocked unlocked;
        application = new ApplicationShim(commandLine().count, commandLine().texts);
    }
    if (!attach(self, typeOf<QCoreApplication>(), application, application, nullptr, keywords))
        return -1;
    // It lives until the interpreter ends, whether a name holds it or not.
    Shiboken::Object::releaseOwnership(self);
    return 0;
}

QCoreApplication* instance() { return QCoreApplication::instance(); }

bool sendEvent(Given<QObject> receiver, Given<QEvent> event) { return QCoreApplication::sendEvent(receiver, event); }

// The event is Qt's from then on.
PyObject* postEvent(Given<QObject> receiver, Given<QEvent> event, std::optional<int> priority)
{
    const Reference wrapper(Crossing<QEvent*>::toPython(event));
    if (!wrapper)
        return nullptr;
    if (!Shiboken::Object::hasOwnership(reinterpret_cast<SbkObject*>(wrapper.get()))) {
        PyErr_SetString(PyExc_RuntimeError, "an event can be posted once, and only one that Python made");
        return nullptr;
    }
    Shiboken::Object::releaseOwnership(wrapper.get());
    {
        const Unlocked unlocked;
        QCoreApplication::postEvent(receiver, event, priority.value_or(Qt::NormalEventPriority));
    }
    return none();
}

int execute() { return QCoreApplication::exec(); }
void processEvents() { QCoreApplication::processEvents(); }
void sendPostedEvents(std::optional<QObject*> receiver, std::optional<int> type)
{
    QCoreApplication::sendPostedEvents(receiver.value_or(nullptr), type.value_or(0));
}
void leave(std::optional<int> code) { QCoreApplication::exit(code.value_or(0)); }

PyMethodDef methods[] = {
    staticMethod<QCoreApplication, &instance>("instance"),
    staticMethod<QCoreApplication, &sendEvent>("sendEvent"),
    staticMethod<QCoreApplication, &postEvent>("postEvent"),
    staticMethod<QCoreApplication, &sendPostedEvents>("sendPostedEvents"),
    staticMethod<QCoreApplication, &processEvents>("processEvents"),
    staticMethod<QCoreApplication, &execute>("exec_"),
    staticMethod<QCoreApplication, &QCoreApplication::quit>("quit"),
    staticMethod<QCoreApplication, &leave>("exit"),
    staticMethod<QCoreApplication, &QCoreApplication::arguments>("arguments"),
    staticMethod<QCoreApplication, &QCoreApplication::arguments>("argv"),
    staticMethod<QCoreApplication, &QCoreApplication::closingDown>("closingDown"),
    staticMethod<QCoreApplication, &QCoreApplication::startingUp>("startingUp"),
    staticMethod<QCoreApplication, &QCoreApplication::applicationName>("applicationName"),
    staticMethod<QCoreApplication, &QCoreApplication::setApplicationName>("setApplicationName"),
    staticMethod<QCoreApplication, &QCoreApplication::applicationVersion>("applicationVersion"),
    staticMethod<QCoreApplication, &QCoreApplication::setApplicationVersion>("setApplicationVersion"),
    staticMethod<QCoreApplication, &QCoreApplication::organizationName>("organizationName"),
    staticMethod<QCoreApplication, &QCoreApplication::setOrganizationName>("setOrganizationName"),
    staticMethod<QCoreApplication, &QCoreApplication::applicationFilePath>("applicationFilePath"),
    staticMethod<QCoreApplication, &QCoreApplication::applicationDirPath>("applicationDirPath"),
    staticMethod<QCoreApplication, &QCoreApplication::applicationPid>("applicationPid"),
    {}};

SbkObjectType type = {};

} // namespace

bool registerQCoreApplication(PyObject* module)
{
    if (!registerClass<QCoreApplication, ApplicationShim>(module, type, methods, &initialise, &deleteQObject,
                                                          &qObjectTypeObject))
        return false;
    finishQObjectClass<QCoreApplication>(type);
    Signal::registerSignals(&type, &QCoreApplication::staticMetaObject);
    return true;
}

} // namespace QtCore
