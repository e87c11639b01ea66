// The Python module `shiboken`: what scripts can ask and tell the runtime about wrapper objects.
#include <sbkversion.h>
#include <shiboken.h>

#define SBK_EXPORT_MODULE LIBSHIBOKEN_API

namespace {

/// The wrapper object that a function was given, or null with a TypeError.
SbkObject* wrapperObject(PyObject* object)
{
    if (Shiboken::Object::checkType(object))
        return reinterpret_cast<SbkObject*>(object);
    PyErr_SetString(PyExc_TypeError, "You need a shiboken-based type.");
    return nullptr;
}

PyObject* isValid(PyObject*, PyObject* object) { return PyBool_FromLong(Shiboken::Object::isValid(object, false)); }

PyObject* invalidate(PyObject*, PyObject* object)
{
    Shiboken::Object::invalidate(object);
    Py_RETURN_NONE;
}

PyObject* deleteObject(PyObject*, PyObject* object)
{
    SbkObject* const wrapper = wrapperObject(object);
    if (!wrapper || !Shiboken::Object::isValid(wrapper))
        return nullptr;
    Shiboken::Object::callCppDestructors(wrapper);
    Py_RETURN_NONE;
}

PyObject* ownedByPython(PyObject*, PyObject* object)
{
    SbkObject* const wrapper = wrapperObject(object);
    return wrapper ? PyBool_FromLong(Shiboken::Object::hasOwnership(wrapper)) : nullptr;
}

PyObject* createdByPython(PyObject*, PyObject* object)
{
    SbkObject* const wrapper = wrapperObject(object);
    return wrapper ? PyBool_FromLong(Shiboken::Object::wasCreatedByPython(wrapper)) : nullptr;
}

PyObject* getCppPointer(PyObject*, PyObject* object)
{
    SbkObject* const wrapper = wrapperObject(object);
    if (!wrapper)
        return nullptr;
    const bool isUninitialised = Shiboken::Object::isUserType(object) && !Shiboken::Object::wasCreatedByPython(wrapper);
    if (!isUninitialised && !Shiboken::Object::isValid(wrapper))
        return nullptr;
    const std::vector<void*> pointers = Shiboken::Object::cppPointers(wrapper);
    PyObject* const result = PyTuple_New(pointers.size());
    for (std::size_t i = 0; result && i < pointers.size(); ++i)
        PyTuple_SET_ITEM(result, i, PyLong_FromVoidPtr(pointers[i]));
    return result;
}

PyObject* wrapInstance(PyObject*, PyObject* arguments)
{
    PyObject *address, *type;
    if (!PyArg_UnpackTuple(arguments, "wrapInstance", 2, 2, &address, &type))
        return nullptr;
    if (!SbkNumber_Check(address) || !PyType_Check(type)) {
        const char* signatures[] = {"unsigned long, type", nullptr};
        Shiboken::setErrorAboutWrongArguments(arguments, "wrapInstance", signatures);
        return nullptr;
    }
    if (!Shiboken::ObjectType::checkType(reinterpret_cast<PyTypeObject*>(type)) ||
        type == reinterpret_cast<PyObject*>(&SbkObject_Type)) {
        PyErr_SetString(PyExc_TypeError, "You need a shiboken-based type.");
        return nullptr;
    }
    const Shiboken::AutoDecRef number(PyNumber_Long(address));
    void* const pointer = number.isNull() ? nullptr : PyLong_AsVoidPtr(number);
    if (PyErr_Occurred())
        return nullptr;
    if (!pointer) {
        PyErr_SetString(PyExc_ValueError, "wrapInstance() needs the address of an object, not 0");
        return nullptr;
    }
    return Shiboken::Object::newObject(reinterpret_cast<SbkObjectType*>(type), pointer, false, true);
}

PyObject* dump(PyObject*, PyObject* object)
{
    if (!Shiboken::Object::checkType(object))
        return PyString_FromString("Ordinary Python type.");
    return PyString_FromString(Shiboken::Object::info(reinterpret_cast<SbkObject*>(object)).c_str());
}

PyMethodDef functions[] = {
    {"isValid", &isValid, METH_O, "Whether the C++ object is there; true for what is no wrapper object."},
    {"invalidate", &invalidate, METH_O, "Marks a wrapper object and its children as no longer usable."},
    {"delete", &deleteObject, METH_O, "Deletes the C++ object, whoever owns it."},
    {"ownedByPython", &ownedByPython, METH_O, "Whether the C++ object goes away with its wrapper object."},
    {"createdByPython", &createdByPython, METH_O, "Whether the C++ object was made by calling the class."},
    {"getCppPointer", &getCppPointer, METH_O, "A tuple of the addresses of the C++ objects."},
    {"wrapInstance", &wrapInstance, METH_VARARGS,
     "A new wrapper object, which owns nothing, of an address and a class."},
    {"dump", &dump, METH_O, "The state of a wrapper object as text."},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

SBK_MODULE_INIT_FUNCTION_BEGIN(shiboken)
PyObject* const module = Shiboken::Module::create("shiboken", functions);
if (!module)
    return;
PyModule_AddStringConstant(module, "__version__", SHIBOKEN_VERSION);
PyModule_AddObject(module, "__version_info__",
                   Py_BuildValue("(iiisi)", SHIBOKEN_MAJOR_VERSION, SHIBOKEN_MINOR_VERSION, SHIBOKEN_MICRO_VERSION,
                                 SHIBOKEN_RELEASE_LEVEL, SHIBOKEN_SERIAL));
SBK_MODULE_INIT_FUNCTION_END
