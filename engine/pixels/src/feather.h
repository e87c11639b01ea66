// The soft edges of a matte: beside an outline of some edge width, coverage follows a ramp over the distance to it.
#pragma once

#include <pixels/pixels.h>

namespace pixels {

// Softens `hard`, the coverage of all outlines without any edge width.
Image feathered(const Image& hard, const std::vector<Outline>& outlines);

bool hasFeather(const Outline& outline);

} // namespace pixels
