// The type Property: an attribute with a getter and a setter, declared with the type of its values.
#include "declared_types.h"
#include "pysidesignal.h"
#include "signal_objects.h"
#include "static_type.h"

namespace PySide {

namespace {

struct PropertyObject
{
    PyObject_HEAD PyObject* type;
    PyObject* get;
    PyObject* set;
    PyObject* reset;
    PyObject* remove;
    PyObject* doc;
    PyObject* notify;
};

PropertyObject& fields(PyObject* self) { return *reinterpret_cast<PropertyObject*>(self); }

constexpr PyObject* PropertyObject::*allFields[] = {
    &PropertyObject::type,   &PropertyObject::get, &PropertyObject::set,   &PropertyObject::reset,
    &PropertyObject::remove, &PropertyObject::doc, &PropertyObject::notify};

void setField(PyObject*& field, PyObject* value)
{
    PyObject* const old = field;
    field = value && value != Py_None ? Reference::borrow(value).release() : nullptr;
    Py_XDECREF(old);
}

int traverse(PyObject* self, visitproc visit, void* arg)
{
    for (PyObject* PropertyObject::*const field : allFields)
        Py_VISIT(fields(self).*field);
    return 0;
}

int clear(PyObject* self)
{
    for (PyObject* PropertyObject::*const field : allFields)
        setField(fields(self).*field, nullptr);
    return 0;
}

void deallocate(PyObject* self)
{
    PyObject_GC_UnTrack(self);
    clear(self);
    Py_TYPE(self)->tp_free(self);
}

int initialise(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"type",       "fget",       "fset",   "freset",   "fdel", "doc",   "notify",
                                  "designable", "scriptable", "stored", "constant", "user", "final", nullptr};
    PyObject* given[7] = {};
    PyObject* unused; // what only Qt's designer would ask for
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "O|OOOOOOOOOOOO:Property", const_cast<char**>(names),
                                     &given[0], &given[1], &given[2], &given[3], &given[4], &given[5], &given[6],
                                     &unused, &unused, &unused, &unused, &unused, &unused))
        return -1;
    if (cppTypeName(given[0]).isEmpty())
        return -1;
    for (std::size_t i = 0; i < std::size(allFields); ++i)
        setField(fields(self).*allFields[i], given[i]);
    return 0;
}

PyObject* get(PyObject* self, PyObject* object, PyObject*)
{
    if (!object)
        return Reference::borrow(self).release();
    if (!fields(self).get) {
        PyErr_SetString(PyExc_AttributeError, "Attribute not readable");
        return nullptr;
    }
    return PyObject_CallFunctionObjArgs(fields(self).get, object, nullptr);
}

int set(PyObject* self, PyObject* object, PyObject* value)
{
    PyObject* const function = value ? fields(self).set : fields(self).remove;
    if (!function) { // the text has always been spelled so
        PyErr_SetString(PyExc_AttributeError, value ? "Attibute read only" : "Attribute cannot be deleted");
        return -1;
    }
    const Reference result(PyObject_CallFunctionObjArgs(function, object, value, nullptr));
    return result ? 0 : -1;
}

// As decorators: Property(int) takes the getter, property.setter the setter.
template <PyObject* PropertyObject::*field>
PyObject* decorate(PyObject* self, PyObject* function)
{
    setField(fields(self).*field, function);
    return Reference::borrow(self).release();
}

PyObject* call(PyObject* self, PyObject* arguments, PyObject*)
{
    PyObject* function;
    if (!PyArg_UnpackTuple(arguments, "Property", 1, 1, &function))
        return nullptr;
    return decorate<&PropertyObject::get>(self, function);
}

PyMethodDef methods[] = {{"getter", &decorate<&PropertyObject::get>, METH_O, nullptr},
                         {"setter", &decorate<&PropertyObject::set>, METH_O, nullptr},
                         {"write", &decorate<&PropertyObject::set>, METH_O, nullptr},
                         {"read", &decorate<&PropertyObject::get>, METH_O, nullptr},
                         {}};

PyTypeObject propertyType = staticType("PySide.QtCore.Property", sizeof(PropertyObject));

} // namespace

bool initPropertyType(PyObject* module)
{
    propertyType.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC;
    propertyType.tp_new = &PyType_GenericNew;
    propertyType.tp_init = &initialise;
    propertyType.tp_dealloc = &deallocate;
    propertyType.tp_traverse = &traverse;
    propertyType.tp_clear = &clear;
    propertyType.tp_descr_get = &get;
    propertyType.tp_descr_set = &set;
    propertyType.tp_call = &call;
    propertyType.tp_methods = methods;
    return addType(module, propertyType);
}

bool isProperty(PyObject* object) { return object && Py_TYPE(object) == &propertyType; }

DynamicProperty describeProperty(const char* name, PyObject* property)
{
    const PropertyObject& declared = fields(property);
    const bool hasSignal = declared.notify && Py_TYPE(declared.notify) == &PySideSignalType;
    const QByteArray type = cppTypeName(declared.type);
    // Qt converts nothing into a Python object, but anything into a variant, which may hold one.
    return {name, type == "PyObject" ? "QVariant" : type, declared.set != nullptr,
            hasSignal ? signalData(declared.notify).signature(0) : QByteArray()};
}

} // namespace PySide
