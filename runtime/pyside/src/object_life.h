// What the runtime knows of a QObject that C++ may delete at any time: the connections to Python that start at it.
#ifndef OBJECT_LIFE_H
#define OBJECT_LIFE_H

#include "python_scopes.h"

#include <QObject>
#include <memory>
#include <vector>

namespace PySide {

class SignalHub;

// Attached to the QObject, where scripts cannot see it, and destroyed with it. All use of it needs the lock.
class ObjectLife
{
public:
    ObjectLife();
    ~ObjectLife();
    ObjectLife(const ObjectLife&) = delete;
    ObjectLife& operator=(const ObjectLife&) = delete;

    // What there is for the object, or null.
    static ObjectLife* find(const QObject* object);
    // The same, made where there is none. From then on a wrapper object becomes invalid when the QObject dies.
    static ObjectLife& of(QObject* object);

    std::unique_ptr<SignalHub> hub; // null while nothing of Python is connected
};

} // namespace PySide

#endif
