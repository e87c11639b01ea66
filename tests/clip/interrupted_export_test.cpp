// An export that is killed at any moment: what stands under a final name is a whole image, and the next export clears
// what the dead one left.

#include "test_footage.h"

#include <chrono>
#include <csignal>
#include <orrery/progress_watcher.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Exports so many times, or until it is killed.
pid_t startExports(const QString& pattern, const QString& output, int times)
{
    const pid_t child = fork();
    if (child != 0)
        return child;
    // A thread of the image library may have held a lock when the process was copied: nobody waits for that for ever.
    alarm(20);
    try {
        Clip clip(pattern, "Plate", false, 0, 0, 0, nullptr);
        while (times-- > 0)
            clip.exportClip(nullptr, output, "out.", ".png", "", 0, 4294967295U, 4, {}, false);
    } catch (...) {
        _exit(1);
    }
    _exit(0);
}

// What one export takes on this machine now, in microseconds.
unsigned int measureExport(const QString& pattern)
{
    int status = -1;
    auto start = std::chrono::steady_clock::now();
    for (int tries = 0; status != 0 && tries < 3; ++tries) {
        Folder output;
        start = std::chrono::steady_clock::now();
        waitpid(startExports(pattern, output.path(), 1), &status, 0);
    }
    EXPECT_EQ(status, 0) << "the child could not export";
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

TEST(InterruptedExport, LeavesOnlyWholeFilesUnderFinalNames)
{
    Folder folder, output;
    const QString pattern = writeFootage(folder, pixels::MadeFootage(smallOptions()));
    const unsigned int whole = measureExport(pattern);
    std::mt19937 random(7);
    int found = 0;
    for (int round = 0; round < 40; ++round) {
        const pid_t child = startExports(pattern, output.path(), 1000000);
        usleep(whole / 3 + random() % (3 * whole / 2));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child could not export";
        for (const QString& name : output.files())
            if (!name.startsWith('.')) {
                ++found;
                const int number = name.mid(4, 4).toInt() + 1;
                const QString source = folder.path() + QString("/plate.%1.png").arg(number, 4, 10, QLatin1Char('0'));
                ASSERT_EQ(readImage(output.path() + '/' + name)->values, readImage(source)->values)
                    << toStdString(name);
            }
    }
    EXPECT_GT(found, 0) << "no export came as far as to a final name";

    Clip clip(pattern, "Plate", false, 0, 0, 0, nullptr);
    clip.exportClip(nullptr, output.path(), "out.", ".png", "", 0, 4294967295U, 4, {}, false);
    for (const QString& name : output.files())
        EXPECT_FALSE(name.startsWith('.')) << "litter: " << toStdString(name);
}
