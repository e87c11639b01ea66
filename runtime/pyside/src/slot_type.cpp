// The decorator Slot, which notes on a function with which C++ signatures Qt is to see it.
#include "declared_types.h"
#include "signal_objects.h"
#include "static_type.h"

namespace PySide {

namespace {

struct SlotDeclaration
{
    QByteArray name; // empty: the function's
    QByteArray parameters;
    QByteArray result; // empty for none
};

struct SlotObject
{
    PyObject_HEAD SlotDeclaration* declaration;
};

PyObject* newSlot(PyTypeObject* type, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"name", "result", nullptr};
    const Reference noArguments(PyTuple_New(0));
    const char* name = nullptr;
    PyObject* result = nullptr;
    if (!noArguments || !PyArg_ParseTupleAndKeywords(noArguments.get(), keywords, "|sO:Slot", const_cast<char**>(names),
                                                     &name, &result))
        return nullptr;
    SlotDeclaration declaration;
    declaration.name = name;
    declaration.parameters = cppTypeNames(arguments);
    if (result && result != Py_None)
        declaration.result = cppTypeName(result);
    if (PyErr_Occurred())
        return nullptr;
    PyObject* const self = type->tp_alloc(type, 0);
    if (self)
        reinterpret_cast<SlotObject*>(self)->declaration = new SlotDeclaration(std::move(declaration));
    return self;
}

void deallocate(PyObject* self)
{
    delete reinterpret_cast<SlotObject*>(self)->declaration;
    Py_TYPE(self)->tp_free(self);
}

// The list that the function carries, made when it has none.
Reference slotList(PyObject* function)
{
    Reference list(PyObject_GetAttrString(function, "_slots"));
    if (list)
        return list;
    PyErr_Clear();
    list = Reference(PyList_New(0));
    if (!list || PyObject_SetAttrString(function, "_slots", list.get()) < 0)
        return Reference();
    return list;
}

PyObject* decorate(PyObject* self, PyObject* arguments, PyObject*)
{
    PyObject* function;
    if (!PyArg_UnpackTuple(arguments, "Slot", 1, 1, &function))
        return nullptr;
    const SlotDeclaration& declaration = *reinterpret_cast<SlotObject*>(self)->declaration;
    QByteArray name = declaration.name;
    if (name.isEmpty()) {
        const Reference own(PyObject_GetAttrString(function, "__name__"));
        if (!own)
            return nullptr;
        name = PyString_Check(own.get()) ? PyString_AS_STRING(own.get()) : "";
    }
    const QByteArray signature = name + '(' + declaration.parameters + ')';
    const Reference entry(Py_BuildValue("(ss)", signature.constData(), declaration.result.constData()));
    const Reference list = slotList(function);
    if (!entry || !list || PyList_Append(list.get(), entry.get()) < 0)
        return nullptr;
    return Reference::borrow(function).release();
}

} // namespace

bool initSlotType(PyObject* module)
{
    static PyTypeObject type = staticType("PySide.QtCore.Slot", sizeof(SlotObject));
    type.tp_new = &newSlot;
    type.tp_dealloc = &deallocate;
    type.tp_call = &decorate;
    return addType(module, type);
}

} // namespace PySide
