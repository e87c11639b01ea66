// The soft edges of a matte: beside an outline of some edge width, coverage follows a ramp over the distance to it.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

// Softens a matte that holds the coverage of all outlines without any edge width.
void feather(Image& matte, const std::vector<Outline>& outlines);

} // namespace pixels
