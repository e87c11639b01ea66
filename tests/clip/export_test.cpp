// Exports of clips and of shapes: what is written, under which names, and what is left when it goes wrong.

#include "test_footage.h"

#include <QDir>
#include <QFile>
#include <cmath>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <pixels_loader.h>

namespace {

constexpr unsigned int last = 4294967295U;

class Exporting : public testing::Test
{
protected:
    Exporting() : made(smallOptions()), pattern(writeFootage(folder, made))
    {
        clip = std::make_unique<Clip>(pattern, "Plate", true, 0, 0, 0, nullptr);
    }

    void exportTo(const QString& path, const char* suffix = ".png", Clip* destination = nullptr)
    {
        clip->exportClip(destination, path, "out.", suffix, "", 0, last, 3, {}, false);
    }

    Folder folder, output;
    pixels::MadeFootage made;
    QString pattern;
    std::unique_ptr<Clip> clip;
};

QString frame(const Folder& folder, const char* prefix, int number)
{
    return folder.path() + QString::fromLatin1("/%1%2.png").arg(QLatin1String(prefix)).arg(number);
}

} // namespace

TEST_F(Exporting, WritesTheClipsFramesAndDescribesThem)
{
    Clip destination("", "Copy", false, 0, 0, 0, nullptr);
    clip->exportClip(&destination, output / "new/deep", "out.", ".png", "ignored", 2, 4, 3, {View(0)}, false);
    EXPECT_EQ(QDir(output / "new/deep").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
              (QStringList{"out.002.png", "out.003.png", "out.004.png"}));
    EXPECT_EQ(readImage(output / "new/deep/out.003.png")->values, readImage(folder / "plate.0004.png")->values);
    EXPECT_EQ(destination.get_info(View(0)).__repr__(),
              StreamInfo(output / "new/deep", "out.", ".png", 2, 4, 3).__repr__());
}

TEST_F(Exporting, AppliesTheColourInterpretationAndTheGain)
{
    clip->parameter({"gain"}).set(0.5, 4294967295.0, View());
    exportTo(output.path(), ".exr");
    const pixels::SharedImage source = readImage(folder / "plate.0001.png"), half = readImage(output / "out.000.exr");
    pixels::Image expected = *source;
    for (float& value : expected.values)
        value /= 2;
    EXPECT_LT(meanDifference(*half, expected), 1e-3);
    clip->get_color_parameters()->set_colorspace(LogColorspace);
    clip->get_color_parameters()->set_conversion(FloatConversion);
    exportTo(output.path(), ".exr");
    EXPECT_GT(meanDifference(*readImage(output / "out.000.exr"), expected), 0.01);
    clip->get_color_parameters()->set_gamma(0);
    expectThrow<STRM_BadArgument>([&] { exportTo(output.path()); }, "gamma");
}

TEST_F(Exporting, ATimeOffsetShiftsWhatIsShown)
{
    clip->parameter({"streams", "0", "time_offset"}).set(2.0, 4294967295.0, View());
    expectThrow<STRM_OutOfRange>([&] { exportTo(output.path()); }, "has no frame 13");
    clip->exportClip(nullptr, output.path(), "out.", ".png", "", 0, 0, 3, {}, false);
    EXPECT_EQ(readImage(output / "out.000.png")->values, readImage(folder / "plate.0003.png")->values);
}

TEST_F(Exporting, EachViewHasASequenceOfItsOwn)
{
    clip->add_stream(pattern, View(1), 2, 3, true);
    clip->exportClip(nullptr, output.path(), "out.", ".png", "%v-", 0, 1, 1, {}, true);
    EXPECT_EQ(output.files(), (QStringList{"0-out.0.png", "0-out.1.png", "1-out.0.png", "1-out.1.png"}));
    EXPECT_EQ(readImage(output / "1-out.0.png")->values, readImage(folder / "plate.0002.png")->values);
    expectThrow<STRM_BadArgument>(
        [&] { clip->exportClip(nullptr, output.path(), "out.", ".png", "same", 0, 1, 1, {}, true); }, "view_format");
    expectThrow<STRM_OutOfRange>(
        [&] { clip->exportClip(nullptr, output.path(), "out.", ".png", "", 0, 1, 1, {View(2)}, true); }, "view 2");
    expectThrow<STRM_BadArgument>([&] { exportTo(output.path()); }, "separate_streams: 2 views");
}

TEST_F(Exporting, RefusesArgumentsByName)
{
    const auto with = [&](const char* prefix, const char* suffix, unsigned int first, unsigned int end,
                          unsigned int width) {
        clip->exportClip(nullptr, output.path(), prefix, suffix, "", first, end, width, {}, false);
    };
    expectThrow<STRM_BadArgument>([&] { with("a/b", ".png", 0, 1, 1); }, "prefix");
    expectThrow<STRM_BadArgument>([&] { with("a", ".gif", 0, 1, 1); }, ".gif");
    expectThrow<STRM_BadArgument>([&] { with("a", ".png", 2, 1, 1); }, "first");
    expectThrow<STRM_OutOfRange>([&] { with("a", ".png", 0, 12, 1); }, "12");
    expectThrow<STRM_OutOfRange>([&] { with("a", ".png", 0, 1, 33); }, "index_width");
    expectThrow<STRM_BadArgument>([&] { exportTo(QString()); }, "path");
    expectThrow<STRM_BadFile>([&] { exportTo(pattern.section('/', 0, -2) + "/plate.0001.png"); }, "plate.0001.png");
    EXPECT_TRUE(output.files().isEmpty());
    clip->apply(StreamInfo(folder.path(), "plate.", ".png", 0, 4294967294U, 4), View(0));
    expectThrow<STRM_OutOfRange>([&] { exportTo(output.path()); }, "0 to 4294967294");
    Clip nothing("", "N", false, 0, 0, 0, nullptr);
    EXPECT_THROW(nothing.exportClip(nullptr, output.path(), "a", ".png", "", 0, last, 1, {}, false), STRM_BadState);
}

TEST_F(Exporting, AnErrorOrACancelLeavesTheFolderAsItWas)
{
    writeBytes(output / "out.000.png", "mine");
    const std::string whole = readBytes(folder / "plate.0012.png");
    QFile::remove(folder / "plate.0012.png");
    expectThrow<STRM_BadFile>([&] { exportTo(output.path()); }, "plate.0012.png");
    expectThrow<STRM_BadFile>([&] { exportTo(output / "new/folder"); }, "plate.0012.png");
    EXPECT_EQ(output.files(), QStringList{"out.000.png"});
    writeBytes(folder / "plate.0012.png", whole);

    const Listener told(*clip->get_progress_watcher(), SIGNAL(progressChanged(double, QString)),
                        [&] { clip->get_progress_watcher()->cancel(); });
    EXPECT_THROW(exportTo(output.path()), STRM_OperationCancelledByUser);
    EXPECT_EQ(output.files(), QStringList{"out.000.png"});
}

TEST_F(Exporting, MayReplaceItsOwnSource)
{
    clip->parameter({"gain"}).set(0.0, 4294967295.0, View());
    clip->exportClip(clip.get(), folder.path(), "plate.", ".png", "", 1, last, 4, {}, false);
    EXPECT_EQ(folder.files().size(), 12);
    EXPECT_EQ(readImage(folder / "plate.0005.png")->values[0], 0);
    EXPECT_EQ(clip->get_info(View(0)).get_end_frame(), 11u);
}

// ---- Shapes ---------------------------------------------------------------------------------------------------------

namespace {

class ExportingShapes : public Exporting
{
protected:
    ExportingShapes() : project(projectOver(pattern, output)) {}

    std::unique_ptr<Clip> shapes(const QVector<Layer>& layers, ColorizeOutput colorize = Grayscale,
                                 const QVector<View>& views = {}, bool separate = false)
    {
        return std::unique_ptr<Clip>(project->export_rendered_shapes(layers, colorize, "Mattes", output.path(), "m.",
                                                                     ".png", 0, 1, 1, views, separate));
    }

    std::unique_ptr<Project> project;
};

} // namespace

TEST_F(ExportingShapes, AreNumberedLikeThePlateAndLieAtTheirFrames)
{
    addPolygon(*project, "layer", square(5, 5, 20, 20));
    project->set_first_frame_offset(1001);
    project->set_in_out_range({2, 3});
    const std::unique_ptr<Clip> mattes(project->export_rendered_shapes({}, Grayscale, "Mattes", output.path(), "m.",
                                                                       ".png", last, last, 4, {}, false));
    EXPECT_EQ(mattes->get_info(View(0)).__repr__(), StreamInfo(output.path(), "m.", ".png", 1003, 1004, 4).__repr__());
    mattes->exportClip(nullptr, output.path(), "copy.", ".png", "", 3, 3, 1, {}, false);
    EXPECT_EQ(readImage(output / "copy.3.png")->values, readImage(output / "m.1004.png")->values);
    project->set_first_frame_offset(-1);
    expectThrow<STRM_OutOfRange>([&] { shapes({}); }, "Frame 0 is numbered -1");
    project->set_first_frame_offset(0);
    EXPECT_TRUE(output.files().contains("m.1003.png"));
}

TEST_F(ExportingShapes, MattesAreTheCoverageOfTheShape)
{
    const std::vector<pixels::Point> polygon = {{10.3, 5.7}, {50.2, 12.4}, {44.9, 40.1}, {15.5, 33.3}};
    addPolygon(*project, "layer", polygon);
    const auto mattes = shapes({});
    EXPECT_EQ(mattes->get_name(), QString("Mattes"));
    EXPECT_EQ(mattes->get_info(View(0)).__repr__(), StreamInfo(output.path(), "m.", ".png", 0, 1, 1).__repr__());
    EXPECT_EQ(mattes->get_frame_size(), qMakePair(64u, 48u));
    pixels::Outline outline;
    for (const pixels::Point& corner : polygon)
        outline.push_back({corner.x, corner.y, 0});
    EXPECT_LT(meanDifference(*readImage(frame(output, "m.", 0)), pixels::library().coverage({outline}, {64, 48})),
              1e-3);
}

TEST_F(ExportingShapes, LayersAddUpInTheirOrder)
{
    Layer low = addPolygon(*project, "low", square(0, 0, 40, 48)),
          high = addPolygon(*project, "high", square(20, 0, 64, 48));
    low.set_matte_color({1, 0, 0});
    high.set_matte_color({0, 0, 1});
    high.parameter({"opacity"}).set(0.5, 4294967295.0, View());
    const auto at = [&](int x) {
        const pixels::SharedImage image = readImage(frame(output, "m.", 0));
        std::vector<int> values;
        for (int channel = 0; channel < image->channels; ++channel)
            values.push_back(static_cast<int>(std::lround(255 * image->at(x, 24)[channel])));
        return values;
    };
    shapes({high, low}, ByMatteColor);
    EXPECT_EQ(at(10), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(at(30), (std::vector<int>{128, 0, 128}));
    EXPECT_EQ(at(50), (std::vector<int>{0, 0, 128}));
    shapes({}, ByLayer);
    EXPECT_EQ(at(10), (std::vector<int>{128}));
    EXPECT_EQ(at(30), (std::vector<int>{191}));
    high.parameter({"blend_mode"}).set(1, 4294967295.0, View());
    shapes({});
    EXPECT_EQ(at(30), (std::vector<int>{128})) << "half of it is taken away";
    high.parameter({"blend_mode"}).set(2, 4294967295.0, View());
    shapes({});
    EXPECT_EQ(at(10), (std::vector<int>{0}));
    EXPECT_EQ(at(30), (std::vector<int>{128}));
    high.set_visibility(false);
    shapes({});
    EXPECT_EQ(at(30), (std::vector<int>{255}));
    shapes({high});
    EXPECT_EQ(at(50), (std::vector<int>{0})) << "there is nothing to intersect with";
}

TEST_F(ExportingShapes, AnInnerContourIsAHoleAndTheTrackMovesBoth)
{
    Layer layer = addPolygon(*project, "ring", square(10, 10, 30, 30));
    QVector<BezierControlPointData> hole;
    for (const pixels::Point& corner : square(16, 16, 24, 24))
        hole.append(BezierControlPointData(true, true, float(corner.x), float(corner.y)));
    layer.add_bezier_contour(0, hole, View(0));
    for (int corner = 0; corner < 4; ++corner) {
        const QString name = QString::fromLatin1("corner%1_").arg(corner);
        Parameter x = layer.parameter({"transform", name + "x"}), y = layer.parameter({"transform", name + "y"});
        const pixels::Point place = square(10, 10, 30, 30)[std::size_t(corner)];
        x.set(place.x, 0, View(0));
        y.set(place.y, 0, View(0));
        x.set(place.x + 20, 1, View(0));
        y.set(place.y, 1, View(0));
    }
    shapes({});
    const pixels::SharedImage first = readImage(frame(output, "m.", 0)), second = readImage(frame(output, "m.", 1));
    EXPECT_EQ(*first->at(12, 12), 1);
    EXPECT_EQ(*first->at(20, 20), 0);
    EXPECT_EQ(*second->at(12, 12), 0);
    EXPECT_EQ(*second->at(32, 12), 1);
    EXPECT_EQ(*second->at(40, 20), 0);
}

TEST_F(ExportingShapes, ViewsAreWrittenApart)
{
    project->set_views({ViewInfo("Left", "L", {1, 0, 0}), ViewInfo("Right", "R/2", {0, 1, 0})});
    addPolygon(*project, "layer", square(10, 10, 30, 30));
    const auto clip = shapes({}, Grayscale, {}, true);
    EXPECT_EQ(output.files(), (QStringList{"L_m.0.png", "L_m.1.png", "R%2F2_m.0.png", "R%2F2_m.1.png"}));
    EXPECT_EQ(clip->get_info(View(1)).get_prefix(), QString("R%2F2_m."));
    EXPECT_EQ(clip->get_views().size(), 2);
}

TEST_F(ExportingShapes, WithoutASizeThereIsNoFrame)
{
    Project bare("", nullptr);
    addPolygon(bare, "layer", square(1, 1, 9, 9));
    const auto exportBare = [&] {
        bare.export_rendered_shapes({}, Grayscale, "M", output.path(), "m", ".png", 0, 1, 1, {}, false);
    };
    expectThrow<STRM_BadState>(exportBare, "size");
    Clip missing("/nowhere/a.####.png", "C", false, 0, 0, 2, nullptr);
    bare.add_clip(&missing, "C");
    expectThrow<STRM_BadState>(exportBare, "/nowhere/a.0001.png");
    expectThrow<STRM_BadArgument>([&] { shapes({}, static_cast<ColorizeOutput>(ByLayer + 1)); }, "colorize");
    EXPECT_TRUE(output.files().isEmpty());
}
