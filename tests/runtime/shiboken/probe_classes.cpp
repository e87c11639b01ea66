// What is particular to the classes of `probe`: overrides, methods, values, and a class with two bases.
#include "probe.h"

namespace probe {

namespace {

template <typename T>
struct Dispatching : Reporting<T>
{
    int react(int value) override
    {
        Shiboken::GilState lock;
        const Shiboken::AutoDecRef override(Shiboken::BindingManager::instance().getOverride(this, "react"));
        if (override.isNull()) {
            lock.release();
            return T::react(value);
        }
        const Shiboken::AutoDecRef result(PyObject_CallFunction(override.object(), const_cast<char*>("i"), value));
        if (result.isNull() || !PyInt_Check(result.object())) {
            PyErr_Print();
            return 0;
        }
        return PyInt_AS_LONG(result.object());
    }
};

PyObject* react(PyObject* self, int value)
{
    Node* const node = pointerOf<Node>(self);
    if (!node)
        return nullptr;
    const bool isOwn = Shiboken::Object::hasCppWrapper(reinterpret_cast<SbkObject*>(self));
    return PyInt_FromLong(isOwn ? node->Node::react(value) : node->react(value));
}

PyObject* text(Label* label) { return PyString_FromString(label->text.c_str()); }

PyObject* copyPt(Pt* pt) { return Shiboken::Conversions::copyToPython(&typeObject<Pt>, pt); }

PyObject* copyOfPt(const void* value)
{
    return Shiboken::Object::newObject(&typeObject<Pt>, new Reporting<Pt>(*static_cast<const Pt*>(value)), true, true);
}

void valueOfPt(PyObject* object, void* out) { *static_cast<Pt*>(out) = *pointerOf<Pt>(object); }

Shiboken::Conversions::PythonToCppFunc acceptsPt(PyObject* object)
{
    return SbkObject_TypeCheck(&typeObject<Pt>, object) ? &valueOfPt : nullptr;
}

void ptOfInt(PyObject* object, void* out) { *static_cast<Pt*>(out) = Pt(PyInt_AS_LONG(object)); }

Shiboken::Conversions::PythonToCppFunc acceptsIntForPt(PyObject* object)
{
    return PyInt_Check(object) ? &ptOfInt : nullptr;
}

void* taggedAs(void* object, SbkObjectType* type)
{
    Tagged* const tagged = static_cast<Tagged*>(object);
    return type == &typeObject<Label> ? static_cast<void*>(static_cast<Label*>(tagged)) : tagged;
}

int* offsetsOfTagged(const void* object)
{
    static int offsets[3] = {-1, -1, -1};
    const Tagged* const tagged = static_cast<const Tagged*>(object);
    const char* const start = static_cast<const char*>(object);
    offsets[0] = reinterpret_cast<const char*>(static_cast<const Node*>(tagged)) - start;
    offsets[1] = reinterpret_cast<const char*>(static_cast<const Label*>(tagged)) - start;
    return offsets;
}

void* discoverTagged(void* object, SbkObjectType* known)
{
    if (known == &typeObject<Node>)
        return dynamic_cast<Tagged*>(static_cast<Node*>(object));
    return known == &typeObject<Label> ? dynamic_cast<Tagged*>(static_cast<Label*>(object)) : nullptr;
}

PyMethodDef ptMethods[] = {define<&copyPt>("__copy__"), {}};
PyMethodDef nodeMethods[] = {define<&react>("react"), {}};
PyMethodDef labelMethods[] = {define<&text>("text"), {}};

} // namespace

bool introduceClasses(PyObject* module)
{
    SbkObjectType* const nodeType = &typeObject<Node>;
    PyObject* const bases = PyTuple_Pack(2, nodeType, &typeObject<Label>);
    if (!introduce<Pt, Reporting<Pt>>(module, "probe.Pt", "Pt", ptMethods, nullptr, nullptr, &copyOfPt) ||
        !introduce<Node, Dispatching<Node>>(module, "probe.Node", "Node*", nodeMethods) ||
        !introduce<Label, Reporting<Label>>(module, "probe.Label", "Label*", labelMethods) ||
        !introduce<Tagged, Dispatching<Tagged>>(module, "probe.Tagged", "Tagged*", nullptr, nodeType, bases))
        return false;
    Shiboken::Conversions::addPythonToCppValueConversion(&typeObject<Pt>, &valueOfPt, &acceptsPt);
    Shiboken::Conversions::addPythonToCppValueConversion(&typeObject<Pt>, &ptOfInt, &acceptsIntForPt);
    Shiboken::ObjectType::setCastFunction(&typeObject<Tagged>, &taggedAs);
    Shiboken::ObjectType::setMultipleIheritanceFunction(&typeObject<Tagged>, &offsetsOfTagged);
    Shiboken::ObjectType::setTypeDiscoveryFunctionV2(&typeObject<Tagged>, &discoverTagged);
    return true;
}

} // namespace probe
