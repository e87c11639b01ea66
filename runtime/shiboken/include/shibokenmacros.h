// What marks a name as exported from the runtime's shared library.
#ifndef SHIBOKENMACROS_H
#define SHIBOKENMACROS_H

#define LIBSHIBOKEN_API __attribute__((visibility("default")))
#define SBK_UNUSED(x) (void)(x);

#endif
