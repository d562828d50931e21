// Which format a heading gets for an account and a report type: from the most specific setting to the most general.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "platform/desktop.h"
#include "runtime/convert.h"
#include "runtime/scoped_flag.h"

namespace editor
{

namespace
{

// Nothing sets it: the format of a heading without any setting is the one of id 0, where there is one.
constexpr std::int16_t kFallbackFormat = 0;

// What a level requires of a setting besides the heading.
struct Level
{
    std::int16_t reportType;
    std::int16_t account;
    std::int32_t partition;

    bool Wants(const model::clsSettings &setting) const
    {
        return !setting.RemoveSetting && setting.ReportType == reportType && setting.HospitalID == account &&
               setting.PartitionID == partition;
    }
};

} // namespace

void frmHeadings::ShowSetting(std::int16_t accountId, std::int16_t reportType, std::int16_t headingId)
{
    const runtime::ScopedFlag loading(m_blnLoading);
    // An account's own settings carry partition 0, those for all accounts the current one.
    const std::int32_t partition = runtime::ToInteger(CurrentPartition().m_lngPartitionID);
    constexpr int kLevels = 3;
    const Level levels[kLevels] = {
        {reportType, accountId, 0}, {kAllReportTypes, accountId, 0}, {kAllReportTypes, kAllAccounts, partition}};
    constexpr int kDefaultOfAll = 2;

    // The levels are gone through twice.
    for (int pass = 0; pass < 2; ++pass)
    {
        for (int level = 0; level < kLevels; ++level)
        {
            platform::DoEvents();
            bool found = false;
            model::gSettings->ForHeading(
                headingId,
                [&](std::int64_t position, const model::clsSettings &setting)
                {
                    if (!levels[level].Wants(setting))
                        return true;
                    // Only a setting of the very account asked for is one that a choice may change.
                    const bool own = pass == 0 && (level == 0 || (level == kDefaultOfAll && accountId == kAllAccounts));
                    m_intSettingIndex = own ? position : 0;
                    found = ShowFormat(setting.FormatID);
                    return !found;
                });
            if (found)
                return;
        }
    }
    if (ShowFormat(kFallbackFormat))
        m_intSettingIndex = 0;
}

bool frmHeadings::ShowFormat(std::int16_t formatId)
{
    const auto entry = m_formatEntries.find(formatId);
    if (entry == m_formatEntries.end())
        return false;
    m_intFormatIndex = entry->second;
    cmbFormats.SetListIndex(m_intFormatIndex);
    return true;
}

void frmHeadings::lvwHeadings_ItemClick(int position)
{
    if (m_blnLoading)
        return;
    m_blnCheckClick = false;
    m_intFormatIndex = kHeadingPicked;
    m_intSettingIndex = 0;
    m_intHeadingIndex = position;
    const RecordKey key = ParseListKey(lvwHeadings.Item(position).key);
    m_intHeadID = key.id;
    m_lngHeadPartitionID = key.partition;
    m_blnReadOnly = IsReadOnlyHeading(key);
    btnDeleteHead.SetEnabled(!m_blnReadOnly);
    ShowSetting(AccountShown(), m_intReportType, HeadingOf(key).HeadID);
}

} // namespace editor
