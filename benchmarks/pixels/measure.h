// What the benchmarks share: time, memory and errors, and the parts that the program runs.
#pragma once

#include <array>
#include <filesystem>
#include <pixels_loader.h>

// Processor time, which other programs on the machine disturb least.
class Watch
{
public:
    void start() { m_start = now(); }
    void stop() { m_seconds += now() - m_start; }
    double seconds() const { return m_seconds; }

private:
    static double now();

    double m_start = 0;
    double m_seconds = 0;
};

// Of points against where they should be, in pixels.
class PointError
{
public:
    void add(pixels::Point found, pixels::Point truth);
    double rms() const;
    double worst() const { return m_worst; }

private:
    double m_squares = 0;
    double m_worst = 0;
    int m_count = 0;
};

double peakMegabytes(); // of this process's memory

// A folder that goes when it is no longer needed.
class WorkFolder
{
public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

void measureTracking(); // accuracy and time
void measureLength();   // time and memory over the length of a sequence
void measureMattes();   // accuracy and time
