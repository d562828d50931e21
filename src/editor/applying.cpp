// One format for all accounts, or for all report types of an account.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "store/modDataActivity.h"

#include <unordered_set>

namespace editor
{

void frmHeadings::btnAllAccounts_Click()
{
    RunReported(&frmHeadings::ApplyToAllAccounts, "applying format to all accounts", store::kApplyingToAccounts);
}

void frmHeadings::ApplyToAllAccounts()
{
    const std::int16_t heading = SelectedHeading().HeadID;
    const std::int16_t format = FormatOf(KeyOfFormatEntry(m_intFormatIndex)).FormatID;
    const std::int32_t partition = CurrentPartition().m_lngPartitionID;

    // The last account of the list is left out; this is intentional.
    std::unordered_set<std::int32_t> accounts;
    for (int position = 0; position <= cmbAccList.ListCount() - 2; ++position)
        accounts.insert(cmbAccList.ItemData(position));
    // The settings for all accounts go too, those of the current partition alone.
    const bool any = !accounts.empty();
    accounts.erase(kAllAccounts);
    AppendSetting(heading, kAllAccounts, kAllReportTypes, format, partition,
                  [&](const model::clsSettings &setting)
                  {
                      return setting.HospitalID == kAllAccounts ? any && setting.PartitionID == partition
                                                                : accounts.count(setting.HospitalID) > 0;
                  });
    host::gResultset.reset();
    m_blnChanged = true;
}

void frmHeadings::btnAllReports_Click()
{
    RunReported(&frmHeadings::ApplyToAllReports, "applying format to all reports", store::kApplyingToReports);
}

void frmHeadings::ApplyToAllReports()
{
    const std::int16_t heading = SelectedHeading().HeadID;
    const std::int16_t format = FormatOf(KeyOfFormatEntry(m_intFormatIndex)).FormatID;
    if (m_intAccountIndex < 1)
    {
        platform::MsgBox("Please select an account", platform::kOkOnly, "No Account");
        return;
    }
    const std::int16_t account = AccountShown();
    // Partition 0, as every setting of a real account.
    AppendSetting(heading, account, kAllReportTypes, format, 0,
                  [&](const model::clsSettings &setting) { return setting.HospitalID == account; });
    host::gResultset.reset();
    m_blnChanged = true;
}

} // namespace editor
