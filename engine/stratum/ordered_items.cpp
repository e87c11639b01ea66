// The treap.
#include <algorithm>
#include <stratum/ordered_items.h>

namespace Stratum {

void OrderedItems::update(OrderedItem& item)
{
    item.m_count = static_cast<std::uint32_t>(count(item.m_left) + count(item.m_right) + 1);
    item.m_weight = static_cast<std::uint32_t>(weight(item.m_left) + weight(item.m_right) + item.m_ownWeight);
    if (item.m_left)
        item.m_left->m_parent = &item;
    if (item.m_right)
        item.m_right->m_parent = &item;
}

OrderedItem* OrderedItems::merge(OrderedItem* left, OrderedItem* right)
{
    if (!left || !right)
        return left ? left : right;
    OrderedItem* top;
    if (left->m_priority > right->m_priority) {
        top = left;
        top->m_right = merge(left->m_right, right);
    } else {
        top = right;
        top->m_left = merge(left, right->m_left);
    }
    update(*top);
    return top;
}

void OrderedItems::split(OrderedItem* root, std::size_t index, OrderedItem*& left, OrderedItem*& right)
{
    if (!root) {
        left = right = nullptr;
        return;
    }
    if (count(root->m_left) >= index) {
        right = root;
        split(root->m_left, index, left, root->m_left);
    } else {
        left = root;
        split(root->m_right, index - count(root->m_left) - 1, root->m_right, right);
    }
    root->m_parent = nullptr;
    update(*root);
    if (left)
        left->m_parent = nullptr;
    if (right)
        right->m_parent = nullptr;
}

void OrderedItems::insert(OrderedItem& item, std::size_t index)
{
    m_random ^= m_random << 13;
    m_random ^= m_random >> 17;
    m_random ^= m_random << 5;
    item.m_priority = m_random;
    item.m_left = item.m_right = item.m_parent = nullptr;
    update(item);
    OrderedItem *left, *right;
    split(m_root, std::min(index, size()), left, right);
    m_root = merge(merge(left, &item), right);
    m_root->m_parent = nullptr;
    item.m_sequence = this;
}

void OrderedItems::remove(OrderedItem& item)
{
    OrderedItem *left, *middle, *right;
    split(m_root, index(item), left, right);
    split(right, 1, middle, right);
    m_root = merge(left, right);
    if (m_root)
        m_root->m_parent = nullptr;
    item.m_sequence = nullptr;
    item.m_left = item.m_right = item.m_parent = nullptr;
    update(item);
}

std::size_t OrderedItems::index(const OrderedItem& item) const
{
    std::size_t before = count(item.m_left);
    for (const OrderedItem* below = &item; below->m_parent; below = below->m_parent)
        if (below == below->m_parent->m_right)
            before += count(below->m_parent->m_left) + 1;
    return before;
}

OrderedItem* OrderedItems::at(std::size_t index) const
{
    OrderedItem* item = m_root;
    while (item) {
        const std::size_t before = count(item->m_left);
        if (index == before)
            return item;
        if (index < before) {
            item = item->m_left;
        } else {
            index -= before + 1;
            item = item->m_right;
        }
    }
    return nullptr;
}

OrderedItems::Place OrderedItems::atWeight(std::size_t number) const
{
    OrderedItem* item = m_root;
    while (item) {
        const std::size_t before = weight(item->m_left);
        if (number < before) {
            item = item->m_left;
        } else if (number < before + item->m_ownWeight) {
            return {item, number - before};
        } else {
            number -= before + item->m_ownWeight;
            item = item->m_right;
        }
    }
    return {};
}

void OrderedItems::setWeight(OrderedItem& item, std::size_t weight)
{
    item.m_ownWeight = static_cast<std::uint32_t>(weight);
    for (OrderedItem* part = &item; part; part = part->m_parent)
        update(*part);
}

OrderedItem* OrderedItems::first() const
{
    OrderedItem* item = m_root;
    while (item && item->m_left)
        item = item->m_left;
    return item;
}

OrderedItem* OrderedItems::next(const OrderedItem& item)
{
    if (OrderedItem* below = item.m_right) {
        while (below->m_left)
            below = below->m_left;
        return below;
    }
    const OrderedItem* below = &item;
    while (below->m_parent && below == below->m_parent->m_right)
        below = below->m_parent;
    return below->m_parent;
}

} // namespace Stratum
