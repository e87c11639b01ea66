// Lets the binding runtime know when an object goes that a Python object may stand for. The one part of the engine that
// knows of Python.
#include "interrupts.h"

#include <engine/handles/destruction_hook.h>
#include <orrery/start_up.h>
#include <shiboken.h>

namespace {

// From whichever thread destroys the object, with or without the interpreter's lock.
void forgetObject(void* object)
{
    if (!Py_IsInitialized())
        return;
    Shiboken::GilState lock;
    if (SbkObject* wrapper = Shiboken::BindingManager::instance().retrieveWrapper(object))
        Shiboken::Object::destroy(wrapper, object);
}

} // namespace

void pyBootstrap()
{
    orrery::setDestructionHook(forgetObject);
    orrery::handleInterrupts();
}

void pyCleanup() { orrery::setDestructionHook(nullptr); }
