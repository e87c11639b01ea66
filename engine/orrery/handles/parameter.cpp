// Parameter and ParameterSet: values, keyframes and navigation.
#include "parameter_values.h"

#include <cstdint>
#include <engine/handles/presence.h>
#include <orrery/parameter.h>
#include <set>
#include <utility>

using namespace orrery;

Parameter::Parameter() = default;
Parameter::Parameter(const Parameter& other) = default;
Parameter::Parameter(boost::shared_ptr<Knob::ParameterSet> parameter, boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(parameter, manager)
{}
Parameter& Parameter::operator=(const Parameter& other) = default;
Parameter::~Parameter() = default;

bool Parameter::isNull() const { return isGone(m_object, m_manager); }

namespace {

using ViewAndTime = std::pair<int, double>;

// Views that the project has no more keep their keyframes, for when they come back.
QVector<QPair<View, double>> visible(const std::set<ViewAndTime>& keys, const Stratum::Model& project)
{
    QVector<QPair<View, double>> keyframes;
    for (const ViewAndTime& key : keys)
        if (static_cast<std::size_t>(key.first) < project.settings.views.size())
            keyframes.append(qMakePair(View(key.first), key.second));
    return keyframes;
}

void collect(const Knob::Animation& animation, std::set<ViewAndTime>& keys)
{
    animation.forEachKey([&keys](const Knob::Key& key) { keys.insert(keys.end(), {key.view, key.time}); });
}

void collect(Knob::Branch& branch, std::set<ViewAndTime>& keys)
{
    for (const Knob::Member& member : branch.members()) {
        if (member.animation)
            collect(*member.animation, keys);
        else
            collect(*member.branch, keys);
    }
}

// A node with its project's lock held; throws for one that was removed meanwhile.
class LockedNode
{
public:
    LockedNode(boost::shared_ptr<Knob::ParameterSet> node, const boost::weak_ptr<STRM_ProjectManager>& manager)
        : m_manager(openManager(manager)), m_node(std::move(node)), m_lock(*m_manager)
    {
        m_lock.of(*m_node);
    }
    Knob::ParameterSet* operator->() const { return m_node.get(); }
    const boost::shared_ptr<STRM_ProjectManager>& manager() const { return m_manager; }
    const Stratum::Model& project() const { return *m_lock; }

private:
    const boost::shared_ptr<STRM_ProjectManager> m_manager;
    const boost::shared_ptr<Knob::ParameterSet> m_node;
    const Stratum::Exclusive m_lock; // the nodes below are made when they are first asked for
};

template <class Handle>
QVector<Handle> childrenOf(const LockedNode& node, bool parameters)
{
    QVector<Handle> handles;
    for (const auto& child : node->children())
        if (child->isParameter() == parameters)
            handles.append(Handle(child, node.manager()));
    return handles;
}

} // namespace

QVariant Parameter::get(double time, View view)
{
    const boost::shared_ptr<STRM_ProjectManager> manager = openManager(m_manager);
    const boost::shared_ptr<Knob::ParameterSet> node = handledObject();
    const double at = requireTime(time);
    Knob::Value value;
    {
        const Stratum::Reading reading(*manager);
        value = reading.of(*node).animation().at(at, resolveView(*reading, view), reading->settings.heroView,
                                                 node->description().interpolated());
    }
    return toVariant(node->description(), value);
}

void Parameter::set(const QVariant& value, double time, View view)
{
    const boost::shared_ptr<STRM_ProjectManager> manager = openManager(m_manager);
    const boost::shared_ptr<Knob::ParameterSet> node = handledObject();
    const double at = requireTime(time);
    const Knob::Description& description = node->description();
    const Knob::Value next = fromVariant(description, value);
    Stratum::checkValue(description, next);
    if (!description.writable)
        raise<STRM_BadState>(QString::fromLatin1("%1 cannot be changed").arg(QString::fromLatin1(description.name)));

    Stratum::Edit edit(*manager);
    Knob::Animation& animation = edit.writable(*node).animation();
    const int id = resolveView(*edit, view);
    const Knob::Key* key = animation.key(at, id);
    const bool asBefore =
        Knob::isUnanimated(at) ? animation.rest() == next && !animation.animated(id) : key && key->value == next;
    if (!asBefore)
        Stratum::setValue(edit, animation, next, at, id);
    edit.commit();
}

void Parameter::delete_keyframe(double time, View view)
{
    const boost::shared_ptr<STRM_ProjectManager> manager = openManager(m_manager);
    const boost::shared_ptr<Knob::ParameterSet> node = handledObject();
    const double at = requireTime(time);
    Stratum::Edit edit(*manager);
    Knob::Animation& animation = edit.writable(*node).animation();
    const int id = resolveView(*edit, view);
    if (!animation.key(at, id))
        raise<STRM_OutOfRange>(QString::fromLatin1("%1 has no keyframe at time %2 in view %3")
                                   .arg(QString::fromLatin1(node->description().name))
                                   .arg(time)
                                   .arg(id));
    Stratum::removeKey(edit, animation, at, id);
    edit.commit();
}

QStringList Parameter::get_name_components() { return handledObject()->path(); }

QVector<QPair<View, double>> Parameter::get_keyframes()
{
    const LockedNode node(handledObject(), m_manager);
    std::set<ViewAndTime> keys;
    collect(node->animation(), keys);
    return visible(keys, node.project());
}

bool Parameter::operator==(const Parameter& other) const { return refersToSame(other); }

bool Parameter::operator!=(const Parameter& other) const { return !(*this == other); }

unsigned int qHash(const Parameter& parameter) { return hashOf(parameter); }

// ---- Sets ----

ParameterSet::ParameterSet() = default;
ParameterSet::ParameterSet(const ParameterSet& other) = default;
ParameterSet::ParameterSet(boost::shared_ptr<Knob::ParameterSet> set, boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(set, manager)
{}
ParameterSet& ParameterSet::operator=(const ParameterSet& other) = default;
ParameterSet::~ParameterSet() = default;

bool ParameterSet::isNull() const { return isGone(m_object, m_manager); }

QStringList ParameterSet::get_name_components() { return handledObject()->path(); }

QVector<Parameter> ParameterSet::get_parameters()
{
    return childrenOf<Parameter>(LockedNode(handledObject(), m_manager), true);
}

QVector<ParameterSet> ParameterSet::get_subsets()
{
    return childrenOf<ParameterSet>(LockedNode(handledObject(), m_manager), false);
}

QVector<QPair<View, double>> ParameterSet::get_keyframes()
{
    const LockedNode node(handledObject(), m_manager);
    std::set<ViewAndTime> keys;
    collect(node->branch(), keys);
    return visible(keys, node.project());
}

QString ParameterSet::get_display_name() { return handledObject()->displayName(); }

QString ParameterSet::get_script_name() { return handledObject()->scriptName(); }

bool ParameterSet::operator==(const ParameterSet& other) const { return refersToSame(other); }

bool ParameterSet::operator!=(const ParameterSet& other) const { return !(*this == other); }

unsigned int qHash(const ParameterSet& set) { return hashOf(set); }
