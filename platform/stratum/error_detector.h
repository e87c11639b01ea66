// The engine's own error detection: what happens when one of its conditions does not hold.
#ifndef STRATUM_ERROR_DETECTOR_H
#define STRATUM_ERROR_DETECTOR_H

#include <QString>

class STRM_ErrorDetector
{
public:
    virtual ~STRM_ErrorDetector();

    // Reports that `condition` does not hold at `line` of `file`. The first argument is reserved and zero. With full
    // detection the report is kept and written to the standard error stream; the call returns.
    virtual void reportAssertion(int reserved, const QString& file, int line, const QString& condition,
                                 const QString& message);

    // Readies the detector; true when this call did, false when it was ready. Any thread, never throws.
    static bool init();

    // `full` turns the reports of reportAssertion on, `fatal` makes a report throw STRM_AssertionFailed.
    static void setFullErrorDetection(bool full, bool fatal);

    // The one detector of the process; never null.
    static STRM_ErrorDetector* instance();
};

#endif
