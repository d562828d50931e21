// All heading settings in scope, in one list for all partitions, and the query that loads them.
#pragma once

#include "model/clsSettings.h"
#include "runtime/collection.h"
#include "runtime/value.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace model
{

// The condition that limits settings to the accounts in scope of a host's partition, in the database's language.
std::string AccountScope(std::int32_t partitionId);

class colSettings : public runtime::RefCounted<colSettings>
{
public:
    std::int32_t m_lngPartitionID = 0; // -1: all rows; any other value: the rows of the accounts in scope

    // The collection itself, without keys. Never null.
    runtime::Ref<runtime::Collection<clsSettings>> ColSettingInfo =
        runtime::MakeRef<runtime::Collection<clsSettings>>();

    // The record at a position (from 1), whatever text or number the position is given as. Every error gives null.
    runtime::Ref<clsSettings> Item(const runtime::Value &vntIndexKey) const;

    // Appends a setting, without a key. Error 91 for null.
    void AddSettingtoCollection(const runtime::Ref<clsSettings> &p_clsSetting);

    // Loads the settings in the order of their headings. Errors of the database, a NULL and a value out of range end
    // the load; the rows read so far stay. A second load appends every row once more.
    void GetSettingInfo();

    // Walks the settings of one heading in collection order, without touching any other setting: `visit` gets the
    // 1-based position and the record, and returns false to stop. What is appended meanwhile is not visited.
    template <class Visit>
    void ForHeading(std::int16_t headingId, Visit &&visit) const
    {
        const Chains &chains = ByHeading();
        const auto found = chains.ends.find(headingId);
        if (found == chains.ends.end())
            return;
        const std::uint32_t last = found->second.last;
        for (std::uint32_t position = found->second.first; position != 0; position = chains.next[position - 1])
        {
            const runtime::Ref<clsSettings> setting = ColSettingInfo->Item(position);
            if (setting->SettingID() == headingId && !visit(static_cast<std::int64_t>(position), *setting))
                return;
            if (position == last)
                return;
        }
    }

private:
    // Per heading a chain through the positions: `next[position - 1]` is the next position of the same heading, 0 at
    // the end.
    struct Chains
    {
        struct Ends
        {
            std::uint32_t first = 0;
            std::uint32_t last = 0;
        };
        std::unordered_map<std::int16_t, Ends> ends;
        std::vector<std::uint32_t> next;
        const void *collection = nullptr;
        std::uint32_t collectionRevision = 0;
        std::uint32_t headingRevision = 0;
    };

    // The chains, brought up to date.
    const Chains &ByHeading() const;

    mutable Chains m_byHeading;
};

} // namespace model
