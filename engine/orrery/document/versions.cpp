// What changed from one version of the format to the next, a function for each: it makes an object of its version one
// of the next, by the kind that the reader calls it.
#include "json.h"

#include <cstring>

namespace orrery {

namespace {

void liftFrom1(const char* kind, JsonMembers& members)
{
    const auto is = [kind](const char* name) { return std::strcmp(kind, name) == 0; };
    if (is("settings")) {
        members.rename("hero_view", "default_hero_view");
        members.split("playback", {"playback_in_point", "playback_out_point"});
    } else if (is("view")) {
        members.rename("abbreviation", "abbr");
    } else if (is("layer")) {
        members.split("in_point", {"in_view", "in_point"});
    }
}

constexpr void (*steps[])(const char*, JsonMembers&) = {liftFrom1};
static_assert(sizeof steps / sizeof *steps == document::version - 1);

} // namespace

void lift(const char* kind, int version, JsonMembers& members) { steps[version - 1](kind, members); }

} // namespace orrery
