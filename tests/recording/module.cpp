// The module `recording`: what a script tells the recording library, and what it reads from it.
#include "call.h"
#include "plain_python.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaMethod>
#include <QTranslator>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <orrery/render_operation.h>
#include <stdexcept>
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

using Function = PyObject* (*)(const List& arguments);

// Takes any plain arguments and turns what is thrown into Python errors.
template <Function function>
PyObject* entry(PyObject*, PyObject* arguments)
{
    try {
        return function(list(fromPython(arguments)));
    } catch (const PythonError&) {
    } catch (const std::exception& error) {
        PyErr_Format(PyExc_LookupError, "recording: %s", error.what());
    }
    return nullptr;
}

PyObject* none() { return Py_BuildValue(""); }

std::string name(const List& arguments) { return std::get<std::string>(arguments.at(0).content); }

long object(const List& arguments, size_t place = 0) { return made<long>(arguments.at(place)); }

Value optionalArgument(const List& arguments, size_t place)
{
    return place < arguments.size() ? arguments[place] : Value();
}

PyObject* listCalls(const List&)
{
    PyObject* const result = PyList_New(0);
    for (const Call& call : calls()) {
        List items = call.arguments;
        items.insert(items.begin(), Value{call.function});
        PyObject* const item = toPython({items});
        PyList_Append(result, item);
        Py_DECREF(item);
    }
    return result;
}

PyObject* listLocks(const List&)
{
    List items;
    for (const Call& call : calls())
        items.push_back({List{{call.function}, {call.locked}}});
    return toPython({items});
}

PyObject* listCounts(const List& arguments)
{
    const Counts one = counts()[name(arguments)];
    return Py_BuildValue("{s:l,s:l,s:l,s:l,s:l,s:l}", "constructed", one.constructed, "copied", one.copied,
                         "copied unlocked", one.copiedUnlocked, "assigned", one.assigned, "destroyed", one.destroyed,
                         "alive", one.constructed + one.copied - one.destroyed);
}

PyObject* clear(const List&)
{
    forget();
    return none();
}

PyObject* clearEngine(const List&)
{
    forgetEngine();
    return none();
}

// The Python error that a call has left pending behind its result, which the interpreter itself does not notice.
PyObject* takeError(PyObject*, PyObject*)
{
    PyObject* const error = PyErr_Occurred() ? PyErr_Occurred() : Py_None;
    Py_INCREF(error);
    PyErr_Clear();
    return error;
}

PyObject* setReturn(const List& arguments)
{
    returns(name(arguments), arguments.at(1));
    return none();
}

PyObject* setThrow(const List& arguments)
{
    throws(name(arguments), made<QString>(arguments.at(1)).toStdString(),
           made<QString>(optionalArgument(arguments, 2)).toStdString());
    return none();
}

PyObject* setBlock(const List& arguments)
{
    block(name(arguments));
    return none();
}

PyObject* releaseBlock(const List& arguments)
{
    release(name(arguments));
    return none();
}

PyObject* await(const List& arguments)
{
    bool came = false;
    unlocked(false, [&] { came = awaitCall(name(arguments), 10); });
    return PyBool_FromLong(came);
}

// layer(number, parent): the parent is a group's number, "root" or None.
PyObject* setLayer(const List& arguments)
{
    const Value parent = optionalArgument(arguments, 1);
    const int group = made<int>(parent);
    engineLayer(object(arguments))
        ->setParent(parent.as<std::string>() ? engineRoot()
                    : group                  ? engineGroup(group).get()
                                             : nullptr);
    return none();
}

PyObject* setContour(const List& arguments)
{
    engineContour(object(arguments), object(arguments, 1));
    return none();
}

// point(number, contour, type of the contour, master's number)
PyObject* setPoint(const List& arguments)
{
    const auto point = enginePoint(object(arguments), object(arguments, 1), object(arguments, 2));
    const long master = made<long>(optionalArgument(arguments, 3));
    point->setMaster(master ? enginePoint(master, 100, 0).get() : nullptr);
    return none();
}

PyObject* setProjectManager(const List& arguments)
{
    setManager(made<bool>(arguments.at(0)));
    return none();
}

QObject* qobject(long number) { return static_cast<QObject*>(objectOf(number)); }

const std::map<std::string, void (*)(QObject* parent)> makers = {
    {"Project", [](QObject* parent) { new Project(QString(), parent); }},
    {"Clip", [](QObject* parent) { new Clip(QString(), QString(), false, 0, 0, 0, parent); }},
    {"ColorParameters", [](QObject*) { new ColorParameters(LinearColorspace, NoneConversion, 0, 0, 0, 0, 0); }},
    {"ProgressWatcher", [](QObject* parent) { new ProgressWatcher(parent); }},
    {"RenderRemoveOperation", [](QObject*) { new RenderRemoveOperation; }},
};

// make(class, parent's number): an object that the library has made.
PyObject* make(const List& arguments)
{
    const Silence silence;
    makers.at(name(arguments))(qobject(made<long>(optionalArgument(arguments, 1))));
    return PyInt_FromLong(newest(name(arguments)));
}

PyObject* findNewest(const List& arguments) { return PyInt_FromLong(newest(name(arguments))); }

PyObject* destroyObject(const List& arguments)
{
    unlocked(made<bool>(optionalArgument(arguments, 1)), [&] { recording::destroy(object(arguments)); });
    return none();
}

// While one lives that was asked for, this thread has a Python error pending.
class Pending
{
public:
    explicit Pending(const Value& asked) : m_asked(made<bool>(asked))
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

// is_null(object, on another thread, with an error pending)
PyObject* askNull(const List& arguments)
{
    bool null = false;
    const Pending pending(optionalArgument(arguments, 2));
    unlocked(made<bool>(optionalArgument(arguments, 1)), [&] { null = isNull(object(arguments)); });
    return PyBool_FromLong(null);
}

int methodNamed(const QMetaObject& meta, const std::string& name)
{
    for (int i = meta.methodCount() - 1; i >= 0; --i)
        if (meta.method(i).name() == name.c_str())
            return i;
    throw std::invalid_argument("no signal " + name);
}

// emit(object, signal, arguments, on another thread)
PyObject* emitSignal(const List& arguments)
{
    QObject* const sender = qobject(object(arguments));
    const int method = methodNamed(*sender->metaObject(), std::get<std::string>(arguments.at(1).content));
    const auto values = made<QVector<QVariant>>(optionalArgument(arguments, 2));
    void* pointers[8] = {};
    for (int i = 0; i < values.size(); ++i)
        pointers[i + 1] = const_cast<void*>(values[i].constData());
    unlocked(made<bool>(optionalArgument(arguments, 3)),
             [&] { sender->qt_metacall(QMetaObject::InvokeMetaMethod, method, pointers); });
    return none();
}

// send_through(object, event type): by the application, filters first.
PyObject* sendThrough(const List& arguments)
{
    QEvent event(static_cast<QEvent::Type>(object(arguments, 1)));
    bool handled = false;
    unlocked(false, [&] { handled = QCoreApplication::sendEvent(qobject(object(arguments)), &event); });
    return PyBool_FromLong(handled);
}

// send(object, event type, on another thread, with an error pending): without an application.
PyObject* sendEvent(const List& arguments)
{
    QObject* const receiver = qobject(object(arguments));
    const auto type = static_cast<QEvent::Type>(object(arguments, 1));
    bool handled = false;
    const Pending pending(optionalArgument(arguments, 3));
    unlocked(made<bool>(optionalArgument(arguments, 2)), [&] {
        QEvent plainEvent(type);
        QTimerEvent timerEvent(5);
        QObject child;
        QChildEvent childEvent(type, &child);
        QEvent* const event = type == QEvent::Timer                                        ? &timerEvent
                              : type == QEvent::ChildAdded || type == QEvent::ChildRemoved ? &childEvent
                                                                                           : &plainEvent;
        handled = receiver->event(event);
    });
    return PyBool_FromLong(handled);
}

class Translations : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return table.value(QString::fromUtf8(context) + '/' + source);
    }
    bool isEmpty() const override { return table.isEmpty(); }
    QHash<QString, QString> table;
};

// translate("context/text", translation): needs a running application.
PyObject* translate(const List& arguments)
{
    static Translations* translations = nullptr;
    if (!QCoreApplication::instance())
        throw std::logic_error("there is no application");
    if (!translations) {
        translations = new Translations;
        QCoreApplication::installTranslator(translations);
    }
    const QString source = made<QString>(arguments.at(0));
    if (arguments.size() == 1)
        translations->table.remove(source);
    else
        translations->table.insert(source, made<QString>(arguments.at(1)));
    return none();
}

PyMethodDef functions[] = {
    {"calls", &entry<listCalls>, METH_VARARGS, "[(function, arguments...)] since clear()"},
    {"locks", &entry<listLocks>, METH_VARARGS, "((function, the interpreter's lock was held),...)"},
    {"counts", &entry<listCounts>, METH_VARARGS, "How often objects of a class were constructed, copied, destroyed"},
    {"clear", &entry<clear>, METH_VARARGS, "Forgets calls and orders"},
    {"forget_engine", &entry<clearEngine>, METH_VARARGS, "Makes every handle null and brings a new manager"},
    {"returns", &entry<setReturn>, METH_VARARGS, "(function, value); function#number for one object"},
    {"throws", &entry<setThrow>, METH_VARARGS, "(function, class of the exception, text)"},
    {"block", &entry<setBlock>, METH_VARARGS, "Makes calls of a function wait for release()"},
    {"release", &entry<releaseBlock>, METH_VARARGS, nullptr},
    {"await", &entry<await>, METH_VARARGS, "Waits until a function was called"},
    {"layer", &entry<setLayer>, METH_VARARGS, "(number, parent: number, 'root' or None)"},
    {"contour", &entry<setContour>, METH_VARARGS, "(number, type)"},
    {"point", &entry<setPoint>, METH_VARARGS, "(number, contour, type of the contour, master)"},
    {"manager", &entry<setProjectManager>, METH_VARARGS, "Whether the project's manager is there"},
    {"make", &entry<make>, METH_VARARGS, "(class, parent) -> number of an object that the library made"},
    {"newest", &entry<findNewest>, METH_VARARGS, "The number of a class's newest living object"},
    {"destroy", &entry<destroyObject>, METH_VARARGS, "(number, on another thread)"},
    {"is_null", &entry<askNull>, METH_VARARGS, "(number, on another thread): the virtual isNull() of a handle"},
    {"emit", &entry<emitSignal>, METH_VARARGS, "(number, signal, arguments, on another thread)"},
    {"send", &entry<sendEvent>, METH_VARARGS, "(number, event type, on another thread) -> handled"},
    {"send_through", &entry<sendThrough>, METH_VARARGS, "(number, event type) -> handled, by the application"},
    {"take_error", &takeError, METH_NOARGS, "The class of an error left pending behind a result, or None"},
    {"translate", &entry<translate>, METH_VARARGS, "(context/text[, translation])"},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

extern "C" __attribute__((visibility("default"))) void initrecording()
{
    PyEval_InitThreads();
    interpreterLockHeld = &lockHeld;
    Py_InitModule3("recording", functions, "Orders to the recording library, and what it noted");
}
