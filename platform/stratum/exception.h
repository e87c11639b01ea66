// What the libraries throw: one family, told apart by class.
#ifndef STRATUM_EXCEPTION_H
#define STRATUM_EXCEPTION_H

#include <QByteArray>
#include <QString>
#include <exception>
#include <string>

// Carries where it was raised, a message for the user and a detail for the log. what() is the message as UTF-8.
class STRM_Exception : public std::exception
{
public:
    STRM_Exception(const std::string& file, int line, const QString& message, const QString& detail);
    STRM_Exception(const STRM_Exception&) = default;
    STRM_Exception& operator=(const STRM_Exception&) = default;
    ~STRM_Exception() noexcept override;

    const char* what() const noexcept override;
    const std::string& file() const { return m_file; }
    int line() const { return m_line; }
    QString message() const { return QString::fromUtf8(m_message); }
    const QString& detail() const { return m_detail; }

private:
    std::string m_file;
    int m_line;
    QByteArray m_message;
    QString m_detail;
};

// A condition that the library itself should have kept does not hold.
class STRM_AssertionFailed : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_AssertionFailed() noexcept override;
};

// The operation was allowed and could not be done (a frame that cannot be aligned, for one).
class STRM_OperationFailed : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_OperationFailed() noexcept override;
};

// A long operation was cancelled; what it had done is undone.
class STRM_OperationCancelledByUser : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_OperationCancelledByUser() noexcept override;
};

// Memory ran out for a size that the message names.
class STRM_BadAlloc : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_BadAlloc() noexcept override;
};

// An index, frame, colour component or other number lies outside its range.
class STRM_OutOfRange : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_OutOfRange() noexcept override;
};

// Two sizes that must agree do not.
class STRM_BadSize : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_BadSize() noexcept override;
};

// The object is not in a state that allows the operation: a handle whose object is gone, a commit without a begin.
class STRM_BadState : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_BadState() noexcept override;
};

// A value makes no sense for the argument that the message names.
class STRM_BadArgument : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_BadArgument() noexcept override;
};

// A file or folder is missing, unreadable, unwritable or not what it should be; the message names it.
class STRM_BadFile : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_BadFile() noexcept override;
};

// The operation exists and this library cannot do it.
class STRM_NotImplemented : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_NotImplemented() noexcept override;
};

// An exception of another family was thrown; the message is its text.
class STRM_UnexpectedException : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_UnexpectedException() noexcept override;
};

// The image and numerics code failed.
class STRM_LumenError : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_LumenError() noexcept override;
};

// A library of the system failed: one that could not be loaded, for one.
class STRM_ExternalException : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_ExternalException() noexcept override;
};

// The project is busy with an operation that allows no other of its kind beside it.
class STRM_OperationInProgress : public STRM_Exception
{
public:
    using STRM_Exception::STRM_Exception;
    ~STRM_OperationInProgress() noexcept override;
};

#endif
