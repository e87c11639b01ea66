// What the runtime knows of a QObject that C++ may delete at any time: the connections to Python that start at it.
#ifndef OBJECT_LIFE_H
#define OBJECT_LIFE_H

#include "python_scopes.h"

#include <QObject>
#include <QPointer>
#include <list>
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

// Whether the object, or one above it, is being deleted for Python, by a thread that does not hold the lock meanwhile.
bool isBeingDeleted(const QObject* object);

// Whether the object is a thread that Qt has not started, and that nobody deletes.
bool isQtsOwnThread(const QObject* object);

// While it lives the object, which may be null, is not deleted at once, for Qt goes on using it after it has told
// others.
class InUse
{
public:
    explicit InUse(QObject* object);
    ~InUse();
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

private:
    const std::list<QPointer<QObject>>::iterator m_place;
};

// Lets other threads run Python, which keep their hands off an object meanwhile: its wrapper object and those of its
// ancestors live at least as long as this. The object may be null.
class UnlockedFor
{
public:
    explicit UnlockedFor(const QObject* object, const QObject* other = nullptr) : m_kept(familyOf(object, other)) {}
    UnlockedFor(const UnlockedFor&) = delete;
    UnlockedFor& operator=(const UnlockedFor&) = delete;

private:
    static std::vector<Reference> familyOf(const QObject* object, const QObject* other);

    const std::vector<Reference> m_kept; // let go of with the lock
    const Unlocked m_unlocked;
};

} // namespace PySide

#endif
