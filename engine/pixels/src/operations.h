// What the render operations do to images: lay a colour over, fill a hole from other frames, move by a transform.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

void insertColor(Image& image, const Image& matte, Color color, float opacity);
double fillFrom(Image& image, Image& missing, const Image& source, const Matrix& transform, const Image& valid);
void fillSmoothly(Image& image, const Image& missing);
Image warped(const Image& image, const Matrix& transform, Size size, Image* covered);

} // namespace pixels
