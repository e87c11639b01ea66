// A Python object as a value of Qt's: what variants and signal arguments hold that is nothing else.
#ifndef PYOBJECTWRAPPER_H
#define PYOBJECTWRAPPER_H

#include <QMetaType>
#include <sbkpython.h>

namespace PySide {

// Holds one reference; None when made from nothing. Copying and destroying take the lock, on any thread.
class PyObjectWrapper
{
public:
    PyObjectWrapper() = default;
    explicit PyObjectWrapper(PyObject* object);
    PyObjectWrapper(const PyObjectWrapper& other);
    ~PyObjectWrapper();
    PyObjectWrapper& operator=(const PyObjectWrapper& other);

    // A new reference. Needs the lock.
    PyObject* newReference() const;

private:
    PyObject* m_object = nullptr;
};

} // namespace PySide

Q_DECLARE_METATYPE(PySide::PyObjectWrapper)

#endif
