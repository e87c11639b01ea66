// Draws lines and words, and lays images into a picture.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

Image resized(const Image& image, Size size);
Image inChannels(const Image& image, int channels);
void placeImage(Image& target, const Image& image, int x, int y);
void drawLine(Image& image, const std::vector<Point>& points, Color color, double width);
void drawWords(Image& image, const std::string& text, Point baseline, double height, Color color);

} // namespace pixels
