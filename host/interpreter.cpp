// Leaves everything that a script's author can see (exit codes, tracebacks, sys.argv, the prompt) to Python's own main
// function, which finds an interpreter that has been started and given our path already.
#include "interpreter.h"

#include <Python.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <fundo/qt_version.h>
#include <unistd.h>

namespace {

// Python keeps the pointer.
std::string programName;

bool holdsPythonLibrary(const QString& entry)
{
    const QFileInfo info(entry);
    return info.isFile() || QFile::exists(entry + "/os.py") || QFile::exists(entry + "/os.pyc");
}

// Without its library Python prints several lines and ends the process. The flag keeps the search for it silent.
void requirePythonLibrary()
{
    Py_FrozenFlag = 1;
    const QString path = QFile::decodeName(Py_GetPath());
    Py_FrozenFlag = 0;
    for (const QString& entry : path.split(':')) {
        if (holdsPythonLibrary(entry))
            return;
    }
    throw InterpreterError("Python cannot start: its library (os.py) is nowhere on " +
                           Fundo::qt::toStdString(path.toLocal8Bit()) +
                           (qgetenv("PYTHONHOME").isEmpty() ? "" : "; PYTHONHOME is set"));
}

// The folder that holds our packages, in the build tree or below the prefix, and that of an installed PySide. Where
// there is none, PYTHONPATH is left to name it.
QStringList ownPackages()
{
    const QString programs = QCoreApplication::applicationDirPath();
    QStringList folders;
    for (const char* place : {VIREO_SITE_OF_BUILD, VIREO_SITE_OF_PREFIX}) {
        const QDir folder(programs + '/' + place);
        if (folders.isEmpty() && folder.exists("vireo/__init__.py"))
            folders << folder.canonicalPath();
    }
    const QString installed = VIREO_INSTALLED_PYSIDE;
    return installed.isEmpty() ? folders : folders << installed;
}

// After PYTHONPATH and Python's library, before what is installed for every Python program: our packages fit the
// libraries that this program is linked with, others of the same name may not.
Py_ssize_t placeOnPath(PyObject* path)
{
    for (Py_ssize_t place = 0; place < PyList_GET_SIZE(path); ++place) {
        PyObject* entry = PyList_GET_ITEM(path, place);
        if (!PyString_Check(entry))
            continue;
        const QString name = QFileInfo(QFile::decodeName(PyString_AS_STRING(entry))).fileName();
        if (name == "site-packages" || name == "dist-packages")
            return place;
    }
    return PyList_GET_SIZE(path);
}

void addOwnPackages()
{
    PyObject* path = PySys_GetObject(const_cast<char*>("path"));
    if (!path || !PyList_Check(path))
        return;
    Py_ssize_t place = placeOnPath(path);
    for (const QString& folder : ownPackages()) {
        PyObject* entry = PyString_FromString(QFile::encodeName(folder).constData());
        if (!entry || PyList_Insert(path, place++, entry) != 0)
            PyErr_Print();
        Py_XDECREF(entry);
    }
}

// Python's main function would do this before it starts Python, which it finds started.
void passWarningOptions()
{
    for (const QByteArray& option : qgetenv("PYTHONWARNINGS").split(',')) {
        if (!option.isEmpty())
            PySys_AddWarnOption(QByteArray(option).data());
    }
}

} // namespace

const char* interpreterVersion() { return PY_VERSION; }

void startInterpreter(const std::string& program, void (*afterwards)())
{
    programName = program;
    Py_SetProgramName(programName.data());
    requirePythonLibrary();
    passWarningOptions();
    Py_Initialize();
    PyEval_InitThreads();
    Py_AtExit(afterwards);
    addOwnPackages();
}

void preparePrompt(bool hasProject)
{
    if (isatty(STDIN_FILENO) == 1)
        PyRun_SimpleString(hasProject ? "__import__('vireo.prompt').prompt.prepare(True)"
                                      : "__import__('vireo.prompt').prompt.prepare(False)");
}

int runInterpreter(const std::vector<std::string>& arguments)
{
    std::vector<std::string> own(arguments);
    std::vector<char*> pointers;
    for (std::string& argument : own)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return Py_Main(static_cast<int>(own.size()), pointers.data());
}
