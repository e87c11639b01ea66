// The interpreter's lock and references, as objects with a scope.
#ifndef BINDING_INTERPRETER_H
#define BINDING_INTERPRETER_H

#include <sbkpython.h>
#include <shiboken.h>

namespace binding {

// Lets other threads run Python while it lives; the lock is held again when the scope is left, by an exception too.
class Unlocked
{
public:
    Unlocked() : m_state(PyEval_SaveThread()) {}
    ~Unlocked() { PyEval_RestoreThread(m_state); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    PyThreadState* const m_state;
};

// Lives, with the lock held at both ends, around each call of the library and the conversion of its result. What Python
// drops meanwhile, in another thread or in a slot that the library calls, is destroyed when the calls are over that ran
// by then: they may be using it, or what it owns.
class LibraryCall
{
public:
    LibraryCall() : m_older(newest)
    {
        if (m_older)
            m_older->m_newer = this;
        newest = this;
    }
    ~LibraryCall()
    {
        (m_newer ? m_newer->m_older : newest) = m_older;
        if (m_older)
            m_older->m_newer = m_newer;
        if (m_dropped)
            letGoOfDropped();
    }
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;

    // Destroys an object that Python owned, at once or after the calls that are running. The lock is held for
    // `destroy`.
    static void destroyUnused(void* object, void (*destroy)(void*));

private:
    struct Dropped;
    void letGoOfDropped();

    // All that live, in the order of their making. The interpreter's lock guards them.
    static inline LibraryCall* newest = nullptr;
    LibraryCall* m_older;
    LibraryCall* m_newer = nullptr;
    Dropped* m_dropped = nullptr; // waits for this call and the older ones
};

// Owns one reference.
class Reference
{
public:
    explicit Reference(PyObject* owned = nullptr) : m_object(owned) {}
    ~Reference() { Py_XDECREF(m_object); }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    static PyObject* borrow(PyObject* object)
    {
        Py_XINCREF(object);
        return object;
    }

    PyObject* get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    PyObject* release()
    {
        PyObject* const object = m_object;
        m_object = nullptr;
        return object;
    }

private:
    PyObject* m_object;
};

// What PyErr_Occurred() answers, without leaving the caller: every call asks several times.
inline bool errorPending() { return PyThreadState_GET()->curexc_type != nullptr; }

// A result, but null with the error when one is pending: an error never hides behind a success.
inline PyObject* unlessError(PyObject* result)
{
    if (!errorPending())
        return result;
    Py_XDECREF(result);
    return nullptr;
}

inline PyObject* none() { return Reference::borrow(Py_None); }

} // namespace binding

#endif
