// Run-time type names as people write them.
#ifndef FUNDO_PRETTY_TYPE_NAME_H
#define FUNDO_PRETTY_TYPE_NAME_H

#include <QString>

namespace Fundo {
namespace detail {

// The plain class name, with its namespaces, for a name from std::type_info::name(): "STRM_BadState",
// "std::bad_alloc". A text that is no such name comes back unchanged.
QString prettyTypeName(const char* typeName);

} // namespace detail
} // namespace Fundo

#endif
