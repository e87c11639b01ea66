// Turns the values of a file into the values that the rest of the program works with: log scans into linear light, and
// everything into the asked precision.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

// Throws std::invalid_argument where the numbers describe no curve.
void check(const Interpretation& interpretation);

// Colour channels only; alpha stays.
void interpret(Image& image, const Interpretation& interpretation);

// Takes back what interpret() does, but for rounding: what a file has to hold to be read as the image.
void encode(Image& image, const Interpretation& interpretation);

} // namespace pixels
