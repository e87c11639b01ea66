// A sequence that finds the index of an item, and the item at an index, without walking through it: a balanced tree
// whose nodes are the items themselves. So nothing here needs memory, and nothing fails: what was put in or taken out
// can always be put back.
//
// Each item also has a weight, so that a layer can be found by its number among all layers: a group weighs as much as
// the number of layers in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace Stratum {

class OrderedItem;

class OrderedItems
{
public:
    OrderedItems() = default;
    OrderedItems(const OrderedItems&) = delete;
    OrderedItems& operator=(const OrderedItems&) = delete;

    std::size_t size() const noexcept;
    bool empty() const noexcept { return !m_root; }
    std::size_t weight() const noexcept;

    // The item must be in no sequence. An index past the end appends.
    void insert(OrderedItem& item, std::size_t index) noexcept;
    void append(OrderedItem& item) noexcept { insert(item, size()); }
    void remove(OrderedItem& item) noexcept;

    std::size_t index(const OrderedItem& item) const noexcept;
    OrderedItem* at(std::size_t index) const noexcept; // null past the end

    // The item that holds the unit of weight with that number, and which of its own units that is.
    struct Unit
    {
        OrderedItem* item = nullptr;
        std::size_t offset = 0;
    };
    Unit atWeight(std::size_t number) const noexcept;
    void setWeight(OrderedItem& item, std::size_t weight) noexcept;

protected:
    OrderedItem* first() const noexcept;
    static OrderedItem* next(const OrderedItem& item) noexcept;

private:
    void setRoot(OrderedItem* root) noexcept;

    OrderedItem* m_root = nullptr;
};

class OrderedItem
{
public:
    explicit OrderedItem(std::uint32_t weight = 1) : m_weight(weight), m_weightBelow(weight) {}
    OrderedItem(const OrderedItem&) = delete;
    OrderedItem& operator=(const OrderedItem&) = delete;

    // The sequence that holds the item; null for none.
    OrderedItems* sequence() const { return m_sequence; }

private:
    friend class OrderedItems;
    using Halves = std::pair<OrderedItem*, OrderedItem*>;
    static std::size_t count(const OrderedItem* item) { return item ? item->m_countBelow : 0; }
    static std::size_t weight(const OrderedItem* item) { return item ? item->m_weightBelow : 0; }
    static bool isAbove(const OrderedItem& a, const OrderedItem& b);
    static OrderedItem* join(OrderedItem* first, OrderedItem* second) noexcept;
    static Halves split(OrderedItem* top, std::size_t index) noexcept;
    void update() noexcept;
    void updateUpwards() noexcept;

    OrderedItems* m_sequence = nullptr;
    OrderedItem* m_parent = nullptr;
    OrderedItem* m_left = nullptr;
    OrderedItem* m_right = nullptr;
    std::uint32_t m_weight;
    std::uint32_t m_countBelow = 1; // of the item and all below it
    std::uint32_t m_weightBelow;
};

// A sequence of items of one class. A removal invalidates the iterators at the item.
template <class Item>
class Ordered : public OrderedItems
{
public:
    template <class T>
    class Iterator
    {
    public:
        explicit Iterator(OrderedItem* item) : m_item(item) {}
        T& operator*() const { return static_cast<T&>(*m_item); }
        Iterator& operator++()
        {
            m_item = next(*m_item);
            return *this;
        }
        bool operator!=(const Iterator& other) const { return m_item != other.m_item; }

    private:
        OrderedItem* m_item;
    };

    Iterator<Item> begin() { return Iterator<Item>(first()); }
    Iterator<Item> end() { return Iterator<Item>(nullptr); }
    Iterator<const Item> begin() const { return Iterator<const Item>(first()); }
    Iterator<const Item> end() const { return Iterator<const Item>(nullptr); }
    Item* at(std::size_t index) { return static_cast<Item*>(OrderedItems::at(index)); }
    const Item* at(std::size_t index) const { return static_cast<const Item*>(OrderedItems::at(index)); }
};

} // namespace Stratum
