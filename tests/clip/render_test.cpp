// The render operations: what each makes of the footage, where it is written, and the clip that the project gets.

#include "test_footage.h"

#include <QDir>
#include <cmath>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <orrery/render_operation.h>

namespace {

constexpr unsigned int last = 4294967295U;

class Rendering : public testing::Test
{
protected:
    // A still background with a block that moves over it by four pixels a frame.
    Rendering()
    {
        for (int frame = 0; frame < 10; ++frame)
            writeImage(folder.path() + QString("/plate.%1.png").arg(frame), picture(frame));
        project = projectOver(folder / "plate.#.png", output);
    }

    static pixels::Image background()
    {
        pixels::Image image({64, 48}, 3);
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 64; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    image.at(x, y)[channel] = static_cast<float>((x * 3 + y * 5 + channel * 40) % 256) / 255.0f;
        return image;
    }

    static pixels::Image picture(int frame)
    {
        pixels::Image image = background();
        for (int y = 16; y < 32; ++y)
            for (int x = 4 + 4 * frame; x < 16 + 4 * frame; ++x)
                std::fill_n(image.at(x, y), 3, 1.0f);
        return image;
    }

    // Around the block, moved with it by hand.
    Layer block()
    {
        Layer layer = addPolygon(*project, "block", square(4, 16, 16, 32));
        BezierContour contour(layer.getAllContours().at(0), layer.projectManager());
        for (unsigned int i = 0; i < 4; ++i) {
            Parameter x = contour.control_point(i).parameter({"x"});
            x.set(x.get(0, View(0)).toDouble() + 36, 9, View(0));
        }
        return layer;
    }

    pixels::Image rendered(Clip& clip, int frame)
    {
        const StreamInfo info = clip.get_info(View(0));
        return *readImage(info.get_path() + '/' + info.get_prefix() +
                          QString::number(frame).rightJustified(static_cast<int>(info.get_index_width()), '0') +
                          info.get_suffix());
    }

    Folder folder, output;
    std::unique_ptr<Project> project;
};

} // namespace

TEST_F(Rendering, InsertPutsTheMatteColourOverTheFootage)
{
    Layer layer = block();
    layer.set_matte_color({0, 1, 0});
    project->set_first_frame_offset(100);
    RenderInsertOperation operation;
    Clip* clip = project->render(&operation, 2, 5, {}, View(0));
    EXPECT_EQ(project->get_clips().value("insert"), clip);
    EXPECT_EQ(clip->get_info(View(0)).__repr__(),
              StreamInfo(output / "insert_1", "insert.", ".png", 102, 105, 4).__repr__());
    EXPECT_EQ(clip->get_first_frame_offset(), 100);
    pixels::Image expected = background();
    for (int y = 16; y < 32; ++y)
        for (int x = 12; x < 24; ++x)
            std::copy_n(std::begin({0.0f, 1.0f, 0.0f}), 3, expected.at(x, y));
    EXPECT_LT(meanDifference(rendered(*clip, 102), expected), 1e-4);

    project->parameter({"render", "insert_opacity"}).set(0.0, 4294967295.0, View());
    Clip* again = project->render(&operation, 2, 2, {layer}, View(0));
    EXPECT_EQ(again->get_info(View(0)).get_path(), output / "insert_2");
    EXPECT_LT(meanDifference(rendered(*again, 102), picture(2)), 1e-4);
}

TEST_F(Rendering, RemoveFillsFromFramesThatShowTheBackground)
{
    block();
    RenderRemoveOperation operation;
    for (const int algorithm : {0, 1}) {
        project->parameter({"render", "fill_algorithm"}).set(algorithm, 4294967295.0, View());
        Clip* clip = project->render(&operation, 0, 9, {}, View(0));
        for (int frame = 0; frame < 10; ++frame)
            EXPECT_LT(meanDifference(rendered(*clip, frame), background()), 2e-3) << frame;
    }
}

// The camera pans by a pixel a frame, and a card before the wall moves by two. All three layers are tracked, and only
// the object is named, which hides some of both.
TEST_F(Rendering, RemoveFillsThroughTheTrackedLayerBelow)
{
    const auto panned = [](const pixels::Image& image, int frame) {
        pixels::Image result = image;
        for (int y = 0; y < 48; ++y)
            for (int x = frame; x < 64; ++x)
                std::copy_n(image.at(x - frame, y), 3, result.at(x, y));
        return result;
    };
    const auto pan = [](Layer layer, double distance) {
        for (const char* corner : {"corner0_x", "corner1_x", "corner2_x", "corner3_x"}) {
            Parameter x = layer.parameter({"transform", corner});
            const double start = x.get(0, View(0)).toDouble();
            x.set(start, 0, View(0));
            x.set(start + distance, 9, View(0));
        }
    };
    const auto withCard = [](pixels::Image image, int frame) {
        for (int y = 8; y < 24; ++y)
            for (int x = 0; x < 14; ++x)
                std::fill_n(image.at(20 + 2 * frame + x, y), 3, static_cast<float>((x * 5 + y * 11) % 50) / 50.0f);
        return image;
    };
    const auto clean = [&](int frame) { return withCard(panned(background(), frame), frame); };
    for (int frame = 0; frame < 10; ++frame) {
        pixels::Image image = clean(frame);
        for (int y = 16; y < 32; ++y)
            for (int x = 4 + 5 * frame; x < std::min(64, 16 + 5 * frame); ++x)
                std::fill_n(image.at(x, y), 3, 1.0f);
        writeImage(folder.path() + QString("/plate.%1.png").arg(frame), image);
    }
    pan(addPolygon(*project, "wall", square(2, 2, 62, 46)), 9);
    pan(addPolygon(*project, "card", square(20, 8, 34, 24)), 18);
    Layer object = addPolygon(*project, "object", square(4, 16, 16, 32));
    pan(object, 45);
    RenderRemoveOperation operation;
    Clip* clip = project->render(&operation, 3, 6, {object}, View(0));
    for (int frame = 3; frame < 7; ++frame)
        EXPECT_LT(meanDifference(rendered(*clip, frame), clean(frame)), 2e-3) << frame;
}

TEST_F(Rendering, APartOfTheFramesLiesWhereItBelongs)
{
    Layer layer = block();
    RenderInsertOperation operation;
    Clip* clip = project->render(&operation, 4, 7, {layer}, View(0));
    EXPECT_EQ(clip->parameter({"streams", "0", "time_offset"}).get(0, View(0)).toDouble(), -4);
    clip->exportClip(nullptr, output.path(), "copy.", ".png", "", 5, 5, 1, {}, false);
    EXPECT_LT(meanDifference(*readImage(output / "copy.5.png"), rendered(*clip, 5)), 1e-4);
}

TEST_F(Rendering, OverLogFootageIsEncodedBack)
{
    Clip* plate = project->get_default_trackable_clip();
    plate->get_color_parameters()->set_colorspace(LogColorspace);
    plate->get_color_parameters()->set_conversion(FloatConversion);
    Layer layer = block();
    project->parameter({"render", "insert_opacity"}).set(0.0, 4294967295.0, View());
    RenderInsertOperation operation;
    Clip* clip = project->render(&operation, 2, 2, {layer}, View(0));
    EXPECT_LT(meanDifference(rendered(*clip, 2), picture(2)), 2e-3);
    EXPECT_TRUE(*clip->get_color_parameters() == *plate->get_color_parameters());
}

TEST_F(Rendering, RemoveFitsTheLightOfOtherFrames)
{
    block();
    for (int frame = 0; frame < 10; ++frame) {
        pixels::Image image = picture(frame);
        for (float& value : image.values)
            value *= frame == 5 ? 1.0f : 0.5f;
        writeImage(folder.path() + QString("/plate.%1.png").arg(frame), image);
    }
    RenderRemoveOperation operation;
    const auto difference = [&] {
        return meanDifference(rendered(*project->render(&operation, 5, 5, {}, View(0)), 5), background());
    };
    EXPECT_GT(difference(), 0.01);
    project->parameter({"render", "illumination_model"}).set(1, 4294967295.0, View());
    EXPECT_LT(difference(), 0.003);
}

TEST(RenderingStabilized, TheSurfaceStandsStill)
{
    pixels::FootageOptions options = smallOptions();
    options.size = {128, 96};
    options.brightness = 0;
    const pixels::MadeFootage made(options);
    Folder folder, output;
    const auto project = projectOver(writeFootage(folder, made), output);
    Layer layer = addPolygon(*project, "surface", cornersOf(made, 0));
    project->track_layers(0, last, {layer}, {});
    RenderStabilizeOperation operation;
    Clip* clip = project->render(&operation, 0, 11, {layer}, View(0));
    const StreamInfo info = clip->get_info(View(0));
    const auto corners = cornersOf(made, 0);
    const pixels::SharedImage first = readImage(info.get_path() + "/stabilize.0000.png"),
                              end = readImage(info.get_path() + "/stabilize.0011.png"),
                              unmoved = readImage(folder / "plate.0012.png");
    const int x = static_cast<int>((corners[0].x + corners[2].x) / 2),
              y = static_cast<int>((corners[0].y + corners[2].y) / 2);
    double still = 0, moving = 0;
    for (int dy = -8; dy <= 8; ++dy)
        for (int dx = -8; dx <= 8; ++dx) {
            still += std::abs(first->at(x + dx, y + dy)[0] - end->at(x + dx, y + dy)[0]);
            moving += std::abs(first->at(x + dx, y + dy)[0] - unmoved->at(x + dx, y + dy)[0]);
        }
    EXPECT_LT(still, moving / 2);
}

TEST_F(Rendering, NothingIsLeftOfARenderThatFails)
{
    RenderInsertOperation operation;
    expectThrow<STRM_BadState>([&] { project->render(&operation, 0, 1, {}, View(0)); }, "no visible layer");
    block();
    expectThrow<STRM_BadArgument>([&] { project->render(nullptr, 0, 1, {}, View(0)); }, "operation");
    expectThrow<STRM_OutOfRange>([&] { project->render(&operation, -1, 1, {}, View(0)); }, "-1");
    expectThrow<STRM_OutOfRange>([&] { project->render(&operation, 0, 10, {}, View(0)); }, "10");
    expectThrow<STRM_BadArgument>([&] { project->render(&operation, 3, 1, {}, View(0)); }, "3");
    expectThrow<STRM_OutOfRange>([&] { project->render(&operation, 0, 1, {}, View(4)); }, "4");
    const Listener told(*operation.get_progress_watcher(), SIGNAL(progressChanged(double, QString)),
                        [&operation] { operation.get_progress_watcher()->cancel(); });
    EXPECT_THROW(project->render(&operation, 0, 9, {}, View(0)), STRM_OperationCancelledByUser);
    EXPECT_TRUE(output.files().isEmpty());
    EXPECT_EQ(project->get_clips().size(), 1);
    RenderRemoveOperation other;
    writeBytes(folder / "plate.4.png", "no image");
    expectThrow<STRM_BadFile>([&] { project->render(&other, 0, 9, {}, View(0)); }, "plate.4.png");
    EXPECT_TRUE(output.files().isEmpty());
    Project bare("", nullptr);
    addPolygon(bare, "layer", square(1, 1, 9, 9));
    RenderRemoveOperation third;
    expectThrow<STRM_BadState>([&] { bare.render(&third, 0, 1, {}, View(0)); }, "clip");
}
