// Finding the items of a list by their keys: a hash table of places, probed one slot after the other.
#include "editor/controls/list_view.h"

#include <algorithm>
#include <bit>

namespace editor::controls
{

std::size_t KeyIndex::SlotOf(std::string_view key) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = std::hash<std::string_view>()(key) & mask;
    while (m_slots[slot] != kNone && m_items[m_slots[slot]].key != key)
        slot = (slot + 1) & mask;
    return slot;
}

void KeyIndex::Insert(std::uint32_t place)
{
    Reserve(m_count + 1);
    m_slots[SlotOf(m_items[place].key)] = place;
    ++m_count;
}

void KeyIndex::Reserve(std::size_t count)
{
    if (2 * count <= m_slots.size())
        return;
    constexpr std::size_t kFewest = 16;
    std::vector<std::uint32_t> old(std::max(kFewest, std::bit_ceil(4 * count)), kNone);
    old.swap(m_slots);
    for (const std::uint32_t place : old)
        if (place != kNone)
            m_slots[SlotOf(m_items[place].key)] = place;
}

void KeyIndex::Clear()
{
    m_slots.clear();
    m_count = 0;
}

} // namespace editor::controls
