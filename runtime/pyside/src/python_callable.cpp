// How the several kinds of Python callables are kept, recognised again and counted.
#include "python_callable.h"

#include "qobject_wrappers.h"

#include <climits>

namespace PySide {

namespace {

// What the interpreter counts arguments for: the function behind a callable, and how many it gets by itself.
struct Counted
{
    PyObject* function = nullptr; // borrowed from the callable or its type
    int bound = 0;
};

Counted countedFunction(PyObject* callable)
{
    if (PyFunction_Check(callable))
        return {callable, 0};
    if (PyMethod_Check(callable))
        return {PyMethod_GET_FUNCTION(callable), PyMethod_GET_SELF(callable) ? 1 : 0};
    if (PyCFunction_Check(callable))
        return {callable, 0};
    if (PyType_Check(callable) || PyClass_Check(callable))
        return {};
    PyObject* const call = _PyType_Lookup(Py_TYPE(callable), Reference(PyString_InternFromString("__call__")).get());
    return call && PyFunction_Check(call) ? Counted{call, 1} : Counted{};
}

Reference weakReference(PyObject* object)
{
    Reference weak(PyWeakref_NewRef(object, nullptr));
    if (!weak)
        PyErr_Clear();
    return weak;
}

bool isSameMethod(PyObject* left, PyObject* right)
{
    if (PyCFunction_Check(left) && PyCFunction_Check(right))
        return PyCFunction_GET_SELF(left) == PyCFunction_GET_SELF(right) &&
               reinterpret_cast<PyCFunctionObject*>(left)->m_ml == reinterpret_cast<PyCFunctionObject*>(right)->m_ml;
    return PyMethod_Check(left) && PyMethod_Check(right) && PyMethod_GET_SELF(left) == PyMethod_GET_SELF(right) &&
           PyMethod_GET_FUNCTION(left) == PyMethod_GET_FUNCTION(right);
}

} // namespace

int PythonCallable::mostArguments(PyObject* callable)
{
    const Counted counted = countedFunction(callable);
    if (counted.function && PyCFunction_Check(counted.function)) {
        const int flags = PyCFunction_GET_FLAGS(counted.function);
        return flags & METH_NOARGS ? 0 : flags & METH_O ? 1 : INT_MAX;
    }
    if (!counted.function || !PyFunction_Check(counted.function))
        return INT_MAX;
    const PyCodeObject* const code = reinterpret_cast<PyCodeObject*>(PyFunction_GET_CODE(counted.function));
    if (code->co_flags & CO_VARARGS)
        return INT_MAX;
    return code->co_argcount > counted.bound ? code->co_argcount - counted.bound : 0;
}

PythonCallable::PythonCallable(PyObject* callable)
{
    PyObject* self = nullptr;
    if (PyMethod_Check(callable) && PyMethod_GET_SELF(callable)) {
        self = PyMethod_GET_SELF(callable);
        m_self = weakReference(self);
        m_callable = Reference::borrow(m_self ? PyMethod_GET_FUNCTION(callable) : callable);
    } else if (PyCFunction_Check(callable) && PyCFunction_GET_SELF(callable) &&
               Shiboken::Object::checkType(PyCFunction_GET_SELF(callable))) {
        // The wrapper object of a built-in method is not kept alive either; the method is found again by name.
        self = PyCFunction_GET_SELF(callable);
        m_self = weakReference(self);
        m_name = reinterpret_cast<PyCFunctionObject*>(callable)->m_ml->ml_name;
    } else {
        m_callable = Reference::borrow(callable);
    }
    if (self)
        setOwner(self);
}

PythonCallable::PythonCallable(PyObject* object, const QByteArray& methodName)
    : m_self(weakReference(object)), m_name(methodName)
{
    setOwner(object);
}

void PythonCallable::setOwner(PyObject* object)
{
    m_owner = guarded(qObjectOf(object));
    m_hasOwner = !m_owner.isNull();
}

Reference PythonCallable::resolve() const
{
    if (!m_self)
        return Reference::borrow(m_callable.get());
    PyObject* const self = PyWeakref_GET_OBJECT(m_self.get());
    if (self == Py_None)
        return Reference();
    if (!m_name.isEmpty())
        return Reference(PyObject_GetAttrString(self, m_name.constData()));
    return Reference(PyMethod_New(m_callable.get(), self, reinterpret_cast<PyObject*>(Py_TYPE(self))));
}

bool PythonCallable::isFrom(PyObject* callable) const
{
    if (!m_self)
        return m_callable && (m_callable.get() == callable || isSameMethod(m_callable.get(), callable));
    const Reference mine = resolve();
    if (!mine) {
        PyErr_Clear();
        return false;
    }
    return isSameMethod(mine.get(), callable);
}

bool PythonCallable::isDead() const
{
    return (m_self && PyWeakref_GET_OBJECT(m_self.get()) == Py_None) || (m_hasOwner && m_owner.isNull());
}

void PythonCallable::abandon()
{
    m_callable.release();
    m_self.release();
}

void PythonCallable::clear()
{
    m_callable = Reference();
    m_self = Reference();
}

} // namespace PySide
