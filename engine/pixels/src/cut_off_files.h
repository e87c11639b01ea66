// Recognises image files that were cut off, for formats whose readers take what is missing for grey or print to the
// terminal.
#pragma once

#include <string>

namespace pixels {

// `format` is the reader's name for it; of formats that need no help the answer is false.
bool isCutOff(const std::string& path, const std::string& format);

} // namespace pixels
