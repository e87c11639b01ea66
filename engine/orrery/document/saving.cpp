// The document of a project, as it is written. docs/engine.md describes the format.
#include "records.h"
#include "values.h"

#include <engine/document/document.h>
#include <engine/errors/arguments.h>

namespace orrery {

namespace {

using namespace Stratum;

void writeAnimation(JsonWriter& json, const Knob::Description& description, const Knob::Animation& animation)
{
    json.name(description.name);
    write(json, animation, description.kind);
}

template <std::size_t count>
void writeValues(JsonWriter& json, const Animations<count>& values, const Knob::Description (&table)[count])
{
    json.name("values");
    json.beginObject();
    for (std::size_t i = 0; i < count; ++i)
        if (table[i].writable && (values[i].animated() || values[i].rest() != table[i].initial))
            writeAnimation(json, table[i], values[i]);
    json.endObject();
}

void write(JsonWriter& json, const StreamRecord& record)
{
    json.beginObject();
    writeMember(json, "view", record.view);
    writeFields(json, record.stream.name);
    writeFields(json, record.stream);
    if (record.projectView)
        writeMember(json, "project_view", *record.projectView);
    writeValues(json, record.values, StreamBranch::descriptions);
    json.endObject();
}

void write(JsonWriter& json, const ClipRecord& record)
{
    json.beginObject();
    writeFields(json, record.state);
    json.name("streams");
    json.beginList();
    for (const StreamRecord& stream : record.streams)
        write(json, stream);
    json.endList();
    writeValues(json, record.values, ClipModel::descriptions);
    json.endObject();
}

void write(JsonWriter& json, const MasterRecord& record)
{
    json.beginObject();
    writeMember(json, "layer", record.layer);
    writeMember(json, "contour", record.contour);
    writeMember(json, "point", record.point);
    writeMember(json, "time", record.link.time);
    json.name("reference");
    write(json, record.link.position, Knob::Kind::Point);
    writeMember(json, "lock_tangents", record.link.lockTangents);
    json.name("angle");
    write(json, record.link.angle, Knob::Kind::Number);
    json.endObject();
}

void write(JsonWriter& json, const PointRecord& record, int type)
{
    json.beginObject();
    writeMember(json, "id", record.id);
    json.name("fields");
    json.beginObject();
    for (const PointField field : pointFields(type))
        writeAnimation(json, description(field), record.fields[field]);
    json.endObject();
    if (record.master) {
        json.name("master");
        write(json, *record.master);
    }
    json.endObject();
}

void write(JsonWriter& json, const ContourRecord& record)
{
    json.beginObject();
    writeMember(json, "id", record.id);
    writeMember(json, "type", record.type);
    writeMember(json, "next_point", record.nextPoint);
    writeAnimation(json, contourDescription(1), record.edgeWidth);
    json.name("points");
    json.beginList();
    for (const PointRecord& point : record.points)
        write(json, point, record.type);
    json.endList();
    json.endObject();
}

void writeAnimations(JsonWriter& json, const LayerAnimationsRecord& record)
{
    json.name("values");
    json.beginObject();
    for (std::size_t i = 0; i < record.values.size(); ++i)
        writeAnimation(json, description(static_cast<LayerValue>(i)), record.values[i]);
    json.endObject();
    json.name("transform");
    json.beginList();
    for (std::size_t i = 0; i < record.corners.size(); ++i)
        write(json, record.corners[i], cornerDescription(i).kind);
    json.endList();
}

void write(JsonWriter& json, const LayerRecord& record)
{
    json.beginObject();
    writeMember(json, "id", record.id);
    writeFields(json, record.item);
    writeFields(json, record.layer);
    if (record.clip)
        writeMember(json, "clip", *record.clip);
    if (record.trackedWith)
        writeMember(json, "tracked_with", *record.trackedWith);
    if (record.animations)
        writeAnimations(json, *record.animations);
    writeMember(json, "next_contour", record.nextContour);
    json.name("contours");
    json.beginList();
    for (const ContourRecord& contour : record.contours)
        write(json, contour);
    json.endList();
    json.endObject();
}

void write(JsonWriter& json, const ItemRecord& record)
{
    json.beginObject();
    if (record.group) {
        json.name("group");
        json.beginObject();
        writeMember(json, "id", record.group->id);
        writeFields(json, record.group->item);
        if (record.group->opacity)
            writeAnimation(json, groupOpacityDescription(), *record.group->opacity);
        json.name("layers");
        json.beginList();
    } else {
        json.name("layer");
    }
    for (const LayerRecord& layer : record.layers)
        write(json, layer);
    if (record.group) {
        json.endList();
        json.endObject();
    }
    json.endObject();
}

template <class Record>
void writeAll(JsonWriter& json, const char* name, const std::vector<Record>& records)
{
    json.name(name);
    json.beginList();
    for (const Record& record : records)
        write(json, record);
    json.endList();
}

std::string textOf(const ProjectRecord& record)
{
    JsonWriter json;
    json.beginObject();
    writeMember(json, "format", QString::fromLatin1(document::format));
    writeMember(json, "version", document::version);
    writeMember(json, "next_id", record.nextId);
    writeMember(json, "settings", record.settings);
    json.name("render");
    json.beginObject();
    for (std::size_t i = 0; i < record.render.size(); ++i)
        writeAnimation(json, ProjectParameters::description(static_cast<ProjectParameters::RenderValue>(i)),
                       record.render[i]);
    json.endObject();
    writeAll(json, "clips", record.clips);
    writeAll(json, "items", record.items);
    json.endObject();
    return json.finished();
}

} // namespace

std::string writeProject(Project::Data& project, const QString& file)
{
    std::string text = textOf(snapshotOf(project));
    RecordSink nobody;
    try {
        readDocument(file, text, nobody);
    } catch (const STRM_BadFile& error) {
        raise<STRM_OperationFailed>(QString::fromLatin1("the project is not saved, since it could not be opened: ") +
                                    error.message());
    }
    return text;
}

} // namespace orrery
