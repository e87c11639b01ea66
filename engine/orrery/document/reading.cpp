// A document as records, read without trusting it.
#include "records.h"
#include "values.h"

#include <engine/errors/message.h>
#include <set>
#include <unordered_set>

namespace orrery {

void read(const JsonReader& reader, float& value)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (!reader.isText()) {
        value = static_cast<float>(reader.number());
        return;
    }
    const QString text = reader.text();
    if (text == QLatin1String("nan"))
        value = std::numeric_limits<float>::quiet_NaN();
    else if (text == QLatin1String("inf"))
        value = infinity;
    else if (text == QLatin1String("-inf"))
        value = -infinity;
    else
        reader.refuse(orrery::text("is no number"));
}

namespace {

using namespace Stratum;

unsigned int readId(const JsonReader& reader) { return static_cast<unsigned int>(reader.integer(0, largestId)); }

// The members that a table describes; those that are not there keep what they have.
template <std::size_t count, class Entry>
void readAnimations(JsonMembers& members, Animations<count>& values, Entry entry)
{
    for (std::size_t i = 0; i < count; ++i) {
        const Knob::Description& description = entry(i);
        values[i].setRest(description.initial);
        if (const auto reader = description.writable ? members.find(description.name) : std::nullopt)
            values[i] = readAnimation(*reader, description);
    }
}

template <std::size_t count, class Entry>
void readAnimations(const JsonReader& reader, Animations<count>& values, Entry entry)
{
    JsonMembers members(reader, "values");
    readAnimations(members, values, entry);
    members.finish();
}

template <std::size_t count>
void readValues(JsonMembers& members, Animations<count>& values, const Knob::Description (&table)[count])
{
    const auto entry = [&table](std::size_t i) -> const Knob::Description& { return table[i]; };
    if (const auto reader = members.find("values"))
        return readAnimations(*reader, values, entry);
    for (std::size_t i = 0; i < count; ++i)
        values[i].setRest(entry(i).initial);
}

// ---- Clips ----

StreamRecord readStream(const JsonReader& reader)
{
    StreamRecord record;
    JsonMembers members(reader, "stream");
    read(members["view"], record.view);
    if (record.view < 0)
        members["view"].refuse(text("is less than 0"));
    readFields(members, record.stream.name);
    readFields(members, record.stream);
    if (const auto view = members.find("project_view"))
        read(*view, record.projectView.emplace());
    readValues(members, record.values, StreamBranch::descriptions);
    members.finish();
    return record;
}

// Views of a project that went were kept here by the first version.
bool isGone(const StreamRecord& stream, int projectViews, const JsonReader& reader)
{
    return reader.source().version == 1 && *stream.projectView >= projectViews;
}

ClipRecord readClip(const JsonReader& reader, int projectViews)
{
    ClipRecord record;
    JsonMembers members(reader, "clip");
    readFields(members, record.state);
    readValues(members, record.values, ClipModel::descriptions);
    std::unordered_set<int> views, mapped;
    if (const auto streams = members.find("streams"))
        streams->forEach([&](const JsonReader& item) {
            StreamRecord stream = readStream(item);
            if (!views.insert(stream.view).second)
                item.refuse(text("is a second stream for view %1", stream.view));
            if (stream.projectView && isGone(stream, projectViews, item))
                stream.projectView.reset();
            if (stream.projectView && (*stream.projectView < 0 || *stream.projectView >= projectViews))
                item.refuse(text("is mapped to view %1, which is not there", *stream.projectView));
            if (stream.projectView && !mapped.insert(*stream.projectView).second)
                item.refuse(text("is the second that is mapped to view %1", *stream.projectView));
            record.streams.push_back(std::move(stream));
        });
    members.finish();
    return record;
}

// ---- Layers ----

MasterRecord readMaster(const JsonReader& reader)
{
    MasterRecord record;
    JsonMembers members(reader, "master");
    record.layer = readId(members["layer"]);
    record.contour = readId(members["contour"]);
    record.point = readId(members["point"]);
    read(members["time"], record.link.time);
    static constexpr Knob::Description position{"",      "",  Knob::Kind::Point, {}, -Knob::unlimited, Knob::unlimited,
                                                nullptr, true};
    static constexpr Knob::Description angle = Knob::number("", "", 0, -Knob::unlimited, Knob::unlimited);
    record.link.position = readAnimation(members["reference"], position); // in version 1 for all views
    read(members["lock_tangents"], record.link.lockTangents);
    if (reader.source().version == 1)
        record.link.angle = Knob::Animation({members["angle"].number(), 0});
    else
        record.link.angle = readAnimation(members["angle"], angle);
    members.finish();
    return record;
}

PointRecord readPoint(const JsonReader& reader, int type)
{
    PointRecord record;
    JsonMembers members(reader, "point");
    record.id = readId(members["id"]);
    const std::vector<PointField>& known = pointFields(type);
    const JsonReader fields = members["fields"];
    if (fields.source().version == 1) { // a list without names
        const std::vector<JsonReader> items = fields.items(known.size());
        for (std::size_t i = 0; i < items.size(); ++i)
            record.fields[known[i]] = readAnimation(items[i], description(known[i]));
    } else {
        JsonMembers values(fields, "fields");
        for (const PointField field : known) {
            record.fields[field].setRest(description(field).initial);
            if (const auto value = values.find(description(field).name))
                record.fields[field] = readAnimation(*value, description(field));
        }
        values.finish();
    }
    if (const auto master = members.find("master"))
        record.master = readMaster(*master);
    members.finish();
    return record;
}

ContourRecord readContour(const JsonReader& reader, std::size_t place)
{
    ContourRecord record;
    JsonMembers members(reader, "contour");
    record.id = readId(members["id"]);
    if (record.id < place)
        members["id"].refuse(text("does not come after those before"));
    record.type = static_cast<int>(members["type"].integer(VX_CONTOUR_XSPLINE, VX_CONTOUR_BEZIER));
    if (const auto edgeWidth = members.find(contourDescription(1).name))
        record.edgeWidth = readAnimation(*edgeWidth, contourDescription(1));
    std::unordered_set<unsigned int> ids;
    if (const auto points = members.find("points"))
        points->forEach([&](const JsonReader& item) {
            record.points.push_back(readPoint(item, record.type));
            record.nextPoint = std::max(record.nextPoint, record.points.back().id + 1);
            if (!ids.insert(record.points.back().id).second)
                item.refuse(text("has the id of another point"));
        });
    if (const auto next = members.find("next_point"))
        record.nextPoint = std::max(record.nextPoint, static_cast<unsigned int>(next->integer(0, largestId + 1)));
    members.finish();
    return record;
}

class DocumentReader
{
public:
    DocumentReader(RecordSink& sink, const JsonReader& document) : m_sink(sink), m_document(document) {}

    void read()
    {
        JsonMembers members(m_document, "document");
        members["format"];
        members["version"];
        Settings settings = readSettings(members);
        const int views = static_cast<int>(settings.views.size());
        m_sink.settings(std::move(settings));
        readRender(members);
        if (const auto clips = members.find("clips"))
            clips->forEach([&](const JsonReader& item) { readClipItem(item, views); });
        if (const auto items = members.find("items"))
            items->forEach([this](const JsonReader& item) { readItem(item); });
        if (const auto next = members.find("next_id"))
            m_sink.nextId(static_cast<unsigned int>(next->integer(0, largestId + 1)));
        members.finish();
    }

private:
    static Settings readSettings(JsonMembers& document)
    {
        Settings settings;
        const auto reader = document.find("settings");
        if (!reader)
            return settings;
        JsonMembers members(*reader, "settings");
        if (const auto length = members.find("length")) { // what goes by the length where it is not given
            settings.cutTo(static_cast<unsigned int>(length->integer(1, longestProject)));
            settings.playbackOutPoint = settings.inOutRange.second = settings.length - 1;
        }
        readFields(members, settings);
        members.finish();
        return settings;
    }

    void readRender(JsonMembers& document)
    {
        RenderRecord record;
        const auto entry = [](std::size_t i) -> const Knob::Description& {
            return ProjectParameters::description(static_cast<ProjectParameters::RenderValue>(i));
        };
        if (const auto reader = document.find("render")) {
            readAnimations(*reader, record, entry);
            m_sink.render(std::move(record));
        }
    }

    void readClipItem(const JsonReader& reader, int views)
    {
        ClipRecord record = readClip(reader, views);
        if (!m_clipNames.insert(record.state.name).second)
            reader.refuse(text("has the name of another"));
        m_sink.clip(std::move(record));
    }

    void readItem(const JsonReader& reader)
    {
        JsonMembers members(reader, "item");
        if (const auto layer = members.find("layer")) {
            readLayer(*layer, false);
        } else {
            readGroup(members["group"]);
        }
        members.finish();
    }

    unsigned int newId(JsonMembers& members)
    {
        const unsigned int id = readId(members["id"]);
        if (!m_ids.insert(id).second)
            members["id"].refuse(text("is that of another layer or group"));
        return id;
    }

    void readGroup(const JsonReader& reader)
    {
        GroupRecord record;
        JsonMembers members(reader, "group");
        record.id = newId(members);
        readFields(members, record.item);
        if (const auto opacity = members.find("opacity"))
            record.opacity = readAnimation(*opacity, groupOpacityDescription());
        m_sink.group(std::move(record));
        if (const auto layers = members.find("layers"))
            layers->forEach([this](const JsonReader& layer) { readLayer(layer, true); });
        members.finish();
    }

    void readLayer(const JsonReader& reader, bool inGroup)
    {
        LayerRecord record;
        JsonMembers members(reader, "layer");
        record.id = newId(members);
        readFields(members, record.item);
        readFields(members, record.layer);
        if (const auto clip = members.find("clip"))
            record.clip =
                static_cast<unsigned int>(clip->integer(0, static_cast<std::int64_t>(m_clipNames.size()) - 1));
        if (const auto followed = members.find("tracked_with"))
            record.trackedWith = readId(*followed);
        record.animations = readLayerAnimations(members);
        if (const auto contours = members.find("contours"))
            contours->forEach([&record](const JsonReader& item) {
                record.contours.push_back(readContour(item, record.nextContour));
                record.nextContour = record.contours.back().id + 1;
            });
        if (const auto next = members.find("next_contour"))
            record.nextContour =
                std::max(record.nextContour, static_cast<unsigned int>(next->integer(0, largestId + 1)));
        members.finish();
        m_sink.layer(std::move(record), inGroup);
    }

    static std::unique_ptr<LayerAnimationsRecord> readLayerAnimations(JsonMembers& members)
    {
        const auto values = members.find("values"), transform = members.find("transform");
        if (!values && !transform)
            return nullptr;
        auto record = std::make_unique<LayerAnimationsRecord>();
        const auto entry = [](std::size_t i) -> const Knob::Description& {
            return description(static_cast<LayerValue>(i));
        };
        for (std::size_t i = 0; i < record->values.size(); ++i)
            record->values[i].setRest(entry(i).initial);
        if (values)
            readAnimations(*values, record->values, entry);
        if (transform) {
            const std::vector<JsonReader> corners = transform->items(record->corners.size());
            for (std::size_t i = 0; i < corners.size(); ++i)
                record->corners[i] = readAnimation(corners[i], cornerDescription(i));
        }
        return record;
    }

    RecordSink& m_sink;
    const JsonReader& m_document;
    std::set<QString> m_clipNames;
    std::unordered_set<unsigned int> m_ids;
};

int versionOf(const JsonReader& document)
{
    const JsonSource& source = document.source();
    JsonMembers members(document, "");
    const auto format = members.find("format");
    if (!format || !format->isText() || format->text() != QLatin1String(document::format))
        source.refuse(text("is no project file"));
    const auto version = members["version"].integer(1, std::numeric_limits<int>::max());
    if (version > document::version)
        source.refuse(text("was written by a newer version: its format is %1, this reads up to %2",
                           static_cast<int>(version), document::version));
    return static_cast<int>(version);
}

} // namespace

void readDocument(const QString& file, const std::string& text, RecordSink& sink)
{
    JsonSource source{file, text};
    const JsonReader document(source);
    if (!document.isObject())
        source.refuse(orrery::text("is no project file"));
    source.version = versionOf(document);
    DocumentReader(sink, document).read();
}

} // namespace orrery
