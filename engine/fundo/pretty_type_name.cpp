// Run-time type names as people write them, by the demangler of the C++ run-time library.
#include <cstdlib>
#include <cxxabi.h>
#include <fundo/pretty_type_name.h>
#include <memory>

namespace Fundo {
namespace detail {

QString prettyTypeName(const char* typeName)
{
    if (!typeName)
        return QString();
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(typeName, nullptr, nullptr, &status),
                                                      std::free);
    return QString::fromUtf8(status == 0 ? name.get() : typeName);
}

} // namespace detail
} // namespace Fundo
