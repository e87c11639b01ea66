// Records as tables. A row says what a field is called (by scripts and in files), where it is kept and which values it
// takes; its default is what a new record has there. Setters, constructors and the document's reader run the same rows,
// so what one of them takes, all take.
//
//     struct Grade
//     {
//         float gain = 1;
//         static constexpr auto fields() { return std::make_tuple(Field("gain", &Grade::gain, checkGain)); }
//     };
//
//     constexpr auto row = fieldOf<&Grade::gain>();
#pragma once

#include <QString>
#include <cstddef>
#include <fundo/colour.h>
#include <tuple>
#include <type_traits>

namespace Knob {

// What is wrong with a value, as a text that stands after the field's name. None is false.
class Problem
{
public:
    enum Kind { None, Argument, Range }; // of the argument: senseless, or out of its range

    Problem() = default;
    Problem(Kind kind, QString text) : m_kind(kind), m_text(std::move(text)) {}

    explicit operator bool() const { return m_kind != None; }
    const QString& text() const { return m_text; }
    Kind kind() const { return m_kind; }
    // The same problem, of a part of what is checked.
    Problem within(const char* name) const;

private:
    Kind m_kind = None;
    QString m_text;
};

template <class Owner, class T>
struct Field
{
    using Record = Owner;
    using Value = T;
    using Check = Problem (*)(const T&);
    using RecordCheck = Problem (*)(const Owner&);

    constexpr Field(const char* name, T Owner::*member, Check check = nullptr, RecordCheck checkRecord = nullptr)
        : name(name), member(member), check(check), checkRecord(checkRecord)
    {}
    constexpr Field(const char* name, T Owner::*member, std::nullptr_t, RecordCheck checkRecord)
        : name(name), member(member), check(nullptr), checkRecord(checkRecord)
    {}

    Problem problemOf(const T& value) const { return check ? check(value) : Problem(); }
    Problem problemIn(const Owner& record) const { return checkRecord ? checkRecord(record) : Problem(); }

    const char* name;
    T Owner::*member;
    Check check;             // of a value alone; null where every value is taken
    RecordCheck checkRecord; // of the value together with the record's others; may be null
};

template <class Record, class Function>
void forEachField(Function function)
{
    std::apply([&function](const auto&... field) { (function(field), ...); }, Record::fields());
}

namespace detail {

template <class Member>
struct RecordOf;
template <class Record, class T>
struct RecordOf<T Record::*>
{
    using Type = Record;
};

template <class Row, class Member>
constexpr bool isRowOf(const Row& row, Member member)
{
    if constexpr (std::is_same_v<decltype(row.member), Member>)
        return row.member == member;
    else
        return false;
}

template <class Table, class Member, std::size_t... index>
constexpr std::size_t rowOf(const Table& table, Member member, std::index_sequence<index...>)
{
    std::size_t found = sizeof...(index);
    ((isRowOf(std::get<index>(table), member) ? void(found = index) : void()), ...);
    return found;
}

} // namespace detail

// The row of a member; a member without one does not compile.
template <auto member>
constexpr auto fieldOf()
{
    using Record = typename detail::RecordOf<decltype(member)>::Type;
    constexpr auto table = Record::fields();
    constexpr auto count = std::tuple_size_v<decltype(table)>;
    return std::get<detail::rowOf(table, member, std::make_index_sequence<count>())>(table);
}

// What is wrong with the first field of a record that has a problem, after its name.
template <class Record>
Problem problemOf(const Record& record)
{
    Problem first;
    forEachField<Record>([&](const auto& field) {
        if (!first)
            first = field.problemOf(record.*field.member).within(field.name);
    });
    return first;
}

template <class Record>
bool sameFields(const Record& one, const Record& other)
{
    bool same = true;
    forEachField<Record>([&](const auto& field) { same = same && one.*field.member == other.*field.member; });
    return same;
}

// ---- Checks that several tables share ----

constexpr int longestName = 65535;

Problem notFromTo(double value, double least, double most);

template <auto least, auto most, class T>
Problem checkRange(const T& value)
{
    return value < static_cast<T>(least) || value > static_cast<T>(most)
               ? notFromTo(static_cast<double>(value), static_cast<double>(least), static_cast<double>(most))
               : Problem();
}

// Any text without unpaired surrogates: what can be written to a file and read back.
Problem checkText(const QString& text);
// Such a text without a NUL, which no name of a file can hold.
Problem checkPath(const QString& path);
Problem checkFolder(const QString& folder); // an absolute path without "." and ".." in it
// A text of 1 to 65535 characters.
Problem checkName(const QString& name);
Problem checkColor(const Fundo::Colour3<float>& color); // components from 0 to 1
Problem checkFinite(const double& value);
Problem checkRate(const float& rate); // greater than 0 and finite

} // namespace Knob
