// Clips: streams, views and settings, alone and in a project; what is refused leaves a clip as it was.

#include "test_footage.h"

#include <QDir>
#include <cmath>
#include <limits>
#include <orrery/color_parameters.h>
#include <orrery/progress_watcher.h>
#include <orrery/undo_group.h>
#include <thread>

namespace {

constexpr unsigned int unknown = std::numeric_limits<unsigned int>::max();

std::unique_ptr<Clip> clipAt(const QString& location, bool validate = false, unsigned int length = 0)
{
    return std::make_unique<Clip>(location, QString::fromLatin1("Plate"), validate, 0, 0, length, nullptr);
}

QString textOf(Clip& clip)
{
    QStringList lines{clip.get_name(), QString::number(clip.get_frame_rate()),
                      QString::number(clip.get_first_frame_offset()),
                      QString::fromLatin1("%1x%2").arg(clip.get_frame_size().first).arg(clip.get_frame_size().second)};
    for (const View& view : clip.get_views())
        lines << view.__repr__() + clip.get_info(view).__repr__();
    const QMap<View, View> mapping = clip.get_view_mapping();
    for (auto it = mapping.begin(); it != mapping.end(); ++it)
        lines << it.key().__repr__() + QString::fromLatin1("->") + it.value().__repr__();
    const QVector<Parameter> parameters = clip.parameter_set({}).get_parameters();
    for (Parameter parameter : parameters)
        lines << parameter.get_name_components().join("/") + parameter.get(3, View()).toString();
    return lines.join(QLatin1Char('\n'));
}

class ClipOnDisk : public testing::Test
{
protected:
    ClipOnDisk()
    {
        for (int frame = 1; frame <= 5; ++frame) {
            writeImage(folder.path() + QString::fromLatin1("/a.%1.png").arg(frame), pixels::Image({8, 6}, 3));
            writeImage(folder.path() + QString::fromLatin1("/b.%1.png").arg(frame), pixels::Image({8, 6}, 3));
            writeImage(folder.path() + QString::fromLatin1("/large.%1.png").arg(frame), pixels::Image({9, 6}, 3));
        }
        writeBytes(folder / "broken.1.png", "no image");
    }

    Folder folder;
};

} // namespace

TEST_F(ClipOnDisk, IsAsItsFilesAre)
{
    const auto clip = clipAt(folder / "a.#.png", true);
    const StreamInfo info = clip->get_info(View(0));
    EXPECT_EQ(info.__repr__(), StreamInfo(folder.path(), "a.", ".png", 1, 5, 1).__repr__());
    EXPECT_EQ(clip->get_frame_size(), qMakePair(8u, 6u));
    EXPECT_EQ(clip->get_view_mapping(), (QMap<View, View>{{View(0), View(0)}}));
    EXPECT_EQ(clipAt(folder / "a.3.png", true)->get_info(View()).get_end_frame(), 5u);
    EXPECT_EQ(clipAt(folder / "a.#.png", true, 2)->get_info(View(0)).get_end_frame(), 2u);
    const Clip set(folder / "a.#.png", "Set", false, 100, 50, 0, nullptr);
    EXPECT_EQ(const_cast<Clip&>(set).get_frame_size(), qMakePair(100u, 50u));
    expectThrow<STRM_BadFile>([&] { clipAt(folder / "a.#.png", true, 7); }, "a.6.png: frame 6 is missing");
    expectThrow<STRM_BadFile>([&] { clipAt(folder / "c.#.png", true); }, "c.#.png");
    expectThrow<STRM_BadFile>([&] { clipAt(folder / "broken.#.png")->get_frame_size(); }, "broken.1.png");
}

TEST(Clip, NeedsNoFilesUnlessItIsAskedToLook)
{
    const auto clip = clipAt(QString::fromLatin1("a"));
    EXPECT_EQ(clip->get_frame_size(), qMakePair(0u, 0u));
    EXPECT_EQ(clip->get_info(View(0)).get_start_frame(), unknown);
    const auto later = clipAt(QString::fromLatin1("/nowhere/p.###.exr"), false, 10);
    EXPECT_EQ(later->get_info(View(0)).__repr__(), StreamInfo("/nowhere", "p.", ".exr", 1, 10, 3).__repr__());
    EXPECT_TRUE(clipAt(QString())->get_views().isEmpty());
    EXPECT_NE(clip->get_id(), later->get_id());
}

TEST_F(ClipOnDisk, RelinkFindsAFolderThatCameLater)
{
    const QString later = folder / "later";
    const auto clip = clipAt(later);
    expectThrow<STRM_BadFile>([&] { clip->relink(QString(), "", "", unknown, unknown, View(0)); },
                              "later: there is no such file or folder");
    ASSERT_TRUE(QDir().mkdir(later));
    writeImage(later + "/c.7.png", pixels::Image({8, 6}, 3));
    clip->relink(QString(), "", "", unknown, unknown, View(0));
    EXPECT_EQ(clip->get_info(View(0)).__repr__(), StreamInfo(later, "c.", ".png", 7, 7, 1).__repr__());
    clip->relink(StreamInfo(later, "", "", unknown, unknown, 0), View(0));
    EXPECT_EQ(clip->get_info(View(0)).get_prefix(), QString("c."));
}

TEST_F(ClipOnDisk, StreamsComeAndGo)
{
    const auto clip = clipAt(folder / "a.#.png");
    int changes = 0;
    const Listener told(*clip, SIGNAL(streamsChanged()), [&changes] { ++changes; });
    clip->add_stream(folder / "b.#.png", View(1), 2, 4, true);
    clip->apply(StreamInfo(folder.path(), "b.", ".png", unknown, unknown, 0), View(2));
    EXPECT_EQ(clip->get_info(View(2)).get_end_frame(), 5u);
    EXPECT_EQ(clip->get_views(), (QVector<View>{View(0), View(1), View(2)}));
    clip->relink(QString(), QString::fromLatin1("a."), QString(), unknown, 3, View(1));
    EXPECT_EQ(clip->get_info(View(1)).__repr__(), StreamInfo(folder.path(), "a.", ".png", 2, 3, 1).__repr__());
    clip->relink(folder / "b.%d.png", QString(), QString(), unknown, unknown, View(1));
    EXPECT_EQ(clip->get_info(View(1)).__repr__(), StreamInfo(folder.path(), "b.", ".png", 2, 3, 1).__repr__());
    clip->delete_stream(View(2));
    EXPECT_EQ(changes, 5);

    const QString before = textOf(*clip);
    expectThrow<STRM_BadArgument>([&] { clip->add_stream(folder / "b.#.png", View(1), 1, 2, false); }, "view 1");
    expectThrow<STRM_BadFile>([&] { clip->add_stream(folder / "b.#.png", View(3), 4, 6, true); }, "b.6.png");
    expectThrow<STRM_BadArgument>([&] { clip->add_stream(folder / "b.#.png", View(3), 4, 3, false); },
                                  "frame of a stream, 4");
    expectThrow<STRM_OutOfRange>([&] { clip->delete_stream(View(3)); }, "view 3");
    expectThrow<STRM_OutOfRange>([&] { clip->get_info(View(-5)); }, "4294967291");
    expectThrow<STRM_OutOfRange>([&] { clip->relink(StreamInfo(folder.path(), "b.", ".png", 1, 2, 1), View(3)); },
                                 "view 3");
    expectThrow<STRM_BadFile>([&] { clip->relink(StreamInfo(folder.path(), "large.", ".png", 1, 2, 1), View(0)); },
                              "large.1.png: the image has 9 x 6 pixels, the clip's frames have 8 x 6");
    expectThrow<STRM_BadFile>([&] { clip->relink(StreamInfo(folder.path(), "b.", ".png", 1, 9, 1), View(0)); },
                              "b.6.png");
    expectThrow<STRM_BadArgument>([&] { clip->apply(StreamInfo("", "a", "", 1, 2, 1), View(0)); }, "path");
    expectThrow<STRM_BadArgument>([&] { clip->apply(StreamInfo("/a", "../x", "", 1, 2, 1), View(0)); }, "../x");
    expectThrow<STRM_OutOfRange>([&] { clip->apply(StreamInfo("/a", "x", "", 1, 2, 4000000000u), View(0)); },
                                 "4000000000");
    expectThrow<STRM_BadFile>([&] { clip->add_stream(folder / "a.9.png", View(3), 1, 2, true); },
                              "a.9.png: there is no such file");
    EXPECT_EQ(textOf(*clip), before);
    EXPECT_EQ(changes, 5);
}

TEST_F(ClipOnDisk, AProjectsViewIsMappedToOnce)
{
    const auto clip = clipAt(folder / "a.#.png");
    clip->add_stream(folder / "b.#.png", View(1), 1, 5, false);
    clip->assign_project_view(View(0), View(1));
    EXPECT_EQ(clip->get_view_mapping(), (QMap<View, View>{{View(0), View(1)}}));
    clip->assign_project_view(View(1), View(0));
    EXPECT_EQ(clip->get_view_mapping(), (QMap<View, View>{{View(0), View(1)}, {View(1), View(0)}}));
    expectThrow<STRM_OutOfRange>([&] { clip->assign_project_view(View(2), View(0)); }, "view 2");

    Folder output;
    const auto project = projectOver(folder / "a.#.png", output);
    expectThrow<STRM_OutOfRange>([&] { project->get_default_trackable_clip()->assign_project_view(View(0), View(7)); },
                                 "7");
}

TEST(Clip, RefusesWhatIsNoSetting)
{
    const auto clip = clipAt(QString());
    const QString before = textOf(*clip);
    for (const float rate : {0.0f, -1.0f, NAN, INFINITY})
        EXPECT_THROW(clip->set_frame_rate(rate), STRM_BadArgument);
    EXPECT_THROW(clip->set_frame_size(qMakePair(0u, 5u)), STRM_BadArgument);
    EXPECT_THROW(clip->set_frame_size(qMakePair(unknown, 5u)), STRM_OutOfRange);
    EXPECT_THROW(Clip(QString(), QString(QChar(0xd800)), false, 0, 0, 0, nullptr), STRM_BadArgument);
    EXPECT_THROW(Clip(QString(), "long", false, 0, 0, unknown, nullptr), STRM_OutOfRange);
    EXPECT_EQ(textOf(*clip), before);
}

TEST_F(ClipOnDisk, ParametersFollowTheStreams)
{
    const auto clip = clipAt(folder / "a.#.png");
    EXPECT_TRUE(clip->parameter({"streams", "1", "gain"}).isNull());
    clip->add_stream(folder / "b.#.png", View(1), 1, 5, false);
    Parameter gain = clip->parameter({"streams", "1", "gain"});
    gain.set(2.5, 0, View(0));
    EXPECT_EQ(gain.get(1, View(0)).toDouble(), 2.5);
    clip->delete_stream(View(1));
    EXPECT_TRUE(gain.isNull());
    clip->add_stream(folder / "a.#.png", View(1), 1, 5, false);
    EXPECT_EQ(gain.get(1, View(0)).toDouble(), 1) << "a new stream begins with initial values";
    EXPECT_TRUE(clip->base_parameter_set({}).get_subsets().isEmpty());
    EXPECT_EQ(clip->base_parameter_set({}).get_parameters(), clip->parameter_set({}).get_parameters());
    EXPECT_THROW(clip->parameter({"mode"}).set(1, 0, View(0)), STRM_Exception);
    Parameter kept = clip->parameter({"gain"});
    const_cast<std::unique_ptr<Clip>&>(clip).reset();
    EXPECT_TRUE(kept.isNull());
}

TEST_F(ClipOnDisk, EveryChangeInAProjectIsUndoneAndSaved)
{
    Folder output;
    const auto project = projectOver(folder / "a.#.png", output);
    project->set_views({ViewInfo("Left", "L", {1, 0, 0}), ViewInfo("Right", "R", {0, 1, 0})});
    Clip& clip = *project->get_default_trackable_clip();
    const std::vector<std::function<void()>> changes = {
        [&] { clip.set_frame_rate(29.97f); },
        [&] { clip.set_first_frame_offset(-7); },
        [&] { clip.set_frame_size(qMakePair(640u, 480u)); },
        [&] { clip.add_stream(folder / "b.#.png", View(1), 2, 4, false); },
        [&] {
            clip.parameter({"streams", "1", "time_offset"}).set(2.0, 1, View(0));
        },
        [&] { clip.assign_project_view(View(0), View(1)); },
        [&] { clip.relink(StreamInfo(folder.path(), "b.", ".png", 1, 3, 1), View(0)); },
        [&] { clip.delete_stream(View(0)); },
        [&] { clip.parameter({"luminance"}).set(1, 4294967295.0, View(0)); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const QString before = textOf(clip);
        UndoGroup group = project->undo_group();
        group.begin();
        try {
            changes[i]();
        } catch (const STRM_BadFile&) {
            // The size of the frames was changed above: footage of another size is refused.
            EXPECT_EQ(i, 6u);
        }
        group.rollback();
        EXPECT_EQ(textOf(clip), before) << i;
        if (i != 6)
            changes[i]();
    }
    project->save_as(output / "saved");
    Project loaded(output / "saved", nullptr);
    EXPECT_EQ(textOf(*loaded.get_default_trackable_clip()), textOf(clip));
}

TEST_F(ClipOnDisk, AProjectTakesWhatItNeeds)
{
    Folder output;
    const auto project = projectOver(folder / "a.#.png", output);
    auto clip = clipAt(folder / "b.#.png");
    clip->parameter({"gain"}).set(3.0, 2, View(0));
    Clip* added = project->add_clip(clip.get(), "Other");
    EXPECT_TRUE(*added != *clip);
    clip->set_frame_rate(1);
    clip.reset();
    EXPECT_EQ(added->get_name(), QString::fromLatin1("Other"));
    EXPECT_EQ(added->get_frame_rate(), 24);
    EXPECT_EQ(added->parameter({"gain"}).get_keyframes().size(), 1);
    EXPECT_EQ(added->get_info(View(0)).get_prefix(), QString::fromLatin1("b."));
}

TEST_F(ClipOnDisk, AnyThreadMayUseAClip)
{
    Folder output;
    const auto project = projectOver(folder / "a.#.png", output);
    Clip& clip = *project->get_default_trackable_clip();
    const std::vector<std::function<void(int)>> calls = {
        [&](int i) { clip.set_frame_rate(static_cast<float>(i % 50 + 1)); },
        [&](int) { clip.apply(StreamInfo(folder.path(), "b.", ".png", 1, 5, 1), View(1)); },
        [&](int) { clip.delete_stream(View(1)); },
        [&](int i) { clip.get_color_parameters()->set_gamma(static_cast<float>(i % 7 + 1)); },
        [&](int) { textOf(clip); },
        [&](int) {
            clip.parameter({"streams", "1", "gain"}).set(2.0, 1, View(0));
        },
        [&](int) { clip.assign_project_view(View(0), View(0)); },
        [&](int) {
            UndoGroup group = project->undo_group();
            group.begin();
            clip.set_first_frame_offset(1);
            group.rollback();
        },
    };
    std::vector<std::thread> threads;
    for (const auto& call : calls)
        threads.emplace_back([&call] {
            for (int i = 0; i < 50; ++i)
                try {
                    call(i);
                } catch (const STRM_Exception&) { // the stream is gone, or there already
                }
        });
    for (std::thread& thread : threads)
        thread.join();
    project->save_as(output / "saved");
    Project loaded(output / "saved", nullptr);
    EXPECT_EQ(textOf(*loaded.get_default_trackable_clip()), textOf(clip));
}
