// Checks of images, masks and transforms; the messages name the sizes that clash.

#include "arguments.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

std::string text(Size size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

} // namespace

void checkSize(Size size, const char* name)
{
    if (size.width <= 0 || size.height <= 0)
        throw std::invalid_argument(std::string(name) + " cannot be " + text(size) + " pixels large");
}

void checkImage(const Image& image, const char* name)
{
    checkSize(image.size, name);
    if (image.channels != 1 && image.channels != 3 && image.channels != 4)
        throw std::invalid_argument(std::string(name) + " cannot have " + std::to_string(image.channels) + " channels");
    const auto count = std::size_t(image.size.width) * std::size_t(image.size.height) * std::size_t(image.channels);
    if (image.values.size() != count)
        throw std::invalid_argument(std::string(name) + " holds " + std::to_string(image.values.size()) +
                                    " values instead of " + std::to_string(count));
}

void checkMask(const Image& mask, Size size, const char* name)
{
    checkImage(mask, name);
    if (mask.channels != 1)
        throw std::invalid_argument(std::string(name) + " has " + std::to_string(mask.channels) +
                                    " channels instead of one");
    if (mask.size != size)
        throw std::invalid_argument(std::string(name) + " is " + text(mask.size) + " pixels large, not " + text(size));
}

void checkTransform(const Matrix& transform, const char* name)
{
    const auto& values = transform.values;
    if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
        throw std::invalid_argument(std::string(name) + " is not finite");
}

} // namespace pixels
