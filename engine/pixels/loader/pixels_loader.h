// Loads the pixel library at its first use, so that a program that touches no pixels does not pay for image libraries.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

// The shared object, or one of the libraries that it needs, cannot be loaded. The text says which and why.
class LoadError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The library, loaded by the first call, for the rest of the process. Throws LoadError; a later call tries again.
// May be called from any thread.
Library& library();

} // namespace pixels
