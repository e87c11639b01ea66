// The document of a project, as it is written. docs/engine.md describes the format.
#include "clips.h"
#include "format.h"

#include <algorithm>
#include <engine/document/document.h>
#include <engine/project/data.h>
#include <engine/stratum/shapes.h>
#include <orrery/clip.h>

namespace orrery {

namespace {

using namespace Stratum;

Json colorJson(const Fundo::Colour3<float>& color) { return Json::array({color.red, color.green, color.blue}); }

Json settingsJson(const Settings& settings)
{
    Json json;
    json["frame_rate"] = settings.frameRate;
    json["first_frame_offset"] = settings.firstFrameOffset;
    json["length"] = settings.length;
    json["playback"] = Json::array({settings.playbackInPoint, settings.playbackOutPoint});
    json["in_out_range"] = Json::array({settings.inOutRange.first, settings.inOutRange.second});
    json["interlace_mode"] = settings.interlaceMode;
    json["notes"] = toJson(settings.notes);
    json["output_dir"] = toJson(settings.outputFolder);
    json["hero_view"] = settings.heroView;
    json["views"] = Json::array();
    for (const ViewSettings& view : settings.views)
        json["views"].push_back({{"name", toJson(view.name)},
                                 {"abbreviation", toJson(view.abbreviation)},
                                 {"color", colorJson(view.color)}});
    return json;
}

Json renderJson(ProjectParameters& parameters)
{
    Json json = Json::object();
    for (int i = 0; i < ProjectParameters::RenderValueCount; ++i) {
        const auto value = static_cast<ProjectParameters::RenderValue>(i);
        const Knob::Description& description = ProjectParameters::description(value);
        json[description.name] = writeAnimation(parameters.animation(value), description.kind);
    }
    return json;
}

Json masterJson(const PointModel& point)
{
    const PointModel& master = *point.masterModel();
    const MasterLink& link = *point.link();
    return {{"layer", master.contourModel().layer().id()},
            {"contour", master.contourModel().id()},
            {"point", master.id()},
            {"time", link.time},
            {"reference", Json::array({link.reference.x, link.reference.y})},
            {"lock_tangents", link.lockTangents},
            {"angle", link.referenceAngle}};
}

Json pointJson(const PointModel& point)
{
    const int type = point.contourModel().type();
    Json json{{"id", point.id()}};
    for (std::size_t i = 0; i < pointFieldCount(type); ++i)
        json["fields"].push_back(writeAnimation(point.fields[i], pointDescriptions(type)[i].kind));
    if (point.masterModel())
        json["master"] = masterJson(point);
    return json;
}

Json contourJson(const ContourModel& contour)
{
    Json json{{"id", contour.id()}, {"type", contour.type()}, {"next_point", contour.nextPointId}};
    json["edge_width"] = writeAnimation(contour.settings[1], Knob::Kind::Number);
    json["points"] = Json::array();
    for (const PointModel& point : contour.points)
        json["points"].push_back(pointJson(point));
    return json;
}

Json itemJson(const TreeItem& item)
{
    return {{"id", item.id()},
            {"name", toJson(item.name)},
            {"visible", item.visible},
            {"locked", item.locked},
            {"matte_color", colorJson(item.matteColor)},
            {"stroke_color", colorJson(item.strokeColor)}};
}

Json layerJson(const LayerModel& layer)
{
    Json json = itemJson(layer);
    json["selected"] = layer.selected;
    json["in_point"] = Json::array({layer.inView, layer.inFrame});
    const std::vector<Clip*>& clips = layer.manager().clips;
    const auto clip =
        std::find_if(clips.begin(), clips.end(), [&layer](const Clip* clip) { return clip->get_id() == layer.clip; });
    if (clip != clips.end())
        json["clip"] = clip - clips.begin();
    if (layer.trackedWith())
        json["tracked_with"] = layer.trackedWith()->id();
    if (const LayerAnimations* animations = layer.animationsIfAny()) {
        for (int i = 0; i < LayerValueCount; ++i) {
            const Knob::Description& entry = description(static_cast<LayerValue>(i));
            json["values"][entry.name] = writeAnimation(animations->values[static_cast<std::size_t>(i)], entry.kind);
        }
        for (const Knob::Animation& corner : animations->corners)
            json["transform"].push_back(writeAnimation(corner, Knob::Kind::Number));
    }
    json["next_contour"] = layer.nextContourId;
    json["contours"] = Json::array();
    for (const ContourModel& contour : layer.contours)
        json["contours"].push_back(contourJson(contour));
    return json;
}

// Items are turned into text one by one: a document of the whole project would take many times its memory.
class DocumentText
{
public:
    void add(const char* name, const Json& json) { m_text += separated() + '"' + name + "\": " + json.dump(); }
    void beginList(const char* name)
    {
        m_text += separated() + '"' + name + "\": [";
        m_separator = "\n";
    }
    void addItem(const std::string& json)
    {
        m_text += m_separator + json;
        m_separator = ",\n";
    }
    void endList() { m_text += "]"; }
    std::string finished() { return std::move(m_text) + "\n}\n"; }

private:
    std::string separated() const { return m_text.empty() ? "{\n" : ",\n"; }

    std::string m_text;
    std::string m_separator;
};

void addItems(DocumentText& text, const Ordered<TreeItem>& items)
{
    for (const TreeItem& item : items) {
        if (const auto* layer = dynamic_cast<const LayerModel*>(&item)) {
            text.addItem(Json{{"layer", layerJson(*layer)}}.dump());
            continue;
        }
        const auto& group = static_cast<const GroupModel&>(item);
        Json json = itemJson(group);
        if (const Knob::Animation* opacity = group.opacityIfAny())
            json["opacity"] = writeAnimation(*opacity, Knob::Kind::Number);
        json["layers"] = Json::array();
        for (const LayerModel& member : group.layers)
            json["layers"].push_back(layerJson(member));
        text.addItem(Json{{"group", std::move(json)}}.dump());
    }
}

} // namespace

std::string writeProject(Project::Data& project)
{
    STRM_ProjectManager& manager = *project.manager;
    DocumentText text;
    const Reading lock(manager);
    text.add("format", document::format);
    text.add("version", document::version);
    text.add("next_id", manager.nextId());
    text.add("settings", settingsJson(manager.settings));
    text.add("render", renderJson(manager.parameters()));
    text.beginList("clips");
    for (const Clip* clip : manager.clips)
        text.addItem(writeClip(*clip).dump());
    text.endList();
    text.beginList("items");
    addItems(text, manager.root().items);
    text.endList();
    return text.finished();
}

} // namespace orrery
