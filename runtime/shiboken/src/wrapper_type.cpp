// The metatype of wrapper types: what a module introduces, and what a script makes by deriving a class.
#include "bindingmanager.h"
#include "wrapper_data.h"

#include <algorithm>
#include <cstring>

namespace Shiboken {

namespace {

/// Fills the data of a Python class from the wrapped classes that it derives from.
void inheritData(SbkObjectType* type, std::vector<SbkObjectType*> parts)
{
    TypeData* const data = new TypeData;
    type->d = data;
    data->isUserType = true;
    data->parts = std::move(parts);
    data->converter = data->parts.front()->d->converter;
    data->originalName = data->parts.size() == 1 ? data->dataOfPart(0).originalName : "object";
    data->noteAddresses();
}

PyObject* newWrapperType(PyTypeObject* metatype, PyObject* arguments, PyObject* keywords)
{
    PyObject *name, *bases, *attributes;
    static const char* const names[] = {"name", "bases", "dict", nullptr};
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "OO!O!:type", const_cast<char**>(names), &name, &PyTuple_Type,
                                     &bases, &PyDict_Type, &attributes))
        return nullptr;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(bases); ++i) {
        if (PyClass_Check(PyTuple_GET_ITEM(bases, i)))
            return PyErr_Format(PyExc_TypeError,
                                "Invalid base class used in type %s. PySide only support multiple inheritance from "
                                "python new style class.",
                                metatype->tp_name);
    }
    PyObject* const made = PyType_Type.tp_new(metatype, arguments, keywords);
    // A base with a metatype of its own has made the type by the way of that one, which came by here.
    SbkObjectType* const type = reinterpret_cast<SbkObjectType*>(made);
    if (!made || type->d)
        return made;
    std::vector<SbkObjectType*> parts = partsOfBases(asType(type)->tp_bases);
    if (parts.empty()) {
        Py_DECREF(made);
        return PyErr_Format(PyExc_TypeError, "a type made by %s must derive from a wrapped class", metatype->tp_name);
    }
    inheritData(type, std::move(parts));
    for (SbkObjectType* part : dataOf(type).parts) {
        if (const SubTypeInitHook hook = dataOf(part).initialiseSubType)
            hook(type, arguments, keywords);
        if (PyErr_Occurred()) {
            Py_DECREF(made);
            return nullptr;
        }
    }
    return made;
}

void deallocateWrapperType(PyObject* object)
{
    SbkObjectType* const type = reinterpret_cast<SbkObjectType*>(object);
    delete static_cast<TypeData*>(type->d);
    type->d = nullptr;
    PyType_Type.tp_dealloc(object);
}

/// Wrapped classes take new attributes although they are no heap types. A class cannot be moved below other wrapped
/// classes, whose objects are not what its own objects hold.
int setTypeAttribute(PyObject* object, PyObject* name, PyObject* value)
{
    SbkObjectType* const type = reinterpret_cast<SbkObjectType*>(object);
    if (asType(type)->tp_flags & Py_TPFLAGS_HEAPTYPE) {
        const bool isBases = PyString_Check(name) && !std::strcmp(PyString_AS_STRING(name), "__bases__");
        if (isBases && value && PyTuple_Check(value) && type->d && partsOfBases(value) != dataOf(type).parts) {
            PyErr_Format(PyExc_TypeError,
                         "__bases__ assignment: the objects of '%.100s' hold those of other wrapped classes",
                         asType(type)->tp_name);
            return -1;
        }
        return PyType_Type.tp_setattro(object, name, value);
    }
    const int result = PyObject_GenericSetAttr(object, name, value);
    PyType_Modified(asType(type));
    return result;
}

PyTypeObject makeMetatype()
{
    PyTypeObject type = PyTypeObject();
    Py_REFCNT(&type) = 1;
    type.tp_name = "Shiboken.ObjectType";
    type.tp_basicsize = sizeof(SbkObjectType);
    type.tp_dealloc = &deallocateWrapperType;
    type.tp_setattro = &setTypeAttribute;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES;
    type.tp_alloc = &PyType_GenericAlloc;
    type.tp_new = &newWrapperType;
    type.tp_free = &PyObject_GC_Del;
    return type;
}

} // namespace

std::vector<SbkObjectType*> partsOfBases(PyObject* bases)
{
    std::vector<SbkObjectType*> parts;
    const auto add = [&parts](SbkObjectType* part) {
        if (std::find(parts.begin(), parts.end(), part) == parts.end())
            parts.push_back(part);
    };
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(bases); ++i) {
        PyObject* const base = PyTuple_GET_ITEM(bases, i);
        if (!PyType_Check(base) || !ObjectType::checkType(reinterpret_cast<PyTypeObject*>(base)))
            continue;
        SbkObjectType* const type = reinterpret_cast<SbkObjectType*>(base);
        if (!type->d || type == &SbkObject_Type)
            continue;
        if (!type->d->isUserType)
            add(type);
        else
            std::for_each(dataOf(type).parts.begin(), dataOf(type).parts.end(), add);
    }
    return parts;
}

std::size_t partFor(SbkObjectType* type, PyTypeObject* desiredType)
{
    const std::vector<SbkObjectType*>& parts = dataOf(type).parts;
    for (std::size_t i = 0; parts.size() > 1 && i < parts.size(); ++i) {
        if (PyType_IsSubtype(asType(parts[i]), desiredType))
            return i;
    }
    return 0;
}

namespace ObjectType {

bool checkTypeSlowly(PyTypeObject* type) { return PyType_IsSubtype(type, asType(&SbkObject_Type)); }

bool canCallConstructor(PyTypeObject* myType, PyTypeObject* ctorType)
{
    const std::vector<SbkObjectType*>& parts = dataOf(reinterpret_cast<SbkObjectType*>(myType)).parts;
    for (SbkObjectType* part : parts) {
        if (asType(part) == ctorType)
            return true;
    }
    PyErr_Format(PyExc_TypeError, "%s isn't a direct base class of %s", ctorType->tp_name, myType->tp_name);
    return false;
}

bool introduceWrapperType(PyObject* enclosingObject, const char* typeName, const char* originalName,
                          SbkObjectType* type, ObjectDestructor cppObjDtor, SbkObjectType* baseType,
                          PyObject* baseTypes, bool isInner)
{
    initPrivateData(type);
    setOriginalName(type, originalName);
    setDestructorFunction(type, cppObjDtor);

    PyTypeObject* const pyType = asType(type);
    // Attributes are found in the interpreter's cache: a change of the type's dictionary must clear it.
    pyType->tp_flags |= Py_TPFLAGS_HAVE_VERSION_TAG;
    if (baseType)
        pyType->tp_base = asType(baseType);
    else if (!pyType->tp_base)
        pyType->tp_base = asType(&SbkObject_Type);
    if (baseTypes) {
        Py_INCREF(baseTypes);
        pyType->tp_bases = baseTypes;
    }
    if (PyType_Ready(pyType) < 0)
        return false;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(pyType->tp_bases); ++i) {
        SbkObjectType* const base = reinterpret_cast<SbkObjectType*>(PyTuple_GET_ITEM(pyType->tp_bases, i));
        if (checkType(asType(base)) && base != &SbkObject_Type)
            BindingManager::instance().addClassInheritance(base, type);
    }

    PyObject* const object = reinterpret_cast<PyObject*>(type);
    if (isInner) {
        PyTypeObject* const enclosing = reinterpret_cast<PyTypeObject*>(enclosingObject);
        const bool entered = PyDict_SetItemString(enclosing->tp_dict, typeName, object) == 0;
        PyType_Modified(enclosing);
        return entered;
    }
    Py_INCREF(object);
    if (PyModule_AddObject(enclosingObject, typeName, object) == 0)
        return true;
    Py_DECREF(object);
    return false;
}

void initPrivateData(SbkObjectType* type)
{
    if (type->d)
        return;
    TypeData* const data = new TypeData;
    type->d = data;
    data->parts.push_back(type);
    data->noteAddresses();
}

void setOriginalName(SbkObjectType* type, const char* name) { dataOf(type).originalName = name ? name : ""; }

const char* getOriginalName(SbkObjectType* type) { return dataOf(type).originalName.c_str(); }

void setDestructorFunction(SbkObjectType* type, ObjectDestructor destructor) { dataOf(type).destroy = destructor; }

bool hasCast(SbkObjectType* type) { return dataOf(type).dataOfPart(0).cast; }

void* cast(SbkObjectType* sourceType, SbkObject* object, PyTypeObject* targetType)
{
    const std::size_t part = partFor(sourceType, targetType);
    void* const cppObject = cppObjectAt(object, part);
    const SpecialCastFunction function = dataOf(sourceType).dataOfPart(part).cast;
    return cppObject && function ? function(cppObject, reinterpret_cast<SbkObjectType*>(targetType)) : cppObject;
}

void setCastFunction(SbkObjectType* type, SpecialCastFunction function)
{
    dataOf(type).cast = function;
    dataOf(type).noteAddresses();
}

void setTypeDiscoveryFunctionV2(SbkObjectType* type, TypeDiscoveryFuncV2 function) { dataOf(type).discover = function; }

void setMultipleIheritanceFunction(SbkObjectType* type, MultipleInheritanceInitFunction function)
{
    dataOf(type).findOffsets = function;
    dataOf(type).noteAddresses();
}

MultipleInheritanceInitFunction getMultipleIheritanceFunction(SbkObjectType* type)
{
    return dataOf(type).dataOfPart(0).findOffsets;
}

void copyMultimpleheritance(SbkObjectType* type, SbkObjectType* other)
{
    TypeData& data = dataOf(type);
    if (data.parts.size() != 1)
        return;
    const TypeData& source = dataOf(other);
    data.findOffsets = source.findOffsets;
    data.offsets = source.offsets;
    data.cast = source.cast;
    data.noteAddresses();
}

void setSubTypeInitHook(SbkObjectType* type, SubTypeInitHook hook) { dataOf(type).initialiseSubType = hook; }

void setTypeUserData(SbkObjectType* type, void* data, DeleteUserDataFunc deleteFunction)
{
    dataOf(type).setUserData(data, deleteFunction);
}

void* getTypeUserData(SbkObjectType* type) { return dataOf(type).userData; }

} // namespace ObjectType
} // namespace Shiboken

PyTypeObject SbkObjectType_Type = Shiboken::makeMetatype();
