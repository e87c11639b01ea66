// The soft edges of a matte: beside an outline of some edge width, coverage follows a ramp over the distance to it.
#pragma once

#include "edge_area.h"

namespace pixels {

// Softens the matte along one closed outline; `hard` is the coverage of all outlines without any edge width.
void feather(Image& matte, const Image& hard, const Outline& outline);

// How far from its outline an outline's feather reaches.
double featherReach(const Outline& outline);

} // namespace pixels
