// Signals as scripts see them: Signal on a class, SignalInstance on an object.
#ifndef PYSIDESIGNAL_H
#define PYSIDESIGNAL_H

#include <QMetaObject>
#include <sbkpython.h>
#include <shiboken.h>

extern PyTypeObject PySideSignalType;
extern PyTypeObject PySideSignalInstanceType;

namespace PySide {
namespace Signal {

// Puts a Signal on the type for each signal that the meta-object itself declares, overloads under one name.
void registerSignals(SbkObjectType* type, const QMetaObject* metaObject);

// Puts the SignalInstances of the signals that the object's own class declares into the object's dictionary.
void updateSourceObject(PyObject* object);

// Whether the object is a SignalInstance.
bool checkType(PyObject* object);

} // namespace Signal
} // namespace PySide

#endif
