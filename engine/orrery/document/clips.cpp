// Writes clips into the document and reads them back.

#include "clips.h"

#include "json.h"

#include <cmath>
#include <engine/clips/data.h>
#include <engine/clips/project_clip.h>
#include <engine/errors/message.h>
#include <limits>

namespace orrery {
namespace {

constexpr std::int64_t mostUnsigned = std::numeric_limits<unsigned int>::max();
constexpr std::int64_t leastInteger = std::numeric_limits<int>::min();
constexpr std::int64_t mostInteger = std::numeric_limits<int>::max();
constexpr std::int64_t mostPixels = 65536;
constexpr std::int64_t mostDigits = 32;

// ---- Animated values ------------------------------------------------------------------------------------------------

template <std::size_t count>
Json writeValues(const std::array<Knob::Animation, count>& values, const Knob::Description (&table)[count])
{
    Json json = Json::object();
    for (std::size_t i = 0; i < count; ++i)
        if (table[i].writable && (values[i].animated() || values[i].rest() != table[i].initial))
            json[table[i].name] = writeAnimation(values[i], table[i].kind);
    return json;
}

template <std::size_t count>
void readValues(const JsonReader& reader, std::array<Knob::Animation, count>& values,
                const Knob::Description (&table)[count])
{
    for (std::size_t i = 0; i < count; ++i)
        if (table[i].writable && reader.has(table[i].name))
            values[i] = readAnimation(reader[table[i].name], table[i]);
}

// ---- State ----------------------------------------------------------------------------------------------------------

// Scripts may write any float into colour parameters, also those that a JSON number cannot be.
Json writeFloat(float value)
{
    if (std::isfinite(value))
        return static_cast<double>(value);
    return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
}

float readFloat(const JsonReader& reader)
{
    if (!reader.json().is_string())
        return static_cast<float>(reader.number());
    const QString text = reader.text();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (text == QLatin1String("nan"))
        return std::numeric_limits<float>::quiet_NaN();
    if (text == QLatin1String("inf") || text == QLatin1String("-inf"))
        return text.size() == 3 ? infinity : -infinity;
    reader.refuse(orrery::text("%1 is no number", text));
}

Json writeColor(const ColorSettings& color)
{
    return {{"colorspace", color.colorspace},
            {"conversion", color.conversion},
            {"offset", writeFloat(color.offset)},
            {"softclip", writeFloat(color.softclip)},
            {"log_reference_white", writeFloat(color.logReferenceWhite)},
            {"log_reference_black", writeFloat(color.logReferenceBlack)},
            {"gamma", writeFloat(color.gamma)}};
}

ColorSettings readColor(const JsonReader& reader)
{
    ColorSettings color;
    color.colorspace = static_cast<int>(reader["colorspace"].integer(leastInteger, mostInteger));
    color.conversion = static_cast<int>(reader["conversion"].integer(leastInteger, mostInteger));
    color.offset = readFloat(reader["offset"]);
    color.softclip = readFloat(reader["softclip"]);
    color.logReferenceWhite = readFloat(reader["log_reference_white"]);
    color.logReferenceBlack = readFloat(reader["log_reference_black"]);
    color.gamma = readFloat(reader["gamma"]);
    return color;
}

Json writeStreams(const ClipModel& model)
{
    Json streams = Json::array();
    for (const auto& [view, stream] : model.state.streams) {
        Json json = {{"view", view},
                     {"path", toJson(stream.name.folder)},
                     {"prefix", toJson(stream.name.prefix)},
                     {"suffix", toJson(stream.name.suffix)},
                     {"index_width", stream.name.indexWidth},
                     {"start_frame", stream.first},
                     {"end_frame", stream.last},
                     {"values", writeValues(model.stream(view)->values, StreamBranch::descriptions)}};
        const auto mapped = model.state.mapping.find(view);
        if (mapped != model.state.mapping.end())
            json["project_view"] = mapped->second;
        streams.push_back(std::move(json));
    }
    return streams;
}

Stream readStream(const JsonReader& reader)
{
    Stream stream;
    stream.name.folder = reader["path"].text();
    stream.name.prefix = reader["prefix"].text();
    stream.name.suffix = reader["suffix"].text();
    stream.name.indexWidth = static_cast<unsigned int>(reader["index_width"].integer(0, mostDigits));
    stream.first = static_cast<unsigned int>(reader["start_frame"].integer(0, mostUnsigned));
    stream.last = static_cast<unsigned int>(reader["end_frame"].integer(0, mostUnsigned));
    if (stream.isKnown() && stream.first > stream.last)
        reader.refuse(text("the first frame, %1, comes after the last, %2", stream.first, stream.last));
    return stream;
}

void readStreams(const JsonReader& reader, ClipState& state)
{
    reader.forEach([&state](const JsonReader& item) {
        const int view = static_cast<int>(item["view"].integer(0, mostInteger));
        if (!state.streams.emplace(view, readStream(item)).second)
            item.refuse(text("there are two streams for view %1", view));
        if (!item.has("project_view"))
            return;
        const int mapped = static_cast<int>(item["project_view"].integer(0, mostInteger));
        for (const auto& entry : state.mapping)
            if (entry.second == mapped)
                item.refuse(text("two streams are mapped to view %1", mapped));
        state.mapping[view] = mapped;
    });
}

ClipState readState(const JsonReader& reader)
{
    ClipState state;
    state.name = reader["name"].text();
    state.mode = static_cast<VX_CLIP_MODE>(reader["mode"].integer(VX_CLIP_SEQUENCE, VX_CLIP_RENDERED));
    const JsonReader size = reader["frame_size"];
    if (size.size() != 2)
        size.refuse(text("a size has two numbers"));
    state.size = {static_cast<unsigned int>(size[std::size_t(0)].integer(0, mostPixels)),
                  static_cast<unsigned int>(size[std::size_t(1)].integer(0, mostPixels))};
    state.length = static_cast<unsigned int>(reader["length"].integer(0, mostUnsigned));
    state.frameRate = static_cast<float>(reader["frame_rate"].number());
    if (!(state.frameRate > 0) || !std::isfinite(state.frameRate))
        reader["frame_rate"].refuse(text("%1 is not greater than 0", state.frameRate));
    state.firstFrameOffset = static_cast<int>(reader["first_frame_offset"].integer(leastInteger, mostInteger));
    state.color = readColor(reader["color"]);
    readStreams(reader["streams"], state);
    return state;
}

} // namespace

Json writeClip(const Clip& clip)
{
    const ClipModel& model = *clip.data().model;
    const ClipState& state = model.state;
    return {{"name", toJson(state.name)},
            {"mode", static_cast<int>(state.mode)},
            {"frame_size", {state.size.first, state.size.second}},
            {"length", state.length},
            {"frame_rate", static_cast<double>(state.frameRate)},
            {"first_frame_offset", state.firstFrameOffset},
            {"color", writeColor(state.color)},
            {"streams", writeStreams(model)},
            {"values", writeValues(model.values, ClipModel::descriptions)}};
}

std::unique_ptr<Clip> readClip(const JsonReader& reader, const boost::shared_ptr<STRM_ProjectManager>& manager)
{
    std::unique_ptr<Clip> clip = newClip(manager, readState(reader));
    ClipModel& model = *clip->data().model;
    readValues(reader["values"], model.values, ClipModel::descriptions);
    reader["streams"].forEach([&model](const JsonReader& item) {
        readValues(item["values"], model.stream(static_cast<int>(item["view"].integer(0, mostInteger)))->values,
                   StreamBranch::descriptions);
    });
    return clip;
}

} // namespace orrery
