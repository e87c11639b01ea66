// A sequence that finds the index of an item, and the item at an index, without walking through it: chunks of bounded
// size, with each item knowing its own. A hundred thousand items are some hundred chunks.
//
// Each item also has a weight, so that a layer can be found by its number among all layers: a group weighs as much as
// the number of layers in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Stratum {

class OrderedItem;

class OrderedItems
{
public:
    OrderedItems() = default;
    OrderedItems(const OrderedItems&) = delete;
    OrderedItems& operator=(const OrderedItems&) = delete;

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    std::size_t weight() const { return m_weight; }

    // The item must be in no sequence. An index past the end appends.
    void insert(OrderedItem& item, std::size_t index);
    void append(OrderedItem& item) { insert(item, m_size); }
    void remove(OrderedItem& item);

    std::size_t index(const OrderedItem& item) const;
    OrderedItem* at(std::size_t index) const; // null past the end

    // The item that holds the unit of weight with that number, and which of its own units that is.
    struct Unit
    {
        OrderedItem* item = nullptr;
        std::size_t offset = 0;
    };
    Unit atWeight(std::size_t number) const;
    void setWeight(OrderedItem& item, std::size_t weight);

protected:
    // Where an item stands: the number of the chunk, and the place in it.
    struct Location
    {
        std::size_t part = 0;
        std::size_t offset = 0;
    };
    OrderedItem& item(const Location& location) const;
    void advance(Location& location) const;
    Location end() const { return {m_parts.size(), 0}; }

private:
    friend class OrderedItem;
    struct Entry
    {
        OrderedItem* item;
        std::uint32_t weight;
    };
    struct Chunk
    {
        OrderedItems* sequence;
        std::size_t number; // among the parts
        std::vector<Entry> entries;
    };
    // The sums lie side by side, since they are what a search goes through.
    struct Part
    {
        std::unique_ptr<Chunk> chunk;
        std::uint32_t count = 0;
        std::uint32_t weight = 0;
    };

    static std::size_t offset(const OrderedItem& item);
    void add(Part& part, std::uint32_t count, std::uint32_t weight);
    void addPart(std::size_t number);
    void split(std::size_t number);
    Location gap(std::size_t index);
    void renumber(std::size_t from);

    std::vector<Part> m_parts; // none empty
    std::uint32_t m_size = 0;
    std::uint32_t m_weight = 0;
};

class OrderedItem
{
public:
    explicit OrderedItem(std::uint32_t weight = 1) : m_weight(weight) {}
    OrderedItem(const OrderedItem&) = delete;
    OrderedItem& operator=(const OrderedItem&) = delete;

    // The sequence that holds the item; null for none.
    OrderedItems* sequence() const { return m_chunk ? m_chunk->sequence : nullptr; }

private:
    friend class OrderedItems;
    OrderedItems::Chunk* m_chunk = nullptr;
    std::uint32_t m_weight;
};

// A sequence of items of one class. Insertions and removals invalidate all iterators.
template <class Item>
class Ordered : public OrderedItems
{
public:
    class Iterator
    {
    public:
        Iterator(const Ordered& items, Location location) : m_items(&items), m_location(location) {}
        Item& operator*() const { return static_cast<Item&>(m_items->item(m_location)); }
        Iterator& operator++()
        {
            m_items->advance(m_location);
            return *this;
        }
        bool operator!=(const Iterator& other) const
        {
            return m_location.part != other.m_location.part || m_location.offset != other.m_location.offset;
        }

    private:
        const Ordered* m_items;
        Location m_location;
    };

    Iterator begin() const { return {*this, {}}; }
    Iterator end() const { return {*this, OrderedItems::end()}; }
    Item* at(std::size_t index) const { return static_cast<Item*>(OrderedItems::at(index)); }
};

} // namespace Stratum
