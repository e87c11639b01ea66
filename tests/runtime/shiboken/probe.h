// The classes that the extension module `probe` wraps, and the places of their types.
#ifndef PROBE_H
#define PROBE_H

#include <cstring>
#include <shiboken.h>
#include <string>
#include <vector>

namespace probe {

/// A value. Counts how many are alive, as do the others.
struct Pt
{
    static int alive;
    int x = 0;

    explicit Pt(int value = 0) : x(value) { ++alive; }
    Pt(const Pt& other) : x(other.x) { ++alive; }
    Pt& operator=(const Pt&) = default;
    virtual ~Pt() { --alive; }
};

/// An object with a virtual operation that owns its children.
struct Node
{
    static int alive;
    std::vector<Node*> children;

    Node() { ++alive; }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    virtual ~Node()
    {
        for (Node* child : children)
            delete child;
        --alive;
    }
    virtual int react(int value) { return value + 1; }
};

struct Label
{
    static int alive;
    std::string text = "label";

    Label() { ++alive; }
    Label(const Label&) = delete;
    Label& operator=(const Label&) = delete;
    virtual ~Label() { --alive; }
};

/// Two wrapped bases, the second of which lies behind the first.
struct Tagged : Node, Label
{};

extern SbkObjectType ptType, nodeType, labelType, taggedType;

/// Enters the classes into the module.
bool introduceClasses(PyObject* module);

/// Module functions by which tests reach the runtime's C++ interface.
extern PyMethodDef functions[];

template <typename T>
T* pointerOf(PyObject* object, SbkObjectType& type)
{
    return static_cast<T*>(Shiboken::Conversions::cppPointer(reinterpret_cast<PyTypeObject*>(&type),
                                                             reinterpret_cast<SbkObject*>(object)));
}

} // namespace probe

#endif
