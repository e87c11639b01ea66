// Wrapper objects of library objects that are QObjects: their Qt parents, and destruction in their own thread.
#include "qt_objects.h"

#include <QAbstractEventDispatcher>
#include <QThread>

namespace binding {

PyObject* wrappersOfParents(const QObject& object)
{
    Reference wrappers(PyList_New(0));
    for (const QObject* parent = object.parent(); parent && wrappers; parent = parent->parent()) {
        SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(parent);
        if (wrapper && PyList_Append(wrappers.get(), reinterpret_cast<PyObject*>(wrapper)) < 0)
            break;
    }
    PyErr_Clear();
    return wrappers.release();
}

void destroyQtObject(QObject* object)
{
    const Unlocked unlocked;
    QThread* const thread = object->thread();
    // A thread that has just been started has no event dispatcher yet; one that Qt did not start is its own object's.
    if (thread && thread != QThread::currentThread() && thread->isRunning() &&
        (QAbstractEventDispatcher::instance(thread) || thread->thread() != thread))
        object->deleteLater();
    else
        delete object;
}

} // namespace binding
