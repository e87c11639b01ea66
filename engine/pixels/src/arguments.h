// Refuses senseless arguments, in one place and with one wording.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

// All throw std::invalid_argument with `name` in the message.
void checkImage(const Image& image, const char* name);
void checkMask(const Image& mask, Size size, const char* name);
void checkTransform(const Matrix& transform, const char* name);
void checkSize(Size size, const char* name);

} // namespace pixels
