// An export that is killed at any moment: what stands under a final name is a whole image, and the next export clears
// what the dead one left.

#include "test_footage.h"

#include <csignal>
#include <orrery/progress_watcher.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Exports over and over until it is killed.
[[noreturn]] void exportForEver(const QString& pattern, const QString& output)
{
    try {
        Clip clip(pattern, "Plate", false, 0, 0, 0, nullptr);
        for (;;)
            clip.exportClip(nullptr, output, "out.", ".png", "", 0, 4294967295U, 4, {}, false);
    } catch (...) {
    }
    _exit(1);
}

} // namespace

TEST(InterruptedExport, LeavesOnlyWholeFilesUnderFinalNames)
{
    Folder folder, output;
    const QString pattern = writeFootage(folder, pixels::MadeFootage(smallOptions()));
    std::mt19937 random(7);
    int found = 0;
    for (int round = 0; round < 40; ++round) {
        const pid_t child = fork();
        if (child == 0)
            exportForEver(pattern, output.path());
        usleep(20000 + random() % 60000);
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
                    << name.toStdString();
            }
    }
    EXPECT_GT(found, 0) << "no export came as far as to a final name";

    Clip clip(pattern, "Plate", false, 0, 0, 0, nullptr);
    clip.exportClip(nullptr, output.path(), "out.", ".png", "", 0, 4294967295U, 4, {}, false);
    for (const QString& name : output.files())
        EXPECT_FALSE(name.startsWith('.')) << "litter: " << name.toStdString();
}
