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

void writeBytes(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Files, GreyWithAlphaKeepsItsAlpha)
{
    constexpr unsigned char png[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
                                     0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x04, 0x00, 0x00,
                                     0x00, 0xb5, 0x1c, 0x0c, 0x02, 0x00, 0x00, 0x00, 0x0b, 0x49, 0x44, 0x41, 0x54, 0x78,
                                     0x9c, 0x63, 0x30, 0x4e, 0x03, 0x00, 0x00, 0xcf, 0x00, 0x9a, 0x0b, 0xf5, 0xdc, 0x22,
                                     0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
    const Folder folder;
    writeBytes(folder / "a.png", {std::begin(png), std::end(png)});
    const SharedImage image = library().readFrame(folder / "a.png");
    ASSERT_EQ(image->channels, 4);
    const float expected[] = {0.2f, 0.2f, 0.2f, 0.4f};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(image->values[i], expected[i], 1e-6);
}

// One number of a header is made larger than the file can bear.
TEST(Files, RefusesHeadersThatClaimMoreThanTheFileCanHold)
{
    struct Row
    {
        const char* name;
        std::string mark; // the number stands behind it
        std::size_t distance;
        std::string number;
    };
    using namespace std::string_literals;
    const Row rows[] = {
        {"a.dpx", "XPDS", 32, "\xf0\xff\xff\x7f"s},
        {"a.dpx", "XPDS", 4, "\xff\xff\x7f\x00"s},
        {"a.dpx", "XPDS", 772, "\x00\x00\x01\x00\x00\x00\x01\x00"s},
        {"a.dpx", "XPDS", 772, "\x00\x01\x00\x00\x00\x01\x00\x00"s},
        {"a.exr", "dataWindow\0box2i\0"s, 29, "\xff\xff\xff\x7e"s},
        {"a.exr", "displayWindow\0box2i\0"s, 32, "\xff\xff\x00\x00\xff\xff\x00\x00"s},
        {"a.jpg", "\xff\xc0", 5, "\xff\xff\xff\xff"s},
    };
    const Folder folder;
    for (const Row& row : rows) {
        const std::string path = folder / row.name;
        library().writeFrame(path, gradient({8, 4}, 3), {Depth::SixteenBit});
        std::string bytes = bytesOf(path);
        const std::size_t mark = bytes.find(row.mark);
        ASSERT_NE(mark, std::string::npos) << row.name;
        bytes.replace(mark + row.distance, row.number.size(), row.number);
        writeBytes(path, bytes);
        const std::string problem = errorOf<FileError>([&] { library().readFrame(path); });
        EXPECT_TRUE(contains(problem, "is damaged")) << row.name << " " << row.distance;
    }
    constexpr unsigned char png[] = {0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
                                     0x44, 0x52, 0x00, 0x00, 0x9c, 0x40, 0x00, 0x00, 0x9c, 0x40, 0x08, 0x02, 0x00, 0x00,
                                     0x00, 0xde, 0x6e, 0x99, 0x52, 0x00, 0x00, 0x00, 0x09, 0x49, 0x44, 0x41, 0x54, 0x78,
                                     0x9c, 0x63, 0x00, 0x00, 0x00, 0x01, 0x00, 0x01, 0x5e, 0xff, 0x7d, 0xf9, 0x00, 0x00,
                                     0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
    writeBytes(folder / "b.png", {std::begin(png), std::end(png)});
    EXPECT_TRUE(contains(errorOf<FileError>([&] { library().readHeader(folder / "b.png"); }), "40000 x 40000"));
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
