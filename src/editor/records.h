// The loaded records by their ids, and the settings that edits flag and append. All of it raises 91 where an object is
// missing and 5 for an unknown id.
#pragma once

#include "editor/keys.h"
#include "model/globals.h"

#include <cstdint>
#include <functional>

namespace editor
{

model::clsPartition &CurrentPartition();
model::clsPartition &PartitionOf(std::int32_t id);
model::clsFormats &FormatOf(const RecordKey &key);
model::clsHeadings &HeadingOf(const RecordKey &key);

// A record of the system, or of an ancestor of the host's partition, is shown and not edited.
bool IsReadOnlyFormat(const RecordKey &key);
bool IsReadOnlyHeading(const RecordKey &key);

// The partitions whose records are shown: the current one, then its ancestors in the order of loading.
template <class Visit>
void ForShownPartitions(Visit &&visit)
{
    const runtime::Ref<model::clsPartition> current = &CurrentPartition();
    visit(*current);
    for (runtime::Ref<model::clsPartition> partition : *model::gPartitions->m_colPartitions)
        if (partition && !(partition == current) &&
            model::IsInLineage(partition->m_lngPartitionID, current->m_strLineage))
            visit(*partition);
}

// Visits every setting of a heading, flagged ones included, and no other.
template <class Visit>
void ForSettingsOf(std::int16_t headingId, Visit &&visit)
{
    model::gSettings->ForHeading(headingId,
                                 [&](std::int64_t, model::clsSettings &setting)
                                 {
                                     visit(setting);
                                     return true;
                                 });
}

void FlagForRemoval(model::clsSettings &setting);

// Appends a new setting. Live settings of the same heading, account, report type and partition are flagged for removal
// first, and for all accounts also those with partition 0, which copies carry: the one made last is the one shown and
// the one saved. Flagged as well is what `replaces` says of the heading's settings. On an error nothing has changed.
void AppendSetting(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int16_t formatId,
                   std::int32_t partitionId, const std::function<bool(const model::clsSettings &)> &replaces = {});

// Appends a new setting as it is.
void AddSetting(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int16_t formatId,
                std::int32_t partitionId);

// True when the setting has these four, live or flagged.
bool IsSettingOf(const model::clsSettings &setting, std::int16_t headingId, std::int16_t accountId,
                 std::int16_t reportType, std::int32_t partitionId);

// How many settings have these four, flagged ones included.
int CountSettingsOf(std::int16_t headingId, std::int16_t accountId, std::int16_t reportType, std::int32_t partitionId);

// The partition that a setting of an account carries: the current one for all accounts, 0 for a real one.
std::int32_t PartitionOfSetting(std::int16_t accountId);

constexpr std::int16_t kAllAccounts = -1;
constexpr std::int16_t kAllReportTypes = 0;

} // namespace editor
