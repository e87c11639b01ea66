// What differs between modules in the texts of errors.
#ifndef BINDING_MESSAGES_H
#define BINDING_MESSAGES_H

namespace binding {

struct Messages
{
    // Raises the TypeError for a number of arguments that no signature of the function takes.
    void (*raiseCount)(const char* function, int least, int given);
    // Whether an OverflowError names the number, and the range that it misses.
    bool namesRanges;
};

// Each module that is linked with the binding defines its own.
extern const Messages messages;

} // namespace binding

#endif
