// Reads a project file without trusting it. Everything is read into a project that no other thread can reach yet: when
// anything is wrong with the file, the exception destroys it.
#include "clips.h"
#include "format.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <engine/document/document.h>
#include <engine/handles/access.h>
#include <engine/project/clips.h>
#include <orrery/clip.h>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace orrery {

namespace {

using namespace Stratum;

constexpr std::size_t largestFile = std::size_t(1) << 30;
constexpr int deepest = 32;
constexpr std::int64_t largestId = 0xfffffff0;
constexpr std::int64_t longestProject = 1 << 24;
constexpr std::int64_t mostViews = 1000;

Fundo::Colour3<float> readColor(const JsonReader& reader)
{
    float components[3];
    if (reader.size() != 3)
        reader.refuse(QString::fromLatin1("is no color"));
    for (std::size_t i = 0; i < 3; ++i) {
        const double component = reader[i].number();
        if (component < 0 || component > 1)
            reader[i].refuse(QString::fromLatin1("is not from 0 to 1"));
        components[i] = static_cast<float>(component);
    }
    return {components[0], components[1], components[2]};
}

QString readName(const JsonReader& reader)
{
    const QString name = reader.text();
    if (name.isEmpty())
        reader.refuse(QString::fromLatin1("is empty"));
    return name;
}

unsigned int readId(const JsonReader& reader) { return static_cast<unsigned int>(reader.integer(0, largestId)); }

std::pair<unsigned int, unsigned int> readFrames(const JsonReader& reader, unsigned int length)
{
    const auto first = static_cast<unsigned int>(reader[std::size_t(0)].integer(0, length - 1));
    return {first, static_cast<unsigned int>(reader[1].integer(first, length - 1))};
}

std::vector<ViewSettings> readViews(const JsonReader& reader)
{
    std::vector<ViewSettings> views;
    std::set<QString> names, abbreviations;
    reader.forEach([&](const JsonReader& view) {
        views.push_back({readName(view["name"]), readName(view["abbreviation"]), readColor(view["color"])});
        if (!names.insert(views.back().name).second || !abbreviations.insert(views.back().abbreviation).second)
            view.refuse(QString::fromLatin1("has the name of another"));
    });
    if (views.empty() || views.size() > mostViews)
        reader.refuse(QString::fromLatin1("are %1").arg(views.size()));
    return views;
}

Settings readSettings(const JsonReader& reader)
{
    Settings settings;
    settings.frameRate = static_cast<float>(reader["frame_rate"].number());
    if (!(settings.frameRate > 0 && settings.frameRate <= 1000))
        reader["frame_rate"].refuse(QString::fromLatin1("is not greater than 0 and at most 1000"));
    settings.firstFrameOffset = static_cast<int>(reader["first_frame_offset"].integer(INT32_MIN, INT32_MAX));
    settings.length = static_cast<unsigned int>(reader["length"].integer(1, longestProject));
    std::tie(settings.playbackInPoint, settings.playbackOutPoint) = readFrames(reader["playback"], settings.length);
    settings.inOutRange = readFrames(reader["in_out_range"], settings.length);
    settings.interlaceMode = static_cast<int>(reader["interlace_mode"].integer(0, InvalidInterlaceMode - 1));
    settings.notes = reader["notes"].text();
    settings.outputFolder = reader["output_dir"].text();
    settings.views = readViews(reader["views"]);
    settings.heroView =
        static_cast<int>(reader["hero_view"].integer(0, static_cast<std::int64_t>(settings.views.size()) - 1));
    return settings;
}

class Loader
{
public:
    explicit Loader(Project::Data& project) : m_project(project), m_manager(*project.manager) {}

    void read(const JsonReader& document)
    {
        m_manager.settings = readSettings(document["settings"]);
        readRender(document["render"]);
        document["clips"].forEach([this](const JsonReader& clip) { readClipOf(clip); });
        Edit edit(m_manager);
        document["items"].forEach([&](const JsonReader& item) { readItem(edit, item); });
        m_manager.idsGiven(readId(document["next_id"]));
        makeLinks();
        edit.commit();
        m_manager.history = History();
    }

private:
    void readRender(const JsonReader& reader)
    {
        for (int i = 0; i < ProjectParameters::RenderValueCount; ++i) {
            const auto value = static_cast<ProjectParameters::RenderValue>(i);
            const Knob::Description& description = ProjectParameters::description(value);
            m_manager.parameters().animation(value) = readAnimation(reader[description.name], description);
        }
    }

    void readClipOf(const JsonReader& reader)
    {
        std::unique_ptr<Clip> clip = readClip(reader, m_manager.shared_from_this());
        const QString name = clip->get_name();
        Edit edit(m_manager);
        if (freeClipName(m_manager, name) != name)
            reader.refuse(QString::fromLatin1("has the name of another"));
        adoptClip(edit, m_project, std::move(clip));
        edit.commit();
    }

    void readItem(Edit& edit, const JsonReader& reader)
    {
        if (reader.has("layer")) {
            readLayer(edit, reader["layer"], nullptr);
            return;
        }
        const JsonReader json = reader["group"];
        GroupModel& group = *m_manager.makeGroup(newId(json));
        readCommon(json, group);
        if (json.has("opacity"))
            group.opacityAnimation() = readAnimation(json["opacity"], groupOpacityDescription());
        addGroup(edit, group);
        json["layers"].forEach([&](const JsonReader& layer) { readLayer(edit, layer, &group); });
    }

    unsigned int newId(const JsonReader& reader)
    {
        const unsigned int id = readId(reader["id"]);
        if (!m_ids.insert(id).second)
            reader["id"].refuse(QString::fromLatin1("is that of another layer or group"));
        return id;
    }

    static void readCommon(const JsonReader& reader, TreeItem& item)
    {
        item.name = readName(reader["name"]);
        item.visible = reader["visible"].flag();
        item.locked = reader["locked"].flag();
        item.matteColor = readColor(reader["matte_color"]);
        item.strokeColor = readColor(reader["stroke_color"]);
    }

    void readLayer(Edit& edit, const JsonReader& reader, GroupModel* group)
    {
        LayerModel& layer = *m_manager.makeLayer(newId(reader));
        readCommon(reader, layer);
        layer.selected = reader["selected"].flag();
        layer.inView = static_cast<int>(reader["in_point"][std::size_t(0)].integer(0, mostViews));
        layer.inFrame = static_cast<unsigned int>(reader["in_point"][1].integer(0, longestProject));
        if (reader.has("clip")) {
            const auto last = static_cast<std::int64_t>(m_manager.clips.size()) - 1;
            layer.clip = m_manager.clips[static_cast<std::size_t>(reader["clip"].integer(0, last))]->get_id();
        }
        readAnimations(reader, layer);
        reader["contours"].forEach([&](const JsonReader& contour) { readContour(contour, layer); });
        layer.nextContourId = std::max(layer.nextContourId, readId(reader["next_contour"]));
        if (reader.has("tracked_with"))
            m_tracks.emplace_back(&layer, readId(reader["tracked_with"]));
        addLayer(edit, layer);
        if (group)
            moveLayer(edit, layer, group, group->layers.size());
    }

    static void readAnimations(const JsonReader& reader, LayerModel& layer)
    {
        if (reader.has("values")) {
            for (int i = 0; i < LayerValueCount; ++i) {
                const Knob::Description& entry = description(static_cast<LayerValue>(i));
                layer.animations().values[static_cast<std::size_t>(i)] =
                    readAnimation(reader["values"][entry.name], entry);
            }
        }
        if (reader.has("transform")) {
            const JsonReader corners = reader["transform"];
            for (std::size_t i = 0; i < layer.animations().corners.size(); ++i)
                layer.animations().corners[i] = readAnimation(corners[i], cornerDescription(i));
        }
    }

    void readContour(const JsonReader& reader, LayerModel& layer)
    {
        const int type = static_cast<int>(reader["type"].integer(VX_CONTOUR_XSPLINE, VX_CONTOUR_BEZIER));
        ContourModel* const contour = layer.makeContour(type, readId(reader["id"]));
        if (!contour)
            reader["id"].refuse(QString::fromLatin1("does not come after those before"));
        contour->settings[1] = readAnimation(reader["edge_width"], contourDescription(1));
        std::vector<std::pair<unsigned int, std::size_t>> order;
        const JsonReader points = reader["points"];
        for (std::size_t i = 0; i < points.size(); ++i)
            order.emplace_back(readId(points[i]["id"]), i);
        std::sort(order.begin(), order.end());
        std::vector<PointModel*> outline(order.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            const JsonReader point = points[order[i].second];
            if (i > 0 && order[i].first == order[i - 1].first)
                point["id"].refuse(QString::fromLatin1("is that of another point"));
            outline[order[i].second] = &readPoint(point, *contour, order[i].first);
        }
        for (PointModel* point : outline)
            contour->points.append(*point);
        contour->nextPointId = std::max(contour->nextPointId, readId(reader["next_point"]));
        contour->setPresent(true);
        layer.contours.append(*contour);
    }

    PointModel& readPoint(const JsonReader& reader, ContourModel& contour, unsigned int id)
    {
        PointModel& point = contour.makePoint(id);
        const JsonReader fields = reader["fields"];
        for (std::size_t i = 0; i < pointFieldCount(contour.type()); ++i)
            point.fields[i] = readAnimation(fields[i], pointDescriptions(contour.type())[i]);
        if (reader.has("master"))
            m_masters.push_back(readMaster(reader["master"], point));
        return point;
    }

    struct Master
    {
        PointModel* point;
        unsigned int layer, contour, id;
        MasterLink link;
    };

    static Master readMaster(const JsonReader& reader, PointModel& point)
    {
        Master master{&point, readId(reader["layer"]), readId(reader["contour"]), readId(reader["point"]), {}};
        master.link.time = reader["time"].number();
        master.link.reference = {reader["reference"][std::size_t(0)].number(), reader["reference"][1].number()};
        master.link.lockTangents = reader["lock_tangents"].flag();
        master.link.referenceAngle = reader["angle"].number();
        return master;
    }

    // ---- What refers to other objects ----

    void makeLinks()
    {
        for (const auto& [layer, id] : m_tracks) {
            LayerModel* const followed = m_manager.findLayer(id);
            if (!followed)
                refuse(
                    QString::fromLatin1("layer %1 follows the layer %2, which is not there").arg(layer->id()).arg(id));
            layer->setTrackedWith(followed);
        }
        for (const Master& master : m_masters) {
            PointModel* const followed = findPoint(master);
            if (!followed)
                refuse(QString::fromLatin1("a point follows the point %1, which is not there").arg(master.id));
            master.point->setMaster(followed, master.link);
        }
        requireNoCircle<LayerModel>(
            [this](auto visit) {
                for (const auto& [layer, id] : m_tracks)
                    visit(layer);
            },
            [](LayerModel* layer) { return layer->trackedWith(); });
        requireNoCircle<PointModel>(
            [this](auto visit) {
                for (const Master& master : m_masters)
                    visit(master.point);
            },
            [](PointModel* point) { return point->masterModel(); });
    }

    PointModel* findPoint(const Master& master) const
    {
        LayerModel* const layer = m_manager.findLayer(master.layer);
        ContourModel* const contour = layer ? layer->findContour(master.contour) : nullptr;
        return contour ? contour->find(master.id) : nullptr;
    }

    // Each object is walked over once, however long the chains are.
    template <class Object, class ForEach, class Next>
    void requireNoCircle(ForEach forEach, Next next) const
    {
        std::unordered_set<Object*> sound;
        forEach([&](Object* start) {
            std::unordered_set<Object*> walked;
            for (Object* object = start; object && !sound.count(object); object = next(object))
                if (!walked.insert(object).second)
                    refuse(QString::fromLatin1("links between layers or points run in a circle"));
            sound.insert(walked.begin(), walked.end());
        });
    }

    [[noreturn]] void refuse(const QString& problem) const
    {
        raise<STRM_BadFile>(QString::fromLatin1("%1: %2").arg(m_project.file, problem));
    }

    Project::Data& m_project;
    STRM_ProjectManager& m_manager;
    std::unordered_set<unsigned int> m_ids;
    std::vector<std::pair<LayerModel*, unsigned int>> m_tracks;
    std::vector<Master> m_masters;
};

// Before anything is made of it: how deep brackets stand in each other, those in texts aside.
int depthOf(const std::string& content)
{
    int depth = 0, deepest = 0;
    bool inText = false;
    for (std::size_t i = 0; i < content.size(); ++i) {
        const char c = content[i];
        if (c == '"')
            inText = !inText;
        else if (inText)
            i += c == '\\';
        else if (c == '[' || c == '{')
            deepest = std::max(deepest, ++depth);
        else if (c == ']' || c == '}')
            --depth;
    }
    return deepest;
}

Json parsed(const QString& file, const std::string& content)
{
    if (depthOf(content) > deepest)
        raise<STRM_BadFile>(QString::fromLatin1("%1 is no project file: it is nested too deeply").arg(file));
    try {
        return Json::parse(content);
    } catch (const Json::parse_error& error) {
        raise<STRM_BadFile>(QString::fromLatin1("%1 is no project file, or damaged at byte %2 of %3")
                                .arg(file)
                                .arg(error.byte)
                                .arg(content.size()));
    } catch (const Json::exception& error) { // a number that no double can hold
        raise<STRM_BadFile>(QString::fromLatin1("%1 is damaged: %2").arg(file, QString::fromUtf8(error.what())));
    }
}

void requireFormat(const QString& file, const Json& json)
{
    if (!json.is_object() || !json.contains("format") || json["format"] != document::format)
        raise<STRM_BadFile>(QString::fromLatin1("%1 is no project file").arg(file));
    const JsonReader reader(file, json);
    const auto version = reader["version"].integer(1, INT32_MAX);
    if (version > document::version)
        raise<STRM_BadFile>(
            QString::fromLatin1("%1 was written by a newer version: its format is %2, this reads up to %3")
                .arg(file)
                .arg(version)
                .arg(document::version));
}

} // namespace

void readProject(Project::Data& project, const QString& file)
{
    project.file = QDir::cleanPath(QFileInfo(file).absoluteFilePath());
    const Json json = parsed(project.file, readFile(project.file, largestFile));
    requireFormat(project.file, json);
    Loader(project).read(JsonReader(project.file, json));
}

} // namespace orrery
