// Checked access to a document.
#include "json.h"

#include <cmath>
#include <engine/errors/arguments.h>

namespace orrery {

Json toJson(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return Json(std::string(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

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
    raise<STRM_BadFile>(place.isEmpty() ? QString::fromLatin1("%1: %2").arg(m_file, problem)
                                        : QString::fromLatin1("%1: %2 %3").arg(m_file, place, problem));
}

bool JsonReader::has(const char* name) const { return m_json.is_object() && m_json.contains(name); }

JsonReader JsonReader::operator[](const char* name) const
{
    if (!m_json.is_object())
        refuse(QString::fromLatin1("is no object"));
    const auto found = m_json.find(name);
    if (found == m_json.end())
        refuse(QString::fromLatin1("has no \"%1\"").arg(QString::fromLatin1(name)));
    return JsonReader(*this, *found, name, 0);
}

std::size_t JsonReader::size() const
{
    if (!m_json.is_array())
        refuse(QString::fromLatin1("is no list"));
    return m_json.size();
}

JsonReader JsonReader::operator[](std::size_t index) const
{
    if (index >= size())
        refuse(QString::fromLatin1("has no item %1").arg(index));
    return JsonReader(*this, m_json[index], nullptr, index);
}

void JsonReader::forEach(const std::function<void(const JsonReader&)>& function) const
{
    const std::size_t count = size();
    for (std::size_t i = 0; i < count; ++i)
        function((*this)[i]);
}

QString JsonReader::text() const
{
    if (!m_json.is_string())
        refuse(QString::fromLatin1("is no text"));
    const std::string& utf8 = m_json.get_ref<const std::string&>();
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

bool JsonReader::flag() const
{
    if (!m_json.is_boolean())
        refuse(QString::fromLatin1("is neither true nor false"));
    return m_json.get<bool>();
}

double JsonReader::number() const
{
    if (!m_json.is_number() || !std::isfinite(m_json.get<double>()))
        refuse(QString::fromLatin1("is no number"));
    return m_json.get<double>();
}

std::int64_t JsonReader::integer(std::int64_t least, std::int64_t most) const
{
    if (!m_json.is_number_integer())
        refuse(QString::fromLatin1("is no whole number"));
    const bool tooBig = m_json.is_number_unsigned() && m_json.get<std::uint64_t>() > std::uint64_t(INT64_MAX);
    const std::int64_t value = m_json.get<std::int64_t>();
    if (tooBig || value < least || value > most)
        refuse(QString::fromLatin1("is not from %1 to %2").arg(least).arg(most));
    return value;
}

// ---- Animated values ----

namespace {

constexpr std::int64_t mostViews = 65536;

void push(Json& list, const Knob::Value& value, Knob::Kind kind)
{
    list.push_back(value.x);
    if (kind == Knob::Kind::Point)
        list.push_back(value.y);
}

Knob::Value readValue(const JsonReader& list, std::size_t& index, const Knob::Description& description)
{
    const auto checked = [&](const JsonReader& item) {
        const double number = item.number();
        if (number < description.lowest || number > description.highest)
            item.refuse(QString::fromLatin1("is not from %1 to %2").arg(description.lowest).arg(description.highest));
        return number;
    };
    Knob::Value value;
    value.x = checked(list[index++]);
    if (description.kind == Knob::Kind::Point)
        value.y = checked(list[index++]);
    const bool whole = description.kind == Knob::Kind::Flag || description.kind == Knob::Kind::Enumeration;
    if (whole && value.x != std::floor(value.x))
        list[index - 1].refuse(QString::fromLatin1("is no whole number"));
    return value;
}

} // namespace

Json writeAnimation(const Knob::Animation& animation, Knob::Kind kind)
{
    Json list = Json::array();
    push(list, animation.rest(), kind);
    animation.forEachKey([&](const Knob::Key& key) {
        list.push_back(key.view);
        list.push_back(key.time);
        push(list, key.value, kind);
    });
    return list;
}

Knob::Animation readAnimation(const JsonReader& reader, const Knob::Description& description)
{
    std::size_t index = 0;
    Knob::Animation animation(readValue(reader, index, description));
    while (index < reader.size()) {
        const int view = static_cast<int>(reader[index].integer(0, mostViews));
        const double time = reader[index + 1].number();
        index += 2;
        const std::size_t place = index;
        if (animation.setKey(time, view, readValue(reader, index, description)))
            reader[place].refuse(QString::fromLatin1("is a second keyframe at one time"));
    }
    return animation;
}

} // namespace orrery
