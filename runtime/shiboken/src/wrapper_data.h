// What the runtime knows of a wrapper type, and what few wrapper objects have beside their address.
#ifndef WRAPPER_DATA_H
#define WRAPPER_DATA_H

#include "autodecref.h"
#include "basewrapper.h"

#include <cassert>
#include <string>
#include <vector>

/// The rare part of a wrapper object. Children are a list threaded through the children themselves.
struct SbkObjectExtra
{
    struct Kept
    {
        std::string key;
        PyObject* object;
    };

    SbkObject* parent = nullptr;
    SbkObject* firstChild = nullptr;
    SbkObject* lastChild = nullptr;
    SbkObject* previousSibling = nullptr;
    SbkObject* nextSibling = nullptr;
    std::vector<Kept> kept;
    std::vector<void*> cppObjects; ///< one for each part of the type, when it has several
};

namespace Shiboken {

struct TypeData : SbkObjectTypePrivate
{
    /// The wrapped classes of which an object holds one C++ object each: the type itself, or for a Python class the
    /// nearest wrapped classes that it derives from.
    std::vector<SbkObjectType*> parts;
    std::vector<SbkObjectType*> derived; ///< the wrapped classes derived from it, asked when a type is discovered

    std::string originalName;
    ObjectDestructor destroy = nullptr;
    SpecialCastFunction cast = nullptr;
    TypeDiscoveryFuncV2 discover = nullptr;
    MultipleInheritanceInitFunction findOffsets = nullptr;
    const int* offsets = nullptr;
    bool hasOneAddress = false; ///< an object is known under the address of its one C++ object only
    SubTypeInitHook initialiseSubType = nullptr;
    void* userData = nullptr;
    DeleteUserDataFunc deleteUserData = nullptr;

    TypeData() : SbkObjectTypePrivate() {}
    TypeData(const TypeData&) = delete;
    TypeData& operator=(const TypeData&) = delete;
    ~TypeData() { setUserData(nullptr, nullptr); }

    void setUserData(void* data, DeleteUserDataFunc deleteFunction)
    {
        if (deleteUserData)
            deleteUserData(userData);
        userData = data;
        deleteUserData = deleteFunction;
    }
    void noteAddresses()
    {
        isSingleAddress = parts.size() == 1 && !dataOfPart(0).cast;
        hasOneAddress = parts.size() == 1 && !dataOfPart(0).findOffsets;
    }
    TypeData& dataOfPart(std::size_t index)
    {
        assert(index < parts.size());
        return *static_cast<TypeData*>(parts[index]->d);
    }
};

inline TypeData& dataOf(SbkObjectType* type)
{
    assert(type->d); // introduced, or derived from one that was
    return *static_cast<TypeData*>(type->d);
}
inline SbkObjectType* typeOf(SbkObject* object) { return reinterpret_cast<SbkObjectType*>(Py_TYPE(object)); }
inline TypeData& typeDataOf(SbkObject* object) { return dataOf(typeOf(object)); }
inline PyTypeObject* asType(SbkObjectType* type) { return reinterpret_cast<PyTypeObject*>(type); }
inline PyObject* asObject(SbkObject* object) { return reinterpret_cast<PyObject*>(object); }

/// The place among the type's parts of the one that is a `desiredType`; the first when there is none.
std::size_t partFor(SbkObjectType* type, PyTypeObject* desiredType);

/// The rare part, made when it is missing.
SbkObjectExtra& extraOf(SbkObject* object);

/// The wrapped classes among the bases, or nearest above them.
std::vector<SbkObjectType*> partsOfBases(PyObject* bases);

inline std::size_t partCount(SbkObject* object) { return typeDataOf(object).parts.size(); }
inline void* cppObjectAt(SbkObject* object, std::size_t part)
{
    assert(part < partCount(object));
    const SbkObjectExtra* const extra = object->d.extra;
    if (extra && !extra->cppObjects.empty())
        return extra->cppObjects[part];
    return part == 0 ? object->d.cppObject : nullptr;
}
/// Of a type with several parts, the object at one of them.
void setCppObjectOfSeveral(SbkObject* object, std::size_t part, void* cppObject);
inline void setCppObjectAt(SbkObject* object, std::size_t part, void* cppObject)
{
    if (partCount(object) == 1)
        object->d.cppObject = cppObject;
    else
        setCppObjectOfSeveral(object, part, cppObject);
}

/// The C++ object of the given address is dead: the object's wrapper becomes invalid, and everybody lets go of it.
void forgetCppObject(SbkObject* object, void* cppObject);
/// The same for a wrapper object that is being freed, and in a thread that cannot have the interpreter lock any more,
/// because the interpreter ends: the wrapper object becomes invalid, and nothing is entered at the address.
void forgetAddress(void* cppObject);
/// Lets go of parent, children and kept objects. Children become invalid, but for those that report their own death.
void leaveFamily(SbkObject* object);

namespace Enum {

/// Tells pickle how to find the types of enumerations. False with an error.
bool registerForPickle();

} // namespace Enum

/// A pending error is put away for a scope in which destructors may run Python code.
class ErrorSaver
{
public:
    ErrorSaver()
    {
        if (PyErr_Occurred())
            PyErr_Fetch(&m_type, &m_value, &m_traceback);
    }
    ErrorSaver(const ErrorSaver&) = delete;
    ErrorSaver& operator=(const ErrorSaver&) = delete;
    ~ErrorSaver()
    {
        if (m_type || PyErr_Occurred())
            PyErr_Restore(m_type, m_value, m_traceback);
    }

private:
    PyObject* m_type = nullptr;
    PyObject* m_value = nullptr;
    PyObject* m_traceback = nullptr;
};

} // namespace Shiboken

#endif
