// Processor time, peak memory and errors of points, and the folder that the benchmarks write to.

#include "measure.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <sys/resource.h>

double Watch::now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

void PointError::add(pixels::Point found, pixels::Point truth)
{
    const double error = std::hypot(found.x - truth.x, found.y - truth.y);
    m_squares += error * error;
    m_worst = std::max(m_worst, error);
    ++m_count;
}

double PointError::rms() const { return m_count > 0 ? std::sqrt(m_squares / m_count) : 0; }

double peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}

WorkFolder::WorkFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "pixels-benchmark-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no folder can be made in " + std::filesystem::temp_directory_path().string());
    m_path = pattern;
}

WorkFolder::~WorkFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}
