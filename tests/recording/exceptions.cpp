// A thrower by name for every class of the exception family, and for what else a library may throw.
#include "recorder.h"

#include <boost/core/demangle.hpp>
#include <map>
#include <new>
#include <orrery/py_type_error.h>
#include <stdexcept>
#include <stratum/exception.h>

// A listed class's own subclass, which is not listed itself.
class STRM_PickyArgument : public STRM_BadArgument
{
public:
    using STRM_BadArgument::STRM_BadArgument;
};

namespace recording {

namespace {

using Throwers = std::map<std::string, void (*)(const std::string& text)>;

template <class Exception>
void throwOne(const std::string& text)
{
    const QString message = QString::fromStdString(text);
    if constexpr (std::is_base_of_v<STRM_Exception, Exception>)
        throw Exception("recording", 1, message, message);
    else
        throw Exception(text);
}

template <class... Exceptions>
Throwers throwersOf()
{
    return {{boost::core::demangle(typeid(Exceptions).name()), throwOne<Exceptions>}...};
}

const Throwers throwers = [] {
    Throwers all = throwersOf<STRM_Exception, STRM_AssertionFailed, STRM_OperationFailed, STRM_OperationCancelledByUser,
                              STRM_BadAlloc, STRM_OutOfRange, STRM_BadSize, STRM_BadState, STRM_BadArgument,
                              STRM_BadFile, STRM_NotImplemented, STRM_UnexpectedException, STRM_LumenError,
                              STRM_ExternalException, STRM_OperationInProgress, STRM_PickyArgument, PyTypeError>();
    all["runtime_error"] = throwOne<std::runtime_error>;
    all["bad_alloc"] = [](const std::string&) { throw std::bad_alloc(); };
    all["int"] = [](const std::string& text) { throw static_cast<int>(text.size()); };
    return all;
}();

} // namespace

void throwKind(const std::string& kind, const std::string& text)
{
    const auto thrower = throwers.find(kind);
    if (thrower == throwers.end())
        throw std::invalid_argument("no exception is named " + kind);
    thrower->second(text);
    throw std::logic_error("a thrower returned");
}

} // namespace recording
