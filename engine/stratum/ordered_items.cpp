// The tree of an ordered sequence: in order from left to right, balanced by priorities that follow from the items'
// addresses (a treap), and the sums over its branches that searches go through.
#include <algorithm>
#include <cassert>
#include <engine/stratum/ordered_items.h>

namespace Stratum {

// ---- Items ----

// As if at random, since addresses of items that were made one after the other follow each other.
bool OrderedItem::isAbove(const OrderedItem& a, const OrderedItem& b)
{
    const auto priority = [](const OrderedItem& item) {
        std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(&item) * 0x9e3779b97f4a7c15u;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
        return mixed ^ (mixed >> 27);
    };
    return priority(a) > priority(b);
}

void OrderedItem::update() noexcept
{
    m_countBelow = static_cast<std::uint32_t>(1 + count(m_left) + count(m_right));
    m_weightBelow = static_cast<std::uint32_t>(m_weight + weight(m_left) + weight(m_right));
    for (OrderedItem* child : {m_left, m_right})
        if (child)
            child->m_parent = this;
}

void OrderedItem::updateUpwards() noexcept
{
    for (OrderedItem* item = this; item; item = item->m_parent)
        item->update();
}

OrderedItem* OrderedItem::join(OrderedItem* first, OrderedItem* second) noexcept
{
    if (!first || !second)
        return first ? first : second;
    if (isAbove(*first, *second)) {
        first->m_right = join(first->m_right, second);
        first->update();
        return first;
    }
    second->m_left = join(first, second->m_left);
    second->update();
    return second;
}

// The items before the index, and those from it on.
OrderedItem::Halves OrderedItem::split(OrderedItem* top, std::size_t index) noexcept
{
    if (!top)
        return {};
    Halves halves;
    if (index <= count(top->m_left)) {
        halves = split(top->m_left, index);
        top->m_left = std::exchange(halves.second, top);
    } else {
        halves = split(top->m_right, index - count(top->m_left) - 1);
        top->m_right = std::exchange(halves.first, top);
    }
    top->update();
    return halves;
}

// ---- The sequence ----

std::size_t OrderedItems::size() const noexcept { return OrderedItem::count(m_root); }

std::size_t OrderedItems::weight() const noexcept { return OrderedItem::weight(m_root); }

void OrderedItems::setRoot(OrderedItem* root) noexcept
{
    m_root = root;
    if (root)
        root->m_parent = nullptr;
}

void OrderedItems::insert(OrderedItem& item, std::size_t index) noexcept
{
    assert(!item.m_sequence && !item.m_parent && !item.m_left && !item.m_right);
    const auto [before, after] = OrderedItem::split(m_root, index);
    setRoot(OrderedItem::join(OrderedItem::join(before, &item), after));
    item.m_sequence = this;
}

void OrderedItems::remove(OrderedItem& item) noexcept
{
    assert(item.m_sequence == this);
    OrderedItem* const below = OrderedItem::join(item.m_left, item.m_right);
    OrderedItem* const parent = item.m_parent;
    item.m_sequence = nullptr;
    item.m_parent = item.m_left = item.m_right = nullptr;
    item.update();
    if (!parent) {
        setRoot(below);
        return;
    }
    (parent->m_left == &item ? parent->m_left : parent->m_right) = below;
    parent->updateUpwards();
}

std::size_t OrderedItems::index(const OrderedItem& item) const noexcept
{
    assert(item.m_sequence == this);
    std::size_t before = OrderedItem::count(item.m_left);
    for (const OrderedItem* below = &item; below->m_parent; below = below->m_parent)
        if (below == below->m_parent->m_right)
            before += OrderedItem::count(below->m_parent->m_left) + 1;
    return before;
}

OrderedItem* OrderedItems::at(std::size_t index) const noexcept
{
    for (OrderedItem* item = m_root; item;) {
        const std::size_t before = OrderedItem::count(item->m_left);
        if (index < before) {
            item = item->m_left;
        } else if (index == before) {
            return item;
        } else {
            index -= before + 1;
            item = item->m_right;
        }
    }
    return nullptr;
}

OrderedItems::Unit OrderedItems::atWeight(std::size_t number) const noexcept
{
    for (OrderedItem* item = m_root; item;) {
        const std::size_t before = OrderedItem::weight(item->m_left);
        if (number < before) {
            item = item->m_left;
        } else if (number - before < item->m_weight) {
            return {item, number - before};
        } else {
            number -= before + item->m_weight;
            item = item->m_right;
        }
    }
    return {};
}

void OrderedItems::setWeight(OrderedItem& item, std::size_t weight) noexcept
{
    assert(item.m_sequence == this);
    item.m_weight = static_cast<std::uint32_t>(weight);
    item.updateUpwards();
}

OrderedItem* OrderedItems::first() const noexcept
{
    OrderedItem* item = m_root;
    while (item && item->m_left)
        item = item->m_left;
    return item;
}

OrderedItem* OrderedItems::next(const OrderedItem& item) noexcept
{
    if (OrderedItem* following = item.m_right) {
        while (following->m_left)
            following = following->m_left;
        return following;
    }
    const OrderedItem* below = &item;
    while (below->m_parent && below == below->m_parent->m_right)
        below = below->m_parent;
    return below->m_parent;
}

} // namespace Stratum
