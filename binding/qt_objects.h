// Wrapper objects of library objects that are QObjects: their Qt parents, and destruction in their own thread.
#ifndef BINDING_QT_OBJECTS_H
#define BINDING_QT_OBJECTS_H

#include <QPointer>
#include <interpreter_scopes.h>

namespace binding {

// The wrapper objects of an object's parents, as far as there are any: a new list, or null for lack of memory.
PyObject* wrappersOfParents(const QObject& object);

// Deletes an object, with the interpreter's lock released, in the thread that it lives in: timers and queued calls must
// not be pulled from under a thread that is at work on them.
void destroyQtObject(QObject* object);

// The same once no library call can be using it any more, unless it has died by then.
void dropQtObject(QObject* object);

} // namespace binding

#endif
