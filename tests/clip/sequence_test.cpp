// The names of sequences, and what is found of them on disk.

#include "test_footage.h"

#include <QDir>
#include <engine/sequences/name.h>

using namespace orrery;

namespace {

struct Case
{
    const char* file;
    const char* prefix;
    const char* suffix;
    unsigned int width;
};

void expectName(const SequenceName& name, const Case& expected)
{
    EXPECT_EQ(name.prefix, QString::fromUtf8(expected.prefix)) << expected.file;
    EXPECT_EQ(name.suffix, QString::fromUtf8(expected.suffix)) << expected.file;
    EXPECT_EQ(name.indexWidth, expected.width) << expected.file;
}

} // namespace

TEST(SequenceName, PatternsSayTheirWidth)
{
    const Case cases[] = {
        {"plate.####.png", "plate.", ".png", 4}, {"plate.%04d.png", "plate.", ".png", 4},
        {"plate.%d.exr", "plate.", ".exr", 1},   {"#.dpx", "", ".dpx", 1},
        {"take#1.##.tif", "take#1.", ".tif", 2}, {"100%_%03d.png", "100%_", ".png", 3},
        {"plate.####", "plate.", "", 4},
    };
    for (const Case& expected : cases) {
        const QString location = QString::fromLatin1("/shots/a/") + QString::fromUtf8(expected.file);
        const SequenceName name = parseLocation(location, true);
        EXPECT_EQ(name.folder, QString::fromLatin1("/shots/a"));
        expectName(name, expected);
    }
    EXPECT_EQ(parseLocation(QString::fromLatin1("a.##.png"), false).folder, QDir::currentPath());
}

TEST(SequenceName, OneFileStandsForItsSequence)
{
    const Case cases[] = {
        {"plate.0012.png", "plate.", ".png", 4},
        {"plate_v2.0012.exr", "plate_v2.", ".exr", 4},
        {"0012_v2.exr", "", "_v2.exr", 4},
        {"shot12.exr", "shot", ".exr", 2},
        {"plate.1001.jpg", "plate.", ".jpg", 4},
        {"plate.0007", "plate.", "", 4},
        {"100%1_plate.01.png", "100%1_plate.", ".png", 2},
    };
    for (const Case& expected : cases) {
        Folder folder;
        makeEmptyFiles(folder, {QString::fromUtf8(expected.file)});
        expectName(parseLocation(folder / expected.file, true), expected);
    }
    Folder folder;
    makeEmptyFiles(folder, {"a.9.png", "a.10.png", "still.png"});
    expectName(parseLocation(folder / "a.10.png", true), {"a.10.png", "a.", ".png", 1});
    expectThrow<STRM_BadFile>([&] { parseLocation(folder / "still.png", false); }, "no frame number");
    // What exists is no pattern; and the two ways to write one do not meet in a name that means only one of them.
    makeEmptyFiles(folder, {"take#2.0007.png", "take%d.0008.png"});
    expectName(parseLocation(folder / "take#2.0007.png", true), {"take#2.0007.png", "take#2.", ".png", 4});
    expectName(parseLocation(folder / "take%d.0008.png", true), {"take%d.0008.png", "take%d.", ".png", 4});
    expectName(parseLocation(folder / "take#2.%04d.png", true), {"take#2.%04d.png", "take#2.", ".png", 4});
}

TEST(SequenceName, AFolderHoldsExactlyOneSequence)
{
    Folder folder;
    expectThrow<STRM_BadFile>([&] { parseLocation(folder.path(), true); }, "holds no image sequence");
    EXPECT_EQ(parseLocation(folder.path(), false).folder, folder.path());
    makeEmptyFiles(folder, {"b.008.png", "b.009.png", "notes_1.txt", ".b.007.png", "readme"});
    expectName(parseLocation(folder.path(), true), {"folder", "b.", ".png", 3});
    makeEmptyFiles(folder, {"c.1.exr"});
    expectThrow<STRM_BadFile>([&] { parseLocation(folder.path(), true); }, "2 image sequences (b.###.png, c.#.exr)");
    expectThrow<STRM_BadFile>([&] { parseLocation(folder / "none", true); }, "none: there is no such file or folder");
    expectThrow<STRM_BadArgument>([&] { parseLocation(QString(), false); }, "empty");
}

TEST(SequenceName, FramesAreWrittenWithAtLeastTheWidth)
{
    const SequenceName name{QString::fromLatin1("/a"), QString::fromLatin1("%1."), QString::fromLatin1(".png"), 3};
    EXPECT_EQ(name.path(7), QString::fromLatin1("/a/%1.007.png"));
    EXPECT_EQ(name.path(12345), QString::fromLatin1("/a/%1.12345.png"));
    EXPECT_EQ(name.pattern(), QString::fromLatin1("/a/%1.###.png"));
    EXPECT_EQ((SequenceName{QString::fromLatin1("/"), {}, {}, 1}).path(0), QString::fromLatin1("/0"));
}

TEST(SequenceFiles, OnlyFramesOfTheWidthBelongToTheSequence)
{
    Folder folder;
    makeEmptyFiles(folder, {"a.098.png", "a.099.png", "a.100.png", "a.1000.png", "a.1.png", "a.0101.png", "a.x.png",
                            "a.99999999999.png", "a.4294967295.png"});
    SequenceName name{folder.path(), QString::fromLatin1("a."), QString::fromLatin1(".png"), 3};
    EXPECT_EQ(framesOnDisk(name), (QVector<unsigned int>{98, 99, 100, 1000}));
    name.indexWidth = 0;
    framesOnDisk(name);
    EXPECT_TRUE(name.indexWidth == 3 || name.indexWidth == 4); // whichever padded file is met first
}

TEST(SequenceFiles, MissingFramesAreNamed)
{
    Folder folder;
    makeEmptyFiles(folder, {"a.01.png", "a.02.png", "a.05.png"});
    const StreamInfo info = foundOnDisk(StreamInfo(folder.path(), "a.", ".png", unknownFrame, unknownFrame, 0));
    EXPECT_EQ(info.get_start_frame(), 1u);
    EXPECT_EQ(info.get_end_frame(), 5u);
    EXPECT_EQ(info.get_index_width(), 2u);
    expectThrow<STRM_BadFile>([&] { requireFrames(info); }, "a.03.png: frame 3 is missing (2 of 5 frames are)");
    expectThrow<STRM_BadFile>([&] { requireFrames(StreamInfo(folder.path(), "b.", ".png", 1, 2, 2)); },
                              "b.##.png: there is no frame");
    requireFrames(StreamInfo(folder.path(), "a.", ".png", 1, 2, 2));
}

TEST(StreamInfo, ItsTextCanBeTyped)
{
    EXPECT_EQ(StreamInfo("/shots/a", "plate.", ".png", 1, 100, 4).__repr__(),
              QString::fromLatin1("StreamInfo('/shots/a', 'plate.', '.png', 1, 100, 4)"));
    EXPECT_EQ(StreamInfo("it's", "a\\", "%1", 0, 0, 0).__repr__(),
              QString::fromLatin1("StreamInfo('it\\'s', 'a\\\\', '%1', 0, 0, 0)"));
    EXPECT_EQ(StreamInfo(QString::fromUtf8("\xc3\xa4\xe2\x82\xac\n"), "", "", 0, 0, 0).__repr__(),
              QString::fromLatin1("StreamInfo(u'\\xe4\\u20ac\\n', '', '', 0, 0, 0)"));
    EXPECT_EQ(View(-2).__repr__(), QString::fromLatin1("View(-2)"));
}
