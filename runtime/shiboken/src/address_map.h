// A hash table from C++ addresses to wrapper objects that allocates nothing per entry: open addressing, linear probing.
#ifndef ADDRESS_MAP_H
#define ADDRESS_MAP_H

#include <cstdint>
#include <vector>

struct SbkObject;

namespace Shiboken {

class AddressMap
{
public:
    struct Entry
    {
        const void* address = nullptr;
        SbkObject* wrapper = nullptr;
    };

    AddressMap() : m_entries(1u << m_bits) {}

    SbkObject* find(const void* address) const { return m_entries[placeOf(address)].wrapper; }

    /// Enters the wrapper unless the address has one already, which is returned; null when it was entered.
    SbkObject* enter(const void* address, SbkObject* wrapper)
    {
        Entry& entry = m_entries[placeOf(address)];
        if (entry.address)
            return entry.wrapper;
        entry = {address, wrapper};
        if (++m_count * 2 > m_entries.size())
            grow();
        return nullptr;
    }

    void set(const void* address, SbkObject* wrapper)
    {
        if (enter(address, wrapper))
            m_entries[placeOf(address)].wrapper = wrapper;
    }

    /// Does nothing when the address belongs to another wrapper.
    void erase(const void* address, const SbkObject* wrapper)
    {
        std::size_t gap = placeOf(address);
        if (!m_entries[gap].address || m_entries[gap].wrapper != wrapper)
            return;
        // Entries behind the gap move up as long as it lies between them and where they belong.
        for (std::size_t next = following(gap); m_entries[next].address; next = following(next)) {
            const std::size_t home = homeOf(m_entries[next].address);
            if (((next - home) & mask()) >= ((next - gap) & mask())) {
                m_entries[gap] = m_entries[next];
                gap = next;
            }
        }
        m_entries[gap] = Entry();
        --m_count;
    }

    const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::size_t mask() const { return m_entries.size() - 1; }
    std::size_t following(std::size_t place) const { return (place + 1) & mask(); }
    std::size_t homeOf(const void* address) const
    {
        return (reinterpret_cast<std::uintptr_t>(address) * 0x9E3779B97F4A7C15ull) >> (64 - m_bits);
    }
    /// Where the address is, or would be entered.
    std::size_t placeOf(const void* address) const
    {
        std::size_t place = homeOf(address);
        while (m_entries[place].address && m_entries[place].address != address)
            place = following(place);
        return place;
    }
    void grow()
    {
        std::vector<Entry> old(m_entries.size() * 2);
        old.swap(m_entries);
        ++m_bits;
        for (const Entry& entry : old) {
            if (entry.address)
                m_entries[placeOf(entry.address)] = entry;
        }
    }

    unsigned m_bits = 8;
    std::size_t m_count = 0;
    std::vector<Entry> m_entries;
};

} // namespace Shiboken

#endif
