// Ctrl-C while a long operation runs: it cancels that, which the script gets as a KeyboardInterrupt. Python alone would
// raise one in whatever slot runs next, where it is printed and lost, or when all the work is done.
#pragma once

namespace orrery {

// Takes interrupts over where Python has them; a script that sets a handler of its own has them from then on.
void handleInterrupts();

} // namespace orrery
