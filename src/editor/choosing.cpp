// Choosing a format for the selected heading.
#include "editor/frmHeadings.h"

#include "editor/records.h"

#include <utility>

namespace editor
{

void frmHeadings::cmbFormats_Click()
{
    if (m_blnLoading)
        return;
    const int position = cmbFormats.ListIndex();
    if (position == m_intFormatIndex)
        return;
    // After a heading has been picked a user's choice counts whichever it is; a refill's does not.
    if (m_intFormatIndex == kHeadingPicked && m_refillingFormats)
        return;
    if (lvwHeadings.Count() == 0)
    {
        // There is no heading to choose for.
        m_intFormatIndex = position;
        return;
    }
    m_blnCheckClick = true;
    m_blnChanged = true;
    const int before = std::exchange(m_intFormatIndex, position);
    try
    {
        ApplyFormatChoice();
    }
    catch (...)
    {
        // Nothing is stored: the list shows what is, so that the same choice can be made again.
        m_intFormatIndex = before;
        runtime::ErrorTrap showing;
        showing.Try([this] { ShowSetting(AccountShown(), m_intReportType, SelectedHeading().HeadID); });
        throw;
    }
}

void frmHeadings::ApplyFormatChoice()
{
    const std::int16_t format = FormatOf(KeyOfFormatEntry(cmbFormats.ListIndex())).FormatID;
    const std::int16_t heading = SelectedHeading().HeadID;
    const std::int16_t account = AccountShown();
    const std::int32_t partition = PartitionOfSetting(account);
    if (m_intSettingIndex != 0)
    {
        model::clsSettings &shown = *model::gSettings->ColSettingInfo->Item(m_intSettingIndex);
        // It may be another heading's, shown before, or flagged meanwhile: then it is left alone. So is one that shares
        // its key with others: the removal of a flagged one takes every row of the key.
        if (IsSettingOf(shown, heading, account, m_intReportType, partition) && !shown.RemoveSetting &&
            CountSettingsOf(heading, account, m_intReportType, partition) == 1)
        {
            shown.HasChanged = true;
            shown.FormatID = format;
            return;
        }
    }
    AppendSetting(heading, account, m_intReportType, format, partition);
}

} // namespace editor
