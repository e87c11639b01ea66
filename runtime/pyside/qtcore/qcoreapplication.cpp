// QCoreApplication: the event loop, and events sent and posted.
#include "converters.h"
#include "object_shim.h"

namespace QtCore {

namespace {

// A command line, which Qt refers to for as long as there is an application.
struct CommandLine
{
    int count = 0;
    char** texts = nullptr;
};

class ApplicationShim : public ObjectShim<QCoreApplication>
{
public:
    explicit ApplicationShim(const CommandLine& line) : ObjectShim(kept(line).count, kept(line).texts) {}

    bool ownNotify(QObject* receiver, QEvent* event) { return QCoreApplication::notify(receiver, event); }

    // Comes before every event of every thread: the interpreter is asked only where a Python class may answer.
    bool notify(QObject* receiver, QEvent* event) override
    {
        const auto own = [&] { return ownNotify(receiver, event); };
        return isOfPythonClass() ? handOn("notify", own, receiver, event) : own();
    }

private:
    static CommandLine& kept(const CommandLine& line)
    {
        static CommandLine kept;
        return kept = line;
    }
};

} // namespace

} // namespace QtCore

namespace binding {

template <>
struct Converter<QtCore::CommandLine>
{
    static constexpr bool mayHoldWrapper = false;
    static const char* text() { return "QStringList"; }
    static FromPython accepts(PyObject* object)
    {
        return PySequence_Check(object) && !QtCore::isText(object) ? &fromPython : nullptr;
    }
    static void fromPython(PyObject* object, void* value)
    {
        QtCore::CommandLine& line = *static_cast<QtCore::CommandLine*>(value);
        if (QCoreApplication::instance())
            PyErr_SetString(PyExc_RuntimeError, "A QCoreApplication instance already exists.");
        else
            Shiboken::sequenceToArgcArgv(object, &line.count, &line.texts, "PySideApp");
    }
};

} // namespace binding

namespace QtCore {

namespace {

bool sendEvent(QObject& receiver, QEvent& event) { return QCoreApplication::sendEvent(&receiver, &event); }

// The event is Qt's from then on.
void postEvent(QObject& receiver, QEvent& event, int priority)
{
    const Reference wrapper(Converter<QEvent*>::toPython(&event));
    if (!wrapper)
        return;
    if (!Shiboken::Object::hasOwnership(reinterpret_cast<SbkObject*>(wrapper.get()))) {
        PyErr_SetString(PyExc_RuntimeError, "an event can be posted once, and only one that Python made");
        return;
    }
    Shiboken::Object::releaseOwnership(wrapper.get());
    const Unlocked unlocked;
    QCoreApplication::postEvent(&receiver, &event, priority);
}

// As in QObject: an override that calls the base class means C++'s own.
bool notify(QCoreApplication& application, QObject& receiver, QEvent& event)
{
    if (ApplicationShim* const own = dynamic_cast<ApplicationShim*>(&application))
        return own->ownNotify(&receiver, &event);
    return application.notify(&receiver, &event);
}

QString translate(const char* context, const char* text, const char* disambiguation, Encoding, int count)
{
    return QCoreApplication::translate(context, text, disambiguation, count);
}

void processEvents() { QCoreApplication::processEvents(); }

constexpr auto making = constructors(Form::AtLeast, signature(constructs<ApplicationShim, CommandLine>));

constexpr auto members =
    memberTable(positional("notify", operation<&notify>),
                keywords("translate", staticOperation<&translate>, optional<NoBytes>("disambiguation"),
                         optional<DefaultEncoding>("encoding"), optional<MinusOne>("n")),
                noArguments("instance", staticOperation<&QCoreApplication::instance>),
                positional("sendEvent", staticOperation<&sendEvent>),
                keywords("postEvent", lockedStaticOperation<&postEvent>, optional<Zero>("priority")),
                keywords("sendPostedEvents", staticOperation<&QCoreApplication::sendPostedEvents>,
                         optional<NoObject>("receiver"), optional<Zero>("event_type")),
                noArguments("processEvents", staticOperation<&processEvents>),
                noArguments("exec_", staticOperation<&QCoreApplication::exec>),
                noArguments("quit", staticOperation<&QCoreApplication::quit>),
                keywords("exit", staticOperation<&QCoreApplication::exit>, optional<Zero>("retcode")),
                noArguments("arguments", staticOperation<&QCoreApplication::arguments>),
                noArguments("argv", staticOperation<&QCoreApplication::arguments>),
                noArguments("closingDown", staticOperation<&QCoreApplication::closingDown>),
                noArguments("startingUp", staticOperation<&QCoreApplication::startingUp>),
                noArguments("applicationName", staticOperation<&QCoreApplication::applicationName>),
                one("setApplicationName", staticOperation<&QCoreApplication::setApplicationName>),
                noArguments("applicationVersion", staticOperation<&QCoreApplication::applicationVersion>),
                one("setApplicationVersion", staticOperation<&QCoreApplication::setApplicationVersion>),
                noArguments("organizationName", staticOperation<&QCoreApplication::organizationName>),
                one("setOrganizationName", staticOperation<&QCoreApplication::setOrganizationName>),
                noArguments("applicationFilePath", staticOperation<&QCoreApplication::applicationFilePath>),
                noArguments("applicationDirPath", staticOperation<&QCoreApplication::applicationDirPath>),
                noArguments("applicationPid", staticOperation<&QCoreApplication::applicationPid>));

} // namespace

template <>
ClassTable tableOf<QCoreApplication>()
{
    return qObjectClass<QCoreApplication, QObject, members, ApplicationShim, making>();
}

} // namespace QtCore
