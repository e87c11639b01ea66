// A hash table from C++ addresses to wrapper objects that allocates nothing per entry: open addressing, linear probing.
#ifndef ADDRESS_MAP_H
#define ADDRESS_MAP_H

#include <cassert>
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

    AddressMap() : m_entries(1u << 8) {}

    SbkObject* find(const void* address) const { return m_entries[placeOf(address)].wrapper; }

    /// Enters the wrapper unless the address has one already, which is returned; null when it was entered.
    SbkObject* enter(const void* address, SbkObject* wrapper)
    {
        assert(address && wrapper);
        Entry& entry = m_entries[placeOf(address)];
        if (entry.address)
            return entry.wrapper;
        entry = {address, wrapper};
        if (++m_count * 2 > m_mask)
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
            if (((next - home) & m_mask) >= ((next - gap) & m_mask)) {
                m_entries[gap] = m_entries[next];
                gap = next;
            }
        }
        m_entries[gap] = Entry();
        assert(m_count > 0);
        --m_count;
    }

    const std::vector<Entry>& entries() const { return m_entries; }

private:
    std::size_t following(std::size_t place) const { return (place + 1) & m_mask; }
    std::size_t homeOf(const void* address) const
    {
        return (reinterpret_cast<std::uintptr_t>(address) * 0x9E3779B97F4A7C15ull) >> m_shift;
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
        m_mask = m_entries.size() - 1;
        --m_shift;
        for (const Entry& entry : old) {
            if (entry.address)
                m_entries[placeOf(entry.address)] = entry;
        }
    }

    std::vector<Entry> m_entries; // a power of two
    std::size_t m_mask = m_entries.size() - 1;
    unsigned m_shift = 64 - 8; // what is left of a hash is a place
    std::size_t m_count = 0;
};

} // namespace Shiboken

#endif
