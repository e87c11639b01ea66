// What identifies a project file, its version, and how large one may be.
#pragma once

#include <cstddef>

namespace orrery {
namespace document {

constexpr const char* format = "vireo project";
constexpr int version = 2;

constexpr std::size_t largestFile = std::size_t(1) << 30; // bytes
constexpr int deepest = 32;                               // lists and objects within each other
constexpr std::size_t mostMembers = 1000;                 // of one object

} // namespace document
} // namespace orrery
