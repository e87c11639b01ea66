// Creates the Python type that a class's tables describe.
#include "class_registration.h"

#include <cstring>
#include <pyside.h>
#include <pysidesignal.h>
#include <string>

namespace binding {

const char* (*documentationHook)(const char*, const char*) = nullptr;

namespace {

const char* bareName(const ClassTable& table) { return std::strrchr(table.name, '.') + 1; }

void document(const ClassTable& table)
{
    if (!documentationHook)
        return;
    table.type->super.ht_type.tp_doc = documentationHook(bareName(table), nullptr);
    for (PyMethodDef* method = table.methods; method->ml_name; ++method)
        method->ml_doc = documentationHook(bareName(table), method->ml_name);
}

void fillTypeObject(const ClassTable& table)
{
    PyHeapTypeObject& heapType = table.type->super;
    PyTypeObject& type = heapType.ht_type;
    Py_REFCNT(&type) = 1;
    Py_TYPE(&type) = &SbkObjectType_Type;
    type.tp_name = table.name;
    type.tp_basicsize = sizeof(SbkObject);
    type.tp_dealloc = &SbkDeallocWrapper;
    type.tp_repr = table.repr;
    type.tp_hash = table.hash;
    type.tp_str = table.str;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = reinterpret_cast<PyTypeObject*>(&SbkObject_Type)->tp_traverse;
    type.tp_clear = reinterpret_cast<PyTypeObject*>(&SbkObject_Type)->tp_clear;
    type.tp_richcompare = table.compare;
    type.tp_methods = table.methods;
    type.tp_init = table.initialise;
    type.tp_new = &SbkObjectTpNew;
    type.tp_base = reinterpret_cast<PyTypeObject*>(table.base ? table.base : &SbkObject_Type);
    if (table.numbers) {
        heapType.as_number = *table.numbers;
        type.tp_as_number = &heapType.as_number;
    }
    if (table.truth) {
        heapType.as_number.nb_nonzero = table.truth;
        type.tp_as_number = &heapType.as_number;
    }
    if (table.subscript) {
        heapType.as_mapping.mp_subscript = table.subscript;
        type.tp_as_mapping = &heapType.as_mapping;
    }
    if (table.buffer) {
        heapType.as_buffer = *table.buffer;
        type.tp_as_buffer = &heapType.as_buffer;
    }
    if (table.sequence) {
        heapType.as_sequence = *table.sequence;
        type.tp_as_sequence = &heapType.as_sequence;
    }
}

bool introduce(PyObject* module, const ClassTable& table)
{
    const std::string name = bareName(table);
    const std::string libraryName = table.isValue ? name : name + "*";
    const Reference bases(table.metaObject && table.base ? PyTuple_Pack(1, reinterpret_cast<PyObject*>(table.base))
                                                         : nullptr);
    return Shiboken::ObjectType::introduceWrapperType(module, name.c_str(), libraryName.c_str(), table.type,
                                                      table.destroy, table.base, bases.get());
}

void createConverter(const ClassTable& table)
{
    SbkConverter* const converter = Shiboken::Conversions::createConverter(
        table.type, table.pointerFromPython, table.acceptsPointer, table.pointerToPython, table.copyToPython);
    const std::string name = bareName(table);
    for (const std::string& each :
         {name, name + "*", name + "&", std::string(table.libraryTypeName), std::string(table.wrapperTypeName)})
        Shiboken::Conversions::registerConverterName(converter, each.c_str());
    if (table.acceptsValue)
        Shiboken::Conversions::addPythonToCppValueConversion(converter, table.valueFromPython, table.acceptsValue);
    if (table.acceptsImplicit)
        Shiboken::Conversions::addPythonToCppValueConversion(converter, table.implicitFromPython,
                                                             table.acceptsImplicit);
}

void* castToItself(void* object, SbkObjectType*) { return object; }

void registerQtObject(const ClassTable& table)
{
    if (table.offsets) {
        Shiboken::ObjectType::setMultipleIheritanceFunction(table.type, table.offsets);
        Shiboken::ObjectType::setCastFunction(table.type, &castToItself);
        Shiboken::ObjectType::setTypeDiscoveryFunctionV2(table.type, table.discover);
    }
    PySide::Signal::registerSignals(table.type, table.metaObject);
}

PyObject* raiseNotImplemented()
{
    if (!mustReachCaller())
        PyErr_SetString(PyExc_NotImplementedError, "operator not implemented.");
    return nullptr;
}

} // namespace

bool registerClass(PyObject* module, const ClassTable& table)
{
    fillTypeObject(table);
    document(table);
    *table.place = reinterpret_cast<PyTypeObject*>(table.type);
    if (!introduce(module, table))
        return false;
    createConverter(table);
    if (table.metaObject)
        registerQtObject(table);
    buildProperties(*table.place, bareName(table), table.accessors);
    return !table.finish || table.finish(table.type);
}

PyObject* compareObjects(const Comparison& comparison, PyObject* self, PyObject* other, int operation)
{
    const void* const left = libraryObject(self, *comparison.type);
    if (!left)
        return nullptr;
    const Comparison::Operator compare = comparison.operators[operation];
    if (!compare)
        return raiseNotImplemented();
    bool result = operation == Py_NE;
    Comparison::Outcome outcome = Comparison::Outcome::Compared;
    try {
        outcome = comparison.apply(compare, left, self, other, result);
    } catch (...) {
        return raiseNotImplemented();
    }
    if (outcome == Comparison::Outcome::Invalid)
        return nullptr;
    if (errorPending() || (outcome == Comparison::Outcome::NotConvertible && operation != Py_EQ && operation != Py_NE))
        return raiseNotImplemented();
    return PyBool_FromLong(result);
}

} // namespace binding
