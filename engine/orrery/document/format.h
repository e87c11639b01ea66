// What identifies a project file, and its version.
#pragma once

namespace orrery {
namespace document {

constexpr const char* format = "vireo project";
constexpr int version = 1;

} // namespace document
} // namespace orrery
