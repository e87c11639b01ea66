// How a scripting language learns that an object of the library is going: the destructors of Project, Clip,
// ColorParameters, ProgressWatcher and of the render operations tell one function of the process.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <type_traits>

namespace orrery {

using DestructionHook = void (*)(void* object);

// Null for none. The hook is called with the address of the object as its own class, from whichever thread destroys it.
void setDestructionHook(DestructionHook hook);

// To be called first of all by the destructors, with no lock of the library held: the hook may wait for an interpreter.
void tellDestruction(void* object) noexcept;

// A deletion that was asked for must not begin another: the hook may run an event loop.
template <class T>
void tellDestruction(T* object) noexcept
{
    if constexpr (std::is_base_of_v<QObject, T>)
        QCoreApplication::removePostedEvents(object, QEvent::DeferredDelete);
    tellDestruction(static_cast<void*>(object));
}

} // namespace orrery
