// The general collection: objects in order, 1-based positions, optional unique text keys without regard to case.
#pragma once

#include "runtime/error.h"
#include "runtime/ref.h"
#include "runtime/text.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace runtime
{

template <class T>
class Collection : public RefCounted<Collection<T>>
{
public:
    Collection() = default;

    // Iterates by position, to the end as it is at each step: what is appended meanwhile is visited too, and a removal
    // invalidates nothing. A reference that `*` gives is one into the collection.
    class Iterator
    {
    public:
        explicit Iterator(const Collection &collection) : m_collection(collection) {}
        const Ref<T> &operator*() const { return m_collection.m_entries[m_offset].item; }
        Iterator &operator++()
        {
            ++m_offset;
            return *this;
        }
        friend bool operator==(const Iterator &at, std::default_sentinel_t)
        {
            return at.m_offset >= at.m_collection.Count();
        }

    private:
        const Collection &m_collection;
        std::size_t m_offset = 0;
    };
    Iterator begin() const { return Iterator(*this); }
    std::default_sentinel_t end() const { return {}; }

    // Number of elements.
    std::size_t Count() const noexcept { return m_entries.size(); }

    // Appends an element, without a key when `key` is empty. A key that is taken is the error 457 and adds nothing.
    void Add(Ref<T> item, std::string_view key = {}) { Insert(m_entries.size(), std::move(item), key); }

    // Inserts an element so that it gets the position `before` (1 to Count). Errors: 9 for a position out of range,
    // 457.
    void AddBefore(Ref<T> item, std::string_view key, std::int64_t before)
    {
        Insert(Offset(before), std::move(item), key);
    }

    // The element at a position (1 to Count). Error 9 out of range.
    const Ref<T> &Item(std::int64_t position) const { return m_entries[Offset(position)].item; }

    // The element of a key. Error 5 when there is none.
    const Ref<T> &Item(std::string_view key) const
    {
        if (const Ref<T> *found = Find(key))
            return *found;
        Raise(kInvalidProcedureCall);
    }

    // The element of a key, or null.
    const Ref<T> *Find(std::string_view key) const
    {
        const auto found = m_byKey.find(Folded(key));
        return found == m_byKey.end() ? nullptr : &found->second;
    }

    // The position of a key's element (1 to Count). Error 5 when there is none. Walks the collection.
    std::int64_t Position(std::string_view key) const
    {
        const auto found = m_byKey.find(Folded(key));
        if (found == m_byKey.end())
            Raise(kInvalidProcedureCall);
        for (std::size_t i = 0; i < m_entries.size(); ++i)
            if (m_entries[i].key == &found->first)
                return static_cast<std::int64_t>(i) + 1;
        Raise(kInvalidProcedureCall);
    }

    // Takes an element out. Errors as Item's.
    void Remove(std::int64_t position)
    {
        const std::size_t offset = Offset(position);
        Entry entry = std::move(m_entries[offset]);
        m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(offset));
        if (entry.key)
            m_byKey.erase(m_byKey.find(*entry.key));
        ++m_revision;
    }
    void Remove(std::string_view key) { Remove(Position(key)); }

    // Increases with every change but an append: an index kept beside the collection is out of date when the revision
    // differs.
    std::uint32_t Revision() const noexcept { return m_revision; }

private:
    struct Entry
    {
        Ref<T> item;
        const std::string *key; // in m_byKey; null without a key
    };

    // Keys are decimal numbers nearly always, and are then found without a change of case.
    static std::string Folded(std::string_view key) { return UpperCase(key); }

    std::size_t Offset(std::int64_t position) const
    {
        if (position < 1 || static_cast<std::uint64_t>(position) > m_entries.size())
            Raise(kSubscriptOutOfRange);
        return static_cast<std::size_t>(position) - 1;
    }

    void Insert(std::size_t offset, Ref<T> item, std::string_view key)
    {
        // First what may fail: a key without an element would be taken for good.
        if (m_entries.size() == m_entries.capacity())
            m_entries.reserve(m_entries.empty() ? 8 : 2 * m_entries.size());
        const std::string *stored = nullptr;
        if (!key.empty())
        {
            const auto [place, added] = m_byKey.try_emplace(Folded(key), item);
            if (!added)
                Raise(kDuplicateKey);
            stored = &place->first;
        }
        if (offset == m_entries.size())
            m_entries.push_back({std::move(item), stored});
        else
        {
            m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(offset), {std::move(item), stored});
            ++m_revision;
        }
    }

    std::vector<Entry> m_entries;
    std::unordered_map<std::string, Ref<T>> m_byKey;
    std::uint32_t m_revision = 0;
};

} // namespace runtime
