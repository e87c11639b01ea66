// The classes that the extension module `probe` wraps.
#ifndef PROBE_H
#define PROBE_H

#include "wrapping.h"

#include <atomic>
#include <string>
#include <vector>

namespace probe {

using namespace wrapping;

/// Counts how many are alive.
template <typename T>
struct Counted
{
    inline static std::atomic<int> alive{0}; // objects die on any thread

    Counted() { ++alive; }
    Counted(const Counted&) { ++alive; }
    Counted& operator=(const Counted&) = default;
    virtual ~Counted() { --alive; }
};

/// A value.
struct Pt : Counted<Pt>
{
    int x;

    explicit Pt(int value = 0) : x(value) {}
};

/// An object with a virtual operation that owns its children.
struct Node : Counted<Node>
{
    std::vector<Node*> children;

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() override
    {
        for (Node* child : children)
            delete child;
    }
    virtual int react(int value) { return value + 1; }
};

struct Label : Counted<Label>
{
    std::string text = "label";

    Label() = default;
    Label(const Label&) = delete;
    Label& operator=(const Label&) = delete;
};

/// Two wrapped bases, the second of which lies behind the first.
struct Tagged : Node, Label
{};

/// Enters the classes into the module.
bool introduceClasses(PyObject* module);

} // namespace probe

#endif
