// How the types of fields are written in a document and read from it, and whole records by their tables.
#pragma once

#include "json.h"

#include <QPair>
#include <engine/stratum/settings.h>
#include <fundo/colour.h>
#include <limits>
#include <stratum/enumerations.h>
#include <type_traits>
#include <utility>

namespace orrery {

template <class T, class = void>
constexpr bool isRecord = false;
template <class T>
constexpr bool isRecord<T, std::void_t<decltype(T::fields())>> = true;

// What versions know a record by, where there is anything to be lifted.
template <class Record>
constexpr const char* kindOf = "";
template <>
inline constexpr const char* kindOf<Stratum::ViewSettings> = "view";

// ---- Writing ----

template <class T>
std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>> write(JsonWriter& json, T value)
{
    if constexpr (std::is_same_v<T, bool>)
        json.write(value);
    else if constexpr (std::is_floating_point_v<T>)
        json.write(static_cast<double>(value));
    else
        json.write(static_cast<std::int64_t>(value));
}
inline void write(JsonWriter& json, const QString& value) { json.write(value); }

template <class... Parts>
void writeList(JsonWriter& json, const Parts&... parts)
{
    json.beginList();
    (write(json, parts), ...);
    json.endList();
}
inline void write(JsonWriter& json, const Fundo::Colour3<float>& color)
{
    writeList(json, color.red, color.green, color.blue);
}
inline void write(JsonWriter& json, const Knob::Value& point) { writeList(json, point.x, point.y); }
template <class T>
void write(JsonWriter& json, const std::pair<T, T>& pair)
{
    writeList(json, pair.first, pair.second);
}
template <class T>
void write(JsonWriter& json, const QPair<T, T>& pair)
{
    writeList(json, pair.first, pair.second);
}

template <class T>
void writeMember(JsonWriter& json, const char* name, const T& value)
{
    json.name(name);
    write(json, value);
}

template <class Record>
void writeFields(JsonWriter& json, const Record& record);

template <class Record>
std::enable_if_t<isRecord<Record>> write(JsonWriter& json, const Record& record)
{
    json.beginObject();
    writeFields(json, record);
    json.endObject();
}

template <class T>
void write(JsonWriter& json, const std::vector<T>& list)
{
    json.beginList();
    for (const T& item : list)
        write(json, item);
    json.endList();
}

template <class Record>
void writeFields(JsonWriter& json, const Record& record)
{
    Knob::forEachField<Record>([&](const auto& field) { writeMember(json, field.name, record.*field.member); });
}

// ---- Reading ----

inline int lastOf(VX_CLIP_MODE) { return VX_CLIP_RENDERED; }

inline void read(const JsonReader& reader, bool& value) { value = reader.flag(); }
inline void read(const JsonReader& reader, QString& value) { value = reader.text(); }
inline void read(const JsonReader& reader, double& value) { value = reader.number(); }
void read(const JsonReader& reader, float& value); // "nan", "inf" and "-inf" as well

template <class T>
std::enable_if_t<std::is_integral_v<T>> read(const JsonReader& reader, T& value)
{
    value = static_cast<T>(reader.integer(std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}
template <class T>
std::enable_if_t<std::is_enum_v<T>> read(const JsonReader& reader, T& value)
{
    value = static_cast<T>(reader.integer(0, lastOf(T())));
}

template <class... Parts>
void readList(const JsonReader& reader, Parts&... parts)
{
    const std::vector<JsonReader> items = reader.items(sizeof...(parts));
    std::size_t i = 0;
    (read(items[i++], parts), ...);
}
inline void read(const JsonReader& reader, Fundo::Colour3<float>& color)
{
    readList(reader, color.red, color.green, color.blue);
}
inline void read(const JsonReader& reader, Knob::Value& point) { readList(reader, point.x, point.y); }
template <class T>
void read(const JsonReader& reader, std::pair<T, T>& pair)
{
    readList(reader, pair.first, pair.second);
}
template <class T>
void read(const JsonReader& reader, QPair<T, T>& pair)
{
    readList(reader, pair.first, pair.second);
}

template <class Record>
void readFields(JsonMembers& members, Record& record);

template <class Record>
std::enable_if_t<isRecord<Record>> read(const JsonReader& reader, Record& record)
{
    JsonMembers members(reader, kindOf<Record>);
    readFields(members, record);
    members.finish();
}

template <class T>
void read(const JsonReader& reader, std::vector<T>& list)
{
    list.clear();
    reader.forEach([&list](const JsonReader& item) { read(item, list.emplace_back()); });
}

// A missing member leaves what the record has; what no row takes is refused, also when it was there before.
template <class Record>
void readFields(JsonMembers& members, Record& record)
{
    Knob::forEachField<Record>([&](const auto& field) {
        const std::optional<JsonReader> reader = members.find(field.name);
        if (reader)
            read(*reader, record.*field.member);
        const Knob::Problem problem = field.problemOf(record.*field.member);
        if (problem && reader)
            reader->refuseValue(problem.text());
        else if (problem)
            members[field.name];
    });
    Knob::forEachField<Record>([&](const auto& field) {
        if (const Knob::Problem problem = field.problemIn(record).within(field.name))
            members.object().refuseValue(problem.text());
    });
}

} // namespace orrery
