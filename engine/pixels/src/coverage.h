// Turns closed outlines into mattes: the part of each pixel that they cover, with feathered edges.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

Image coverageOf(const std::vector<Outline>& outlines, Size size, const Matrix& transform, FillRule rule);

} // namespace pixels
