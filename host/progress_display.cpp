// Shows how far long operations are: a bar that is drawn over itself on a terminal; elsewhere a line when an operation
// starts, every ten seconds, and when it is over. Operations that last a moment are not worth a line.
#include "progress_display.h"

#include <chrono>
#include <cstdio>
#include <engine/embedding.h>
#include <fundo/qt_version.h>
#include <mutex>
#include <string>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point time) { return std::chrono::duration<double>(Clock::now() - time).count(); }

std::string duration(double seconds)
{
    char text[32];
    const int whole = static_cast<int>(seconds + 0.5);
    if (whole < 60)
        std::snprintf(text, sizeof text, "%d s", whole);
    else
        std::snprintf(text, sizeof text, "%d min %02d s", whole / 60, whole % 60);
    return text;
}

class ProgressDisplay : public orrery::OperationListener
{
public:
    explicit ProgressDisplay(bool onTerminal) : m_onTerminal(onTerminal) {}

    void started(const QString& title) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (++m_running > 1)
            return; // the first one is shown, those that run beside it are not
        m_title = Fundo::qt::toStdString(title.toLocal8Bit());
        m_start = m_told = Clock::now();
        m_shown = false;
    }

    void progressed(double fraction, const QString& text) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_running > 1 || fraction <= 0)
            return;
        const double elapsed = secondsSince(m_start);
        if (m_onTerminal ? elapsed < 0.3 : secondsSince(m_told) < 10)
            return;
        m_told = Clock::now();
        m_shown = true;
        char numbers[96];
        std::snprintf(numbers, sizeof numbers, "%3.0f %%  %.1f %%/s  %s left", 100 * fraction, 100 * fraction / elapsed,
                      duration(elapsed * (1 - fraction) / fraction).c_str());
        const std::string doing = Fundo::qt::toStdString(text.toLocal8Bit());
        if (m_onTerminal)
            std::fprintf(stderr, "\r\033[K%s [%s] %s  %s", m_title.c_str(), bar(fraction).c_str(), numbers,
                         doing.c_str());
        else
            std::fprintf(stderr, "%s: %s  %s\n", m_title.c_str(), numbers, doing.c_str());
        std::fflush(stderr);
    }

    void finished(bool cancelled) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (--m_running > 0 || (!m_shown && !cancelled))
            return;
        std::fprintf(stderr, "%s%s: %s after %s\n", m_onTerminal ? "\r\033[K" : "", m_title.c_str(),
                     cancelled ? "cancelled" : "over", duration(secondsSince(m_start)).c_str());
        std::fflush(stderr);
    }

private:
    static std::string bar(double fraction)
    {
        constexpr int width = 24;
        const int full = static_cast<int>(width * fraction);
        return std::string(full, '#') + std::string(width - full, '.');
    }

    const bool m_onTerminal;
    std::mutex m_mutex;
    int m_running = 0;
    std::string m_title;
    Clock::time_point m_start;
    Clock::time_point m_told;
    bool m_shown = false;
};

} // namespace

void showProgress()
{
    // Never destroyed: a thread of a script may still run an operation when the process ends.
    static ProgressDisplay* const display = new ProgressDisplay(isatty(STDERR_FILENO) == 1);
    orrery::setOperationListener(display);
}
