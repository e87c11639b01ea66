// The program vireo-make-footage, as a user runs it.

#include "test_images.h"

#include <cstdlib>
#include <made_footage.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

using namespace pixels;

namespace {

int run(const std::string& arguments)
{
    const int status = std::system((MAKE_FOOTAGE " " + arguments + " >/dev/null 2>&1").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(MakeFootage, WritesFramesAndTheirTruth)
{
    const Folder folder;
    ASSERT_EQ(run("--size 96x54 --frames 4 --first 7 --suffix exr --noise 0 --seed 3 " + (folder / "made")), 0);
    std::ifstream file(folder / "made/truth.json");
    const nlohmann::json truth = nlohmann::json::parse(file);
    EXPECT_EQ(truth["first"], 7);
    EXPECT_EQ(truth["last"], 10);
    ASSERT_EQ(truth["frames"].size(), 4u);

    FootageOptions options;
    options.size = {96, 54};
    options.frames = 4;
    options.noise = 0;
    options.seed = 3;
    const MadeFootage footage(options);
    const auto& last = truth["frames"][3];
    EXPECT_EQ(last["frame"], 10);
    EXPECT_NEAR(last["corners"][2][0].get<double>(), footage.corners(3)[2].x, 1e-9);
    EXPECT_LT(largestDifference(*library().readFrame(folder / "made/plate.0010.exr"), footage.frame(3)), 1e-3);
}

TEST(MakeFootage, RefusesWhatItDoesNotUnderstand)
{
    const Folder folder;
    for (const char* arguments : {"", "--frames", "--frames x DIR", "--frames 0 DIR", "--size 10 DIR", "--size 2x2 DIR",
                                  "--colour red DIR", "--first -1 DIR", "DIR other"}) {
        std::string text = arguments;
        if (const auto at = text.find("DIR"); at != std::string::npos)
            text.replace(at, 3, folder / "made");
        EXPECT_EQ(run(text), 2) << arguments;
    }
    EXPECT_EQ(run("--frames 1 --size 32x32 --suffix doc " + (folder / "made")), 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "made/truth.json"));
}

} // namespace
