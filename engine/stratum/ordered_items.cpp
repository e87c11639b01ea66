// The chunks of an ordered sequence, and the sums over them that searches go through.
#include <algorithm>
#include <cassert>
#include <engine/stratum/ordered_items.h>

namespace Stratum {

namespace {

constexpr std::size_t chunkSize = 512;
constexpr std::size_t appendedSize = chunkSize / 4 * 3; // leaves room for what is inserted later

// The part, or the entry, that holds the unit with that number, which exists. The number becomes relative to it.
template <class Parts, class Sum>
std::size_t find(const Parts& parts, std::size_t& number, Sum sum)
{
    std::size_t found = 0;
    assert(!parts.empty());
    while (number >= parts[found].*sum) {
        number -= parts[found++].*sum;
        assert(found < parts.size());
    }
    return found;
}

} // namespace

std::size_t OrderedItems::offset(const OrderedItem& item)
{
    const std::vector<Entry>& entries = item.m_chunk->entries;
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&item](const Entry& entry) { return entry.item == &item; });
    assert(found != entries.end());
    return static_cast<std::size_t>(found - entries.begin());
}

void OrderedItems::add(Part& part, std::uint32_t count, std::uint32_t weight)
{
    part.count += count;
    part.weight += weight;
    m_size += count;
    m_weight += weight;
}

void OrderedItems::renumber(std::size_t from)
{
    for (std::size_t number = from; number < m_parts.size(); ++number)
        m_parts[number].chunk->number = number;
}

void OrderedItems::addPart(std::size_t number)
{
    Part part;
    part.chunk = std::make_unique<Chunk>();
    part.chunk->sequence = this;
    m_parts.insert(m_parts.begin() + static_cast<std::ptrdiff_t>(number), std::move(part));
    renumber(number);
}

// The second half of a part becomes a part of its own.
void OrderedItems::split(std::size_t number)
{
    addPart(number + 1);
    Part &first = m_parts[number], &second = m_parts[number + 1];
    std::vector<Entry>& entries = first.chunk->entries;
    const auto middle = entries.begin() + chunkSize / 2;
    second.chunk->entries.assign(middle, entries.end());
    entries.erase(middle, entries.end());
    for (const Entry& entry : second.chunk->entries) {
        entry.item->m_chunk = second.chunk.get();
        add(first, -1u, -entry.weight);
        add(second, 1, entry.weight);
    }
    assert(first.count == entries.size() && second.count == second.chunk->entries.size());
}

// Where an item can be put so that it has that index.
OrderedItems::Location OrderedItems::gap(std::size_t index)
{
    if (index >= m_size) {
        if (m_parts.empty() || m_parts.back().count >= appendedSize)
            addPart(m_parts.size());
        return {m_parts.size() - 1, m_parts.back().count};
    }
    std::size_t offset = index;
    const std::size_t number = find(m_parts, offset, &Part::count);
    if (m_parts[number].count < chunkSize)
        return {number, offset};
    split(number);
    return gap(index);
}

void OrderedItems::insert(OrderedItem& item, std::size_t index)
{
    assert(!item.sequence());
    const Location location = gap(index);
    Part& part = m_parts[location.part];
    std::vector<Entry>& entries = part.chunk->entries;
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(location.offset), {&item, item.m_weight});
    item.m_chunk = part.chunk.get();
    add(part, 1, item.m_weight);
    assert(part.count == entries.size() && part.count <= chunkSize);
}

void OrderedItems::remove(OrderedItem& item)
{
    assert(item.sequence() == this);
    Chunk& chunk = *item.m_chunk;
    Part& part = m_parts[chunk.number];
    assert(part.chunk.get() == &chunk);
    chunk.entries.erase(chunk.entries.begin() + static_cast<std::ptrdiff_t>(offset(item)));
    add(part, -1u, -item.m_weight);
    item.m_chunk = nullptr;
    if (part.count > 0)
        return;
    const std::size_t number = chunk.number;
    m_parts.erase(m_parts.begin() + static_cast<std::ptrdiff_t>(number));
    renumber(number);
}

std::size_t OrderedItems::index(const OrderedItem& item) const
{
    assert(item.sequence() == this);
    std::size_t before = offset(item);
    for (std::size_t number = 0; number < item.m_chunk->number; ++number)
        before += m_parts[number].count;
    return before;
}

OrderedItem* OrderedItems::at(std::size_t index) const
{
    if (index >= m_size)
        return nullptr;
    const std::size_t number = find(m_parts, index, &Part::count);
    return m_parts[number].chunk->entries[index].item;
}

OrderedItems::Unit OrderedItems::atWeight(std::size_t number) const
{
    if (number >= m_weight)
        return {};
    const std::vector<Entry>& entries = m_parts[find(m_parts, number, &Part::weight)].chunk->entries;
    OrderedItem* const item = entries[find(entries, number, &Entry::weight)].item;
    return {item, number};
}

void OrderedItems::setWeight(OrderedItem& item, std::size_t weight)
{
    assert(item.sequence() == this);
    const auto now = static_cast<std::uint32_t>(weight);
    add(m_parts[item.m_chunk->number], 0, now - item.m_weight);
    item.m_weight = now;
    item.m_chunk->entries[offset(item)].weight = now;
}

OrderedItem& OrderedItems::item(const Location& location) const
{
    return *m_parts[location.part].chunk->entries[location.offset].item;
}

void OrderedItems::advance(Location& location) const
{
    if (++location.offset == m_parts[location.part].count)
        location = {location.part + 1, 0};
}

} // namespace Stratum
