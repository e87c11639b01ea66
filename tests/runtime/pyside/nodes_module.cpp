// The Python module `nodes`: Node wrapped by hand, with the means that every extension module has.
#include "node.h"

#include <pyside.h>
#include <pyside_qtcore_python.h>
#include <pysidesignal.h>
#include <sbkpython.h>
#include <shiboken.h>
#include <thread>

PyTypeObject** SbkPySide_QtCoreTypes = nullptr;
SbkConverter** SbkPySide_QtCoreTypeConverters = nullptr;

namespace {

using namespace Shiboken;

SbkObjectType nodeType = {};
PyTypeObject* const pythonType = &nodeType.super.ht_type;
Node* theRoot = nullptr;
std::thread emitter;

class NodeShim : public Node
{
public:
    ~NodeShim() override
    {
        if (SbkObject* const wrapper = BindingManager::instance().retrieveWrapper(this))
            Object::destroy(wrapper, this);
    }
};

Node* nodeOf(PyObject* self)
{
    return Object::isValid(self)
               ? static_cast<Node*>(Conversions::cppPointer(pythonType, reinterpret_cast<SbkObject*>(self)))
               : nullptr;
}

template <class Function>
PyObject* unlocked(Function function)
{
    ThreadStateSaver saver;
    saver.save();
    function();
    saver.restore();
    Py_RETURN_NONE;
}

int initialise(PyObject* self, PyObject*, PyObject*)
{
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    Node* const node = new NodeShim;
    if (!Object::setCppPointer(wrapper, pythonType, node)) {
        delete node;
        return -1;
    }
    Object::setValidCpp(wrapper, true);
    Object::setHasCppWrapper(wrapper, true);
    BindingManager::instance().registerWrapper(wrapper, node);
    return 0;
}

PyObject* root(PyObject*, PyObject*)
{
    if (!theRoot)
        theRoot = new Node;
    return Conversions::pointerToPython(&nodeType, theRoot);
}

PyObject* deleteRoot(PyObject*, PyObject*)
{
    return unlocked([] {
        delete theRoot;
        theRoot = nullptr;
    });
}

// A child of the root's that is known as a plain QObject.
PyObject* makeChild(PyObject*, PyObject*)
{
    QObject* const child = new Node(theRoot);
    return Conversions::pointerToPython(reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]),
                                        child);
}

PyObject* emitAll(PyObject* self, PyObject*)
{
    Node* const node = nodeOf(self);
    return node ? unlocked([node] { node->emitAll(); }) : nullptr;
}

// Emits levelChanged() from a thread of the library's own, and waits for it.
PyObject* emitFromThread(PyObject* self, PyObject* count)
{
    Node* const node = nodeOf(self);
    const long most = PyInt_AsLong(count);
    if (!node || PyErr_Occurred())
        return nullptr;
    return unlocked([=] {
        std::thread([=] {
            for (int i = 0; i < most; ++i)
                emit node->levelChanged(i);
        }).join();
    });
}

PyObject* startEmitting(PyObject* self, PyObject* count)
{
    Node* const node = nodeOf(self);
    const long most = PyInt_AsLong(count);
    if (!node || PyErr_Occurred())
        return nullptr;
    emitter = std::thread([=] {
        for (int i = 0; i < most; ++i)
            emit node->named("n", i);
    });
    Py_RETURN_NONE;
}

PyObject* finishEmitting(PyObject*, PyObject*)
{
    return unlocked([] { emitter.join(); });
}

PyObject* setModeProperty(PyObject* self, PyObject*)
{
    if (Node* const node = nodeOf(self))
        node->setProperty("mode", QVariant::fromValue(SecondMode));
    Py_RETURN_NONE;
}

PyMethodDef methods[] = {{"root", &root, METH_NOARGS | METH_STATIC, nullptr},
                         {"deleteRoot", &deleteRoot, METH_NOARGS | METH_STATIC, nullptr},
                         {"makeChild", &makeChild, METH_NOARGS | METH_STATIC, nullptr},
                         {"emitAll", &emitAll, METH_NOARGS, nullptr},
                         {"emitFromThread", &emitFromThread, METH_O, nullptr},
                         {"startEmitting", &startEmitting, METH_O, nullptr},
                         {"finishEmitting", &finishEmitting, METH_NOARGS, nullptr},
                         {"setModeProperty", &setModeProperty, METH_NOARGS, nullptr},
                         {}};

// --- Registration ---------------------------------------------------------------------------------------------------

void pointerFromPython(PyObject* object, void* pointer) { *static_cast<Node**>(pointer) = nodeOf(object); }

Conversions::PythonToCppFunc acceptsPointer(PyObject* object)
{
    if (object == Py_None)
        return &Conversions::nonePythonToCppNullPtr;
    return PyObject_TypeCheck(object, pythonType) ? &pointerFromPython : nullptr;
}

PyObject* pointerToPython(const void* node)
{
    if (SbkObject* const known = BindingManager::instance().retrieveWrapper(node)) {
        Py_INCREF(known);
        return reinterpret_cast<PyObject*>(known);
    }
    return Object::newObject(&nodeType, const_cast<void*>(node), false, false, typeid(Node).name());
}

void* discover(void* address, SbkObjectType* knownAs)
{
    if (knownAs != reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]))
        return nullptr;
    return dynamic_cast<Node*>(static_cast<QObject*>(address));
}

bool registerNode(PyObject* module)
{
    PyTypeObject* const base = SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX];
    Py_REFCNT(pythonType) = 1;
    Py_TYPE(pythonType) = &SbkObjectType_Type;
    pythonType->tp_name = "nodes.Node";
    pythonType->tp_basicsize = sizeof(SbkObject);
    pythonType->tp_dealloc = &SbkDeallocWrapper;
    pythonType->tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC;
    pythonType->tp_traverse = SbkObject_Type.super.ht_type.tp_traverse;
    pythonType->tp_clear = SbkObject_Type.super.ht_type.tp_clear;
    pythonType->tp_methods = methods;
    pythonType->tp_init = &initialise;
    pythonType->tp_new = &SbkObjectTpNew;
    if (!ObjectType::introduceWrapperType(module, "Node", "Node*", &nodeType, &callCppDestructor<Node>,
                                          reinterpret_cast<SbkObjectType*>(base)))
        return false;
    SbkConverter* const converter =
        Conversions::createConverter(&nodeType, &pointerFromPython, &acceptsPointer, &pointerToPython);
    for (const char* name : {"Node", "Node*", "Node&", typeid(Node).name(), typeid(NodeShim).name()})
        Conversions::registerConverterName(converter, name);
    ObjectType::setTypeDiscoveryFunctionV2(&nodeType, &discover);
    PySide::Signal::registerSignals(&nodeType, &Node::staticMetaObject);
    return true;
}

// An enumeration that scripts see as int, found by the name of its meta-type.
void registerMode()
{
    qRegisterMetaType<NODE_MODE>("NODE_MODE");
    SbkConverter* const converter = Conversions::createConverter(
        &PyInt_Type, [](const void* value) { return PyInt_FromLong(*static_cast<const NODE_MODE*>(value)); });
    Conversions::registerConverterName(converter, "NODE_MODE");
}

} // namespace

PyMODINIT_FUNC initnodes()
{
    const AutoDecRef core(Module::import("PySide.QtCore"));
    if (core.isNull())
        return;
    SbkPySide_QtCoreTypes = Module::getTypes(core);
    SbkPySide_QtCoreTypeConverters = Module::getTypeConverters(core);
    static PyMethodDef functions[] = {{}};
    if (registerNode(Module::create("nodes", functions)))
        registerMode();
}
