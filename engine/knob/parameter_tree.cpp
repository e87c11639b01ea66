// The nodes of the parameter tree, made over the branches of the model.
#include <QCoreApplication>
#include <engine/knob/parameter_tree.h>

namespace Knob {

QString translated(const char* text) { return QCoreApplication::translate("Parameter", text); }

std::vector<Member> tableMembers(const Description* table, std::size_t count, Animation* values)
{
    std::vector<Member> members;
    members.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        members.push_back({QString::fromLatin1(table[i].name), nullptr, values + i, table + i});
    return members;
}

void setInitialValues(const Description* table, std::size_t count, Animation* values)
{
    for (std::size_t i = 0; i < count; ++i)
        values[i].setRest(table[i].initial);
}

Branch::~Branch() = default;

Member Branch::member(const QString& name)
{
    for (const Member& member : members())
        if (member.name == name)
            return member;
    return {};
}

boost::shared_ptr<ParameterSet> Branch::rootNode()
{
    if (!m_root) {
        Member target;
        target.branch = this;
        m_root = boost::make_shared<ParameterSet>(nullptr, *this, target);
    }
    return m_root;
}

QString TableBranch::displayName() const { return translated(m_displayName); }

ParameterSet::ParameterSet(ParameterSet* parent, Branch& branch, const Member& target)
    : m_parent(parent), m_target(target), m_branch(&branch)
{}

ParameterSet::~ParameterSet() = default;

QStringList ParameterSet::path() const
{
    QStringList names;
    for (const ParameterSet* node = this; node->m_parent; node = node->m_parent)
        names.prepend(node->m_target.name);
    return names;
}

QString ParameterSet::displayName() const
{
    return isParameter() ? translated(m_target.description->displayName) : m_branch->displayName();
}

QString ParameterSet::scriptName() const
{
    const QString name = isParameter() ? QString() : m_branch->scriptName();
    return name.isEmpty() ? m_target.name : name;
}

const void* ParameterSet::target() const
{
    return isParameter() ? static_cast<const void*>(m_target.animation) : m_branch;
}

boost::shared_ptr<ParameterSet> ParameterSet::child(const Member& member)
{
    boost::shared_ptr<ParameterSet>& node = m_children[member.name];
    if (!node)
        node = boost::make_shared<ParameterSet>(this, member.branch ? *member.branch : *m_branch, member);
    return node;
}

boost::shared_ptr<ParameterSet> ParameterSet::child(const QString& name)
{
    if (isParameter())
        return {};
    const Member member = m_branch->member(name);
    return member ? child(member) : boost::shared_ptr<ParameterSet>();
}

boost::shared_ptr<ParameterSet> ParameterSet::descendant(const QStringList& path)
{
    boost::shared_ptr<ParameterSet> node = shared_from_this();
    for (int i = 0; node && i < path.size(); ++i)
        node = node->child(path[i]);
    return node;
}

std::vector<boost::shared_ptr<ParameterSet>> ParameterSet::children()
{
    std::vector<boost::shared_ptr<ParameterSet>> nodes;
    if (!isParameter())
        for (const Member& member : m_branch->members())
            nodes.push_back(child(member));
    return nodes;
}

} // namespace Knob
