// The loader's messages, seen from child processes whose library path differs.

#include <array>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

std::string outputWith(const std::string& libraryPath)
{
    const std::string command =
        "LD_LIBRARY_PATH='" + libraryPath + "' '" TEST_FOLDER "/probe/pixels_loader_probe' 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 512> part{};
    while (pipe && std::fgets(part.data(), part.size(), pipe))
        output += part.data();
    if (pipe)
        pclose(pipe);
    return output;
}

TEST(Loader, LoadsTheLibraryOrSaysEachTimeWhyNot)
{
    EXPECT_EQ(outputWith(LIBRARY_FOLDER), "loaded, matte of 12 pixels\nloaded, matte of 12 pixels\n");
    const std::string output = outputWith("");
    const std::string start = "The pixel library cannot be loaded: ";
    EXPECT_EQ(output.rfind(start, 0), 0u) << output;
    EXPECT_NE(output.rfind(start), 0u) << output;
    EXPECT_NE(output.find("libvireo-pixels.so"), std::string::npos) << output;
    EXPECT_NE(outputWith(TEST_FOLDER "/other_version").find("has another version of the interface"), std::string::npos);
    EXPECT_NE(outputWith(TEST_FOLDER "/other_library").find("has no vireo_pixels_library"), std::string::npos);
}

} // namespace
