// What scripts name as a place: for every operation that takes one, what is refused; and what stands there is kept.

#include "test_footage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <orrery/progress_watcher.h>
#include <orrery/render_operation.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int linkError = 0;

} // namespace

// In place of the system's, as on a file system without hard links.
extern "C" int link(const char* from, const char* to) noexcept
{
    if (linkError == 0)
        return ::linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
    errno = linkError;
    return -1;
}

namespace {

class Places : public testing::Test
{
protected:
    Places()
    {
        for (int frame = 0; frame < 2; ++frame)
            writeImage(source.path() + QString::fromLatin1("/a.%1.png").arg(frame), pixels::Image({8, 6}, 3));
        project = projectOver(source / "a.#.png", folder);
        clip = project->get_default_trackable_clip();
        addPolygon(*project, "layer", square(1, 1, 6, 5));
    }

    void exportTo(const QString& path, const QString& prefix = "out.")
    {
        clip->exportClip(nullptr, path, prefix, ".png", "", 0, 1, 1, {}, false);
    }

    Clip* render()
    {
        RenderInsertOperation operation;
        return project->render(&operation, 0, 1, {}, View(0));
    }

    Folder source, folder;
    std::unique_ptr<Project> project;
    Clip* clip;
};

// Root may do everything: a child that is nobody tries. The names of tests that failed there are on its standard error.
template <class Action>
void asNobody(const Action& action)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        if (geteuid() == 0 && setuid(65534) != 0)
            _exit(3);
        action();
        _exit(testing::Test::HasFailure());
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

void allow(const QString& path, mode_t mode) { ASSERT_EQ(chmod(path.toUtf8().constData(), mode), 0); }

} // namespace

TEST_F(Places, NoOperationTakesWhatIsNoFileOrFolder)
{
    const std::pair<const char*, std::function<void(const QString&)>> operations[] = {
        {"open", [](const QString& path) { Project opened(path, nullptr); }},
        {"save", [this](const QString& path) { project->save_as(path); }},
        {"output folder", [this](const QString& path) { project->set_output_dir(path, false); }},
        {"clip", [](const QString& path) { Clip(path, "C", false, 0, 0, 0, nullptr); }},
        {"stream", [this](const QString& path) { clip->add_stream(path, View(1), 0, 1, false); }},
        {"apply", [this](const QString& path) { clip->apply(StreamInfo(path, "a.", ".png", 0, 1, 1), View(0)); }},
        {"relink", [this](const QString& path) { clip->relink(StreamInfo(path, "a.", ".png", 0, 1, 1), View(0)); }},
        {"relink by text", [this](const QString& path) { clip->relink(path, "", "", 0, 1, View(0)); }},
        {"export", [this](const QString& path) { exportTo(path); }},
        {"shapes",
         [this](const QString& path) {
             project->export_rendered_shapes({}, Grayscale, "M", path, "m.", ".png", 0, 1, 1, {}, false);
         }},
    };
    const QString fifo = folder / "fifo.1.png";
    ASSERT_EQ(mkfifo(fifo.toUtf8().constData(), 0666), 0);
    writeBytes(folder / "a", "kept");
    ASSERT_TRUE(QFile::link(fifo, folder / "link.1.png"));
    for (const auto& [name, operation] : operations) {
        SCOPED_TRACE(name);
        expectThrow<STRM_BadArgument>([&] { operation(folder / "a" + QChar(0) + "b"); }, "NUL");
        for (const QString& path : {fifo, folder / "link.1.png"})
            expectThrow<STRM_BadFile>([&] { operation(path); }, ".1.png: is n");
    }
    EXPECT_EQ(readBytes(folder / "a"), "kept");
    EXPECT_TRUE(QFileInfo::exists(fifo) && !QFileInfo(fifo).isFile());
    // Nor where a frame is to go.
    ASSERT_EQ(mkfifo((folder / "out.1.png").toUtf8().constData(), 0666), 0);
    expectThrow<STRM_BadFile>([&] { exportTo(folder.path()); }, "out.1.png: is no file");
}

TEST_F(Places, WhatMayNotBeWrittenOrListedIsNamed)
{
    project->save_as(folder / "p");
    exportTo(folder.path());
    const std::string saved = readBytes(folder / "p"), frame = readBytes(folder / "out.1.png");
    QDir(folder.path()).mkdir("hidden");
    allow(folder.path(), 0777);
    allow(folder / "p", 0444);
    allow(folder / "out.0.png", 0666);
    allow(folder / "out.1.png", 0444);
    allow(folder / "hidden", 0300);
    allow(source.path(), 0555);
    asNobody([&] {
        expectThrow<STRM_BadFile>([&] { project->save_as(folder / "p"); }, "p: cannot be replaced: Permission");
        expectThrow<STRM_BadFile>([&] { exportTo(folder.path()); }, "out.1.png: cannot be replaced: Permission");
        expectThrow<STRM_BadFile>([&] { exportTo(source / "deep/deeper"); }, "deep: cannot be written: Permission");
        expectThrow<STRM_BadFile>([&] { Clip(folder / "hidden", "C", true, 0, 0, 0, nullptr); },
                                  "hidden: cannot be listed: Permission");
    });
    EXPECT_EQ(readBytes(folder / "p"), saved);
    EXPECT_EQ(readBytes(folder / "out.1.png"), frame);
}

TEST_F(Places, FoldersThatAreMissingAreMadeAndTakenBack)
{
    const QString tooLong(300, 'n');
    expectThrow<STRM_BadFile>([&] { exportTo(folder / "new/" + tooLong); }, "File name too long");
    EXPECT_TRUE(folder.files().isEmpty());
    project->set_output_dir(folder / "out/deep", false);
    EXPECT_EQ(render()->get_info(View(0)).get_path(), folder / "out/deep/insert_1");
    expectThrow<STRM_BadFile>([&] { project->set_output_dir(folder / "none", true); }, "none");
    // Relative ones are where they were when they were given.
    project->set_output_dir("relative", false);
    EXPECT_EQ(project->get_output_dir(), QDir::currentPath() + "/relative");
}

TEST_F(Places, TheOldFilesComeBackWithoutHardLinksToo)
{
    for (const int error : {0, EPERM, EMLINK}) {
        Folder output;
        writeBytes(output / "out.0.png", "mine");
        linkError = error;
        exportTo(output.path());
        EXPECT_NE(readBytes(output / "out.0.png"), "mine");
        writeBytes(output / "out.0.png", "mine");
        // The second cannot be given its name, and only that tells: nothing stood in the way before.
        writeBytes(output / "out.1.png", "mine too");
        const auto makeFolder = [&] {
            QFile::remove(output / "out.1.png");
            QDir(output.path()).mkdir("out.1.png");
        };
        const Listener told(*clip->get_progress_watcher(), SIGNAL(progressChanged(double, QString)), makeFolder);
        expectThrow<STRM_BadFile>([&] { exportTo(output.path()); }, "out.1.png: is a folder");
        linkError = 0;
        EXPECT_EQ(readBytes(output / "out.0.png"), "mine") << error;
        EXPECT_EQ(output.files(), (QStringList{"out.0.png", "out.1.png"}));
    }
}

TEST_F(Places, WhatKilledProcessesLeftIsCleared)
{
    const auto leave = [this] {
        QDir(folder.path()).mkdir(".staged-00000000");
        makeEmptyFiles(folder, {".staged-00000000/.lock", ".staged-00000000/insert.0000.png"});
    };
    leave();
    render();
    EXPECT_EQ(folder.files(), QStringList{"insert_1"});
    EXPECT_EQ(QDir(folder / "insert_1").entryList(QDir::Files | QDir::Hidden),
              (QStringList{"insert.0000.png", "insert.0001.png"}));
    leave();
    project->save_as(folder / "p");
    EXPECT_EQ(folder.files(), (QStringList{"insert_1", "p"}));
}

TEST_F(Places, NamesMayBeAsLongAndAsOddAsTheSystemTakesThem)
{
    const QString prefix = QString(250, 'n') + '.'; // and "0.png"
    exportTo(folder.path(), prefix.mid(1));
    EXPECT_EQ(folder.files().size(), 2);
    exportTo(folder.path(), prefix.mid(1));
    project->save_as(folder.path() + '/' + QString(255, 'p'));
    EXPECT_EQ(folder.files().size(), 3);
    project->add_clip(clip, "%2");
    EXPECT_EQ(project->add_clip(clip, "%2")->get_name(), QString("%2 2"));
    writeBytes(folder / "%2%1", "");
    ASSERT_EQ(truncate((folder / "%2%1").toUtf8().constData(), (1ll << 30) + 1), 0);
    expectThrow<STRM_BadFile>([&] { Project(folder / "%2%1", nullptr); }, "%2%1: is no project file: 1073741825 bytes");
}

TEST_F(Places, ExportsThatStartTogetherLeaveOneAnotherAlone)
{
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(fork());
        if (children.back() != 0)
            continue;
        alarm(60);
        try {
            for (int n = 0; n < 40; ++n)
                clip->exportClip(nullptr, folder.path(), QString("%1.").arg(i), ".png", "", 0, 0, 1, {}, false);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            _exit(1);
        }
        _exit(0);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(folder.files(), (QStringList{"0.0.png", "1.0.png", "2.0.png", "3.0.png"}));
}
