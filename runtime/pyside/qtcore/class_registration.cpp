// The common part of every class of this module.
#include "class_registration.h"

namespace QtCore {

using namespace Shiboken;

namespace {

const char* bareName(const char* fullName) { return std::strrchr(fullName, '.') + 1; }

void fillType(const ClassTable& table)
{
    PyTypeObject& type = table.type->super.ht_type;
    PyTypeObject& plain = SbkObject_Type.super.ht_type;
    Py_REFCNT(&type) = 1;
    Py_TYPE(&type) = &SbkObjectType_Type;
    type.tp_name = table.name;
    type.tp_basicsize = sizeof(SbkObject);
    type.tp_dealloc = &SbkDeallocWrapper;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = plain.tp_traverse;
    type.tp_clear = plain.tp_clear;
    type.tp_methods = table.methods;
    type.tp_init = table.initialise;
    type.tp_new = &SbkObjectTpNew;
    type.tp_base = table.base ? &table.base->super.ht_type : &plain;
}

} // namespace

SbkConverter* registerClass(PyObject* module, const ClassTable& table, Conversions::IsConvertibleToCppFunc accepts,
                            PythonToCppFunc fromPython, Conversions::CppToPythonFunc toPython,
                            Conversions::CppToPythonFunc copyToPython)
{
    fillType(table);
    SbkPySide_QtCoreTypes[table.place] = &table.type->super.ht_type;
    const std::string name = bareName(table.name);
    const Reference bases(table.base ? PyTuple_Pack(1, reinterpret_cast<PyObject*>(table.base)) : nullptr);
    if (!ObjectType::introduceWrapperType(module, name.c_str(), (table.isValue ? name : name + '*').c_str(), table.type,
                                          table.destroy, table.base, bases.get()))
        return nullptr;
    SbkConverter* const converter =
        Conversions::createConverter(table.type, fromPython, accepts, toPython, copyToPython);
    for (const std::string& each : {name, name + '*', name + '&'})
        Conversions::registerConverterName(converter, each.c_str());
    for (const char* each : table.cppTypeNames)
        Conversions::registerConverterName(converter, each);
    return converter;
}

bool canInitialise(PyObject* self, PyTypeObject* type)
{
    if (Object::isUserType(self))
        return ObjectType::canCallConstructor(Py_TYPE(self), type);
    // A base class's object cannot stand for one of a class derived from it.
    if (Py_TYPE(self) == type || Object::isValid(self, false))
        return true;
    PyErr_Format(PyExc_TypeError, "%s isn't the class of a %s", type->tp_name, Py_TYPE(self)->tp_name);
    return false;
}

bool takeCppObject(PyObject* self, PyTypeObject* type, void* object, bool isShim)
{
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    if (!Object::setCppPointer(wrapper, type, object))
        return false;
    Object::setValidCpp(wrapper, true);
    Object::setHasCppWrapper(wrapper, isShim);
    BindingManager::instance().registerWrapper(wrapper, object);
    return true;
}

PyTypeObject* registerEnumeration(SbkObjectType* scope, const char* fullName, const char* cppName, int place,
                                  const EnumerationItem* items, std::size_t count,
                                  Conversions::CppToPythonFunc toPython, PythonToCppFunc fromPython,
                                  Conversions::IsConvertibleToCppFunc accepts)
{
    PyTypeObject* const type = Enum::createScopedEnum(scope, bareName(fullName), fullName, cppName);
    if (!type)
        return nullptr;
    SbkPySide_QtCoreTypes[place] = type;
    for (std::size_t i = 0; i < count; ++i)
        if (!Enum::createScopedEnumItem(type, scope, items[i].name, items[i].value))
            return nullptr;
    SbkConverter* const converter = Conversions::createConverter(type, toPython);
    Conversions::addPythonToCppValueConversion(converter, fromPython, accepts);
    Enum::setTypeConverter(type, converter);
    Conversions::registerConverterName(converter, cppName);
    return type;
}

} // namespace QtCore
