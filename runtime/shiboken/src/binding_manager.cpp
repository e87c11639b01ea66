// Which wrapper stands for which address, and which Python method replaces a virtual operation.
#include "address_map.h"
#include "bindingmanager.h"
#include "gilstate.h"
#include "wrapper_data.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <pthread.h>
#include <sched.h>

namespace Shiboken {

namespace {

/// Held for a few instructions at a time, so that waiting for it costs less than going to sleep.
class BriefLock
{
public:
    void lock()
    {
        for (int tries = 0; m_taken.exchange(true, std::memory_order_acquire); ++tries) {
            if (tries > 100)
                sched_yield();
        }
    }
    void unlock() { m_taken.store(false, std::memory_order_release); }

private:
    std::atomic<bool> m_taken{false};
};

/// Calls a function with each address under which an object is known.
template <typename Function>
void forEachAddress(SbkObject* object, std::size_t part, Function function)
{
    char* const cppObject = static_cast<char*>(cppObjectAt(object, part));
    if (!cppObject)
        return;
    function(cppObject);
    TypeData& data = typeDataOf(object).dataOfPart(part);
    if (!data.offsets && data.findOffsets)
        data.offsets = data.findOffsets(cppObject);
    for (const int* offset = data.offsets; offset && *offset != -1; ++offset) {
        if (*offset > 0)
            function(cppObject + *offset);
    }
}

SbkObjectType* mostDerived(void** cppObject, SbkObjectType* type, SbkObjectType* known)
{
    for (SbkObjectType* derived : dataOf(type).derived) {
        if (SbkObjectType* const found = mostDerived(cppObject, derived, known))
            return found;
    }
    const TypeDiscoveryFuncV2 discover = dataOf(type).discover;
    void* const discovered = discover && type != known ? discover(*cppObject, known) : nullptr;
    if (!discovered)
        return nullptr;
    *cppObject = discovered;
    return type;
}

} // namespace

namespace {

/// Its last reference is gone. It stays entered, for the sake of C++ objects that die in the meantime, and is not found
/// any more.
bool isBeingFreed(SbkObject* wrapper) { return Py_REFCNT(wrapper) <= 0; }

} // namespace

struct BindingManager::BindingManagerPrivate
{
    BriefLock lock;
    AddressMap wrappers;

    /// A wrapper that owns takes the place of one that is there: that one's C++ object must be dead. One that does not
    /// own comes too late for an object whose own wrapper is being freed, and will delete it.
    void enter(void* address, SbkObject* wrapper)
    {
        SbkObject* known;
        {
            const std::lock_guard<BriefLock> guard(lock);
            known = wrappers.enter(address, wrapper);
        }
        if (!known || known == wrapper)
            return;
        if (!wrapper->d.hasOwnership) {
            wrapper->d.isValid = !isBeingFreed(known);
            return;
        }
        if (isBeingFreed(known))
            forgetAddress(address);
        else
            forgetCppObject(known, address);
        const std::lock_guard<BriefLock> guard(lock);
        wrappers.set(address, wrapper);
    }

    void erase(void* address, SbkObject* wrapper)
    {
        const std::lock_guard<BriefLock> guard(lock);
        wrappers.erase(address, wrapper);
    }
};

BindingManager::BindingManager() : m_d(new BindingManagerPrivate)
{
    // A process forks with the interpreter lock held, so nothing is half written; a reader of another thread may hold
    // the lock, and does not exist in the child.
    pthread_atfork(nullptr, nullptr, [] { instance().m_d->lock.unlock(); });
}

BindingManager::~BindingManager() = default;

BindingManager& BindingManager::instance()
{
    // Never destroyed: C++ objects die until the very end of the process.
    static BindingManager* const manager = new BindingManager;
    return *manager;
}

bool BindingManager::hasWrapper(const void* cptr)
{
    const std::lock_guard<BriefLock> guard(m_d->lock);
    return m_d->wrappers.find(cptr);
}

SbkObject* BindingManager::retrieveWrapper(const void* cptr)
{
    const std::lock_guard<BriefLock> guard(m_d->lock);
    SbkObject* const wrapper = m_d->wrappers.find(cptr);
    return wrapper && !isBeingFreed(wrapper) ? wrapper : nullptr;
}

void BindingManager::registerWrapper(SbkObject* pyObj, void* cptr)
{
    const TypeData& data = typeDataOf(pyObj);
    if (data.hasOneAddress) {
        if (cptr && pyObj->d.cppObject == cptr)
            m_d->enter(cptr, pyObj);
        return;
    }
    for (std::size_t part = 0; part < data.parts.size(); ++part) {
        if (cppObjectAt(pyObj, part) == cptr)
            forEachAddress(pyObj, part, [&](void* address) { m_d->enter(address, pyObj); });
    }
}

void BindingManager::releaseWrapper(SbkObject* wrapper)
{
    const TypeData& data = typeDataOf(wrapper);
    if (data.hasOneAddress) {
        if (wrapper->d.cppObject)
            m_d->erase(wrapper->d.cppObject, wrapper);
        return;
    }
    for (std::size_t part = 0; part < data.parts.size(); ++part)
        forEachAddress(wrapper, part, [&](void* address) { m_d->erase(address, wrapper); });
}

namespace {

/// A class further up defines the name otherwise than the function that was found.
bool replacesAnother(PyObject* function, PyTypeObject* type, PyObject* name)
{
    PyObject* const classes = type->tp_mro;
    for (Py_ssize_t i = 1; i < PyTuple_GET_SIZE(classes) - 1; ++i) {
        PyObject* const each = PyTuple_GET_ITEM(classes, i);
        PyObject* const attributes = PyType_Check(each) ? reinterpret_cast<PyTypeObject*>(each)->tp_dict : nullptr;
        PyObject* const other = attributes ? PyDict_GetItem(attributes, name) : nullptr;
        if (other && other != function)
            return true;
    }
    return false;
}

} // namespace

PyObject* BindingManager::getOverride(const void* cptr, const char* methodName)
{
    // Nothing of Python can be called by other threads when the interpreter ends.
    if (!Py_IsInitialized() && !GilState::isHeld())
        return nullptr;
    SbkObject* const wrapper = retrieveWrapper(cptr);
    if (!wrapper)
        return nullptr;
    if (!typeOf(wrapper)->d->isUserType)
        return nullptr;
    const AutoDecRef name(PyString_InternFromString(methodName));
    if (name.isNull()) {
        PyErr_Clear();
        return nullptr;
    }
    // Only a class replaces: an attribute of the object is no method.
    PyObject* const function = _PyType_Lookup(Py_TYPE(wrapper), name);
    if (!function || !PyFunction_Check(function) || !replacesAnother(function, Py_TYPE(wrapper), name))
        return nullptr;
    PyObject* const method = PyMethod_New(function, asObject(wrapper), reinterpret_cast<PyObject*>(Py_TYPE(wrapper)));
    if (!method)
        PyErr_Clear();
    return method;
}

void forgetAddress(void* cppObject)
{
    BindingManager& manager = BindingManager::instance();
    const std::lock_guard<BriefLock> guard(manager.m_d->lock);
    SbkObject* const wrapper = manager.m_d->wrappers.find(cppObject);
    if (!wrapper)
        return;
    for (std::size_t part = 0; part < partCount(wrapper); ++part) {
        if (cppObjectAt(wrapper, part) != cppObject)
            continue;
        forEachAddress(wrapper, part, [&](void* address) { manager.m_d->wrappers.erase(address, wrapper); });
        setCppObjectAt(wrapper, part, nullptr);
    }
    wrapper->d.isValid = false;
    manager.m_d->wrappers.erase(cppObject, wrapper);
}

void BindingManager::addClassInheritance(SbkObjectType* parent, SbkObjectType* child)
{
    std::vector<SbkObjectType*>& derived = dataOf(parent).derived;
    if (std::find(derived.begin(), derived.end(), child) == derived.end())
        derived.push_back(child);
}

SbkObjectType* BindingManager::resolveType(void** cptr, SbkObjectType* type)
{
    SbkObjectType* const found = mostDerived(cptr, type, type);
    return found ? found : type;
}

std::set<PyObject*> BindingManager::getAllPyObjects()
{
    std::set<PyObject*> objects;
    const std::lock_guard<BriefLock> guard(m_d->lock);
    for (const AddressMap::Entry& entry : m_d->wrappers.entries()) {
        if (entry.address && !isBeingFreed(entry.wrapper))
            objects.insert(asObject(entry.wrapper));
    }
    return objects;
}

void BindingManager::visitAllPyObjects(ObjectVisitor visitor, void* data)
{
    for (PyObject* object : getAllPyObjects()) {
        // A visitor may make others go away; those that are left are still entered.
        if (getAllPyObjects().count(object))
            visitor(reinterpret_cast<SbkObject*>(object), data);
    }
}

} // namespace Shiboken
