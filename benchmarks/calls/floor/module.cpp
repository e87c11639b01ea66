// The floor that the module is measured against: the same operations bound by hand with nothing but the interpreter's
// own interface. It also tells Valgrind where a measured loop begins and ends.
#include "classes.h"

#if __has_include(<valgrind/callgrind.h>)
    #include <valgrind/callgrind.h>
#else
    #define CALLGRIND_ZERO_STATS
    #define CALLGRIND_DUMP_STATS_AT(text) (void)(text)
#endif

namespace calls {

namespace {

bool addProperty(PyTypeObject& type, const Property& property)
{
    PyObject* const getter = PyObject_GetAttrString(reinterpret_cast<PyObject*>(&type), property.getter);
    PyObject* const setter =
        property.setter ? PyObject_GetAttrString(reinterpret_cast<PyObject*>(&type), property.setter) : none();
    if (!getter || !setter)
        return false;
    PyObject* const made =
        PyObject_CallFunctionObjArgs(reinterpret_cast<PyObject*>(&PyProperty_Type), getter, setter, nullptr);
    return made && PyDict_SetItemString(type.tp_dict, property.name, made) == 0 &&
           PyDict_DelItemString(type.tp_dict, property.getter) == 0 &&
           (!property.setter || PyDict_DelItemString(type.tp_dict, property.setter) == 0);
}

PyObject* beginCount(PyObject*, PyObject*)
{
    CALLGRIND_ZERO_STATS;
    return none();
}

PyObject* endCount(PyObject*, PyObject* name)
{
    if (!PyString_Check(name))
        return wrongArgument("end_count", name);
    CALLGRIND_DUMP_STATS_AT(PyString_AS_STRING(name));
    return none();
}

PyMethodDef functions[] = {{"wrapped_layers", &wrappedLayers, METH_O, nullptr},
                           {"begin_count", &beginCount, METH_NOARGS, nullptr},
                           {"end_count", &endCount, METH_O, nullptr},
                           {}};

} // namespace

bool addType(PyObject* module, PyTypeObject& type, const char* name, const Property* properties, int count)
{
    if (PyType_Ready(&type) < 0)
        return false;
    for (int i = 0; i < count; ++i)
        if (!addProperty(type, properties[i]))
            return false;
    Py_INCREF(&type);
    return PyModule_AddObject(module, name, reinterpret_cast<PyObject*>(&type)) == 0;
}

} // namespace calls

extern "C" __attribute__((visibility("default"))) void initfloor()
{
    PyObject* const module = Py_InitModule("floor", calls::functions);
    if (module && calls::addValues(module))
        calls::addModel(module);
}
