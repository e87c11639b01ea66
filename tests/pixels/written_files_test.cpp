// Writing where it cannot succeed: what stands under a frame's name is always whole.

#include "test_images.h"

#include <csignal>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace pixels;

namespace {

constexpr int skipped = 77;

// Runs `action` in a child process, which may change what would be dangerous to change here. Its result is the exit
// code. A thread of the image library may hold a lock just when the process is copied, and the child would wait for it
// for ever: such a child ends by its alarm, and another takes its place.
template <class Action>
int inChild(const Action& action, int tries = 3)
{
    library();
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        int code = 99;
        try {
            code = action();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        _exit(code);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM && tries > 1)
        return inChild(action, tries - 1);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

bool mountSmallDisk(const std::string& folder)
{
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

// Of a frame that stands and cannot be replaced. Answers 0 when all is as it should be.
int tryToReplace(const Folder& folder, const Image& old, const std::string& expectedProblem)
{
    const std::string path = folder / "frame.0001.png";
    const std::string problem = errorOf<FileError>([&] { library().writeFrame(path, grain({400, 300}, 3)); });
    if (problem != path + ": cannot be written: " + expectedProblem) {
        std::fprintf(stderr, "got: %s\n", problem.c_str());
        return 1;
    }
    if (folder.fileCount() != 1)
        return 2;
    return largestDifference(*library().readFrame(path), old) < 0.01 ? 0 : 3;
}

TEST(WrittenFiles, LeaveTheOldFrameOnAFullDisk)
{
    const Folder folder;
    const int result = inChild([&] {
        if (!mountSmallDisk(folder.path().string()))
            return skipped;
        const Image old = gradient({40, 30}, 3);
        library().writeFrame(folder / "frame.0001.png", old);
        return tryToReplace(folder, old, "No space left on device");
    });
    if (result == skipped)
        GTEST_SKIP() << "mounting a small disk is not permitted here";
    EXPECT_EQ(result, 0);
}

TEST(WrittenFiles, LeaveTheOldFrameWhenWritingBreaksOff)
{
    const Folder folder;
    const Image old = gradient({40, 30}, 3);
    library().writeFrame(folder / "frame.0001.png", old);
    EXPECT_EQ(inChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{20000, 20000};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  return tryToReplace(folder, old, "File too large");
              }),
              0);
}

TEST(WrittenFiles, SayWhereTheyCannotGo)
{
    const Folder folder;
    const Image image({8, 8}, 3);
    const auto problem = [&](const std::string& name) {
        return errorOf<FileError>([&] { library().writeFrame(folder / name, image); });
    };
    EXPECT_TRUE(contains(problem("no/such/folder.png"), "folder.png: cannot be written: No such file or directory"));
    EXPECT_TRUE(contains(problem("frame.txt"), "names no image format"));
    EXPECT_TRUE(contains(problem("frame"), "names no image format"));
    std::filesystem::create_directory(folder / "taken.png");
    EXPECT_TRUE(contains(problem("taken.png"), "cannot be written: Is a directory"));
    EXPECT_EQ(folder.fileCount(), 1u);
}

} // namespace
