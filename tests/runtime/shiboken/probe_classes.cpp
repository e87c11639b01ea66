// Wraps the classes of `probe` as a module does: a subclass per class that reports its death, and a filled type object.
#include "probe.h"

#include <typeinfo>

namespace probe {

int Pt::alive, Node::alive, Label::alive;
SbkObjectType ptType, nodeType, labelType, taggedType;

namespace {

template <typename T>
struct Reporting : T
{
    using T::T;
    explicit Reporting(const T& other) : T(other) {}
    ~Reporting() override
    {
        Shiboken::Object::destroy(Shiboken::BindingManager::instance().retrieveWrapper(this), this);
    }
};

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

template <typename T, SbkObjectType& type>
void pointerToCpp(PyObject* object, void* out)
{
    Shiboken::Conversions::pythonToCppPointer(&type, object, out);
}

template <typename T, SbkObjectType& type>
Shiboken::Conversions::PythonToCppFunc acceptsPointer(PyObject* object)
{
    if (object == Py_None)
        return &Shiboken::Conversions::nonePythonToCppNullPtr;
    return SbkObject_TypeCheck(&type, object) ? &pointerToCpp<T, type> : nullptr;
}

template <typename T, SbkObjectType& type>
PyObject* pointerToPython(const void* object)
{
    if (SbkObject* const known = Shiboken::BindingManager::instance().retrieveWrapper(object)) {
        Py_INCREF(known);
        return reinterpret_cast<PyObject*>(known);
    }
    T* const cppObject = static_cast<T*>(const_cast<void*>(object));
    return Shiboken::Object::newObject(&type, cppObject, false, false, typeid(*cppObject).name());
}

template <typename T, typename Wrapper, SbkObjectType& type>
int initialise(PyObject* self, PyObject* arguments, PyObject*)
{
    PyTypeObject* const own = reinterpret_cast<PyTypeObject*>(&type);
    if (Shiboken::Object::isUserType(self) && !Shiboken::ObjectType::canCallConstructor(Py_TYPE(self), own))
        return -1;
    if (!PyArg_ParseTuple(arguments, ""))
        return -1;
    Shiboken::ThreadStateSaver unlocked;
    unlocked.save();
    Wrapper* const cppObject = new Wrapper;
    unlocked.restore();
    SbkObject* const wrapper = reinterpret_cast<SbkObject*>(self);
    if (!Shiboken::Object::setCppPointer(wrapper, own, static_cast<T*>(cppObject))) {
        delete cppObject;
        return -1;
    }
    Shiboken::Object::setValidCpp(wrapper, true);
    Shiboken::Object::setHasCppWrapper(wrapper, true);
    Shiboken::BindingManager::instance().registerWrapper(wrapper, static_cast<T*>(cppObject));
    return 0;
}

PyObject* react(PyObject* self, PyObject* argument)
{
    if (!Shiboken::Object::isValid(self))
        return nullptr;
    Node* const node = pointerOf<Node>(self, nodeType);
    if (!node)
        return nullptr;
    const int value = PyInt_AsLong(argument);
    const bool isOwn = Shiboken::Object::hasCppWrapper(reinterpret_cast<SbkObject*>(self));
    return PyInt_FromLong(isOwn ? node->Node::react(value) : node->react(value));
}

PyObject* text(PyObject* self, PyObject*)
{
    Label* const label = Shiboken::Object::isValid(self) ? pointerOf<Label>(self, labelType) : nullptr;
    return label ? PyString_FromString(label->text.c_str()) : nullptr;
}

PyObject* copyOfPt(const void* value)
{
    return Shiboken::Object::newObject(&ptType, new Reporting<Pt>(*static_cast<const Pt*>(value)), true, true);
}

PyObject* copyPt(PyObject* self, PyObject*)
{
    return Shiboken::Object::isValid(self) ? Shiboken::Conversions::copyToPython(&ptType, pointerOf<Pt>(self, ptType))
                                           : nullptr;
}

void valueOfPt(PyObject* object, void* out) { *static_cast<Pt*>(out) = *pointerOf<Pt>(object, ptType); }

Shiboken::Conversions::PythonToCppFunc acceptsPt(PyObject* object)
{
    return SbkObject_TypeCheck(&ptType, object) ? &valueOfPt : nullptr;
}

void ptOfInt(PyObject* object, void* out) { *static_cast<Pt*>(out) = Pt(PyInt_AS_LONG(object)); }

Shiboken::Conversions::PythonToCppFunc acceptsIntForPt(PyObject* object)
{
    return PyInt_Check(object) ? &ptOfInt : nullptr;
}

PyMethodDef ptMethods[] = {{"__copy__", &copyPt, METH_NOARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};
PyMethodDef nodeMethods[] = {{"react", &react, METH_O, nullptr}, {nullptr, nullptr, 0, nullptr}};
PyMethodDef labelMethods[] = {{"text", &text, METH_NOARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

template <typename T, typename Wrapper, SbkObjectType& type>
bool introduce(PyObject* module, const char* fullName, const char* cppName, PyMethodDef* methods,
               Shiboken::Conversions::CppToPythonFunc copy, PyObject* bases = nullptr)
{
    PyTypeObject& filled = type.super.ht_type;
    Py_REFCNT(&filled) = 1;
    Py_TYPE(&filled) = &SbkObjectType_Type;
    filled.tp_name = fullName;
    filled.tp_basicsize = sizeof(SbkObject);
    filled.tp_dealloc = &SbkDeallocWrapper;
    filled.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_CHECKTYPES | Py_TPFLAGS_HAVE_GC;
    filled.tp_traverse = reinterpret_cast<PyTypeObject*>(&SbkObject_Type)->tp_traverse;
    filled.tp_clear = reinterpret_cast<PyTypeObject*>(&SbkObject_Type)->tp_clear;
    filled.tp_methods = methods;
    filled.tp_init = &initialise<T, Wrapper, type>;
    filled.tp_new = &SbkObjectTpNew;
    SbkObjectType* const base = bases ? reinterpret_cast<SbkObjectType*>(PyTuple_GET_ITEM(bases, 0)) : nullptr;
    if (!Shiboken::ObjectType::introduceWrapperType(module, std::strrchr(fullName, '.') + 1, cppName, &type,
                                                    &Shiboken::callCppDestructor<T>, base, bases))
        return false;
    SbkConverter* const converter = Shiboken::Conversions::createConverter(
        &type, &pointerToCpp<T, type>, &acceptsPointer<T, type>, &pointerToPython<T, type>, copy);
    for (const char* name : {cppName, typeid(T).name(), typeid(Wrapper).name()})
        Shiboken::Conversions::registerConverterName(converter, name);
    return true;
}

void* taggedAs(void* object, SbkObjectType* type)
{
    Tagged* const tagged = static_cast<Tagged*>(object);
    return type == &labelType ? static_cast<void*>(static_cast<Label*>(tagged)) : tagged;
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
    if (known == &nodeType)
        return dynamic_cast<Tagged*>(static_cast<Node*>(object));
    return known == &labelType ? dynamic_cast<Tagged*>(static_cast<Label*>(object)) : nullptr;
}

} // namespace

bool introduceClasses(PyObject* module)
{
    PyObject* const bases = PyTuple_Pack(2, &nodeType, &labelType);
    if (!introduce<Pt, Reporting<Pt>, ptType>(module, "probe.Pt", "Pt", ptMethods, &copyOfPt) ||
        !introduce<Node, Dispatching<Node>, nodeType>(module, "probe.Node", "Node*", nodeMethods, nullptr) ||
        !introduce<Label, Reporting<Label>, labelType>(module, "probe.Label", "Label*", labelMethods, nullptr) ||
        !introduce<Tagged, Dispatching<Tagged>, taggedType>(module, "probe.Tagged", "Tagged*", nullptr, nullptr, bases))
        return false;
    Shiboken::Conversions::addPythonToCppValueConversion(&ptType, &valueOfPt, &acceptsPt);
    Shiboken::Conversions::addPythonToCppValueConversion(&ptType, &ptOfInt, &acceptsIntForPt);
    Shiboken::ObjectType::setCastFunction(&taggedType, &taggedAs);
    Shiboken::ObjectType::setMultipleIheritanceFunction(&taggedType, &offsetsOfTagged);
    Shiboken::ObjectType::setTypeDiscoveryFunctionV2(&taggedType, &discoverTagged);
    return true;
}

} // namespace probe
