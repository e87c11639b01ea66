// Writing JSON, and checked access to what was read.
#include "json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <nlohmann/json.hpp>

namespace orrery {

// ---- Writing ----

void JsonWriter::separate()
{
    if (m_named) {
        m_named = false;
        return;
    }
    if (!m_first)
        m_text += ',';
    if (m_depth == 1 || m_depth == 2)
        m_text += '\n';
    m_first = false;
}

void JsonWriter::add(std::string_view token)
{
    separate();
    m_text += token;
    if (m_text.size() >= document::largestFile)
        raise<STRM_OutOfRange>(text("a project that takes more than %1 bytes cannot be saved",
                                    static_cast<qulonglong>(document::largestFile)));
}

void JsonWriter::begin(char bracket)
{
    add(std::string_view(&bracket, 1));
    ++m_depth;
    m_first = true;
}

void JsonWriter::end(char bracket)
{
    m_text += bracket;
    --m_depth;
    m_first = false;
}

void JsonWriter::name(const char* name)
{
    separate();
    m_text += '"';
    m_text += name;
    m_text += "\":";
    m_named = true;
}

void JsonWriter::write(std::int64_t value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonWriter::write(double value)
{
    if (!std::isfinite(value))
        return add(std::isnan(value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"");
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void JsonWriter::write(const QString& value)
{
    const QByteArray utf8 = value.toUtf8();
    add(nlohmann::json(std::string(utf8.constData(), static_cast<std::size_t>(utf8.size()))).dump());
}

// ---- Scanning ----

void JsonSource::refuse(const QString& problem) const { raise<STRM_BadFile>(file + QLatin1String(": ") + problem); }

void JsonSource::refuseDamage(const char* place) const
{
    raise<STRM_BadFile>(orrery::text("%1 is no project file, or damaged at byte %2 of %3", file,
                                     static_cast<qulonglong>(place - this->text.data()),
                                     static_cast<qulonglong>(this->text.size())));
}

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Goes through a text. Brackets are only counted: what is between them is checked when it is read.
class Scanner
{
public:
    Scanner(const JsonSource& source, std::string_view text)
        : m_source(source), m_at(text.data()), m_end(text.data() + text.size())
    {}

    char next() // behind spaces
    {
        while (m_at < m_end && isSpace(*m_at))
            ++m_at;
        return m_at < m_end ? *m_at : '\0';
    }
    bool skip(char wanted)
    {
        if (next() != wanted)
            return false;
        ++m_at;
        return true;
    }
    void require(char wanted)
    {
        if (!skip(wanted))
            refuse();
    }
    void requireEnd()
    {
        next();
        if (m_at != m_end)
            refuse();
    }

    std::string_view value()
    {
        next();
        const char* const start = m_at;
        int depth = 0;
        do {
            if (m_at == m_end)
                refuse();
            const char c = *m_at;
            if (c == '"')
                string();
            else if (c == '[' || c == '{')
                enter(depth);
            else if (c == ']' || c == '}')
                --depth, ++m_at;
            else if (depth == 0)
                scalar();
            else
                ++m_at;
        } while (depth > 0);
        if (depth < 0)
            refuse();
        return {start, static_cast<std::size_t>(m_at - start)};
    }

private:
    [[noreturn]] void refuse() const { m_source.refuseDamage(m_at); }

    void enter(int& depth)
    {
        if (++depth > document::deepest)
            m_source.refuse(text("is no project file: it is nested too deeply"));
        ++m_at;
    }
    void string()
    {
        for (++m_at; m_at < m_end && *m_at != '"'; ++m_at)
            if (*m_at == '\\' && ++m_at == m_end)
                break;
        if (m_at >= m_end)
            refuse();
        ++m_at;
    }
    void scalar()
    {
        const char* const start = m_at;
        while (m_at < m_end && !isSpace(*m_at) && *m_at != ',' && *m_at != ']' && *m_at != '}' && *m_at != ':')
            ++m_at;
        if (m_at == start)
            refuse();
    }

    const JsonSource& m_source;
    const char* m_at;
    const char* const m_end;
};

std::string_view wholeOf(const JsonSource& source)
{
    Scanner scanner(source, source.text);
    const std::string_view value = scanner.value();
    scanner.requireEnd();
    return value;
}

// What JSON takes for a number; from_chars takes more.
bool isNumber(std::string_view text)
{
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i;
        return i - start;
    };
    const auto skip = [&](char one, char other) {
        const bool there = i < text.size() && (text[i] == one || text[i] == other);
        i += there;
        return there;
    };
    skip('-', '-');
    const std::size_t start = i, whole = digits();
    if (whole == 0 || (whole > 1 && text[start] == '0'))
        return false;
    if (skip('.', '.') && digits() == 0)
        return false;
    if (skip('e', 'E')) {
        skip('+', '-');
        if (digits() == 0)
            return false;
    }
    return i == text.size();
}

} // namespace

// ---- Reading ----

JsonReader::JsonReader(const JsonSource& source) : m_source(source), m_text(wholeOf(source)) {}

QString JsonReader::way() const
{
    if (!m_parent)
        return QString();
    if (!m_name)
        return m_parent->way() + QString::fromLatin1("[%1]").arg(m_index);
    const QString before = m_parent->way();
    return (before.isEmpty() ? QString() : before + QLatin1Char('.')) + QString::fromLatin1(m_name);
}

void JsonReader::refuse(const QString& problem) const
{
    const QString place = way();
    m_source.refuse(place.isEmpty() ? problem : place + QLatin1Char(' ') + problem);
}

void JsonReader::refuseValue(const QString& problem) const { m_source.refuse(way() + QLatin1String(": ") + problem); }

void JsonReader::forEach(const std::function<void(const JsonReader&)>& function) const
{
    if (!isList())
        refuse(orrery::text("is no list"));
    Scanner scanner(m_source, m_text);
    scanner.require('[');
    if (!scanner.skip(']')) {
        std::size_t index = 0;
        do
            function(JsonReader(*this, scanner.value(), nullptr, index++));
        while (scanner.skip(','));
        scanner.require(']');
    }
    scanner.requireEnd();
}

std::vector<JsonReader> JsonReader::itemsUpTo(std::size_t most) const
{
    std::vector<JsonReader> found;
    forEach([&](const JsonReader& item) {
        if (found.size() == most)
            refuse(orrery::text("has more than %1 items", static_cast<qulonglong>(most)));
        found.push_back(item);
    });
    return found;
}

std::vector<JsonReader> JsonReader::items(std::size_t count) const
{
    std::vector<JsonReader> found = itemsUpTo(count);
    if (found.size() < count)
        refuse(orrery::text("has less than %1 items", static_cast<qulonglong>(count)));
    return found;
}

QString JsonReader::text() const
{
    if (!isText())
        refuse(orrery::text("is no text"));
    nlohmann::json parsed;
    try {
        parsed = nlohmann::json::parse(m_text.begin(), m_text.end());
    } catch (const nlohmann::json::parse_error& error) {
        m_source.refuseDamage(m_text.data() + error.byte);
    }
    const std::string& utf8 = parsed.get_ref<const std::string&>();
    const QString value = QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
    // The conversion takes a mark at the beginning for one of the byte order.
    return utf8.compare(0, 3, "\xef\xbb\xbf") == 0 ? QChar(0xfeff) + value : value;
}

bool JsonReader::flag() const
{
    if (m_text != "true" && m_text != "false")
        refuse(orrery::text("is neither true nor false"));
    return m_text == "true";
}

double JsonReader::number() const
{
    double value = 0;
    if (!isNumber(m_text) || std::from_chars(m_text.begin(), m_text.end(), value).ec != std::errc())
        refuse(orrery::text("is no number"));
    return value;
}

std::int64_t JsonReader::integer(std::int64_t least, std::int64_t most) const
{
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(m_text.begin(), m_text.end(), value);
    if (!isNumber(m_text) || end != m_text.end())
        refuse(orrery::text("is no whole number"));
    if (error != std::errc() || value < least || value > most)
        refuse(orrery::text("is not from %1 to %2", static_cast<qlonglong>(least), static_cast<qlonglong>(most)));
    return value;
}

// ---- Members ----

JsonMembers::JsonMembers(const JsonReader& object, const char* kind) : m_object(object)
{
    if (!object.isObject())
        object.refuse(text("is no object"));
    Scanner scanner(object.m_source, object.m_text);
    scanner.require('{');
    if (!scanner.skip('}')) {
        do {
            if (scanner.next() != '"')
                scanner.require('"');
            std::string_view name = scanner.value();
            name = name.substr(1, name.size() - 2);
            if (std::any_of(m_members.begin(), m_members.end(), [name](const Member& m) { return m.name == name; }))
                object.refuse(text("has two members \"%1\"", std::string(name)));
            if (m_members.size() == document::mostMembers)
                object.refuse(text("has too many members"));
            scanner.require(':');
            m_members.push_back({name, scanner.value(), false});
        } while (scanner.skip(','));
        scanner.require('}');
    }
    scanner.requireEnd();
    for (int version = object.m_source.version; version < document::version; ++version)
        lift(kind, version, *this);
}

JsonMembers::Member* JsonMembers::memberOf(const char* name)
{
    for (Member& member : m_members)
        if (member.name == name)
            return &member;
    return nullptr;
}

std::optional<JsonReader> JsonMembers::find(const char* name)
{
    Member* const member = memberOf(name);
    if (!member)
        return std::nullopt;
    member->taken = true;
    return JsonReader(m_object, member->value, name, 0);
}

JsonReader JsonMembers::operator[](const char* name)
{
    if (const std::optional<JsonReader> found = find(name))
        return *found;
    m_object.refuse(text("has no \"%1\"", name));
}

void JsonMembers::finish() const
{
    for (const Member& member : m_members)
        if (!member.taken)
            m_object.refuse(text("has the member \"%1\", which is unknown", std::string(member.name.substr(0, 80))));
}

void JsonMembers::rename(const char* from, const char* to)
{
    if (Member* const member = memberOf(from))
        member->name = to;
}

void JsonMembers::split(const char* from, std::initializer_list<const char*> names)
{
    const std::optional<JsonReader> list = find(from);
    if (!list)
        return;
    const std::vector<JsonReader> items = list->items(names.size());
    m_members.erase(m_members.begin() + (memberOf(from) - m_members.data()));
    for (std::size_t i = 0; i < items.size(); ++i)
        m_members.push_back({names.begin()[i], items[i].m_text, false});
}

// ---- Animated values ----

namespace {

constexpr std::int64_t mostKeyedViews = 65536;

void writeValue(JsonWriter& json, const Knob::Value& value, Knob::Kind kind)
{
    json.write(value.x);
    if (kind == Knob::Kind::Point)
        json.write(value.y);
}

double readPart(const JsonReader& item, const Knob::Description& description)
{
    const double number = item.number();
    if (const Knob::Problem problem = number < description.lowest || number > description.highest
                                          ? Knob::notFromTo(number, description.lowest, description.highest)
                                          : Knob::Problem())
        item.refuseValue(problem.text());
    const bool whole = description.kind == Knob::Kind::Flag || description.kind == Knob::Kind::Enumeration;
    if (whole && number != std::floor(number))
        item.refuse(text("is no whole number"));
    return number;
}

} // namespace

void write(JsonWriter& json, const Knob::Animation& animation, Knob::Kind kind)
{
    json.beginList();
    writeValue(json, animation.rest(), kind);
    animation.forEachKey([&](const Knob::Key& key) {
        json.write(std::int64_t(key.view));
        json.write(key.time);
        writeValue(json, key.value, kind);
    });
    json.endList();
}

Knob::Animation readAnimation(const JsonReader& reader, const Knob::Description& description)
{
    const std::size_t parts = description.kind == Knob::Kind::Point ? 2 : 1;
    Knob::Animation animation;
    Knob::Key key;
    std::size_t place = 2; // in a keyframe: 0 the view, 1 the time, from 2 on the value; the resting value has no more
    bool resting = true;
    reader.forEach([&](const JsonReader& item) {
        if (place == 0) {
            key.view = static_cast<int>(item.integer(0, mostKeyedViews));
        } else if (place == 1) {
            key.time = item.number();
        } else {
            (place == 2 ? key.value.x : key.value.y) = readPart(item, description);
            if (place == parts + 1 && resting)
                animation.setRest(key.value);
            else if (place == parts + 1 && animation.setKey(key.time, key.view, key.value))
                item.refuse(text("is a second keyframe at one time"));
        }
        if (place++ == parts + 1) {
            place = 0;
            resting = false;
        }
    });
    if (place != 0)
        reader.refuse(text("ends within a value"));
    return animation;
}

} // namespace orrery
