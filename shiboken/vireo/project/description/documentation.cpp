// What help() shows. The table is made at build time, from the manual in the platform's headers and the module's own
// tables, in the order of its keys: "Layer", "Layer.in_point".
#include "module.h"

#include <algorithm>
#include <string>

namespace {

struct Documented
{
    const char* name;
    const char* text;
};

constexpr Documented table[] = {
#include "documentation_table.inc"
};

} // namespace

const char* vireo::documentation(const char* className, const char* method)
{
    const std::string name = method ? std::string(className) + '.' + method : className;
    const Documented* const found =
        std::lower_bound(std::begin(table), std::end(table), name,
                         [](const Documented& each, const std::string& name) { return each.name < name; });
    return found != std::end(table) && found->name == name ? found->text : nullptr;
}
