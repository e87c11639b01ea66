// The one place that knows which wrapper stands for which C++ address, how the wrapped classes derive from each other,
// and which Python method replaces a virtual one.
#ifndef BINDINGMANAGER_H
#define BINDINGMANAGER_H

#include "sbkpython.h"
#include "shibokenmacros.h"

#include <memory>
#include <set>

struct SbkObject;
struct SbkObjectType;

namespace Shiboken {

typedef void (*ObjectVisitor)(SbkObject*, void*);

class LIBSHIBOKEN_API BindingManager
{
public:
    static BindingManager& instance();

    BindingManager(const BindingManager&) = delete;
    BindingManager& operator=(const BindingManager&) = delete;

    /// Looking up an address needs no interpreter lock. Without it the answer may be out of date when it is looked at:
    /// it is good for Object::destroy, which looks again, and for nothing else.
    bool hasWrapper(const void* cptr);
    /// Borrowed, or null, also for a wrapper that is being freed.
    SbkObject* retrieveWrapper(const void* cptr);

    /// Enters an object under its address and those of its base parts. An object that Python owns is a new one: what
    /// was known at its address must have died unnoticed, and becomes invalid. Otherwise an address keeps its first
    /// wrapper.
    void registerWrapper(SbkObject* pyObj, void* cptr);
    void releaseWrapper(SbkObject* wrapper);

    /// The Python callable (new reference) that replaces a virtual operation of the object, or null without an error.
    PyObject* getOverride(const void* cptr, const char* methodName);

    void addClassInheritance(SbkObjectType* parent, SbkObjectType* child);
    /// The most derived type that discovers itself in the object; the address becomes that of the type's own part.
    SbkObjectType* resolveType(void** cptr, SbkObjectType* type);

    /// Borrowed references.
    std::set<PyObject*> getAllPyObjects();
    void visitAllPyObjects(ObjectVisitor visitor, void* data);

private:
    BindingManager();
    ~BindingManager();
    friend void forgetAddress(void* cppObject);
    struct BindingManagerPrivate;
    std::unique_ptr<BindingManagerPrivate> m_d;
};

} // namespace Shiboken

#endif
