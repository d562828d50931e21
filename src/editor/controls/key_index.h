// Finds the items of a list by their keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace editor::controls
{

// A table of item numbers; the keys themselves stay with the items. `keyOf(number)` gives an item's key.
class KeyIndex
{
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    void Clear() { *this = KeyIndex(); }

    // The item of a key, or kNone.
    template <class KeyOf>
    std::uint32_t Find(std::string_view key, const KeyOf &keyOf) const
    {
        if (m_slots.empty())
            return kNone;
        return m_slots[SlotFor(key, keyOf)];
    }

    // Takes an item in, whose key no other item here has.
    template <class KeyOf>
    void Insert(std::uint32_t number, const KeyOf &keyOf)
    {
        // Never more than half full.
        if (m_slots.size() < 2 * (m_count + 1))
            Grow(keyOf);
        m_slots[SlotFor(keyOf(number), keyOf)] = number;
        ++m_count;
    }

private:
    // Where the key stands, or the empty slot where it would.
    template <class KeyOf>
    std::size_t SlotFor(std::string_view key, const KeyOf &keyOf) const
    {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = std::hash<std::string_view>()(key) & mask;
        while (m_slots[slot] != kNone && keyOf(m_slots[slot]) != key)
            slot = (slot + 1) & mask;
        return slot;
    }

    template <class KeyOf>
    void Grow(const KeyOf &keyOf)
    {
        std::vector<std::uint32_t> old(m_slots.empty() ? 16 : 4 * m_slots.size(), kNone);
        old.swap(m_slots);
        for (const std::uint32_t number : old)
            if (number != kNone)
                m_slots[SlotFor(keyOf(number), keyOf)] = number;
    }

    std::vector<std::uint32_t> m_slots; // a power of two of them
    std::size_t m_count = 0;
};

} // namespace editor::controls
