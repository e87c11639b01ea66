// The hook, and the destructor of SbkCleaner, the base of all classes that call it.
#include <atomic>
#include <engine/handles/destruction_hook.h>
#include <orrery/py_type_error.h>
#include <orrery/sbk_cleaner.h>

SbkCleaner::~SbkCleaner() = default;
PyTypeError::~PyTypeError() noexcept = default;

namespace orrery {

namespace {

std::atomic<DestructionHook> installed{nullptr};

} // namespace

void setDestructionHook(DestructionHook hook) { installed.store(hook, std::memory_order_release); }

void tellDestruction(void* object) noexcept
{
    if (const DestructionHook hook = installed.load(std::memory_order_acquire))
        hook(object);
}

} // namespace orrery
