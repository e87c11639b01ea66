// Reads and writes single image files. Every failure is a FileError that names the file and what is wrong with it.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

FrameInfo readImageHeader(const std::string& path);

// As it stands in the file, in one, three or four channels.
Image readImage(const std::string& path);

void writeImage(const std::string& path, const Image& image, const WriteOptions& options);

// Changes when the file does. Throws where there is no file to read.
std::string fileStamp(const std::string& path);

} // namespace pixels
