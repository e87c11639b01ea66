// Wrapper objects and their types: what a Python object knows of the C++ object behind it, whether that is still there,
// who owns it, and which object lives as long as which other.
#ifndef BASEWRAPPER_H
#define BASEWRAPPER_H

#include "sbkpython.h"
#include "shibokenmacros.h"

#include <string>
#include <vector>

struct SbkConverter;
struct SbkObjectExtra;
struct SbkObjectType;

extern "C" {

/// Deletes a C++ object of the type it is registered with.
typedef void (*ObjectDestructor)(void*);
/// Runs for each Python class derived from the type, with the arguments of the metatype.
typedef void (*SubTypeInitHook)(SbkObjectType*, PyObject* arguments, PyObject* keywords);
/// The address of the part of the object that belongs to another wrapped class.
typedef void* (*SpecialCastFunction)(void*, SbkObjectType*);
/// Offsets of the base parts in an object, ended by -1.
typedef int* (*MultipleInheritanceInitFunction)(const void*);
/// The object known as one of the given type, as an object of the type asked, or null if it is none.
typedef void* (*TypeDiscoveryFuncV2)(void*, SbkObjectType*);
typedef void (*DeleteUserDataFunc)(void*);

/// The runtime's own; here for the inline functions below.
struct SbkObjectPrivate
{
    void* cppObject;       ///< null before construction, after destruction, and where `extra` holds several
    SbkObjectExtra* extra; ///< parent, children, kept references; null for most objects
    bool hasOwnership;
    bool isValid;
    bool hasCppWrapper; ///< the C++ object is an instance of the module's subclass and reports its own death
    bool wasCreatedByPython;
    bool isDeleted; ///< by a script, while a call may be using the C++ object, which goes with the wrapper object
    bool isHeld;    ///< the runtime itself holds a reference until the C++ object dies
};

/// A wrapper object.
struct SbkObject
{
    PyObject_HEAD PyObject* ob_dict;
    PyObject* weakreflist;
    SbkObjectPrivate d;
};

/// The runtime's own; here for the inline functions below.
struct SbkObjectTypePrivate
{
    SbkConverter* converter;
    bool isUserType;
    bool isSingleAddress; ///< one C++ object, whose address is also that of all its base parts
};

/// A wrapper type: a static one that a module fills, or a Python class derived from one.
struct SbkObjectType
{
    PyHeapTypeObject super;
    SbkObjectTypePrivate* d;
};

/// The metatype of all wrapper types, and the base type of all wrapper objects.
extern LIBSHIBOKEN_API PyTypeObject SbkObjectType_Type;
extern LIBSHIBOKEN_API SbkObjectType SbkObject_Type;

LIBSHIBOKEN_API PyObject* SbkObjectTpNew(PyTypeObject* subtype, PyObject* arguments, PyObject* keywords);
LIBSHIBOKEN_API void SbkDeallocWrapper(PyObject* object);
/// For classes with an inaccessible destructor: the C++ object is left alone.
LIBSHIBOKEN_API void SbkDeallocWrapperWithPrivateDtor(PyObject* object);

} // extern "C"

namespace Shiboken {

/// Starts the runtime; harmless when it runs already.
LIBSHIBOKEN_API void init();

template <typename T>
void callCppDestructor(void* cptr)
{
    delete static_cast<T*>(cptr);
}

namespace ObjectType {

LIBSHIBOKEN_API bool checkTypeSlowly(PyTypeObject* type);

/// True for wrapper types.
inline bool checkType(PyTypeObject* type)
{
    return Py_TYPE(type) == &SbkObjectType_Type || (Py_TYPE(type) != &PyType_Type && checkTypeSlowly(type));
}

/// True for Python classes derived from wrapper types.
inline bool isUserType(PyTypeObject* type)
{
    return checkType(type) && reinterpret_cast<SbkObjectType*>(type)->d->isUserType;
}

/// False with a TypeError when `ctorType` is not one of the wrapped classes that `myType` derives from directly.
LIBSHIBOKEN_API bool canCallConstructor(PyTypeObject* myType, PyTypeObject* ctorType);

/// Makes a filled type object usable and enters it into a module, or with `isInner` into a class. `originalName` is the
/// C++ name, followed by `*` for types whose objects are never copied. `baseTypes` is a tuple, for more than one base.
LIBSHIBOKEN_API bool introduceWrapperType(PyObject* enclosingObject, const char* typeName, const char* originalName,
                                          SbkObjectType* type, ObjectDestructor cppObjDtor = nullptr,
                                          SbkObjectType* baseType = nullptr, PyObject* baseTypes = nullptr,
                                          bool isInner = false);
LIBSHIBOKEN_API void initPrivateData(SbkObjectType* type);
LIBSHIBOKEN_API void setOriginalName(SbkObjectType* type, const char* name);
LIBSHIBOKEN_API const char* getOriginalName(SbkObjectType* type);
/// Called with the lock held. A destructor of a library that may wait for other threads lets go of it.
LIBSHIBOKEN_API void setDestructorFunction(SbkObjectType* type, ObjectDestructor destructor);

LIBSHIBOKEN_API bool hasCast(SbkObjectType* type);
LIBSHIBOKEN_API void* cast(SbkObjectType* sourceType, SbkObject* object, PyTypeObject* targetType);
LIBSHIBOKEN_API void setCastFunction(SbkObjectType* type, SpecialCastFunction function);

LIBSHIBOKEN_API void setTypeDiscoveryFunctionV2(SbkObjectType* type, TypeDiscoveryFuncV2 function);
LIBSHIBOKEN_API void setMultipleIheritanceFunction(SbkObjectType* type, MultipleInheritanceInitFunction function);
LIBSHIBOKEN_API MultipleInheritanceInitFunction getMultipleIheritanceFunction(SbkObjectType* type);
/// Gives `type` the offsets and the cast of `other`. Ignored where `type` unites several wrapped classes, which keep
/// theirs.
LIBSHIBOKEN_API void copyMultimpleheritance(SbkObjectType* type, SbkObjectType* other);

LIBSHIBOKEN_API void setSubTypeInitHook(SbkObjectType* type, SubTypeInitHook hook);

/// Data of a library's own; the function deletes it with the type or when it is replaced.
LIBSHIBOKEN_API void setTypeUserData(SbkObjectType* type, void* data, DeleteUserDataFunc deleteFunction);
LIBSHIBOKEN_API void* getTypeUserData(SbkObjectType* type);

} // namespace ObjectType

namespace Object {

/// True for wrapper objects.
inline bool checkType(PyObject* object) { return ObjectType::checkType(Py_TYPE(object)); }

/// True for instances of Python classes derived from wrapper types.
inline bool isUserType(PyObject* object) { return ObjectType::isUserType(Py_TYPE(object)); }

/// The hash of objects that are compared by identity.
LIBSHIBOKEN_API Py_ssize_t hash(PyObject* object);

/// A new wrapper object for a C++ object, whose real type is found by its typeid name or by discovery unless
/// `isExactType` says that it is known.
LIBSHIBOKEN_API PyObject* newObject(SbkObjectType* instanceType, void* cptr, bool hasOwnership = true,
                                    bool isExactType = false, const char* typeName = nullptr);

LIBSHIBOKEN_API bool reportInvalid(SbkObject* object);

/// False, with a RuntimeError unless `throwPyError` is false, for an object whose C++ object is gone or was never made.
inline bool isValid(SbkObject* object, bool throwPyError = true)
{
    return object->d.isValid || (throwPyError && reportInvalid(object));
}
/// An object that is no wrapper object counts as valid.
inline bool isValid(PyObject* object, bool throwPyError)
{
    return !object || !checkType(object) || isValid(reinterpret_cast<SbkObject*>(object), throwPyError);
}
inline bool isValid(PyObject* object) { return isValid(object, true); }

LIBSHIBOKEN_API void setValidCpp(SbkObject* object, bool value);
LIBSHIBOKEN_API void setHasCppWrapper(SbkObject* object, bool value);
inline bool hasCppWrapper(SbkObject* object) { return object->d.hasCppWrapper; }
LIBSHIBOKEN_API bool wasCreatedByPython(SbkObject* object);
inline bool hasOwnership(SbkObject* object) { return object->d.hasOwnership; }

/// Python owns the C++ object from now on, unless another object is its parent.
LIBSHIBOKEN_API void getOwnership(SbkObject* object);
LIBSHIBOKEN_API void getOwnership(PyObject* object);
/// C++ owns the C++ object from now on. An object that reports its own death is kept until then; one that does not
/// becomes invalid, as its destruction goes unnoticed. Nothing is done for an object that Python does not own.
LIBSHIBOKEN_API void releaseOwnership(SbkObject* object);
LIBSHIBOKEN_API void releaseOwnership(PyObject* object);

/// The C++ object as `desiredType` sees it, without regard to casts.
LIBSHIBOKEN_API void* cppPointer(SbkObject* object, PyTypeObject* desiredType);
LIBSHIBOKEN_API std::vector<void*> cppPointers(SbkObject* object);
/// False with a RuntimeError when the object has, or had, a C++ object of that type.
LIBSHIBOKEN_API bool setCppPointer(SbkObject* object, PyTypeObject* desiredType, void* cptr);

/// The parent keeps the child alive; the child's C++ object is C++'s. A null or None parent takes the child out and
/// gives it back to Python. An object that would become its own ancestor is a ValueError. A sequence counts for its
/// items.
LIBSHIBOKEN_API void setParent(PyObject* parent, PyObject* child);
LIBSHIBOKEN_API void removeParent(SbkObject* child, bool giveOwnershipBack = true, bool keepReference = false);
LIBSHIBOKEN_API bool hasParentInfo(SbkObject* object);

/// The object and its children can no longer be used, except those that report their own death.
LIBSHIBOKEN_API void invalidate(SbkObject* object);
LIBSHIBOKEN_API void invalidate(PyObject* object);
LIBSHIBOKEN_API void makeValid(SbkObject* object);

/// The C++ object at `cppData` is being destroyed: its wrapper becomes invalid and is let go of by its parent and by
/// the runtime. Any thread may call, with or without the interpreter lock. `object` null means that there is no
/// wrapper.
LIBSHIBOKEN_API void destroy(SbkObject* object, void* cppData);
/// Deletes the C++ object, whoever owns it.
LIBSHIBOKEN_API void callCppDestructors(SbkObject* object);

/// Keeps `referredObject` alive under a key as long as the object; without `append` it replaces what was kept there.
LIBSHIBOKEN_API void keepReference(SbkObject* object, const char* key, PyObject* referredObject, bool append = false);
LIBSHIBOKEN_API void removeReference(SbkObject* object, const char* key, PyObject* referredObject);

LIBSHIBOKEN_API void setTypeUserData(SbkObject* object, void* data, DeleteUserDataFunc deleteFunction);
LIBSHIBOKEN_API void* getTypeUserData(SbkObject* object);

/// The state of an object for people to read.
LIBSHIBOKEN_API std::string info(SbkObject* object);

} // namespace Object

} // namespace Shiboken

#endif
