// The module functions of `probe`: the library's side of ownership, threads and conversions.
#include "probe.h"

#include <new>
#include <thread>

#define SBK_EXPORT_MODULE __attribute__((visibility("default")))

namespace probe {

namespace {

alignas(Node) char slot[sizeof(Node)];

PyTypeObject *shade, *grain, *level;
PyTypeObject* types[1];
SbkConverter* converters[1];

SbkObject* wrapper(PyObject* object) { return reinterpret_cast<SbkObject*>(object); }

PyObject* alive() { return Py_BuildValue("(iii)", Pt::alive.load(), Node::alive.load(), Label::alive.load()); }

PyObject* makeNode() { return toPython<Node>(new Node); }

PyObject* makeTagged() { return toPython<Node>(new Tagged); }

/// The same object as the library hands it out by its second base.
PyObject* asLabel(Label* label) { return toPython(label); }

/// A library object that is known under its second base only.
PyObject* makeTaggedLabel() { return toPython<Label>(new Tagged); }

PyObject* makeNodeInSlot(bool isOwned)
{
    return Shiboken::Object::newObject(&typeObject<Node>, new (slot) Node, isOwned, true);
}

void emptySlot() { reinterpret_cast<Node*>(slot)->~Node(); }

void deleteInThread(Node* node)
{
    const Unlocked unlocked;
    std::thread([node] { delete node; }).join();
}

/// What the library gets when it calls the virtual operation, from this thread or from one that Python does not know.
int callReact(Node* node, int value, bool isOtherThread)
{
    int result = 0;
    const auto react = [&] { result = node->react(value); };
    const Unlocked unlocked;
    if (isOtherThread)
        std::thread(react).join();
    else
        react();
    return result;
}

void setParent(PyObject* parent, PyObject* child) { Shiboken::Object::setParent(parent, child); }

/// The library's parent owns the child, and so it is in Python.
void adopt(PyObject* parent, PyObject* child)
{
    setParent(parent, child);
    if (!PyErr_Occurred())
        pointerOf<Node>(parent)->children.push_back(pointerOf<Node>(child));
}

void getOwnership(PyObject* object) { Shiboken::Object::getOwnership(object); }

void releaseOwnership(PyObject* object) { Shiboken::Object::releaseOwnership(object); }

void keepReference(PyObject* object, const char* key, PyObject* other, bool isAppended)
{
    Shiboken::Object::keepReference(wrapper(object), key, other, isAppended);
}

void removeReference(PyObject* object, const char* key, PyObject* other)
{
    Shiboken::Object::removeReference(wrapper(object), key, other);
}

/// From Python and back by the converter of a name, as an operation with one parameter does it.
PyObject* convert(const char* name, PyObject* value)
{
    SbkConverter* const converter = Shiboken::Conversions::getConverter(name);
    if (!converter)
        return PyErr_Format(PyExc_LookupError, "no converter named %s", name);
    const auto toCpp = Shiboken::Conversions::isPythonToCppConvertible(converter, value);
    if (!toCpp) {
        const char* signatures[] = {name, nullptr};
        const Shiboken::AutoDecRef given(PyTuple_Pack(1, value));
        Shiboken::setErrorAboutWrongArguments(given, "convert", signatures);
        return nullptr;
    }
    union {
        long long number;
        double floating;
        const char* text;
    } storage = {};
    std::string string;
    const bool isString = !std::strcmp(name, "std::string");
    toCpp(value, isString ? static_cast<void*>(&string) : &storage);
    if (PyErr_Occurred())
        return nullptr;
    const void* const result = isString                            ? static_cast<const void*>(&string)
                               : !std::strcmp(name, "const char*") ? storage.text
                                                                   : static_cast<const void*>(&storage);
    return Shiboken::Conversions::copyToPython(converter, result);
}

/// The value of a Pt that an operation gets for a `const Pt&`, and whether it was converted.
PyObject* ptValue(PyObject* object)
{
    const auto toCpp = Shiboken::Conversions::isPythonToCppReferenceConvertible(&typeObject<Pt>, object);
    if (!toCpp)
        return Py_BuildValue("");
    const bool isImplicit = Shiboken::Conversions::isImplicitConversion(&typeObject<Pt>, toCpp);
    Pt made;
    Pt* pt = &made;
    toCpp(object, isImplicit ? static_cast<void*>(pt) : &pt);
    return Py_BuildValue("(ii)", pt->x, isImplicit);
}

PyObject* sequenceOf(const char* name, PyObject* value)
{
    SbkConverter* const converter = Shiboken::Conversions::getConverter(name);
    const bool answers[] = {Shiboken::Conversions::convertibleSequenceTypes(converter, value),
                            Shiboken::Conversions::convertiblePairTypes(converter, false, converter, true, value),
                            Shiboken::Conversions::convertibleDictTypes(converter, false, converter, false, value)};
    return PyErr_Occurred() ? nullptr : Py_BuildValue("(iii)", answers[0], answers[1], answers[2]);
}

PyObject* wrongArguments(PyObject* given, PyObject* signatures)
{
    std::vector<const char*> texts;
    for (Py_ssize_t i = 0; signatures != Py_None && i < PyTuple_GET_SIZE(signatures); ++i)
        texts.push_back(PyString_AS_STRING(PyTuple_GET_ITEM(signatures, i)));
    texts.push_back(nullptr);
    Shiboken::setErrorAboutWrongArguments(given == Py_None ? nullptr : given, "mod.Cls.meth",
                                          signatures == Py_None ? nullptr : texts.data());
    return nullptr;
}

PyObject* newShade(int value) { return Shiboken::Enum::newItem(shade, value); }

PyObject* importTypes(const char* name)
{
    const Shiboken::AutoDecRef module(Shiboken::Module::import(name));
    PyTypeObject** const found = module.isNull() ? nullptr : Shiboken::Module::getTypes(module);
    return found ? PyString_FromString(found[0]->tp_name) : nullptr;
}

PyObject* importOnly(const char* name) { return Shiboken::Module::import(name); }

void warn(const char* text)
{
    Shiboken::warning(PyExc_RuntimeWarning, 1, "Invalid return value in function %s.", text);
}

/// The process ends with C++ objects whose destructors want the interpreter, which is gone by then.
void deleteAtExit(Node* node)
{
    static Node* left;
    left = node;
    std::atexit([] { delete left; });
}

/// Runs a script in an interpreter of its own, beside the one that calls.
int runInOtherInterpreter(const char* script)
{
    PyThreadState* const outer = PyThreadState_Get();
    PyThreadState* const inner = Py_NewInterpreter();
    const int status = PyRun_SimpleString(script);
    Py_EndInterpreter(inner);
    PyThreadState_Swap(outer);
    return status;
}

PyMethodDef functions[] = {define<&alive>("alive"),
                           define<&makeNode>("makeNode"),
                           define<&makeTagged>("makeTagged"),
                           define<&makeTaggedLabel>("makeTaggedLabel"),
                           define<&asLabel>("asLabel"),
                           define<&makeNodeInSlot>("makeNodeInSlot"),
                           define<&emptySlot>("emptySlot"),
                           define<&deleteInThread>("deleteInThread"),
                           define<&deleteAtExit>("deleteAtExit"),
                           define<&callReact>("callReact"),
                           define<&adopt>("adopt"),
                           define<&setParent>("setParent"),
                           define<&getOwnership>("getOwnership"),
                           define<&releaseOwnership>("releaseOwnership"),
                           define<&keepReference>("keepReference"),
                           define<&removeReference>("removeReference"),
                           define<&convert>("convert"),
                           define<&ptValue>("ptValue"),
                           define<&sequenceOf>("sequenceOf"),
                           define<&wrongArguments>("wrongArguments"),
                           define<&newShade>("newShade"),
                           define<&importTypes>("importTypes"),
                           define<&importOnly>("importOnly"),
                           define<&warn>("warn"),
                           define<&runInOtherInterpreter>("runInOtherInterpreter"),
                           {}};

bool createEnumerations(PyObject* module)
{
    using namespace Shiboken::Enum;
    SbkObjectType* const node = &typeObject<Node>;
    shade = createGlobalEnum(module, "Shade", "probe.Shade", "Shade");
    grain = createGlobalEnum(module, "Grain", "probe.Grain", "Grain");
    level = createScopedEnum(node, "Level", "probe.Node.Level", "Node::Level");
    return shade && grain && level && createGlobalEnumItem(shade, module, "ShadeNone", 0) &&
           createGlobalEnumItem(shade, module, "ShadeLight", 1) &&
           createGlobalEnumItem(shade, module, "ShadeDark", 5) && createGlobalEnumItem(shade, module, "ShadeLast", 5) &&
           createGlobalEnumItem(shade, module, "ShadeMinus", -1) && createGlobalEnumItem(grain, module, "GrainB", 1) &&
           createScopedEnumItem(level, node, "LevelOne", 1);
}

void start()
{
    PyObject* const module = Shiboken::Module::create("probe", functions);
    if (!module || !introduceClasses(module) || !createEnumerations(module))
        return;
    types[0] = pythonType<Pt>();
    Shiboken::Module::registerTypes(module, types);
    Shiboken::Module::registerTypeConverters(module, converters);
}

} // namespace
} // namespace probe

SBK_MODULE_INIT_FUNCTION_BEGIN(probe)
probe::start();
SBK_MODULE_INIT_FUNCTION_END
