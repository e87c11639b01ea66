// The exception family, and a thrower by name for every class of it and for what else a library may throw.
#include "recorder.h"

#include <new>
#include <orrery/py_type_error.h>
#include <stdexcept>
#include <stratum/exception.h>

STRM_Exception::STRM_Exception(const std::string& file, int line, const QString& message, const QString& detail)
    : m_file(file), m_line(line), m_message(message.toUtf8()), m_detail(detail)
{}

const char* STRM_Exception::what() const noexcept { return m_message.constData(); }

STRM_Exception::~STRM_Exception() noexcept = default;
STRM_AssertionFailed::~STRM_AssertionFailed() noexcept = default;
STRM_OperationFailed::~STRM_OperationFailed() noexcept = default;
STRM_OperationCancelledByUser::~STRM_OperationCancelledByUser() noexcept = default;
STRM_BadAlloc::~STRM_BadAlloc() noexcept = default;
STRM_OutOfRange::~STRM_OutOfRange() noexcept = default;
STRM_BadSize::~STRM_BadSize() noexcept = default;
STRM_BadState::~STRM_BadState() noexcept = default;
STRM_BadArgument::~STRM_BadArgument() noexcept = default;
STRM_BadFile::~STRM_BadFile() noexcept = default;
STRM_NotImplemented::~STRM_NotImplemented() noexcept = default;
STRM_UnexpectedException::~STRM_UnexpectedException() noexcept = default;
STRM_LumenError::~STRM_LumenError() noexcept = default;
STRM_ExternalException::~STRM_ExternalException() noexcept = default;
STRM_OperationInProgress::~STRM_OperationInProgress() noexcept = default;
PyTypeError::~PyTypeError() noexcept = default;

// A listed class's own subclass, which is not listed itself.
class STRM_PickyArgument : public STRM_BadArgument
{
public:
    using STRM_BadArgument::STRM_BadArgument;
};

namespace recording {

namespace {

using Thrower = void (*)(const std::string& text);

template <class Exception>
void throwEngine(const std::string& text)
{
    const QString message = QString::fromStdString(text);
    throw Exception("recording", 1, message, message);
}

template <class Exception>
void throwStandard(const std::string& text)
{
    throw Exception(text);
}

const std::map<std::string, Thrower> throwers = {
    {"STRM_Exception", throwEngine<STRM_Exception>},
    {"STRM_AssertionFailed", throwEngine<STRM_AssertionFailed>},
    {"STRM_OperationFailed", throwEngine<STRM_OperationFailed>},
    {"STRM_OperationCancelledByUser", throwEngine<STRM_OperationCancelledByUser>},
    {"STRM_BadAlloc", throwEngine<STRM_BadAlloc>},
    {"STRM_OutOfRange", throwEngine<STRM_OutOfRange>},
    {"STRM_BadSize", throwEngine<STRM_BadSize>},
    {"STRM_BadState", throwEngine<STRM_BadState>},
    {"STRM_BadArgument", throwEngine<STRM_BadArgument>},
    {"STRM_BadFile", throwEngine<STRM_BadFile>},
    {"STRM_NotImplemented", throwEngine<STRM_NotImplemented>},
    {"STRM_UnexpectedException", throwEngine<STRM_UnexpectedException>},
    {"STRM_LumenError", throwEngine<STRM_LumenError>},
    {"STRM_ExternalException", throwEngine<STRM_ExternalException>},
    {"STRM_OperationInProgress", throwEngine<STRM_OperationInProgress>},
    {"STRM_PickyArgument", throwEngine<STRM_PickyArgument>},
    {"PyTypeError", throwStandard<PyTypeError>},
    {"runtime_error", throwStandard<std::runtime_error>},
    {"bad_alloc", [](const std::string&) { throw std::bad_alloc(); }},
    {"int", [](const std::string& text) { throw static_cast<int>(text.size()); }},
};

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
