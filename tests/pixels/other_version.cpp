// A pixel library of another version of the interface.

#include <engine/pixels/pixels.h>

extern "C" pixels::Library* vireo_pixels_library(unsigned version)
{
    return version == pixels::interfaceVersion + 1 ? reinterpret_cast<pixels::Library*>(1) : nullptr;
}
