// Frames written and read back in every format, damaged files, and the cache of decoded frames.

#include "test_images.h"

#include <thread>

using namespace pixels;

namespace {

struct Format
{
    const char* suffix;
    Depth depth;
    int channels;
    double tolerance;
    Depth readDepth;
    const char* name;
};

void PrintTo(const Format& format, std::ostream* stream)
{
    *stream << format.suffix << " of " << format.channels << " channels, depth " << int(format.depth);
}

class FormatTest : public testing::TestWithParam<Format>
{};

TEST_P(FormatTest, ComesBackAsItWasWritten)
{
    const Format& format = GetParam();
    const Folder folder;
    const std::string path = folder / (std::string("frame.0001.") + format.suffix);
    const Image image = gradient({37, 23}, format.channels);
    library().writeFrame(path, image, {format.depth, 95});

    const FrameInfo info = library().readHeader(path);
    EXPECT_EQ(info.size, image.size);
    EXPECT_EQ(info.channels, format.channels);
    EXPECT_EQ(int(info.depth), int(format.readDepth));
    EXPECT_EQ(info.format, format.name);
    EXPECT_LE(largestDifference(*library().readFrame(path), image), format.tolerance);
    EXPECT_EQ(folder.fileCount(), 1u);
}

TEST_P(FormatTest, IsRefusedWhenCutOffAnywhere)
{
    const Format& format = GetParam();
    const Folder folder;
    const std::string path = folder / (std::string("frame.0001.") + format.suffix);
    library().writeFrame(path, grain({64, 48}, format.channels), {format.depth, 95});
    const auto whole = std::filesystem::file_size(path);
    for (const double part : {0.9, 0.6, 0.3, 0.02}) {
        std::filesystem::resize_file(path, std::uintmax_t(double(whole) * part));
        const std::string problem = errorOf<FileError>([&] { library().readFrame(path); });
        EXPECT_TRUE(contains(problem, path + ": is ")) << part;
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, FormatTest,
    testing::Values(Format{"png", Depth::EightBit, 3, 0.5 / 255 + 1e-6, Depth::EightBit, "png"},
                    Format{"png", Depth::EightBit, 1, 0.5 / 255 + 1e-6, Depth::EightBit, "png"},
                    Format{"png", Depth::SixteenBit, 4, 0.5 / 65535 + 1e-6, Depth::SixteenBit, "png"},
                    Format{"exr", Depth::Half, 3, 5e-4, Depth::Half, "openexr"},
                    Format{"exr", Depth::Float, 4, 0, Depth::Float, "openexr"},
                    Format{"exr", Depth::EightBit, 1, 5e-4, Depth::Half, "openexr"},
                    Format{"tif", Depth::SixteenBit, 3, 0.5 / 65535 + 1e-6, Depth::SixteenBit, "tiff"},
                    Format{"tif", Depth::Float, 1, 0, Depth::Float, "tiff"},
                    Format{"dpx", Depth::SixteenBit, 3, 0.5 / 65535 + 1e-6, Depth::SixteenBit, "dpx"},
                    Format{"dpx", Depth::EightBit, 3, 0.5 / 255 + 1e-6, Depth::EightBit, "dpx"},
                    Format{"jpg", Depth::EightBit, 3, 0.06, Depth::EightBit, "jpeg"}));

TEST(Files, NamesTheFileAndWhatIsWrongWithIt)
{
    const Folder folder;
    const auto problem = [&](const std::string& name) {
        const std::string path = folder / name;
        const std::string header = errorOf<FileError>([&] { library().readHeader(path); });
        const std::string text = errorOf<FileError>([&] { library().readFrame(path); });
        EXPECT_EQ(header, text);
        EXPECT_TRUE(contains(text, path + ": "));
        return text;
    };
    std::filesystem::create_directory(folder / "folder.png");
    std::ofstream(folder / "empty.png").flush();
    std::ofstream(folder / "words.png") << "These are words, and more of them than a header is long: no image at all.";
    EXPECT_TRUE(contains(problem("missing.0007.png"), "there is no such file"));
    EXPECT_TRUE(contains(problem("folder.png"), "is a folder"));
    EXPECT_TRUE(contains(problem("empty.png"), "is empty"));
    EXPECT_TRUE(contains(problem("words.png"), "is not an image that can be read"));
    EXPECT_EQ(problem("words.png").find('\n'), std::string::npos);
}

TEST(Files, AreWholeWhateverFollowsTheirEnd)
{
    const Folder folder;
    for (const char* name : {"a.png", "a.jpg"}) {
        library().writeFrame(folder / name, grain({40, 30}, 3));
        std::ofstream(folder / name, std::ios::app) << std::string(500, 'x');
        EXPECT_NO_THROW(library().readFrame(folder / name)) << name;
    }
}

TEST(Files, RefusesAFrameOfAnotherSize)
{
    const Folder folder;
    library().writeFrame(folder / "a.png", Image({20, 10}, 3));
    EXPECT_NO_THROW(library().readFrame(folder / "a.png", {}, {20, 10}));
    const Size other{20, 11};
    EXPECT_TRUE(contains(errorOf<FileError>([&] { library().readFrame(folder / "a.png", {}, other); }),
                         "is 20 x 10 pixels large, not 20 x 11"));
}

TEST(Files, RefusesImagesThatDoNotFitThemselves)
{
    const Folder folder;
    Image image({4, 4}, 3);
    image.values.pop_back();
    EXPECT_THROW(library().writeFrame(folder / "a.png", image), std::invalid_argument);
    EXPECT_THROW(library().writeFrame(folder / "a.png", Image({4, 4}, 2)), std::invalid_argument);
    EXPECT_THROW(library().writeFrame(folder / "a.png", Image({0, 4}, 3)), std::invalid_argument);
    EXPECT_EQ(folder.fileCount(), 0u);
}

class Cache : public testing::Test
{
protected:
    ~Cache() override { library().setCacheLimit(m_before); }

    std::string written(const std::string& name, double phase = 0)
    {
        library().writeFrame(m_folder / name, gradient({40, 30}, 3, phase));
        return m_folder / name;
    }

    static constexpr std::size_t frameBytes = 40 * 30 * 3 * sizeof(float);
    Folder m_folder;
    std::size_t m_before = library().cacheStatistics().limit;
};

TEST_F(Cache, SharesOneDecodingAmongThreads)
{
    const std::string path = written("a.png");
    const auto before = library().cacheStatistics();
    std::vector<SharedImage> seen(8);
    std::vector<std::thread> threads;
    for (auto& image : seen)
        threads.emplace_back([&] { image = library().readFrame(path); });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(library().cacheStatistics().decoded, before.decoded + 1);
    for (const auto& image : seen)
        EXPECT_EQ(image, seen.front());
}

TEST_F(Cache, StaysWithinItsLimitAndDropsTheOldest)
{
    library().setCacheLimit(0);
    library().setCacheLimit(3 * frameBytes);
    std::vector<std::string> paths;
    for (int i = 0; i < 10; ++i) {
        paths.push_back(written(std::to_string(i) + ".png"));
        library().readFrame(paths.back());
        library().readFrame(paths.front()); // in use again and again, so it stays
        EXPECT_LE(library().cacheStatistics().bytes, 3 * frameBytes);
    }
    const auto before = library().cacheStatistics();
    library().readFrame(paths[0]);
    library().readFrame(paths[9]);
    EXPECT_EQ(library().cacheStatistics().decoded, before.decoded);
    library().readFrame(paths[5]);
    EXPECT_EQ(library().cacheStatistics().decoded, before.decoded + 1);
}

TEST_F(Cache, SeesThatAFileOrItsInterpretationChanged)
{
    const std::string path = written("a.png");
    const SharedImage first = library().readFrame(path);
    Interpretation log;
    log.colorspace = Colorspace::Log;
    log.conversion = Conversion::Float;
    EXPECT_GT(largestDifference(*library().readFrame(path, log), *first), 0.05);
    written("a.png", 1);
    EXPECT_GT(largestDifference(*library().readFrame(path), *first), 0.05);
}

TEST_F(Cache, ForgetsAFailure)
{
    const std::string path = m_folder / "a.png";
    std::ofstream(path) << "not yet an image";
    EXPECT_THROW(library().readFrame(path), FileError);
    written("a.png");
    EXPECT_NO_THROW(library().readFrame(path));
}

} // namespace
