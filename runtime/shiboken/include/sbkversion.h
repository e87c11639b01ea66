// The version of the interface that the runtime offers, and the interpreter it is for.
#ifndef SBKVERSION_H
#define SBKVERSION_H

#define SHIBOKEN_VERSION "1.2.4"
#define SHIBOKEN_MAJOR_VERSION 1
#define SHIBOKEN_MINOR_VERSION 2
#define SHIBOKEN_MICRO_VERSION 4
#define SHIBOKEN_RELEASE_LEVEL "final"
#define SHIBOKEN_SERIAL 0
#define PYTHON_VERSION_MAJOR 2
#define PYTHON_VERSION_MINOR 7

#endif
