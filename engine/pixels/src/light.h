// Brightness: the one place where the weights of the colours stand.
#pragma once

#include <algorithm>
#include <engine/pixels/pixels.h>

namespace pixels {

inline float rec709(float red, float green, float blue) { return 0.2126f * red + 0.7152f * green + 0.0722f * blue; }

Image luminanceOf(const Image& image, Luminance model);

// Replaces every value by what `map` makes of it; the alpha channel stays.
template <class Map>
void mapColors(Image& image, Map map)
{
    const int colors = std::min(image.channels, 3);
    for (auto pixel = image.values.begin(); pixel != image.values.end(); pixel += image.channels)
        std::transform(pixel, pixel + colors, pixel, map);
}

} // namespace pixels
