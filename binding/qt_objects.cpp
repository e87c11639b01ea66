// Wrapper objects of library objects that are QObjects: their Qt parents, and destruction in their own thread.
#include "qt_objects.h"

#include "library_call.h"

#include <QThread>
#include <memory>
#include <pyside.h>

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
#ifdef PYSIDE_DELETES_QOBJECTS
    PySide::deleteQObject(object);
#else
    const Unlocked unlocked;
    const QThread* const thread = object->thread();
    if (thread && thread != QThread::currentThread() && thread->isRunning())
        object->deleteLater();
    else
        delete object;
#endif
}

void dropQtObject(QObject* object)
{
    LibraryCall::destroyUnused(new QPointer<QObject>(object), [](void* pointer) {
        const std::unique_ptr<QPointer<QObject>> guard(static_cast<QPointer<QObject>*>(pointer));
        if (*guard)
            destroyQtObject(*guard);
    });
}

} // namespace binding
