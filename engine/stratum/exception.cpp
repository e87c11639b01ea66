// The exception family. The destructors are here so that every library shares one run-time type of each class.
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
