// The module's start-up, and its one function.
#include "module.h"

#include "messages.h"

#include <orrery/start_up.h>
#include <pyside.h>
#include <stratum/error_detector.h>
#include <string_view>

PyTypeObject** SbkPySide_QtCoreTypes = nullptr;
SbkConverter** SbkPySide_QtCoreTypeConverters = nullptr;

namespace vireo {

PyTypeObject* types[SBK_project_IDX_COUNT];
SbkConverter* converters[SBK_project_CONVERTERS_IDX_COUNT];

namespace {

void raiseCount(const char* function, int least, int given)
{
    PyErr_Format(PyExc_TypeError, "%s(): takes at least %d arguments (%d given)", function, least, given);
}

PyObject* currentProject(PyObject*, PyObject*)
{
    if (PyErr_Occurred())
        return nullptr;
    try {
        const binding::LibraryCall running;
        Project* project;
        {
            const binding::Unlocked unlocked;
            project = getCurrentProject();
        }
        PyObject* const result = binding::Converter<Project*>::toPython(project);
        if (result && result != Py_None)
            Shiboken::Object::releaseOwnership(result);
        return binding::unlessError(result);
    } catch (...) {
        binding::raiseCaughtException();
        return nullptr;
    }
}

PyMethodDef functions[] = {{"get_current_project", &currentProject, METH_NOARGS, nullptr}, {}};

// Takes the tables of the Qt binding's core module, and makes sure that its other module can be had.
bool importQtBinding()
{
    Shiboken::AutoDecRef core(Shiboken::Module::import("PySide.QtCore"));
    if (core.isNull())
        return false;
    SbkPySide_QtCoreTypes = Shiboken::Module::getTypes(core);
    SbkPySide_QtCoreTypeConverters = Shiboken::Module::getTypeConverters(core);
    if (!SbkPySide_QtCoreTypes || !SbkPySide_QtCoreTypeConverters)
        return false;
    Shiboken::AutoDecRef gui(Shiboken::Module::import("PySide.QtGui"));
    return !gui.isNull();
}

// The types stand in the ascending order of their names, so that other modules find them.
constexpr bool areSorted()
{
    const char* names[SBK_project_IDX_COUNT] = {};
    std::apply([&](const auto&... row) { ((names[row.place] = row.name), ...); }, typeRows);
    for (int i = 0; i < SBK_project_IDX_COUNT; ++i)
        if (!names[i] || (i > 0 && std::string_view(names[i - 1]) >= names[i]))
            return false;
    return true;
}
static_assert(areSorted(), "a place without a type, or with the wrong one");

// The row's class, when it is one. A class that could not be introduced leaves its error pending.
template <class T>
void registerIfClass([[maybe_unused]] PyObject* module, const binding::TypeRow<T>&)
{
    if constexpr (std::is_class_v<T>)
        binding::registerClass(module, tableOf<T>());
}

void registerClasses(PyObject* module)
{
    std::apply([module](const auto&... row) { (registerIfClass(module, row), ...); }, typeRows);
}

void publish(PyObject* module)
{
    Shiboken::Module::registerTypes(module, types);
    Shiboken::Module::registerTypeConverters(module, converters);
    if (PyErr_Occurred()) {
        PyErr_Print();
        Py_FatalError("can't initialize module project");
    }
}

// Takes an unfinished module out of the interpreter's list of modules, so that no import finds it.
void withdraw(PyObject* module)
{
    PyObject *error, *value, *traceback;
    PyErr_Fetch(&error, &value, &traceback);
    if (PyDict_DelItemString(PyImport_GetModuleDict(), PyModule_GetName(module)) < 0)
        PyErr_Clear();
    PyErr_Restore(error, value, traceback);
}

// The binding runtime takes the lock of the process's first interpreter, whichever calls it.
bool isFirstInterpreter()
{
    const PyThreadState* const ofFirst = PyGILState_GetThisThreadState();
    return !ofFirst || ofFirst->interp == PyThreadState_GET()->interp;
}

bool bootLibrary()
{
    STRM_ErrorDetector::init();
    STRM_ErrorDetector::setFullErrorDetection(true, false);
    binding::libraryExceptionHook = &translateLibraryException;
    binding::documentationHook = &documentation;
    pyBootstrap();
    PySide::registerCleanupFunction(&pyCleanup);
    return true;
}

// Each step once: an import that fails may be tried again.
void startLibrary()
{
    [[maybe_unused]] static const bool isBooted = bootLibrary();
    static const bool offersProject = isEmbedded();
    if (!offersProject)
        functions[0] = PyMethodDef();
}

// The types are filled in their places, once: a module that was not finished is taken back, and no second one is made.
void makeModule()
{
    static bool isMade = false;
    if (isMade) {
        PyErr_SetString(PyExc_ImportError, "vireo.project can be started once in a process");
        return;
    }
    isMade = true;
    const binding::Reference module = binding::Reference::borrow(Shiboken::Module::create("project", functions));
    if (!module)
        return;
    try {
        registerClasses(module.get());
        registerConverters();
        if (registerEnumerations(module.get())) {
            publish(module.get());
            registerEngineEnumerations();
            return;
        }
    } catch (...) {
        withdraw(module.get());
        throw;
    }
    withdraw(module.get());
}

void start()
{
    if (!isFirstInterpreter()) {
        PyErr_SetString(PyExc_ImportError, "vireo.project can be used in the process's first interpreter only");
        return;
    }
    try {
        startLibrary();
        if (importQtBinding())
            makeModule();
    } catch (const std::exception& caught) {
        PyErr_SetString(PyExc_ImportError, binding::textOf(caught));
    } catch (...) {
        PyErr_SetString(PyExc_ImportError, "Unknown error");
    }
}

} // namespace

} // namespace vireo

const binding::Messages binding::messages = {&vireo::raiseCount, true};

#if defined(__GNUC__)
    #define VIREO_EXPORT __attribute__((visibility("default")))
#else
    #define VIREO_EXPORT
#endif

extern "C" VIREO_EXPORT void initproject() { vireo::start(); }
