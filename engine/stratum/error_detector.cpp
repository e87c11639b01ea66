// The error detector of the process. Reports go to the standard error stream, a line each.
#include <atomic>
#include <cstdio>
#include <stratum/error_detector.h>
#include <stratum/exception.h>

namespace {

std::atomic<bool> ready{false};
std::atomic<bool> fullDetection{false};
std::atomic<bool> fatalDetection{false};

} // namespace

STRM_ErrorDetector::~STRM_ErrorDetector() = default;

void STRM_ErrorDetector::reportAssertion(int, const QString& file, int line, const QString& condition,
                                         const QString& message)
{
    const QString report = QString::fromLatin1("%1:%2: %3 (%4)").arg(file, QString::number(line), message, condition);
    if (fullDetection)
        std::fprintf(stderr, "%s\n", report.toUtf8().constData());
    if (fatalDetection)
        throw STRM_AssertionFailed(file.toUtf8().constData(), line, message, report);
}

bool STRM_ErrorDetector::init() { return !ready.exchange(true); }

void STRM_ErrorDetector::setFullErrorDetection(bool full, bool fatal)
{
    fullDetection = full;
    fatalDetection = fatal;
}

STRM_ErrorDetector* STRM_ErrorDetector::instance()
{
    // Never destroyed: reports may still come from other objects' destructors at the end of the process.
    static STRM_ErrorDetector* const detector = new STRM_ErrorDetector;
    return detector;
}
