// The Python module `nodes`: Node as the binding of a library wraps it, and the library's own doings.
#include "node.h"
#include "wrapping.h"

#include <QMetaProperty>
#include <pyside.h>
#include <pyside_qtcore_python.h>
#include <pysidesignal.h>
#include <thread>

PyTypeObject** SbkPySide_QtCoreTypes = nullptr;
SbkConverter** SbkPySide_QtCoreTypeConverters = nullptr;

namespace {

using namespace Shiboken;
using namespace wrapping;

Node* theRoot = nullptr;
std::thread emitter;

SbkObjectType* qObjectType() { return reinterpret_cast<SbkObjectType*>(SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]); }

PyObject* root()
{
    if (!theRoot)
        theRoot = new Node;
    return toPython(theRoot);
}

void deleteRoot()
{
    const Unlocked unlocked;
    delete std::exchange(theRoot, nullptr);
}

// A child of the root's that is known as a plain QObject.
PyObject* makeChild()
{
    QObject* const child = new Node(theRoot);
    return Conversions::pointerToPython(qObjectType(), child);
}

void emitAll(Node* node)
{
    const Unlocked unlocked;
    node->emitAll();
}

// Emits levelChanged() from a thread of the library's own, and waits for it.
void emitFromThread(Node* node, int count)
{
    const Unlocked unlocked;
    std::thread([=] {
        for (int i = 0; i < count; ++i)
            emit node->levelChanged(i);
    }).join();
}

void startEmitting(Node* node, int count)
{
    emitter = std::thread([=] {
        for (int i = 0; i < count; ++i)
            emit node->named("n", i);
    });
}

void finishEmitting(Node*)
{
    const Unlocked unlocked;
    emitter.join();
}

void setModeProperty(Node* node) { node->setProperty("mode", QVariant::fromValue(SecondMode)); }

// The signal that a QObject's property names for its changes.
PyObject* notifierOf(PyObject* object, const char* property)
{
    QObject* cppObject = nullptr;
    Conversions::pythonToCppPointer(qObjectType(), object, &cppObject);
    const QMetaObject* const meta = cppObject->metaObject();
    return PyString_FromString(meta->property(meta->indexOfProperty(property)).notifySignal().methodSignature());
}

PyMethodDef methods[] = {define<&root>("root", METH_STATIC),
                         define<&deleteRoot>("deleteRoot", METH_STATIC),
                         define<&makeChild>("makeChild", METH_STATIC),
                         define<&notifierOf>("notifierOf", METH_STATIC),
                         define<&emitAll>("emitAll"),
                         define<&emitFromThread>("emitFromThread"),
                         define<&startEmitting>("startEmitting"),
                         define<&finishEmitting>("finishEmitting"),
                         define<&setModeProperty>("setModeProperty"),
                         {}};

void* discover(void* address, SbkObjectType* knownAs)
{
    return knownAs == qObjectType() ? dynamic_cast<Node*>(static_cast<QObject*>(address)) : nullptr;
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
    if (!introduce<Node, Reporting<Node>>(Module::create("nodes", functions), "nodes.Node", "Node*", methods,
                                          qObjectType()))
        return;
    ObjectType::setTypeDiscoveryFunctionV2(&typeObject<Node>, &discover);
    PySide::Signal::registerSignals(&typeObject<Node>, &Node::staticMetaObject);
    registerMode();
}
