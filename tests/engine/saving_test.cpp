// Saved projects: equal when they are read back, whole at every moment, refused when they are damaged.
#include "sample.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <csignal>
#include <engine/project/data.h>
#include <functional>
#include <nlohmann/json.hpp>
#include <orrery/clip.h>
#include <orrery/color_parameters.h>
#include <random>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Json = nlohmann::json;

TEST(Saving, GivesBackWhatWasSaved)
{
    Folder folder;
    auto project = sampleProject();
    project->find_layers("front")[0].add_bezier_contour(0, {}, View());
    const QString file = folder / QString::fromUtf8("pr\xc3\xb6ject.vireo");
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
    Folder folder;
    auto project = emptyProject();
    std::mt19937_64 random(9);
    Layer layer = project->add_layer(nullptr, QString(60000, QChar(0x4e2d)), 0, 0);
    Parameter x = layer.parameter({"transform", "corner0_x"});
    for (int i = 0; i < 2000; ++i)
        x.set(std::ldexp(double(random()), -int(random() % 90)) * (random() % 2 ? 1e-3 : -1e-3) / 1e15, i / 3.0,
              View());
    project->set_notes(QString(300000, QChar('n')) + QString::fromUtf8("\xf0\x9f\x98\x80") + QChar(0) + "\r\n\x7f");
    project->save_as(folder / "p");
    Project loaded(folder / "p", nullptr);
    EXPECT_EQ(describe(loaded), describe(*project));
}

TEST(Saving, RefusesWhatIsNoProject)
{
    Folder folder;
    auto project = sampleProject();
    const QString file = folder / "p";
    const std::string name = toStdString(file);
    const auto refused = [&](const std::string& content, const std::string& part) {
        writeBytes(file, content);
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
    refused(changed("/version", 3), "newer");
    refused(changed("/version", "1"), "version");
    refused(changed("/settings/frame_rate", 0), "settings.frame_rate");
    refused(changed("/settings/default_hero_view", 3), "settings: default_hero_view");
    refused(changed("/settings/views", Json::array()), "settings.views");
    refused(changed("/settings/playback_out_point", 60), "settings: playback_out_point: frame 60");
    refused(changed("/items/0/layer/name", 7), "items[0].layer.name");
    refused(changed("/items/0/layer/clip", 2), "items[0].layer.clip");
    refused(changed("/items/0/layer/matte_color", Json::array({0, 0, 2})), "layer.matte_color: ");
    refused(changed("/items/0/layer/id", document["items"][1]["group"]["id"]), "another");
    refused(changed("/items/0/layer/contours/0/type", 2), "type");
    refused(changed("/items/0/layer/contours/0/points/0/fields/x", Json::array({1e300})), "fields.x[0]");
    refused(changed("/items/0/layer/contours/0/points/0/fields/x", Json::array({0, 0, 1})), "fields.x");
    refused(changed("/items/0/layer/contours/0/points/0/fields/x", Json::array({0, 0, 1, 5, 0, 1, 6})), "second");
    refused(changed("/items/0/layer/tracked_with", document["items"][0]["layer"]["id"]), "circle");
    refused(changed("/items/0/layer/tracked_with", 4000), "not there");
    refused(changed("/items/0", Json::object()), "items[0]");
}

TEST(Saving, OpensFilesOfTheFirstVersionAndSavesThemInThisOne)
{
    Folder folder;
    auto expected = sampleProject();
    Clip clip("/shots/a/plate.####.png", "graded", false, 64, 48, 60, nullptr);
    clip.add_stream("/shots/b/plate.####.png", View(3), 1, 60, false);
    clip.assign_project_view(View(3), View(2));
    clip.get_color_parameters()->set_gamma(2.2f);
    clip.set_frame_rate(12.5f);
    clip.parameter({"streams", "3", "gain"}).set(1.5, 10, View(0));
    expected->add_clip(&clip, "graded");
    Project old(QString::fromUtf8(VIREO_TEST_DOCUMENTS "/version_1.vireo"), nullptr);
    // Points that are made today have other resting values than those of the file.
    const Json opened = Json::parse(documentOf(old)), made = Json::parse(documentOf(*expected));
    for (const char* part : {"next_id", "settings", "render", "clips"})
        EXPECT_EQ(opened[part], made[part]) << part;
    EXPECT_EQ(old.get_layers().size(), expected->get_layers().size());
    old.save_as(folder / "new");
    EXPECT_EQ(Json::parse(readBytes(folder / "new"))["version"], 2);
    EXPECT_EQ(describe(*std::make_unique<Project>(folder / "new", nullptr)), describe(old));
}

// Takes one member after the other away, puts one in that nobody knows, and opens what is left.
void tryEachMember(const Json& document, const Json::json_pointer& place, const QString& file)
{
    static const std::set<std::string> needed{"format", "version", "id",    "name",  "abbr", "type",
                                              "path",   "view",    "layer", "group", "time", "fields"};
    const auto opens = [&](const Json& changed) {
        writeBytes(file, changed.dump());
        try {
            Project(file, nullptr);
            return std::string();
        } catch (const STRM_BadFile& error) {
            return std::string(error.what());
        }
    };
    Json more = document;
    more[place]["colour"] = 1;
    EXPECT_NE(opens(more).find("\"colour\", which is unknown"), std::string::npos) << place;
    for (const auto& member : document[place].items()) {
        if (place.to_string() == "/clips/0" && member.key() == "name")
            continue; // a clip may be without
        Json less = document;
        less[place].erase(member.key());
        const std::string problem = opens(less);
        const bool missed = problem.find("not there") != std::string::npos || // by what refers to it
                            problem.find("does not exist") != std::string::npos ||
                            problem.find("is not from 0 to") != std::string::npos;
        EXPECT_EQ(needed.count(member.key()) > 0, !problem.empty() && !missed) << place << member.key() << problem;
    }
}

TEST(Saving, TakesADefaultForWhatIsMissingAndRefusesWhatIsUnknown)
{
    Folder folder;
    auto project = sampleProject();
    Clip clip("/shots/a/plate.####.png", "graded", false, 64, 48, 60, nullptr);
    project->add_clip(&clip, "graded");
    const Json document = Json::parse(documentOf(*project));
    for (const char* place :
         {"", "/settings", "/settings/views/0", "/render", "/clips/0", "/clips/2/color", "/clips/2/streams/0",
          "/clips/2/streams/0/values", "/items/0/layer", "/items/0/layer/values", "/items/0/layer/contours/0",
          "/items/0/layer/contours/0/points/0", "/items/0/layer/contours/0/points/0/fields", "/items/1/group",
          "/items/1/group/layers/1/contours/0"})
        tryEachMember(document, Json::json_pointer(place), folder / "p");
}

TEST(Saving, TakesWhatSettersTakeAndNoMore)
{
    Folder folder;
    const QString file = folder / "p";
    Clip clip("/shots/a/plate.####.png", "c", false, 64, 48, 60, nullptr);
    auto project = emptyProject();
    project->add_clip(&clip, "c");
    project->add_layer(nullptr, "l", 0, 0);
    const Json document = Json::parse(documentOf(*project));
    struct Case
    {
        const char* place;
        std::vector<Json> taken, refused;
        std::function<void(const Json&)> set;
    };
    const auto text = [](const Json& value) { return QString::fromStdString(value.get<std::string>()); };
    const std::string longest(65535, 'n'), longer(65536, 'n'), nul("a\0b", 3),
        mark = "\xef\xbb\xbf"
               "mark";
    Layer layer = project->get_layers()[0];
    Clip* own = project->get_clips()["c"];
    const auto stream = [&](const char* part, const Json& value) {
        StreamInfo info = own->get_info(View(0));
        if (std::string(part) == "prefix")
            info.set_prefix(text(value));
        else if (std::string(part) == "suffix")
            info.set_suffix(text(value));
        else
            info.set_index_width(value.get<unsigned int>());
        own->apply(info, View(0));
    };
    const Case cases[] = {
        {"/settings/frame_rate",
         {1e-3, 24, 1000},
         {0, -1, 1000.001},
         [&](const Json& v) { project->set_frame_rate(v); }},
        {"/settings/length", {100, 1 << 24}, {0, (1 << 24) + 1}, [&](const Json& v) { project->set_length(v); }},
        {"/settings/playback_in_point", {0, 99}, {1 << 24}, [&](const Json& v) { project->set_playback_in_point(v); }},
        {"/settings/notes", {"", nul, mark}, {}, [&](const Json& v) { project->set_notes(text(v)); }},
        {"/settings/output_dir",
         {"", "/x", mark},
         {nul},
         [&](const Json& v) { project->set_output_dir(text(v), false); }},
        {"/settings/default_hero_view", {0}, {1}, [&](const Json& v) { project->set_default_hero_view(View(v)); }},
        {"/items/0/layer/name", {"n", longest, mark}, {"", longer}, [&](const Json& v) { layer.set_name(text(v)); }},
        {"/items/0/layer/visible", {true, false}, {}, [&](const Json& v) { layer.set_visibility(v); }},
        {"/items/0/layer/matte_color",
         {{0, 0.5, 1}},
         {{0, 0, 1.01}, {-0.1, 0, 0}},
         [&](const Json& v) {
             layer.set_matte_color({v[0], v[1], v[2]});
         }},
        {"/clips/0/frame_rate", {1e-3, 5000}, {0, -2}, [&](const Json& v) { own->set_frame_rate(v); }},
        {"/clips/0/frame_size",
         {{1, 65536}},
         {{1, 65537}},
         [&](const Json& v) {
             own->set_frame_size({v[0], v[1]});
         }},
        {"/clips/0/streams/0/prefix", {"", "a.", mark}, {"../sub/x", nul}, [&](const Json& v) { stream("prefix", v); }},
        {"/clips/0/streams/0/suffix", {"", ".b"}, {"/x", nul}, [&](const Json& v) { stream("suffix", v); }},
        {"/clips/0/streams/0/index_width", {0, 32}, {33}, [&](const Json& v) { stream("width", v); }},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.place);
        const Json::json_pointer place(row.place);
        for (const Json& value : row.taken) {
            row.set(value);
            project->save_as(file);
            EXPECT_EQ(documentOf(*std::make_unique<Project>(file, nullptr)), documentOf(*project));
        }
        for (const Json& value : row.refused) {
            EXPECT_THROW(row.set(value), STRM_Exception) << value;
            Json changed = document;
            changed[place] = value;
            writeBytes(file, changed.dump());
            const std::string last = place.back();
            expectThrow<STRM_BadFile>([&] { Project(file, nullptr); }, last);
        }
    }
    for (const char* place : {"/clips/0/streams/0/path", "/settings/output_dir"}) {
        Json relative = document;
        relative[Json::json_pointer(place)] = "shots/../a";
        writeBytes(file, relative.dump());
        expectThrow<STRM_BadFile>([&] { Project(file, nullptr); }, "'shots/../a' is not an absolute, clean path");
    }
}

TEST(Saving, KeepsTheOldFileWhenTheNewOneCouldNotBeOpened)
{
    Folder folder;
    const QString file = folder / "p";
    auto project = emptyProject();
    project->save_as(file);
    const std::string before = readBytes(file);
    // Beyond what any setter takes, as a fault of the engine could leave it.
    Stratum::Exclusive(*project->data().manager)->settings.frameRate = 2000;
    expectThrow<STRM_OperationFailed>([&] { project->save(); }, "settings.frame_rate: 2000");
    EXPECT_EQ(readBytes(file), before);
    // The last number of a layer.
    Json document = Json::parse(before);
    document["next_id"] = 0xfffffff0u;
    writeBytes(file, document.dump());
    Project last(file, nullptr);
    last.add_layer(nullptr, "one", 0, 0);
    expectThrow<STRM_OutOfRange>([&] { last.add_layer(nullptr, "two", 0, 0); }, "numbers");
    last.save();
    EXPECT_EQ(Project(file, nullptr).get_layers().size(), 1);
}

TEST(Saving, SurvivesDamageOfEveryKind)
{
    Folder folder;
    auto project = sampleProject();
    const std::string whole = documentOf(*project);
    const QString file = folder / "p";
    std::mt19937 random(10);
    const auto tryToOpen = [&](const std::string& content) {
        writeBytes(file, content);
        try {
            Project loaded(file, nullptr);
            describe(loaded); // damage that makes sense by chance must work, too
        } catch (const STRM_BadFile& error) {
            EXPECT_EQ(std::string(error.what()).find(toStdString(file)), 0u) << error.what();
        }
    };
    for (int i = 0; i < 40; ++i) {
        writeBytes(file, whole.substr(0, random() % (whole.size() - 2)));
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
    Folder folder;
    auto project = sampleProject();
    expectThrow<STRM_BadFile>([&] { project->save_as("/no/such/folder/p"); }, "/no/such/folder/p");
    expectThrow<STRM_BadFile>([&] { project->save_as(folder.path()); }, "folder");
    expectThrow<STRM_BadFile>([&] { project->save_as("/proc/p"); }, "/proc: cannot be written");
    expectThrow<STRM_BadArgument>([&] { project->save_as(""); }, "file");
    EXPECT_EQ(project->get_project_file(), QString());
    EXPECT_TRUE(folder.files().isEmpty());
    // A link stays a link, and permissions stay as they were.
    writeBytes(folder / "real", "old");
    ::chmod((folder / "real").toLocal8Bit().constData(), 0640);
    ASSERT_TRUE(QFile::link(folder / "real", folder / "link"));
    project->save_as(folder / "link");
    EXPECT_TRUE(QFileInfo(folder / "link").isSymLink());
    EXPECT_EQ(readBytes(folder / "real"), documentOf(*project));
    struct stat status;
    ASSERT_EQ(::stat((folder / "real").toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST(Saving, AKilledSaveLeavesAWholeFile)
{
    Folder folder;
    const QString file = folder / "p";
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
