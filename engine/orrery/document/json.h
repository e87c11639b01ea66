// JSON as documents hold it, written and read without making a tree of it. Reading trusts nothing: every access checks,
// and says where in the document it failed.
#pragma once

#include "format.h"

#include <QString>
#include <cstdint>
#include <engine/knob/parameter_tree.h>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orrery {

// Text that grows. Throws STRM_OutOfRange when it becomes larger than what could be read.
class JsonWriter
{
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginList() { begin('['); }
    void endList() { end(']'); }
    void name(const char* name);

    void write(bool value) { add(value ? "true" : "false"); }
    void write(std::int64_t value);
    void write(double value); // what is not finite as a text
    void write(const QString& value);

    std::string finished() { return std::move(m_text) + '\n'; }

private:
    void begin(char bracket);
    void end(char bracket);
    void add(std::string_view token);
    void separate();

    std::string m_text;
    int m_depth = 0;
    bool m_first = true;
    bool m_named = false;
};

// The text of a whole document and its place on disk.
struct JsonSource
{
    QString file;
    const std::string& text;
    int version = document::version; // of the format in which it was written

    [[noreturn]] void refuse(const QString& problem) const; // STRM_BadFile that names the file
    [[noreturn]] void refuseDamage(const char* place) const;
};

// A value in the document with the way to it. Throws STRM_BadFile that names the file, the way and what is wrong. The
// source, and the reader from which another was taken, must outlive that.
class JsonReader
{
public:
    explicit JsonReader(const JsonSource& source);

    bool isList() const { return *m_text.data() == '['; }
    bool isObject() const { return *m_text.data() == '{'; }
    bool isText() const { return *m_text.data() == '"'; }
    void forEach(const std::function<void(const JsonReader&)>& function) const;
    // Of a list that has just as many, or at most as many.
    std::vector<JsonReader> items(std::size_t count) const;
    std::vector<JsonReader> itemsUpTo(std::size_t most) const;

    QString text() const;
    bool flag() const;
    double number() const; // finite
    std::int64_t integer(std::int64_t least, std::int64_t most) const;

    [[noreturn]] void refuse(const QString& problem) const;      // "settings.notes is no text"
    [[noreturn]] void refuseValue(const QString& problem) const; // "settings.length: 0 is not from 1 to 5"
    const JsonSource& source() const { return m_source; }

private:
    friend class JsonMembers;
    JsonReader(const JsonReader& parent, std::string_view text, const char* name, std::size_t index)
        : m_source(parent.m_source), m_text(text), m_parent(&parent), m_name(name), m_index(index)
    {}
    QString way() const;
    bool wholeNumber(std::int64_t& value) const;

    const JsonSource& m_source;
    std::string_view m_text; // without spaces around it; not empty
    const JsonReader* m_parent = nullptr;
    const char* m_name = nullptr;
    std::size_t m_index = 0;
};

// The members of an object, each of which is read by its name. Those left unread are unknown, and refused at the end.
class JsonMembers
{
public:
    // `kind` is what versions know the object by: one that was written in an older format is lifted to this one.
    JsonMembers(const JsonReader& object, const char* kind);
    JsonMembers(const JsonReader&& object, const char* kind) = delete; // it is kept

    const JsonReader& object() const { return m_object; }
    std::optional<JsonReader> find(const char* name);
    JsonReader operator[](const char* name); // refuses the object without it
    void finish() const;

    // ---- For lifting ----

    void rename(const char* from, const char* to);
    // The items of a list become members.
    void split(const char* from, std::initializer_list<const char*> names);

private:
    struct Member
    {
        std::string_view name, value;
        bool taken;
    };
    Member* memberOf(const char* name);

    const JsonReader& m_object;
    std::vector<Member> m_members;
};

// Each older version has one step, which makes an object of that version one of the next.
void lift(const char* kind, int version, JsonMembers& members);

// An animated value: [rest, view, time, value, view, time, value, ...]; a point's values are two numbers each. Reading
// checks ranges, and that views are not negative.
void write(JsonWriter& json, const Knob::Animation& animation, Knob::Kind kind);
Knob::Animation readAnimation(const JsonReader& reader, const Knob::Description& description);

} // namespace orrery
