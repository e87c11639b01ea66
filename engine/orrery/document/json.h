// Reading a saved project without trusting it: every access checks, and says where in the document it failed.
#pragma once

#include <QString>
#include <cstdint>
#include <engine/knob/parameter_tree.h>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace orrery {

using Json = nlohmann::json;

Json toJson(const QString& text);

// A value in the document, with its path from the root. Throws STRM_BadFile naming the file, the path and the problem.
class JsonReader
{
public:
    // `file` and `json` must outlive the reader and all that come from it.
    JsonReader(const QString& file, const Json& json) : m_file(file), m_json(json) {}

    // A member of an object; operator[] throws when it is missing.
    JsonReader operator[](const char* name) const;
    bool has(const char* name) const;

    // The items of an array.
    std::size_t size() const;
    JsonReader operator[](std::size_t index) const;
    void forEach(const std::function<void(const JsonReader&)>& function) const;

    QString text() const;
    bool flag() const;
    double number() const; // finite
    std::int64_t integer(std::int64_t least, std::int64_t most) const;

    [[noreturn]] void refuse(const QString& problem) const;
    const Json& json() const { return m_json; }

private:
    JsonReader(const JsonReader& parent, const Json& json, const char* name, std::size_t index)
        : m_file(parent.m_file), m_json(json), m_parent(&parent), m_name(name), m_index(index)
    {}
    QString way() const;

    const QString& m_file;
    const Json& m_json;
    const JsonReader* m_parent = nullptr; // outlives this reader
    const char* m_name = nullptr;
    std::size_t m_index = 0;
};

// An animated value: [rest, view, time, value, view, time, value, ...]; a point's values are two numbers each.
Json writeAnimation(const Knob::Animation& animation, Knob::Kind kind);
// Checks ranges and that views are not negative.
Knob::Animation readAnimation(const JsonReader& reader, const Knob::Description& description);

} // namespace orrery
