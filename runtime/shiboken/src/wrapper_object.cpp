// Wrapper objects: how they are made, freed and seen by the garbage collector, and the C++ objects behind them.
#include "bindingmanager.h"
#include "converter_data.h"
#include "sbkenum.h"
#include "wrapper_data.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace Shiboken {

namespace {

PyObject* getDictionary(PyObject* object, void*)
{
    SbkObject* const self = reinterpret_cast<SbkObject*>(object);
    if (!self->ob_dict)
        self->ob_dict = PyDict_New();
    Py_XINCREF(self->ob_dict);
    return self->ob_dict;
}

PyObject* plainClassAttribute() { return PyDict_GetItemString(PyBaseObject_Type.tp_dict, "__class__"); }

PyObject* getClass(PyObject* object, void*)
{
    Py_INCREF(Py_TYPE(object));
    return reinterpret_cast<PyObject*>(Py_TYPE(object));
}

/// Classes that look alike to Python may stand for objects that do not.
int setClass(PyObject* object, PyObject* value, void*)
{
    SbkObjectType* const current = typeOf(reinterpret_cast<SbkObject*>(object));
    SbkObjectType* const other = reinterpret_cast<SbkObjectType*>(value);
    if (value && PyType_Check(value) && ObjectType::isUserType(asType(current)) &&
        ObjectType::isUserType(asType(other)) && dataOf(current).parts != dataOf(other).parts) {
        PyErr_Format(PyExc_TypeError,
                     "__class__ assignment: '%.100s' and '%.100s' derive from different wrapped classes",
                     asType(current)->tp_name, asType(other)->tp_name);
        return -1;
    }
    PyObject* const attribute = plainClassAttribute();
    return Py_TYPE(attribute)->tp_descr_set(attribute, object, value);
}

PyGetSetDef attributes[] = {{const_cast<char*>("__dict__"), &getDictionary, nullptr, nullptr, nullptr},
                            {const_cast<char*>("__class__"), &getClass, &setClass, nullptr, nullptr},
                            {nullptr, nullptr, nullptr, nullptr, nullptr}};

int traverse(PyObject* object, visitproc visit, void* arg)
{
    SbkObject* const self = reinterpret_cast<SbkObject*>(object);
    Py_VISIT(self->ob_dict);
    if (!self->d.extra)
        return 0;
    for (SbkObject* child = self->d.extra->firstChild; child; child = child->d.extra->nextSibling)
        Py_VISIT(asObject(child));
    for (const SbkObjectExtra::Kept& kept : self->d.extra->kept)
        Py_VISIT(kept.object);
    return 0;
}

void clearKept(SbkObject* self)
{
    if (!self->d.extra)
        return;
    std::vector<SbkObjectExtra::Kept> kept;
    kept.swap(self->d.extra->kept);
    for (const SbkObjectExtra::Kept& each : kept)
        Py_DECREF(each.object);
}

/// Children stay: they make no cycle without an attribute or a kept object.
int clear(PyObject* object)
{
    SbkObject* const self = reinterpret_cast<SbkObject*>(object);
    Py_CLEAR(self->ob_dict);
    clearKept(self);
    return 0;
}

/// The C++ objects of a wrapper object at the time when it lets go of them.
class OwnedObjects
{
public:
    explicit OwnedObjects(SbkObject* self)
    {
        TypeData& data = typeDataOf(self);
        m_first = {&data.dataOfPart(0), cppObjectAt(self, 0)};
        for (std::size_t part = 1; part < data.parts.size(); ++part)
            m_others.push_back({&data.dataOfPart(part), cppObjectAt(self, part)});
    }

    void destroy() const
    {
        destroy(m_first);
        std::for_each(m_others.begin(), m_others.end(), [](const Owned& each) { destroy(each); });
    }

private:
    struct Owned
    {
        const TypeData* type;
        void* cppObject;
    };

    static void destroy(const Owned& owned)
    {
        if (owned.type->destroy && owned.cppObject)
            owned.type->destroy(owned.cppObject);
    }

    Owned m_first = {}; // nothing is allocated for an object that holds only one
    std::vector<Owned> m_others;
};

/// Objects that are copied for C++. A call may be using one, and holds its wrapper object, but nothing looks at the
/// time of its end: the C++ object goes with the wrapper object.
bool isValue(SbkObject* object)
{
    const SbkConverter* const converter = typeOf(object)->d->converter;
    return partCount(object) == 1 && converter && converter->copyToPython;
}

/// Whether Python has to delete the C++ objects.
bool ownsLivingObject(SbkObject* self)
{
    // Of several C++ objects some may be left when one of them has died.
    return self->d.hasOwnership && (self->d.isValid || self->d.isDeleted || partCount(self) > 1);
}

/// Without references nothing finds the wrapper object any more. Python code hears of its end before its C++ objects
/// go: what that code destroys of them leaves the wrapper object here too.
void deallocate(PyObject* object, bool mayDestroy)
{
    SbkObject* const self = reinterpret_cast<SbkObject*>(object);
    // Both a parent and C++'s interest hold a reference.
    assert(!self->d.isHeld && !(self->d.extra && self->d.extra->parent));
    PyObject_GC_UnTrack(object);
    const ErrorSaver errors;
    if (self->weakreflist)
        PyObject_ClearWeakRefs(object);
    leaveFamily(self);
    Py_CLEAR(self->ob_dict);
    const bool isOwner = mayDestroy && ownsLivingObject(self);
    const OwnedObjects owned(self);
    BindingManager::instance().releaseWrapper(self);
    delete self->d.extra;
    self->d.extra = nullptr;
    if (isOwner)
        owned.destroy();
    Py_TYPE(object)->tp_free(object);
}

/// For pickle and copy, which would make an object without a C++ object. Classes whose objects can be copied say how.
PyObject* refuseToReduce(PyObject* object, PyObject*)
{
    const char* const name = Py_TYPE(object)->tp_name;
    const char* const point = std::strrchr(name, '.');
    return PyErr_Format(PyExc_TypeError, "can't pickle %s objects", point ? point + 1 : name);
}

PyMethodDef baseMethods[] = {{"__reduce__", &refuseToReduce, METH_NOARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

SbkObjectType makeBaseType()
{
    SbkObjectType wrapperType = SbkObjectType();
    PyTypeObject& type = wrapperType.super.ht_type;
    Py_REFCNT(&type) = 1;
    Py_TYPE(&type) = &SbkObjectType_Type;
    type.tp_name = "Shiboken.Object";
    type.tp_basicsize = sizeof(SbkObject);
    type.tp_dealloc = &SbkDeallocWrapperWithPrivateDtor;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC |
                    Py_TPFLAGS_HAVE_VERSION_TAG;
    type.tp_traverse = &traverse;
    type.tp_clear = &clear;
    type.tp_weaklistoffset = offsetof(SbkObject, weakreflist);
    type.tp_dictoffset = offsetof(SbkObject, ob_dict);
    type.tp_methods = baseMethods;
    type.tp_getset = attributes;
    return wrapperType;
}

/// The type that a C++ object really has, by the name that its class has for the compiler, or by asking the classes.
SbkObjectType* realType(SbkObjectType* type, void** cptr, const char* typeName)
{
    PyTypeObject* const named = typeName ? Conversions::getPythonTypeObject(typeName) : nullptr;
    if (!named || named == asType(type) || !PyType_IsSubtype(named, asType(type)))
        return BindingManager::instance().resolveType(cptr, type);
    SbkObjectType* const found = reinterpret_cast<SbkObjectType*>(named);
    const TypeDiscoveryFuncV2 discover = dataOf(found).discover;
    if (void* const own = discover ? discover(*cptr, type) : nullptr)
        *cptr = own;
    return found;
}

} // namespace

void setCppObjectOfSeveral(SbkObject* object, std::size_t part, void* cppObject)
{
    SbkObjectExtra& extra = extraOf(object);
    extra.cppObjects.resize(partCount(object));
    extra.cppObjects[part] = cppObject;
}

SbkObjectExtra& extraOf(SbkObject* object)
{
    if (!object->d.extra)
        object->d.extra = new SbkObjectExtra;
    return *object->d.extra;
}

void init()
{
    static bool isReady = false;
    if (isReady)
        return;
    PyEval_InitThreads();
    ObjectType::initPrivateData(&SbkObject_Type);
    SbkObjectType_Type.tp_base = &PyType_Type;
    SbkEnumType_Type.tp_base = &PyType_Type;
    // These fail only for want of memory.
    for (PyTypeObject* type : {&SbkObjectType_Type, asType(&SbkObject_Type), &SbkEnumType_Type}) {
        if (PyType_Ready(type) < 0)
            Py_FatalError("cannot start the binding runtime");
    }
    if (!Enum::registerForPickle())
        PyErr_Print();
    Conversions::registerPrimitiveConverters();
    isReady = true;
}

namespace Object {

Py_ssize_t hash(PyObject* object) { return _Py_HashPointer(object); }

PyObject* newObject(SbkObjectType* instanceType, void* cptr, bool hasOwnership, bool isExactType, const char* typeName)
{
    if (!isExactType)
        instanceType = realType(instanceType, &cptr, typeName);
    PyObject* const object = SbkObjectTpNew(asType(instanceType), nullptr, nullptr);
    if (!object)
        return nullptr;
    SbkObject* const self = reinterpret_cast<SbkObject*>(object);
    self->d.hasOwnership = hasOwnership;
    self->d.isValid = true;
    setCppObjectAt(self, 0, cptr);
    BindingManager::instance().registerWrapper(self, cptr);
    return object;
}

bool reportInvalid(SbkObject* object)
{
    const char* const name = Py_TYPE(object)->tp_name;
    if (!object->d.wasCreatedByPython && isUserType(asObject(object)))
        PyErr_Format(PyExc_RuntimeError, "'__init__' method of object's base class (%s) not called.", name);
    else
        PyErr_Format(PyExc_RuntimeError, "Internal C++ object (%s) already deleted.", name);
    return false;
}

void setValidCpp(SbkObject* object, bool value) { object->d.isValid = value; }
void setHasCppWrapper(SbkObject* object, bool value) { object->d.hasCppWrapper = value; }
bool wasCreatedByPython(SbkObject* object) { return object->d.wasCreatedByPython; }

void* cppPointer(SbkObject* object, PyTypeObject* desiredType)
{
    return cppObjectAt(object, partFor(typeOf(object), desiredType));
}

std::vector<void*> cppPointers(SbkObject* object)
{
    std::vector<void*> pointers;
    for (std::size_t part = 0; part < partCount(object); ++part)
        pointers.push_back(cppObjectAt(object, part));
    return pointers;
}

bool setCppPointer(SbkObject* object, PyTypeObject* desiredType, void* cptr)
{
    const std::size_t part = partFor(typeOf(object), desiredType);
    const bool isDead = object->d.wasCreatedByPython && !object->d.isValid;
    if (isDead || cppObjectAt(object, part)) {
        PyErr_SetString(PyExc_RuntimeError, "You can't initialize an object twice!");
        return false;
    }
    setCppObjectAt(object, part, cptr);
    object->d.wasCreatedByPython = true;
    return true;
}

void callCppDestructors(SbkObject* object)
{
    const AutoDecRef guard(asObject(object));
    Py_INCREF(object);
    const ErrorSaver errors;
    leaveFamily(object); // may run Python code, which may delete it too
    if (isValue(object)) {
        BindingManager::instance().releaseWrapper(object);
        object->d.isValid = false;
        object->d.isDeleted = true;
        return;
    }
    const OwnedObjects owned(object);
    for (void* cppObject : cppPointers(object)) {
        if (cppObject)
            forgetCppObject(object, cppObject);
    }
    owned.destroy();
}

void setTypeUserData(SbkObject* object, void* data, DeleteUserDataFunc deleteFunction)
{
    ObjectType::setTypeUserData(typeOf(object), data, deleteFunction);
}

void* getTypeUserData(SbkObject* object) { return ObjectType::getTypeUserData(typeOf(object)); }

} // namespace Object

namespace Conversions {

void* cppPointerSlowly(PyTypeObject* desiredType, SbkObject* pyIn)
{
    if (!ObjectType::checkType(desiredType))
        return pyIn;
    void* const cppObject = ObjectType::cast(typeOf(pyIn), pyIn, desiredType);
    if (!cppObject && pyIn->d.isValid)
        PyErr_Format(PyExc_RuntimeError, "'__init__' method of object's base class (%s) not called.",
                     Py_TYPE(pyIn)->tp_name);
    return cppObject;
}

} // namespace Conversions
} // namespace Shiboken

PyObject* SbkObjectTpNew(PyTypeObject* subtype, PyObject*, PyObject*)
{
    PyObject* const object = PyType_GenericAlloc(subtype, 0);
    if (object)
        reinterpret_cast<SbkObject*>(object)->d.hasOwnership = true;
    return object;
}

void SbkDeallocWrapper(PyObject* object) { Shiboken::deallocate(object, true); }

void SbkDeallocWrapperWithPrivateDtor(PyObject* object) { Shiboken::deallocate(object, false); }

SbkObjectType SbkObject_Type = Shiboken::makeBaseType();
