// How a Python call reaches the library and comes back: the descriptors of operations, and the one function that runs
// them.
#ifndef BINDING_CALL_PROTOCOL_H
#define BINDING_CALL_PROTOCOL_H

#include <cstddef>
#include <interpreter_scopes.h>

namespace binding {

typedef void (*FromPython)(PyObject* object, void* value);

// A parameter of one signature.
struct FormalParameter
{
    const char* keyword;     // null for a required parameter, which has no keyword name
    const char* defaultText; // as signatures show it; null for a required parameter
    FromPython (*accepts)(PyObject*);
    const char* (*text)(); // the type's name in signatures
};

// The argument that a call passes for one parameter.
struct Argument
{
    PyObject* object; // held by the call; null: take the default
    FromPython convert;
};

// Converts the arguments and calls the library. Gives the result as a new reference (a PyObject*, or for a constructor
// the new library object), or null with an error pending. A conversion may run a script's code, which may destroy what
// the call is about: library objects are looked up, as one of `type` for `self`, when the last argument is converted.
typedef void* (*Invoke)(PyObject* self, PyTypeObject* type, const Argument* arguments);

struct Signature
{
    const FormalParameter* parameters;
    int count;
    int required;
    Invoke invoke;
    bool testedFirst;        // among several: its test comes before those of the ones listed above it
    PyObject** keywordNames; // interned names of the parameters, null for those without a keyword
};

// How the interpreter passes the arguments of an operation, and how they are counted.
enum class Form {
    NoArguments, // the interpreter refuses any
    One,         // the interpreter passes exactly one
    Positional,  // no keywords; counted by the interpreter's tuple unpacking
    Keywords,    // counted: positional and keyword arguments together at most, positional ones at least
    // Constructors:
    CopyOnly,  // as Positional, but keywords are not looked at
    AtMost,    // positional and keyword arguments together are counted against the most
    AtLeast,   // positional arguments are counted against the least, the parser counts the most
    Uncounted, // the parser counts the most
    Ignored,   // whatever is given is not looked at
};

// One method or constructor, as scripts call it.
struct Operation
{
    const char* className; // full Python name: "vireo.project.Clip"
    const char* name;      // of the method; null for a constructor
    Form form;
    const Signature* signatures; // in the order in which error messages list them
    int signatureCount;
    int least; // arguments, over all signatures
    int most;
    PyTypeObject* const* type; // the class's; filled at registration
};

// No operation has more parameters.
constexpr int maximumParameters = 11;

// Runs a method. `arguments` is what the interpreter passes for the operation's form: null, the one argument, or the
// tuple; `keywords` is null or a dict.
PyObject* call(const Operation& operation, PyObject* self, PyObject* arguments, PyObject* keywords = nullptr);

// The same for a function of the class, which has no object.
PyObject* callStatic(const Operation& operation, PyObject* arguments, PyObject* keywords = nullptr);

// What becomes of a library object that a constructor has made.
struct Making
{
    ObjectDestructor destroy; // for one that could not be attached
    bool isWrapper;           // it is of the class that hands virtual operations to Python overrides
    // What is to be done once it is attached, or null. False with an error.
    bool (*finish)(const Operation& operation, PyObject* self, void* object, PyObject* keywords);
};

// Runs a constructor on an object that is not initialised yet: makes the library object and attaches it. Returns 1, or
// -1 with an error.
int construct(const Operation& operation, PyObject* self, PyObject* arguments, PyObject* keywords,
              const Making& making);

// Interns the operation's keyword names; once, before its first call. False with an error.
bool prepare(const Operation& operation);

// Raises the error for a wrapper object with several wrapped base classes when the one that is asked for was never
// initialised.
void* raiseNotInitialised(PyObject* self);

// The library object of a wrapper object, as one of the type; null, with the runtime's RuntimeError, when there is
// none.
inline void* libraryObject(PyObject* self, PyTypeObject* type)
{
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    if (!Shiboken::Object::isValid(wrapper))
        return nullptr;
    void* const object = Shiboken::Conversions::cppPointer(type, wrapper);
    return object ? object : raiseNotInitialised(self);
}

} // namespace binding

#endif
