// What a QObject class that is implemented for Python calls from its virtual functions, and emission by name.
#ifndef SIGNALMANAGER_H
#define SIGNALMANAGER_H

#include <QMetaObject>
#include <sbkpython.h>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace PySide {

class SignalManager
{
public:
    static SignalManager& instance();

    // Emits a signal, named by its signature with or without SIGNAL()'s mark, with the arguments of a tuple. A signal
    // that the object does not have is no error, as nothing can listen to it. False with an error when the arguments
    // do not fit.
    bool emitSignal(QObject* source, const char* signal, PyObject* arguments);

    // For qt_metacall() of an object whose class is defined in Python: `id` is counted from the start of the whole
    // meta-object. Emits its signals, calls its slots, reads and writes its properties. Negative when done.
    static int qt_metacall(QObject* object, QMetaObject::Call call, int id, void** arguments);

    // Whether the call's `id` counts properties, not methods.
    static bool isForProperty(QMetaObject::Call call);

    // Lets go of every Python callable that is connected to a signal, for good.
    void clear();

private:
    SignalManager() = default;
};

} // namespace PySide

#endif
