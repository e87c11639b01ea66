// The module PySide.QtCore.
#include "module.h"

#include "converters.h"
#include "messages.h"
#include "pyside.h"

PyTypeObject** SbkPySide_QtCoreTypes = nullptr;
SbkConverter** SbkPySide_QtCoreTypeConverters = nullptr;

namespace QtCore {

PyTypeObject* types[SBK_QtCore_IDX_COUNT];

namespace {

SbkConverter* converters[SBK_QtCore_CONVERTERS_IDX_COUNT];

// SIGNAL and SLOT: Qt's mark in front of the signature.
template <int code>
PyObject* mark(PyObject*, PyObject* text)
{
    if (!PyString_Check(text)) {
        const char* signatures[] = {"str", nullptr};
        const Reference arguments(PyTuple_Pack(1, text));
        if (arguments)
            Shiboken::setErrorAboutWrongArguments(arguments.get(), code == QSIGNAL_CODE ? "SIGNAL" : "SLOT",
                                                  signatures);
        return nullptr;
    }
    return PyString_FromFormat("%d%s", code, PyString_AS_STRING(text));
}

PyObject* version(PyObject*, PyObject*) { return PyString_FromString(qVersion()); }

PyMethodDef functions[] = {{"SIGNAL", &mark<QSIGNAL_CODE>, METH_O, nullptr},
                           {"SLOT", &mark<QSLOT_CODE>, METH_O, nullptr},
                           {"qVersion", &version, METH_NOARGS, nullptr},
                           {}};

bool addVersion(PyObject* module)
{
    return PyModule_AddStringConstant(module, "__version__", QT_VERSION_STR) == 0 &&
           PyModule_AddObject(module, "__version_info__",
                              Py_BuildValue("(iii)", QT_VERSION >> 16, (QT_VERSION >> 8) & 0xff, QT_VERSION & 0xff)) ==
               0;
}

template <class T>
bool registerIfClass([[maybe_unused]] PyObject* module, const TypeRow<T>&)
{
    if constexpr (std::is_class_v<T>)
        return registerClass(module, tableOf<T>());
    return true;
}

bool registerClasses(PyObject* module)
{
    return std::apply([module](const auto&... row) { return (registerIfClass(module, row) && ...); }, typeRows);
}

void raiseCount(const char* function, int least, int given)
{
    PyErr_Format(PyExc_TypeError, "%s(): %s arguments", function, given < least ? "not enough" : "too many");
}

bool start()
{
    SbkPySide_QtCoreTypes = types;
    SbkPySide_QtCoreTypeConverters = converters;
    PyObject* const module = Shiboken::Module::create("QtCore", functions);
    if (!module)
        return false;
    init(module);
    registerPrimitiveNames();
    registerTextConverters();
    registerVariantConverter();
    registerListConverters();
    const bool areRegistered =
        registerClasses(module) && registerEventTypes(module) && registerEnumerations(module) && addVersion(module);
    if (!areRegistered || PyErr_Occurred())
        return false;
    Shiboken::Module::registerTypes(module, types);
    Shiboken::Module::registerTypeConverters(module, converters);
    return !PyErr_Occurred();
}

} // namespace

} // namespace QtCore

const binding::Messages binding::messages = {&QtCore::raiseCount, false};

// An error that is pending makes the import fail with it.
PyMODINIT_FUNC __attribute__((visibility("default"))) initQtCore() { QtCore::start(); }
