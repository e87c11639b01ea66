// Layers and groups: their places in the drawing order, their links and their tracks.
#include "key_edits.h"
#include "planar_transform.h"

#include <algorithm>
#include <cassert>
#include <engine/stratum/tree.h>
#include <stratum/enumerations.h>
#include <stratum/exception.h>

namespace Stratum {

TreeItem::TreeItem(Model& project, unsigned int id, std::uint32_t weight)
    : OrderedItem(weight), m_project(project), m_id(id)
{}

LayerModel::LayerModel(Model& project, unsigned int id) : TreeItem(project, id, 1) {}
LayerModel::~LayerModel() = default;
GroupModel::GroupModel(Model& project, unsigned int id) : TreeItem(project, id, 0) {}
GroupModel::~GroupModel() = default;
RootModel::RootModel() = default;
RootModel::~RootModel() = default;

GroupModel* LayerModel::group() const
{
    LayerGroup* parent = parentGroup();
    return parent && parent != &project().root() ? &model(*parent) : nullptr;
}

bool LayerModel::shown() const
{
    const GroupModel* const holder = group();
    return visible && (!holder || holder->visible);
}

void LayerModel::requireUnlocked() const
{
    const GroupModel* const holder = group();
    if (!locked && !(holder && holder->locked))
        return;
    const QString message = locked
                                ? QString::fromLatin1("layer '%1' is locked").arg(name)
                                : QString::fromLatin1("layer '%1' is locked by its group '%2'").arg(name, holder->name);
    throw STRM_BadState(__FILE__, __LINE__, message, message);
}

unsigned int LayerModel::inPoint() const { return std::min(inFrame, outPoint()); }

unsigned int LayerModel::outPoint() const { return project().settings.length - 1; }

void LayerModel::setTrackedWith(LayerModel* followed)
{
    follow(followed ? &followed->followers : nullptr);
    m_trackedWith = followed;
}

const LayerModel& LayerModel::trackSource() const
{
    const LayerModel* source = this;
    while (source->trackedWith())
        source = source->trackedWith();
    return *source;
}

LayerAnimations& LayerModel::animations()
{
    if (!m_animations)
        m_animations = std::make_unique<LayerAnimations>(*this);
    return *m_animations;
}

Knob::Value LayerModel::value(LayerValue which, double time, int view) const
{
    const Knob::Description& entry = description(which);
    if (!m_animations)
        return entry.initial;
    return m_animations->values[which].at(time, view, project().settings.heroView, entry.interpolated());
}

bool LayerModel::tracked(int view) const
{
    if (!m_animations)
        return false;
    return std::any_of(m_animations->corners.begin(), m_animations->corners.end(),
                       [view](const Knob::Animation& corner) { return corner.animated(view); });
}

Corners LayerModel::corners(double time, int view) const
{
    Corners corners;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto coordinate = [&](std::size_t index) {
            return m_animations ? m_animations->corners[index].at(time, view, project().settings.heroView, true).x
                                : cornerDescription(index).initial.x;
        };
        corners[i] = {coordinate(2 * i), coordinate(2 * i + 1)};
    }
    return corners;
}

Lum_Matrix33 LayerModel::transform(double time, int view) const
{
    const LayerModel& source = trackSource();
    if (!source.tracked(view) && !source.tracked(project().settings.heroView))
        return Lum_Matrix33::identity();
    return transformBetween(source.corners(inPoint(), view), source.corners(time, view));
}

Knob::Value GroupModel::opacity(double time, int view) const
{
    const Knob::Description& entry = groupOpacityDescription();
    return m_opacity ? m_opacity->at(time, view, project().settings.heroView, true) : entry.initial;
}

Knob::Animation& GroupModel::opacityAnimation()
{
    if (!m_opacity)
        m_opacity = std::make_unique<Knob::Animation>(groupOpacityDescription().initial);
    return *m_opacity;
}

// ---- Reading the tree ----

std::vector<const LayerModel*> allLayers(const Model& project)
{
    std::vector<const LayerModel*> layers;
    layers.reserve(project.root().items.weight());
    for (const TreeItem& item : project.root().items) {
        if (auto* layer = dynamic_cast<const LayerModel*>(&item))
            layers.push_back(layer);
        else
            for (const LayerModel& member : static_cast<const GroupModel&>(item).layers)
                layers.push_back(&member);
    }
    return layers;
}

std::vector<const GroupModel*> allGroups(const Model& project)
{
    std::vector<const GroupModel*> groups;
    for (const TreeItem& item : project.root().items)
        if (auto* group = dynamic_cast<const GroupModel*>(&item))
            groups.push_back(group);
    return groups;
}

const LayerModel* layerAt(const Model& project, std::size_t index)
{
    const OrderedItems::Unit unit = project.root().items.atWeight(index);
    auto* const item = static_cast<const TreeItem*>(unit.item);
    if (auto* group = dynamic_cast<const GroupModel*>(item))
        return group->layers.at(unit.offset);
    return static_cast<const LayerModel*>(item);
}

// ---- Changing it ----

namespace {

// Where an item is: nowhere, at the top, or in a group.
struct Position
{
    LayerGroup* parent = nullptr;
    std::size_t index = 0;
};

OrderedItems& itemsIn(LayerGroup& parent, RootModel& root)
{
    if (&parent == &root)
        return root.items;
    return model(parent).layers;
}

// Moves an item from one place to another and back.
template <class Item>
class Move : public Change
{
public:
    Move(RootModel& root, Item& item, Position to) : m_root(root), m_item(item), m_to(to) {}

    void make() override
    {
        const Position from = leave();
        enter(m_to);
        m_item.setParentGroup(m_to.parent); // at once: threads that ask without the lock never find it absent
        m_to = from;
    }
    void takeBack() override { make(); }
    Notices notices() const override { return Notices::layersChanged(); }

private:
    // The number of layers in a group is its weight among its own siblings.
    void weigh(LayerGroup& parent)
    {
        if (&parent == &m_root)
            return;
        GroupModel& group = model(parent);
        m_root.items.setWeight(group, group.layers.size());
    }
    Position leave()
    {
        LayerGroup* parent = m_item.parentGroup();
        if (!parent)
            return {};
        assert(m_item.sequence() == &itemsIn(*parent, m_root));
        const Position position{parent, itemsIn(*parent, m_root).index(m_item)};
        itemsIn(*parent, m_root).remove(m_item);
        weigh(*parent);
        return position;
    }
    void enter(const Position& position)
    {
        assert(!m_item.sequence());
        if (!position.parent)
            return;
        itemsIn(*position.parent, m_root).insert(m_item, position.index);
        weigh(*position.parent);
    }

    RootModel& m_root;
    Item& m_item;
    Position m_to;
};

template <class Item>
void move(Edit& edit, Item& item, Position to)
{
    assert(&edit.manager() == &item.manager()); // whose lock the edit holds
    edit.perform(std::make_unique<Move<Item>>(edit->root(), item, to));
}

std::size_t siblingCount(const TreeItem& item) { return item.sequence()->size(); }

} // namespace

void addLayer(Edit& edit, LayerModel& layer)
{
    RootModel& root = edit->root();
    move(edit, layer, {&root, root.items.size()});
}

void addGroup(Edit& edit, GroupModel& group)
{
    RootModel& root = edit->root();
    move(edit, group, {&root, root.items.size()});
}

void moveLayer(Edit& edit, LayerModel& layer, GroupModel* group, std::size_t index)
{
    RootModel& root = edit->root();
    LayerGroup* parent = group ? static_cast<LayerGroup*>(group) : &root;
    const std::size_t others = itemsIn(*parent, root).size() - (layer.parentGroup() == parent ? 1 : 0);
    const std::size_t to = std::min(index, others);
    if (layer.parentGroup() != parent || layer.sequence()->index(layer) != to)
        move(edit, layer, {parent, to});
}

void reorder(Edit& edit, TreeItem& item, int place)
{
    const std::size_t last = siblingCount(item) - 1;
    const std::size_t to = place < 0 ? 0 : std::min(static_cast<std::size_t>(place), last);
    if (item.sequence()->index(item) == to)
        return;
    if (auto* layer = dynamic_cast<LayerModel*>(&item))
        move(edit, *layer, {layer->parentGroup(), to});
    else if (auto* group = dynamic_cast<GroupModel*>(&item))
        move(edit, *group, {group->parentGroup(), to});
}

void linkToTrack(Edit& edit, LayerModel& layer, LayerModel* followed)
{
    for (const LayerModel* link = followed; link; link = link->trackedWith()) {
        if (link != &layer)
            continue;
        const QString message =
            QString::fromLatin1("link_to_track: layer '%1' cannot follow '%2', which is the same or follows it")
                .arg(layer.name, followed->name);
        throw STRM_BadArgument(__FILE__, __LINE__, message, message);
    }
    LayerModel* const former = layer.trackedWith();
    if (former == followed)
        return;
    edit.perform(change([&layer, followed] { layer.setTrackedWith(followed); },
                        [&layer, former] { layer.setTrackedWith(former); }));
}

void takeOut(Edit& edit, LayerModel& layer) { move(edit, layer, {}); }

void writeTrack(Edit& edit, LayerModel& layer, int view, const std::vector<TrackKey>& keys, bool replaceAll)
{
    if (keys.empty() && !replaceAll)
        return;
    const auto [first, last] = std::minmax_element(
        keys.begin(), keys.end(), [](const TrackKey& a, const TrackKey& b) { return a.time < b.time; });
    auto edits = std::make_unique<KeyEdits>();
    const auto write = [&, first = first, last = last](Knob::Animation& animation, const auto& valueOf) {
        for (const Knob::Key& key : animation.keys(view))
            if (replaceAll || (key.time >= first->time && key.time <= last->time))
                edits->set(animation, key.time, view, std::nullopt);
        for (const TrackKey& key : keys)
            edits->set(animation, key.time, view, Knob::Value{valueOf(key), 0});
    };
    LayerAnimations& all = layer.animations();
    for (std::size_t index = 0; index < all.corners.size(); ++index)
        write(all.corners[index], [index](const TrackKey& key) {
            const Knob::Value& place = key.corners[index / 2];
            return index % 2 ? place.y : place.x;
        });
    write(all.values[LayerTrackQuality], [](const TrackKey& key) { return key.quality; });
    write(all.values[LayerTrackVisible], [](const TrackKey& key) { return key.visible; });
    edit.perform(std::move(edits));
}

} // namespace Stratum
