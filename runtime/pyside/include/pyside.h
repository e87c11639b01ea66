// What an extension module calls to make Qt objects feel at home in Python: the life of the process, and what is common
// to all types that derive from QObject.
#ifndef PYSIDE_H
#define PYSIDE_H

#include <QMetaObject>
#include <cstddef>
#include <sbkpython.h>
#include <shiboken.h>

namespace PySide {

typedef void (*CleanupFunction)();

// Called once by PySide.QtCore while it starts. The interpreter's exit then runs the cleanup functions.
void init(PyObject* module);

// Functions that runCleanupFunctions() calls, the last registered first, while the interpreter is still alive; each
// once.
void registerCleanupFunction(CleanupFunction function);
void runCleanupFunctions();

// Ends the application object, if there is one, and with it what belongs to the event loop.
void destroyQCoreApplication();

// Tells which Qt meta-object a wrapped class has. Python subclasses with signals and slots of their own extend it.
void initDynamicMetaObject(SbkObjectType* type, const QMetaObject* base, const std::size_t& cppObjectSize);

// For Shiboken::ObjectType::setSubTypeInitHook: names the signals that a Python subclass declares and makes its
// meta-object.
void initQObjectSubType(SbkObjectType* type, PyObject* arguments, PyObject* keywords);

// Sets the properties and connects the signals that the keyword arguments of a constructor name, except those in
// `ignored`, which is sorted. False with an AttributeError at the first that names neither.
bool fillQtProperties(PyObject* object, const QMetaObject* metaObject, PyObject* keywords, const char** ignored,
                      unsigned int ignoredCount);

// The wrapper object of a QObject: the one there is, or a new one of the nearest wrapped class that does not own it and
// becomes invalid with it. A new reference; None for null. `type` is the type to take when nothing nearer is known.
PyObject* getWrapperForQObject(QObject* object, SbkObjectType* type);

// The destructor of wrapped QObject classes. Called with the lock, which it lets go of: the object, and what is below
// it, is deleted in the thread that it lives in. Where that is at work, it is gone for Python at once, and deleted
// there later. Installed releases have no such function.
#define PYSIDE_DELETES_QOBJECTS
void deleteQObject(void* object);

} // namespace PySide

#endif
