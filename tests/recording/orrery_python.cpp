// The library's one part that knows the binding runtime: from pyBootstrap() to pyCleanup(), the destructors of the
// object classes make the wrappers of their objects invalid.
#include "call.h"

#include <orrery/start_up.h>
#include <sbkpython.h>
#include <shiboken.h>

namespace {

void invalidateWrapper(void* object)
{
    if (!Py_IsInitialized())
        return;
    Shiboken::GilState lock;
    if (SbkObject* const wrapper = Shiboken::BindingManager::instance().retrieveWrapper(object))
        Shiboken::Object::destroy(wrapper, object);
}

} // namespace

void pyBootstrap()
{
    recording::call("pyBootstrap");
    recording::destructionHook = &invalidateWrapper;
}

void pyCleanup()
{
    recording::call("pyCleanup");
    recording::destructionHook = nullptr;
}
