// The part of an image that is worked on.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

// Whole pixels, the end excluded.
struct Window
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool empty() const { return right <= left || bottom <= top; }
    Size size() const { return {right - left, bottom - top}; }
};

// Of an image of the given size, what lies within `reach` of an outline's vertices.
Window windowAround(const std::vector<Outline>& outlines, Size size, double reach);

} // namespace pixels
