// Holds the sizes that an image file's header claims against the size of the file, before anything trusts them.
#pragma once

#include <cstdint>
#include <string>

namespace pixels {

// Values (pixels times channels) that a file of so many bytes may hold: no format packs them more tightly, and no frame
// of any camera is larger than the most that any file may hold.
std::uint64_t mostValues(std::uint64_t fileSize);

// Looks at what a format's own reader would trust as soon as it opens the file. Throws FileError.
void checkHeader(const std::string& path, std::uint64_t fileSize);

} // namespace pixels
