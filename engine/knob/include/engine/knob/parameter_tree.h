// The tree that scripts walk: nodes are made when they are asked for, over branches that the model's objects offer. An
// object whose tree is never asked for has no nodes.
//
// A node knows its path from the object that was asked. The same value can be reached on several paths (a point's own
// "x", and "12", "x" of its contour): these are different nodes with the same target, and compare equal.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <engine/knob/animation.h>
#include <knob/parameter_set.h>
#include <vector>

namespace Knob {

enum class Kind { Number, Flag, Enumeration, Point };

// What a parameter is called and what it takes: an entry of a constant table.
struct Description
{
    const char* name;        // for scripts, and in paths
    const char* displayName; // for people; translated in the context "Parameter"
    Kind kind;
    Value initial;
    double lowest; // of numbers and enumerators
    double highest;
    const char* enumeration; // the meta type's name where the kind is Enumeration
    bool writable;

    bool interpolated() const { return kind == Kind::Number || kind == Kind::Point; }
};

constexpr double unlimited = 1e300;
constexpr double farAway = 1e9; // pixels: no coordinate of footage, and far from where arithmetic ends

// ---- Entries of tables ----

constexpr Description number(const char* name, const char* displayName, double initial, double lowest, double highest)
{
    return {name, displayName, Kind::Number, {initial, 0}, lowest, highest, nullptr, true};
}

constexpr Description flag(const char* name, const char* displayName, bool initial)
{
    return {name, displayName, Kind::Flag, {initial ? 1.0 : 0.0, 0}, 0, 1, nullptr, true};
}

constexpr Description coordinate(const char* name, const char* displayName, double initial)
{
    return number(name, displayName, initial, -farAway, farAway);
}

constexpr Description offset(const char* name, const char* displayName)
{
    return {name, displayName, Kind::Point, {}, -farAway, farAway, nullptr, true};
}

class Branch;

// The text in the language of the user, for display names. Without a lock.
QString translated(const char* text);

// A member of a branch: a further branch, or a value with its description.
struct Member
{
    QString name;
    Branch* branch = nullptr;
    Animation* animation = nullptr;
    const Description* description = nullptr;

    explicit operator bool() const { return branch || animation; }
};

// The values that a table describes, of which there are as many as entries.
std::vector<Member> tableMembers(const Description* table, std::size_t count, Animation* values);
void setInitialValues(const Description* table, std::size_t count, Animation* values);

// What a set of parameters represents: an object of the model, or a part of one. Lives as long as its model.
class Branch
{
public:
    virtual ~Branch();

    // False once the object was removed. Any thread, no lock.
    virtual bool present() const = 0;

    // Without a lock: texts are translated, and a translation may be a script's.
    virtual QString displayName() const = 0;
    // A Python name for objects that the tree names by their number; empty where the node's own name is one. No lock.
    virtual QString scriptName() const { return QString(); }

    // The following are called with the model's lock held.
    virtual std::vector<Member> members() = 0;
    // The member of that name, or an empty one. The default implementation searches members().
    virtual Member member(const QString& name);

    // Throws what the model throws when the branch's values must not be changed now.
    virtual void requireWritable() const {}

    // The node of this branch as a root, made on first use. Kept as long as the branch.
    boost::shared_ptr<ParameterSet> rootNode();

private:
    boost::shared_ptr<ParameterSet> m_root;
};

// A branch that is a table of values. `animations` must be as long as the table and stay where it is.
class TableBranch : public Branch
{
public:
    template <std::size_t count>
    TableBranch(const Branch& owner, const char* displayName, const Description (&table)[count], Animation* animations)
        : m_owner(owner), m_displayName(displayName), m_table(table), m_count(count), m_animations(animations)
    {}

    bool present() const override { return m_owner.present(); }
    QString displayName() const override;
    std::vector<Member> members() override { return tableMembers(m_table, m_count, m_animations); }
    void requireWritable() const override { m_owner.requireWritable(); }

private:
    const Branch& m_owner;
    const char* m_displayName;
    const Description* m_table;
    std::size_t m_count;
    Animation* m_animations;
};

// A branch with a display name of its own; subclasses implement members().
class NamedBranch : public Branch
{
public:
    NamedBranch(const Branch& owner, const char* displayName) : m_owner(owner), m_displayName(displayName) {}

    bool present() const override { return m_owner.present(); }
    QString displayName() const override { return translated(m_displayName); }

private:
    const Branch& m_owner;
    const char* m_displayName;
};

// A node of the tree. Its path, target and presence can be read by any thread without a lock; children are asked for
// with the model's lock held.
class ParameterSet : public boost::enable_shared_from_this<ParameterSet>
{
public:
    ParameterSet(ParameterSet* parent, Branch& branch, const Member& target);
    ParameterSet(const ParameterSet&) = delete;
    ParameterSet& operator=(const ParameterSet&) = delete;
    ~ParameterSet();

    // A leaf: one value. Anything else is a set.
    bool isParameter() const { return m_target.animation; }
    bool present() const { return m_branch->present(); }
    void requireWritable() const { m_branch->requireWritable(); }
    QStringList path() const;
    QString displayName() const;
    QString scriptName() const;

    // The branch that holds the value, or that the set stands for.
    Branch& branch() const { return *m_branch; }
    Animation& animation() { return *m_target.animation; }
    const Animation& animation() const { return *m_target.animation; }
    const Description& description() const { return *m_target.description; }

    // What handles on parameters and sets compare and hash by.
    const void* target() const;

    // Null when there is no member of that name.
    boost::shared_ptr<ParameterSet> child(const QString& name);
    boost::shared_ptr<ParameterSet> descendant(const QStringList& path);
    std::vector<boost::shared_ptr<ParameterSet>> children();

private:
    boost::shared_ptr<ParameterSet> child(const Member& member);

    ParameterSet* const m_parent;
    const Member m_target;
    Branch* const m_branch;
    QHash<QString, boost::shared_ptr<ParameterSet>> m_children;
};

} // namespace Knob
