// The module `recording`: what a script tells the recording library, and what it reads from it.
#include "plain_python.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaMethod>
#include <QTranslator>
#include <map>
#include <thread>

using namespace recording;

namespace {

bool lockHeld()
{
    const PyThreadState* const mine = PyGILState_GetThisThreadState();
    return mine && mine == _PyThreadState_Current;
}

// Runs without the interpreter's lock, and on another thread when that is asked for.
template <class Work>
void unlocked(bool elsewhere, Work work)
{
    PyThreadState* const state = PyEval_SaveThread();
    std::exception_ptr failure;
    const auto guarded = [&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    };
    if (elsewhere)
        std::thread(guarded).join();
    else
        guarded();
    PyEval_RestoreThread(state);
    if (failure)
        std::rethrow_exception(failure);
}

// While one lives that was asked for, this thread has a Python error pending.
class Pending
{
public:
    explicit Pending(bool asked) : m_asked(asked)
    {
        if (m_asked)
            PyErr_SetString(PyExc_ValueError, "pending");
    }
    ~Pending()
    {
        if (m_asked)
            PyErr_Clear();
    }

private:
    const bool m_asked;
};

PyObject* listCalls()
{
    List notes;
    for (const Call& call : calls()) {
        notes.push_back({List{{call.function}}});
        List& note = std::get<List>(notes.back().content);
        note.insert(note.end(), call.arguments.begin(), call.arguments.end());
    }
    PyObject* const tuple = toPython({notes});
    PyObject* const list = PySequence_List(tuple);
    Py_DECREF(tuple);
    return list;
}

Value listLocks()
{
    List items;
    for (const Call& call : calls())
        items.push_back({List{{call.function}, {call.locked}}});
    return {items};
}

PyObject* listCounts(std::string name)
{
    const Counts one = counts(name);
    return Py_BuildValue("{s:l,s:l,s:l,s:l}", "alive", one.alive, "copied", one.copied, "copied unlocked",
                         one.copiedUnlocked, "destroyed", one.destroyed);
}

// The Python error that a call has left pending behind its result, which the interpreter itself does not notice.
PyObject* takeError(PyObject*, PyObject*)
{
    PyObject* const error = PyErr_Occurred() ? PyErr_Occurred() : Py_None;
    Py_INCREF(error);
    PyErr_Clear();
    return error;
}

bool await(std::string function)
{
    bool came = false;
    unlocked(false, [&] { came = awaitCall(function, 10); });
    return came;
}

void setLayer(int number, Value parent)
{
    Stratum::LayerGroup* const group = engineGroup(made<int>(parent)).get();
    engineLayer(number)->setParent(parent.as<std::string>() ? engineRoot() : group);
}

void setContour(int number, int type) { engineContour(number, type); }

void setPoint(int number, int contour, int type, int master)
{
    enginePoint(number, contour, type)->setMaster(enginePoint(master, 100, 0).get());
}

const std::map<std::string, void (*)(QObject* parent)> makers = {
    {"Project", [](QObject* parent) { new Project(QString(), parent); }},
    {"Clip", [](QObject* parent) { new Clip(QString(), QString(), false, 0, 0, 0, parent); }},
    {"ColorParameters", [](QObject*) { new ColorParameters(LinearColorspace, NoneConversion, 0, 0, 0, 0, 0); }},
    {"ProgressWatcher", [](QObject* parent) { new ProgressWatcher(parent); }},
    {"RenderRemoveOperation", [](QObject*) { new RenderRemoveOperation; }},
};

long make(std::string name, QObject* parent)
{
    const Silence silence;
    makers.at(name)(parent);
    return newest(name);
}

void destroyObject(long number, bool elsewhere)
{
    unlocked(elsewhere, [&] { recording::destroy(number); });
}

bool askNull(long number, bool elsewhere, bool withError)
{
    bool null = false;
    const Pending pending(withError);
    unlocked(elsewhere, [&] { null = isNull(number); });
    return null;
}

void emitSignal(QObject* sender, std::string signal, QVector<QVariant> values, bool elsewhere)
{
    const QMetaObject& meta = *sender->metaObject();
    int method = meta.methodCount() - 1;
    while (meta.method(method).name() != signal.c_str())
        if (--method < 0)
            throw std::invalid_argument("no signal " + signal);
    void* pointers[8] = {};
    for (int i = 0; i < values.size(); ++i)
        pointers[i + 1] = const_cast<void*>(values[i].constData());
    unlocked(elsewhere, [&] { sender->qt_metacall(QMetaObject::InvokeMetaMethod, method, pointers); });
}

// By the application, filters first.
bool sendThrough(QObject* receiver, QEvent::Type type)
{
    QEvent event(type);
    bool handled = false;
    unlocked(false, [&] { handled = QCoreApplication::sendEvent(receiver, &event); });
    return handled;
}

// Without an application.
bool sendEvent(QObject* receiver, QEvent::Type type, bool elsewhere, bool withError)
{
    bool handled = false;
    const Pending pending(withError);
    unlocked(elsewhere, [&] {
        QEvent plainEvent(type);
        QTimerEvent timerEvent(5);
        QObject child;
        QChildEvent childEvent(type, &child);
        QEvent* const event = type == QEvent::Timer                                        ? &timerEvent
                              : type == QEvent::ChildAdded || type == QEvent::ChildRemoved ? &childEvent
                                                                                           : &plainEvent;
        handled = receiver->event(event);
    });
    return handled;
}

QHash<QString, QString> translations;

struct Translator : QTranslator
{
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return translations.value(QString::fromUtf8(context) + '/' + source);
    }
    bool isEmpty() const override { return false; }
};

void translate(QString source, QString translation)
{
    static Translator* const translator = new Translator; // may outlive the application
    if (!QCoreApplication::installTranslator(translator))
        throw std::logic_error("there is no application");
    translations.insert(source, translation);
}

void clear()
{
    forget();
    translations.clear();
}

PyMethodDef functions[] = {
    method<listCalls>("calls", "[(function, arguments...),...] since clear()"),
    method<listLocks>("locks", "((function, the interpreter's lock was held),...)"),
    method<listCounts>("counts", "How many objects of a class are alive, and how often it was copied and destroyed"),
    method<clear>("clear", "Forgets calls, orders and translations"),
    method<forgetEngine>("forget_engine", "Makes every handle null and brings a new manager"),
    method<returns>("returns", "(function, value); function#number for one object"),
    method<throws>("throws", "(function, class of the exception, text)"),
    method<block>("block", "Makes calls of a function wait for release()"),
    method<release>("release", "(function)"),
    method<await>("await", "Waits until a function was called"),
    method<setLayer>("layer", "(number, parent: number, 'root' or None)"),
    method<setContour>("contour", "(number, type)"),
    method<setPoint>("point", "(number, contour, type of the contour, master)"),
    method<setManager>("manager", "Whether the project's manager is there"),
    method<make>("make", "(class, parent's number) -> number of an object that the library made"),
    method<newest>("newest", "The number of a class's newest living object"),
    method<destroyObject>("destroy", "(number, on another thread)"),
    method<askNull>("is_null", "(number, on another thread, with an error pending): a handle's virtual isNull()"),
    method<emitSignal>("emit", "(number, signal, arguments, on another thread)"),
    method<sendEvent>("send", "(number, event type, on another thread, with an error pending) -> handled"),
    method<sendThrough>("send_through", "(number, event type) -> handled, by the application"),
    {"take_error", &takeError, METH_NOARGS, "The class of an error left pending behind a result, or None"},
    method<translate>("translate", "(context/text, translation)"),
    {nullptr, nullptr, 0, nullptr}};

} // namespace

extern "C" __attribute__((visibility("default"))) void initrecording()
{
    PyEval_InitThreads();
    interpreterLockHeld = &lockHeld;
    Py_InitModule3("recording", functions, "Orders to the recording library, and what it noted");
}
