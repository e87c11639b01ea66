// The handler of interrupts, and what becomes of one that came too late for the operation that ran.
#include "interrupts.h"

#include <Python.h>
#include <atomic>
#include <csignal>
#include <engine/embedding.h>

namespace orrery {
namespace {

void (*pythonsHandler)(int) = nullptr;
std::atomic<bool> pending{false};

void interrupt(int number)
{
    pending = true;
    if (cancelOperations())
        return;
    pending = false;
    pythonsHandler(number);
}

void operationEnded(bool cancelled)
{
    if (pending.exchange(false) && !cancelled && Py_IsInitialized())
        PyErr_SetInterrupt();
}

} // namespace

void handleInterrupts()
{
    struct sigaction action = {};
    if (pythonsHandler || sigaction(SIGINT, nullptr, &action) != 0 || (action.sa_flags & SA_SIGINFO) ||
        action.sa_handler == SIG_IGN || action.sa_handler == SIG_DFL)
        return;
    pythonsHandler = action.sa_handler;
    setOperationEndHook(operationEnded);
    action.sa_handler = &interrupt;
    sigaction(SIGINT, &action, nullptr);
}

} // namespace orrery
