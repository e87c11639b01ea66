// Saved projects: equal when they are read back, whole at every moment, refused when they are damaged.
#include "sample.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <csignal>
#include <nlohmann/json.hpp>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Json = nlohmann::json;

std::string read(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().toStdString();
}

void write(const QString& name, const std::string& content)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content.data(), static_cast<qint64>(content.size()));
}

TEST(Saving, GivesBackWhatWasSaved)
{
    TemporaryFolder folder;
    auto project = sampleProject();
    project->find_layers("front")[0].add_bezier_contour(0, {}, View());
    const QString file = folder.path(QString::fromUtf8("pr\xc3\xb6ject.vireo"));
    expectThrow<STRM_BadState>([&] { project->save(); }, "no file");
    project->save_as(file);
    Project loaded(file, nullptr);
    EXPECT_EQ(describe(loaded), describe(*project));
    EXPECT_EQ(documentOf(loaded), documentOf(*project));
    EXPECT_EQ(loaded.get_project_file(), file);
    loaded.set_notes("changed");
    loaded.save();
    EXPECT_EQ(Project(file, nullptr).get_notes(), QString("changed"));
    EXPECT_EQ(folder.files().size(), 1);
    // What is new gets an id that nothing removed ever had.
    Layer again = loaded.add_layer(nullptr, "again", 0, 0);
    again.remove();
    loaded.save();
    Project reopened(file, nullptr);
    EXPECT_EQ(documentOf(reopened), documentOf(loaded));
}

TEST(Saving, KeepsNumbersExactlyAndLongTextsWhole)
{
    TemporaryFolder folder;
    auto project = emptyProject();
    std::mt19937_64 random(9);
    Layer layer = project->add_layer(nullptr, QString(60000, QChar(0x4e2d)), 0, 0);
    Parameter x = layer.parameter({"transform", "corner0_x"});
    for (int i = 0; i < 2000; ++i)
        x.set(std::ldexp(double(random()), -int(random() % 90)) * (random() % 2 ? 1e-3 : -1e-3) / 1e15, i / 3.0,
              View());
    project->set_notes(QString(300000, QChar('n')) + QString::fromUtf8("\xf0\x9f\x98\x80") + QChar(0) + "\r\n\x7f");
    project->save_as(folder.path("p"));
    Project loaded(folder.path("p"), nullptr);
    EXPECT_EQ(describe(loaded), describe(*project));
}

TEST(Saving, RefusesWhatIsNoProject)
{
    TemporaryFolder folder;
    auto project = sampleProject();
    const QString file = folder.path("p");
    const std::string name = file.toStdString();
    const auto refused = [&](const std::string& content, const std::string& part) {
        write(file, content);
        expectThrow<STRM_BadFile>([&] { Project(file, nullptr); }, name);
        expectThrow<STRM_BadFile>([&] { Project(file, nullptr); }, part);
    };
    expectThrow<STRM_BadFile>([&] { Project(file, nullptr); }, name);
    expectThrow<STRM_BadFile>([&] { Project(folder.path(), nullptr); }, "no file");
    refused("", "no project file");
    refused("\x89PNG\r\n", "no project file");
    refused("{\"format\": \"something else\"}", "no project file");
    refused("[1, 2, 3]", "no project file");
    refused(std::string(100000, '['), "nested");
    Json document = Json::parse(documentOf(*project));
    const auto changed = [&](const char* pointer, const Json& value) {
        Json copy = document;
        copy[Json::json_pointer(pointer)] = value;
        return copy.dump();
    };
    refused(changed("/version", 2), "newer");
    refused(changed("/version", "1"), "version");
    refused(changed("/settings/frame_rate", 0), "settings.frame_rate");
    refused(changed("/settings/hero_view", 3), "settings.hero_view");
    refused(changed("/settings/views", Json::array()), "settings.views");
    refused(changed("/settings/playback", Json::array({5, 60})), "settings.playback[1]");
    refused(changed("/items/0/layer/name", 7), "items[0].layer.name");
    refused(changed("/items/0/layer/clip", 2), "items[0].layer.clip");
    refused(changed("/items/0/layer/matte_color", Json::array({0, 0, 2})), "matte_color[2]");
    refused(changed("/items/0/layer/id", document["items"][1]["group"]["id"]), "another");
    refused(changed("/items/0/layer/contours/0/type", 2), "type");
    refused(changed("/items/0/layer/contours/0/points/0/fields/2", Json::array({1e300})), "fields[2][0]");
    refused(changed("/items/0/layer/contours/0/points/0/fields/2", Json::array({0, 0, 1})), "fields[2]");
    refused(changed("/items/0/layer/contours/0/points/0/fields/2", Json::array({0, 0, 1, 5, 0, 1, 6})), "second");
    refused(changed("/items/0/layer/tracked_with", document["items"][0]["layer"]["id"]), "circle");
    refused(changed("/items/0/layer/tracked_with", 4000), "not there");
    refused(changed("/items/0", Json::object()), "items[0]");
}

TEST(Saving, SurvivesDamageOfEveryKind)
{
    TemporaryFolder folder;
    auto project = sampleProject();
    const std::string whole = documentOf(*project);
    const QString file = folder.path("p");
    std::mt19937 random(10);
    const auto tryToOpen = [&](const std::string& content) {
        write(file, content);
        try {
            Project loaded(file, nullptr);
            describe(loaded); // damage that makes sense by chance must work, too
        } catch (const STRM_BadFile& error) {
            EXPECT_EQ(std::string(error.what()).find(file.toStdString()), 0u) << error.what();
        }
    };
    for (int i = 0; i < 40; ++i) {
        write(file, whole.substr(0, random() % (whole.size() - 2)));
        EXPECT_THROW(Project(file, nullptr), STRM_BadFile);
    }
    for (int i = 0; i < 150; ++i) {
        std::string damaged = whole;
        for (unsigned int k = 0; k <= random() % 3; ++k)
            damaged[random() % damaged.size()] = "09-.e[]{},:\"tf\n\0\x80z"[random() % 18];
        tryToOpen(damaged);
    }
    // Values of other types and sizes anywhere.
    const Json document = Json::parse(whole).flatten();
    for (const Json& value : {Json(), Json(-1), Json(1e18), Json("x"), Json(true), Json(4294967295u)}) {
        for (int i = 0; i < 40; ++i) {
            Json copy = document;
            auto item = copy.begin();
            std::advance(item, random() % copy.size());
            *item = value;
            tryToOpen(copy.unflatten().dump());
        }
    }
}

TEST(Saving, LeavesTheOldFileWhenItCannotWrite)
{
    TemporaryFolder folder;
    auto project = sampleProject();
    expectThrow<STRM_BadFile>([&] { project->save_as("/no/such/folder/p"); }, "/no/such/folder/p");
    expectThrow<STRM_BadFile>([&] { project->save_as(folder.path()); }, "folder");
    expectThrow<STRM_BadFile>([&] { project->save_as("/proc/p"); }, "/proc/p");
    expectThrow<STRM_BadArgument>([&] { project->save_as(""); }, "file");
    EXPECT_EQ(project->get_project_file(), QString());
    EXPECT_TRUE(folder.files().isEmpty());
    // A link stays a link, and permissions stay as they were.
    write(folder.path("real"), "old");
    ::chmod(folder.path("real").toLocal8Bit().constData(), 0640);
    ASSERT_TRUE(QFile::link(folder.path("real"), folder.path("link")));
    project->save_as(folder.path("link"));
    EXPECT_TRUE(QFileInfo(folder.path("link")).isSymLink());
    EXPECT_EQ(read(folder.path("real")), documentOf(*project));
    struct stat status;
    ASSERT_EQ(::stat(folder.path("real").toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST(Saving, AKilledSaveLeavesAWholeFile)
{
    TemporaryFolder folder;
    const QString file = folder.path("p");
    auto first = sampleProject(), second = sampleProject();
    second->set_notes(QString(200000, 's'));
    first->save_as(file);
    std::mt19937 random(12);
    int seconds = 0;
    for (int round = 0; round < 40; ++round) {
        int saves[2];
        ASSERT_EQ(::pipe(saves), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            try {
                for (const char done = 1;;) {
                    second->save_as(file);
                    if (::write(saves[1], &done, 1) != 1)
                        ::_exit(2);
                    first->save_as(file);
                }
            } catch (...) {
                ::_exit(1);
            }
        }
        char done;
        ASSERT_EQ(::read(saves[0], &done, 1), 1);
        ::usleep(static_cast<useconds_t>(random() % 8000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        ::close(saves[0]);
        ::close(saves[1]);
        Project loaded(file, nullptr);
        const bool isSecond = loaded.get_notes() == second->get_notes();
        seconds += isSecond;
        EXPECT_EQ(documentOf(loaded), documentOf(isSecond ? *second : *first));
    }
    EXPECT_GT(seconds, 0);
}

} // namespace
