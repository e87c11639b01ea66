// Extension modules, and the tables that one publishes for others. The tables say to which runtime they belong: types
// of another runtime have another layout, and must never be used.
#include "autodecref.h"
#include "basewrapper.h"
#include "sbkmodule.h"

#include <cstring>
#include <dlfcn.h>
#include <string>

namespace Shiboken {
namespace Module {

namespace {

const char tablesName[] = "_binding_runtime_tables";

struct Tables
{
    PyTypeObject** types = nullptr;
    SbkConverter** converters = nullptr;
};

/// Its address is what tells this runtime from any other in the process.
char runtimeTag;

void deleteTables(void* tables, void*) { delete static_cast<Tables*>(tables); }

PyObject* attributeOf(PyObject* module, const char* name)
{
    PyObject* const attributes = PyModule_Check(module) ? PyModule_GetDict(module) : nullptr;
    return attributes ? PyDict_GetItemString(attributes, name) : nullptr;
}

/// The tables of a module, if it has some of this runtime.
Tables* tablesOf(PyObject* module)
{
    PyObject* const holder = attributeOf(module, tablesName);
    if (!holder || !PyCObject_Check(holder) || PyCObject_GetDesc(holder) != &runtimeTag)
        return nullptr;
    return static_cast<Tables*>(PyCObject_AsVoidPtr(holder));
}

/// Null, with an error set, only for want of memory.
Tables* tablesToFill(PyObject* module)
{
    if (Tables* const tables = tablesOf(module))
        return tables;
    Tables* const tables = new Tables;
    PyObject* const holder = PyCObject_FromVoidPtrAndDesc(tables, &runtimeTag, &deleteTables);
    if (holder && PyModule_AddObject(module, tablesName, holder) == 0)
        return tables;
    Py_XDECREF(holder);
    return nullptr;
}

bool isForeignType(PyObject* object)
{
    PyTypeObject* const metatype = Py_TYPE(object);
    return PyType_Check(object) && metatype != &SbkObjectType_Type &&
           !std::strcmp(metatype->tp_name, "Shiboken.ObjectType");
}

bool belongsToAnotherRuntime(PyObject* module)
{
    if (tablesOf(module) || !PyModule_Check(module))
        return false;
    if (attributeOf(module, tablesName))
        return true;
    PyObject *name, *value;
    Py_ssize_t position = 0;
    while (PyDict_Next(PyModule_GetDict(module), &position, &name, &value)) {
        if (isForeignType(value))
            return true;
    }
    return false;
}

std::string fileOf(PyObject* module)
{
    PyObject* const file = attributeOf(module, "__file__");
    return file && PyString_Check(file) ? PyString_AS_STRING(file) : "built in";
}

std::string fileOfRuntime()
{
    Dl_info info;
    return dladdr(&runtimeTag, &info) && info.dli_fname ? info.dli_fname : "unknown file";
}

const char* nameOf(PyObject* module) { return PyModule_Check(module) ? PyModule_GetName(module) : "?"; }

} // namespace

PyObject* import(const char* moduleName)
{
    PyObject* const module = PyImport_ImportModule(moduleName);
    if (!module || !belongsToAnotherRuntime(module))
        return module;
    PyErr_Format(PyExc_ImportError, "%s (%s) belongs to another binding runtime than %s", moduleName,
                 fileOf(module).c_str(), fileOfRuntime().c_str());
    Py_DECREF(module);
    return nullptr;
}

PyObject* create(const char* moduleName, void* moduleData)
{
    init();
    return Py_InitModule(moduleName, static_cast<PyMethodDef*>(moduleData));
}

void registerTypes(PyObject* module, PyTypeObject** types)
{
    if (Tables* const tables = tablesToFill(module))
        tables->types = types;
}

void registerTypeConverters(PyObject* module, SbkConverter** converters)
{
    if (Tables* const tables = tablesToFill(module))
        tables->converters = converters;
}

namespace {

/// Who asks for a table is about to use it.
template <typename T>
T orImportError(T table, PyObject* module, const char* what)
{
    if (!table)
        PyErr_Format(PyExc_ImportError, "%s (%s) has no %s for the binding runtime %s", nameOf(module),
                     fileOf(module).c_str(), what, fileOfRuntime().c_str());
    return table;
}

} // namespace

PyTypeObject** getTypes(PyObject* module)
{
    const Tables* const tables = tablesOf(module);
    return orImportError(tables ? tables->types : nullptr, module, "types");
}

SbkConverter** getTypeConverters(PyObject* module)
{
    const Tables* const tables = tablesOf(module);
    return orImportError(tables ? tables->converters : nullptr, module, "converters");
}

} // namespace Module
} // namespace Shiboken
