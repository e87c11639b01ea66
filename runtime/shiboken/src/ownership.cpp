// Who owns the C++ object behind a wrapper, what keeps which wrapper alive, and what happens when the C++ object dies.
#include "bindingmanager.h"
#include "gilstate.h"
#include "wrapper_data.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstring>

namespace Shiboken {

namespace {

SbkObject* asWrapper(PyObject* object)
{
    return object && Object::checkType(object) ? reinterpret_cast<SbkObject*>(object) : nullptr;
}

void hold(SbkObject* object)
{
    if (object->d.isHeld)
        return;
    assert(!object->d.hasOwnership); // what is held for C++'s sake is not Python's to delete
    object->d.isHeld = true;
    Py_INCREF(object);
}

void letGo(SbkObject* object)
{
    if (!object->d.isHeld)
        return;
    object->d.isHeld = false;
    Py_DECREF(object);
}

void addChild(SbkObject* parent, SbkObject* child)
{
    SbkObjectExtra& family = extraOf(parent);
    SbkObjectExtra& own = extraOf(child);
    assert(!own.parent);
    own.parent = parent;
    own.previousSibling = family.lastChild;
    own.nextSibling = nullptr;
    (family.lastChild ? family.lastChild->d.extra->nextSibling : family.firstChild) = child;
    family.lastChild = child;
    Py_INCREF(child);
}

/// The parent's reference becomes the caller's.
void takeChildOut(SbkObject* child)
{
    SbkObjectExtra& own = *child->d.extra;
    assert(own.parent && own.parent->d.extra);
    SbkObjectExtra& family = *own.parent->d.extra;
    (own.previousSibling ? own.previousSibling->d.extra->nextSibling : family.firstChild) = own.nextSibling;
    (own.nextSibling ? own.nextSibling->d.extra->previousSibling : family.lastChild) = own.previousSibling;
    own.parent = own.previousSibling = own.nextSibling = nullptr;
}

SbkObject* parentOf(SbkObject* object) { return object->d.extra ? object->d.extra->parent : nullptr; }

bool isItselfOrBelow(SbkObject* object, SbkObject* ancestor)
{
    for (; object; object = parentOf(object)) {
        if (object == ancestor)
            return true;
    }
    return false;
}

void releaseChildren(SbkObject* parent)
{
    while (parent->d.extra && parent->d.extra->firstChild) {
        SbkObject* const child = parent->d.extra->firstChild;
        Object::invalidate(child);
        Object::removeParent(child, false, true);
    }
}

void dropKept(SbkObject* object, const char* key)
{
    std::vector<SbkObjectExtra::Kept>& all = object->d.extra->kept;
    const auto first =
        std::stable_partition(all.begin(), all.end(), [key](const auto& each) { return each.key != key; });
    const std::vector<SbkObjectExtra::Kept> dropped(first, all.end());
    all.erase(first, all.end());
    for (const SbkObjectExtra::Kept& each : dropped)
        Py_DECREF(each.object);
}

void setParentOfItems(PyObject* parent, PyObject* children)
{
    const AutoDecRef items(PySequence_Fast(children, "children must be objects or a sequence of objects"));
    for (Py_ssize_t i = 0; !items.isNull() && i < PySequence_Fast_GET_SIZE(items.object()); ++i) {
        PyObject* const child = PySequence_Fast_GET_ITEM(items.object(), i);
        if (Object::checkType(child))
            Object::setParent(parent, child);
    }
}

} // namespace

void leaveFamily(SbkObject* object)
{
    if (!object->d.extra)
        return;
    releaseChildren(object);
    if (parentOf(object))
        Object::removeParent(object, false);
    std::vector<SbkObjectExtra::Kept> kept;
    kept.swap(object->d.extra->kept);
    for (const SbkObjectExtra::Kept& each : kept)
        Py_DECREF(each.object);
}

void forgetCppObject(SbkObject* object, void* cppObject)
{
    assert(GilState::isHeld());
    const AutoDecRef guard(asObject(object));
    Py_INCREF(object);
    BindingManager::instance().releaseWrapper(object);
    object->d.isValid = false;
    bool isAnyLeft = false;
    for (std::size_t part = 0; part < partCount(object); ++part) {
        if (cppObjectAt(object, part) == cppObject || partCount(object) == 1)
            setCppObjectAt(object, part, nullptr);
        isAnyLeft = isAnyLeft || cppObjectAt(object, part);
    }
    if (!isAnyLeft)
        object->d.hasOwnership = false;
    leaveFamily(object);
    letGo(object);
}

namespace Object {

void getOwnership(SbkObject* object)
{
    if (!object || object->d.hasOwnership || hasParentInfo(object))
        return;
    object->d.hasOwnership = true;
    if (object->d.hasCppWrapper)
        letGo(object);
    else
        makeValid(object);
}

void getOwnership(PyObject* object) { getOwnership(asWrapper(object)); }

void releaseOwnership(SbkObject* object)
{
    if (!object || !object->d.hasOwnership)
        return;
    object->d.hasOwnership = false;
    if (object->d.hasCppWrapper)
        hold(object);
    else
        invalidate(object);
}

void releaseOwnership(PyObject* object) { releaseOwnership(asWrapper(object)); }

void setParent(PyObject* parent, PyObject* child)
{
    if (!child || child == Py_None || child == parent)
        return;
    if (!checkType(child)) {
        if (PySequence_Check(child) && !PyString_Check(child) && !PyUnicode_Check(child))
            setParentOfItems(parent, child);
        return;
    }
    SbkObject* const own = reinterpret_cast<SbkObject*>(child);
    SbkObject* const newParent = asWrapper(parent);
    if (!newParent) {
        removeParent(own);
        return;
    }
    if (parentOf(own) == newParent)
        return;
    if (isItselfOrBelow(newParent, own)) {
        PyErr_Format(PyExc_ValueError, "an object of type %.100s cannot become its own ancestor",
                     Py_TYPE(own)->tp_name);
        return;
    }
    const AutoDecRef guard(child);
    Py_INCREF(child);
    if (parentOf(own))
        removeParent(own, false);
    addChild(newParent, own);
    own->d.hasOwnership = false;
    // The parent keeps it from now on.
    letGo(own);
}

void removeParent(SbkObject* child, bool giveOwnershipBack, bool keepReference)
{
    if (!parentOf(child))
        return;
    takeChildOut(child);
    if (keepReference && child->d.hasCppWrapper && child->d.isValid)
        hold(child);
    else if (giveOwnershipBack)
        child->d.hasOwnership = true;
    Py_DECREF(child);
}

bool hasParentInfo(SbkObject* object) { return parentOf(object); }

void invalidate(SbkObject* object)
{
    if (!object)
        return;
    if (!object->d.hasCppWrapper) {
        BindingManager::instance().releaseWrapper(object);
        object->d.isValid = false;
    }
    for (SbkObject* child = object->d.extra ? object->d.extra->firstChild : nullptr; child;
         child = child->d.extra->nextSibling)
        invalidate(child);
}

void invalidate(PyObject* object) { invalidate(asWrapper(object)); }

void makeValid(SbkObject* object)
{
    if (!object || object->d.isValid || !cppObjectAt(object, 0))
        return;
    object->d.isValid = true;
    BindingManager::instance().registerWrapper(object, cppObjectAt(object, 0));
    for (SbkObject* child = object->d.extra ? object->d.extra->firstChild : nullptr; child;
         child = child->d.extra->nextSibling)
        makeValid(child);
}

void destroy(SbkObject* object, void* cppData)
{
    if (!object && !BindingManager::instance().hasWrapper(cppData))
        return;
    const GilState lock;
    // Until the lock was there the wrapper may have gone, and its place in memory may be another object's.
    SbkObject* const current = GilState::isHeld() ? BindingManager::instance().retrieveWrapper(cppData) : nullptr;
    if (!current)
        return forgetAddress(cppData);
    const ErrorSaver errors;
    forgetCppObject(current, cppData);
}

void keepReference(SbkObject* object, const char* key, PyObject* referredObject, bool append)
{
    if (!referredObject || (referredObject == Py_None && append))
        return;
    SbkObjectExtra& extra = extraOf(object);
    Py_INCREF(referredObject);
    if (!append)
        dropKept(object, key);
    if (referredObject == Py_None)
        Py_DECREF(referredObject);
    else
        extra.kept.push_back({key, referredObject});
}

void removeReference(SbkObject* object, const char* key, PyObject* referredObject)
{
    if (!object->d.extra)
        return;
    std::vector<SbkObjectExtra::Kept>& all = object->d.extra->kept;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [=](const auto& each) { return each.object == referredObject && each.key == key; });
    if (found == all.end())
        return;
    all.erase(found);
    Py_DECREF(referredObject);
}

namespace {

std::string representation(PyObject* object)
{
    const AutoDecRef text(PyObject_Repr(object));
    if (!text.isNull())
        return PyString_AS_STRING(text.object());
    PyErr_Clear();
    return std::string("<") + Py_TYPE(object)->tp_name + ">";
}

std::string addresses(SbkObject* object)
{
    std::string text;
    char address[32];
    for (std::size_t part = 0; part < partCount(object); ++part) {
        std::snprintf(address, sizeof address, "%p", cppObjectAt(object, part));
        text += std::string(asType(typeDataOf(object).parts[part])->tp_name) + '/' + address + ' ';
    }
    return text;
}

} // namespace

std::string info(SbkObject* object)
{
    const auto flag = [](const char* name, bool value) { return std::string(name) + (value ? "1\n" : "0\n"); };
    const bool wasInitialised = object->d.wasCreatedByPython || !isUserType(asObject(object));
    const bool isDeleted = !object->d.isValid && wasInitialised && !cppObjectAt(object, 0);
    std::string text = "C++ address....... " + (isDeleted ? std::string("<<Deleted>>") : addresses(object)) + '\n';
    text += flag("hasOwnership...... ", object->d.hasOwnership);
    text += flag("containsCppWrapper ", object->d.hasCppWrapper);
    text += flag("validCppObject.... ", object->d.isValid);
    text += flag("wasCreatedByPython ", object->d.wasCreatedByPython);
    const SbkObjectExtra* const extra = object->d.extra;
    if (!extra)
        return text;
    if (extra->parent)
        text += "parent............ " + representation(asObject(extra->parent)) + '\n';
    if (extra->firstChild) {
        text += "children.......... ";
        for (SbkObject* child = extra->firstChild; child; child = child->d.extra->nextSibling)
            text += representation(asObject(child)) + ' ';
        text += '\n';
    }
    if (!extra->kept.empty()) {
        text += "referred objects.. ";
        for (const SbkObjectExtra::Kept& kept : extra->kept)
            text += '"' + kept.key + "\" => " + representation(kept.object) + ' ';
        text += '\n';
    }
    return text;
}

} // namespace Object
} // namespace Shiboken
