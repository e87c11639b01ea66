// A sequence of which the place of an item, and the item at a place, are found without counting through it: a balanced
// tree (a treap) that knows the size of each of its parts. The items carry their own tree nodes.
//
// Each item has a weight beside its place, so that a layer can be found by its number among all layers while groups
// weigh as many as they hold.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Stratum {

class OrderedItems;

class OrderedItem
{
public:
    explicit OrderedItem(std::uint32_t weight) : m_ownWeight(weight), m_weight(weight) {}
    OrderedItem(const OrderedItem&) = delete;
    OrderedItem& operator=(const OrderedItem&) = delete;
    virtual ~OrderedItem() = default;

    // The sequence that holds the item; null for none.
    OrderedItems* sequence() const { return m_sequence; }

private:
    friend class OrderedItems;
    OrderedItems* m_sequence = nullptr;
    OrderedItem* m_parent = nullptr;
    OrderedItem* m_left = nullptr;
    OrderedItem* m_right = nullptr;
    std::uint32_t m_priority = 0;
    std::uint32_t m_count = 1;
    std::uint32_t m_ownWeight;
    std::uint32_t m_weight;
};

class OrderedItems
{
public:
    OrderedItems() = default;
    OrderedItems(const OrderedItems&) = delete;
    OrderedItems& operator=(const OrderedItems&) = delete;

    std::size_t size() const { return count(m_root); }
    std::size_t weight() const { return weight(m_root); }

    // The item must be in no sequence. An index past the end appends.
    void insert(OrderedItem& item, std::size_t index);
    void remove(OrderedItem& item);

    std::size_t index(const OrderedItem& item) const;
    OrderedItem* at(std::size_t index) const; // null past the end

    // The item that holds the unit of weight with that number, and which of its own units that is.
    struct Place
    {
        OrderedItem* item = nullptr;
        std::size_t offset = 0;
    };
    Place atWeight(std::size_t number) const;
    void setWeight(OrderedItem& item, std::size_t weight);

    OrderedItem* first() const;
    static OrderedItem* next(const OrderedItem& item);

private:
    static std::size_t count(const OrderedItem* item) { return item ? item->m_count : 0; }
    static std::size_t weight(const OrderedItem* item) { return item ? item->m_weight : 0; }
    static void update(OrderedItem& item);
    static OrderedItem* merge(OrderedItem* left, OrderedItem* right);
    static void split(OrderedItem* root, std::size_t index, OrderedItem*& left, OrderedItem*& right);

    OrderedItem* m_root = nullptr;
    std::uint32_t m_random = 2463534242u;
};

} // namespace Stratum
