// The module functions of `probe`: the library's side of ownership, threads and conversions.
#include "probe.h"

#include <new>
#include <thread>

#define SBK_EXPORT_MODULE __attribute__((visibility("default")))

namespace probe {

namespace {

alignas(Node) char slot[sizeof(Node)];

PyTypeObject *shade, *grain, *level;
PyTypeObject* types[4];
SbkConverter* converters[4];

PyObject* none() { Py_RETURN_NONE; }

PyObject* noneOrError() { return PyErr_Occurred() ? nullptr : none(); }

SbkObject* wrapper(PyObject* object) { return reinterpret_cast<SbkObject*>(object); }

PyObject* alive(PyObject*, PyObject*) { return Py_BuildValue("(iii)", Pt::alive, Node::alive, Label::alive); }

PyObject* nodeToPython(Node* node) { return Shiboken::Conversions::pointerToPython(&nodeType, node); }

PyObject* makeNode(PyObject*, PyObject*) { return nodeToPython(new Node); }

PyObject* makeTagged(PyObject*, PyObject*) { return nodeToPython(new Tagged); }

/// The same object as the library hands it out by its second base.
PyObject* asLabel(PyObject*, PyObject* object)
{
    Label* const label = pointerOf<Label>(object, labelType);
    return Shiboken::Conversions::pointerToPython(&labelType, label);
}

/// A library object that is known under its second base only.
PyObject* makeTaggedLabel(PyObject*, PyObject*)
{
    return Shiboken::Conversions::pointerToPython(&labelType, static_cast<Label*>(new Tagged));
}

PyObject* makeNodeInSlot(PyObject*, PyObject* owned)
{
    Node* const node = new (slot) Node;
    return Shiboken::Object::newObject(&nodeType, node, PyObject_IsTrue(owned), true);
}

PyObject* emptySlot(PyObject*, PyObject*)
{
    reinterpret_cast<Node*>(slot)->~Node();
    return none();
}

PyObject* deleteInThread(PyObject*, PyObject* object)
{
    Node* const node = pointerOf<Node>(object, nodeType);
    Shiboken::ThreadStateSaver unlocked;
    unlocked.save();
    std::thread([node] { delete node; }).join();
    unlocked.restore();
    return none();
}

/// What the library gets when it calls the virtual operation, from this thread or from one that Python does not know.
PyObject* callReact(PyObject*, PyObject* arguments)
{
    PyObject* object;
    int value, result = 0, isOtherThread = 0;
    if (!PyArg_ParseTuple(arguments, "Oi|i", &object, &value, &isOtherThread))
        return nullptr;
    Node* const node = pointerOf<Node>(object, nodeType);
    Shiboken::ThreadStateSaver unlocked;
    unlocked.save();
    if (isOtherThread)
        std::thread([&] { result = node->react(value); }).join();
    else
        result = node->react(value);
    unlocked.restore();
    return PyInt_FromLong(result);
}

/// The library's parent owns the child, and so it is in Python.
PyObject* adopt(PyObject*, PyObject* arguments)
{
    PyObject *parent, *child;
    if (!PyArg_ParseTuple(arguments, "OO", &parent, &child))
        return nullptr;
    Shiboken::Object::setParent(parent, child);
    if (PyErr_Occurred())
        return nullptr;
    if (parent != Py_None)
        pointerOf<Node>(parent, nodeType)->children.push_back(pointerOf<Node>(child, nodeType));
    return none();
}

PyObject* setParent(PyObject*, PyObject* arguments)
{
    PyObject *parent, *child;
    if (!PyArg_ParseTuple(arguments, "OO", &parent, &child))
        return nullptr;
    Shiboken::Object::setParent(parent, child);
    return noneOrError();
}

PyObject* getOwnership(PyObject*, PyObject* object)
{
    Shiboken::Object::getOwnership(object);
    return none();
}

PyObject* releaseOwnership(PyObject*, PyObject* object)
{
    Shiboken::Object::releaseOwnership(object);
    return none();
}

PyObject* keepReference(PyObject*, PyObject* arguments)
{
    PyObject *object, *other;
    const char* key;
    int isAppended = 0;
    if (!PyArg_ParseTuple(arguments, "OsO|i", &object, &key, &other, &isAppended))
        return nullptr;
    Shiboken::Object::keepReference(wrapper(object), key, other, isAppended);
    return none();
}

PyObject* removeReference(PyObject*, PyObject* arguments)
{
    PyObject *object, *other;
    const char* key;
    if (!PyArg_ParseTuple(arguments, "OsO", &object, &key, &other))
        return nullptr;
    Shiboken::Object::removeReference(wrapper(object), key, other);
    return none();
}

/// From Python and back by the converter of a name, as an operation with one parameter does it.
PyObject* convert(PyObject*, PyObject* arguments)
{
    const char* name;
    PyObject* value;
    if (!PyArg_ParseTuple(arguments, "sO", &name, &value))
        return nullptr;
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
PyObject* ptValue(PyObject*, PyObject* object)
{
    const auto toCpp = Shiboken::Conversions::isPythonToCppReferenceConvertible(&ptType, object);
    if (!toCpp)
        return none();
    const bool isImplicit = Shiboken::Conversions::isImplicitConversion(&ptType, toCpp);
    Pt made;
    Pt* pt = &made;
    toCpp(object, isImplicit ? static_cast<void*>(pt) : &pt);
    return Py_BuildValue("(ii)", pt->x, isImplicit);
}

PyObject* sequenceOf(PyObject*, PyObject* arguments)
{
    const char* name;
    PyObject* value;
    if (!PyArg_ParseTuple(arguments, "sO", &name, &value))
        return nullptr;
    SbkConverter* const converter = Shiboken::Conversions::getConverter(name);
    const bool answers[] = {Shiboken::Conversions::convertibleSequenceTypes(converter, value),
                            Shiboken::Conversions::convertiblePairTypes(converter, false, converter, true, value),
                            Shiboken::Conversions::convertibleDictTypes(converter, false, converter, false, value)};
    return PyErr_Occurred() ? nullptr : Py_BuildValue("(iii)", answers[0], answers[1], answers[2]);
}

PyObject* wrongArguments(PyObject*, PyObject* arguments)
{
    PyObject *given, *signatures;
    if (!PyArg_ParseTuple(arguments, "OO", &given, &signatures))
        return nullptr;
    std::vector<const char*> texts;
    for (Py_ssize_t i = 0; signatures != Py_None && i < PyTuple_GET_SIZE(signatures); ++i)
        texts.push_back(PyString_AS_STRING(PyTuple_GET_ITEM(signatures, i)));
    texts.push_back(nullptr);
    const bool isNone = given == Py_None;
    Shiboken::setErrorAboutWrongArguments(isNone ? nullptr : given, "mod.Cls.meth",
                                          signatures == Py_None ? nullptr : texts.data());
    return nullptr;
}

PyObject* newShade(PyObject*, PyObject* value) { return Shiboken::Enum::newItem(shade, PyInt_AsLong(value)); }

PyObject* importTypes(PyObject*, PyObject* name)
{
    const Shiboken::AutoDecRef module(Shiboken::Module::import(PyString_AS_STRING(name)));
    PyTypeObject** const found = module.isNull() ? nullptr : Shiboken::Module::getTypes(module);
    return found ? PyString_FromString(found[0]->tp_name) : nullptr;
}

PyObject* importOnly(PyObject*, PyObject* name) { return Shiboken::Module::import(PyString_AS_STRING(name)); }

PyObject* warn(PyObject*, PyObject* text)
{
    const char* const format = "Invalid return value in function %s.";
    return Shiboken::warning(PyExc_RuntimeWarning, 1, format, PyString_AS_STRING(text)) < 0 ? nullptr : none();
}

/// The process ends with C++ objects whose destructors want the interpreter, which is gone by then.
PyObject* deleteAtExit(PyObject*, PyObject* object)
{
    static Node* left;
    left = pointerOf<Node>(object, nodeType);
    std::atexit([] { delete left; });
    return none();
}

} // namespace

PyMethodDef functions[] = {{"alive", &alive, METH_NOARGS, nullptr},
                           {"makeNode", &makeNode, METH_NOARGS, nullptr},
                           {"makeTagged", &makeTagged, METH_NOARGS, nullptr},
                           {"makeTaggedLabel", &makeTaggedLabel, METH_NOARGS, nullptr},
                           {"asLabel", &asLabel, METH_O, nullptr},
                           {"makeNodeInSlot", &makeNodeInSlot, METH_O, nullptr},
                           {"emptySlot", &emptySlot, METH_NOARGS, nullptr},
                           {"deleteInThread", &deleteInThread, METH_O, nullptr},
                           {"deleteAtExit", &deleteAtExit, METH_O, nullptr},
                           {"callReact", &callReact, METH_VARARGS, nullptr},
                           {"adopt", &adopt, METH_VARARGS, nullptr},
                           {"setParent", &setParent, METH_VARARGS, nullptr},
                           {"getOwnership", &getOwnership, METH_O, nullptr},
                           {"releaseOwnership", &releaseOwnership, METH_O, nullptr},
                           {"keepReference", &keepReference, METH_VARARGS, nullptr},
                           {"removeReference", &removeReference, METH_VARARGS, nullptr},
                           {"convert", &convert, METH_VARARGS, nullptr},
                           {"ptValue", &ptValue, METH_O, nullptr},
                           {"sequenceOf", &sequenceOf, METH_VARARGS, nullptr},
                           {"wrongArguments", &wrongArguments, METH_VARARGS, nullptr},
                           {"newShade", &newShade, METH_O, nullptr},
                           {"importTypes", &importTypes, METH_O, nullptr},
                           {"importOnly", &importOnly, METH_O, nullptr},
                           {"warn", &warn, METH_O, nullptr},
                           {nullptr, nullptr, 0, nullptr}};

namespace {

bool createEnumerations(PyObject* module)
{
    using namespace Shiboken::Enum;
    shade = createGlobalEnum(module, "Shade", "probe.Shade", "Shade");
    grain = createGlobalEnum(module, "Grain", "probe.Grain", "Grain");
    level = createScopedEnum(&nodeType, "Level", "probe.Node.Level", "Node::Level");
    return shade && grain && level && createGlobalEnumItem(shade, module, "ShadeNone", 0) &&
           createGlobalEnumItem(shade, module, "ShadeLight", 1) &&
           createGlobalEnumItem(shade, module, "ShadeDark", 5) && createGlobalEnumItem(shade, module, "ShadeLast", 5) &&
           createGlobalEnumItem(shade, module, "ShadeMinus", -1) && createGlobalEnumItem(grain, module, "GrainB", 1) &&
           createScopedEnumItem(level, &nodeType, "LevelOne", 1);
}

} // namespace
} // namespace probe

SBK_MODULE_INIT_FUNCTION_BEGIN(probe)
PyObject* const module = Shiboken::Module::create("probe", probe::functions);
if (!module || !probe::introduceClasses(module) || !probe::createEnumerations(module))
    return;
probe::types[0] = reinterpret_cast<PyTypeObject*>(&probe::ptType);
Shiboken::Module::registerTypes(module, probe::types);
Shiboken::Module::registerTypeConverters(module, probe::converters);
SBK_MODULE_INIT_FUNCTION_END
