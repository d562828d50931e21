// The lists of accounts and report types.
#include "editor/frmHeadings.h"

#include "editor/queries.h"
#include "editor/records.h"
#include "editor/rows.h"
#include "host/database.h"
#include "runtime/convert.h"
#include "runtime/scoped_flag.h"
#include "runtime/text.h"
#include "store/modDataActivity.h"

namespace editor
{

namespace
{
constexpr const char *kAllNew = "<All New>";
}

void frmHeadings::LoadAccounts()
{
    runtime::ErrorTrap trap;
    {
        const runtime::ScopedFlag loading(m_blnLoading);
        const controls::UpdateLock lock(cmbAccList);
        cmbAccList.Clear();
        trap.Try([&] { cmbAccList.SetItemData(cmbAccList.AddItem(kAllNew), kAllAccounts); });
        int counter = 1;
        ForEachRow(
            trap, [] { return sql::Accounts(CurrentPartition().m_lngPartitionID); },
            [&](const odbc::rdoResultset &row)
            {
                trap.Try(
                    [&]
                    {
                        const std::string name = runtime::ToTextOrEmpty(row.rdoColumns(1).Value());
                        cmbAccList.AddItem(std::string(runtime::Trim(name)), counter);
                    });
                trap.Try([&] { cmbAccList.SetItemData(counter, row.rdoColumns(0).Integer()); });
                ++counter;
            });
    }
    trap.Try([&] { cmbAccList.SetListIndex(cmbAccList.ListCount() > 1 ? 1 : 0); });
    ReportAboveZero(trap, "accessing accounts", store::kAccessingAccounts);
}

void frmHeadings::LoadReportTypes(std::int16_t accountId)
{
    runtime::ErrorTrap trap;
    {
        const runtime::ScopedFlag loading(m_blnLoading);
        const controls::UpdateLock lock(lvwReportType);
        lvwReportType.Clear();
        trap.Try([&] { lvwReportType.Add(ReportTypeKey("0"), kAllNew); });
        ForEachRow(
            trap, [&] { return sql::ReportTypes(accountId); },
            [&](const odbc::rdoResultset &row)
            {
                trap.Try(
                    [&]
                    {
                        lvwReportType.Add(ReportTypeKey(runtime::ToText(row.rdoColumns(0).Value())),
                                          runtime::ToTextOrEmpty(row.rdoColumns(1).Value()));
                    });
            });
    }
    trap.Try([&] { lvwReportType.SetSelectedItem(1); });
    trap.Try([&] { m_intReportType = ParseReportTypeKey(lvwReportType.SelectedItem().key); });
    ReportAboveZero(trap, "accessing reports", store::kAccessingReports);
}

void frmHeadings::cmbAccList_Click()
{
    if (m_blnLoading)
        return;
    const host::DatabaseAction change;
    m_intAccountIndex = cmbAccList.ListIndex();
    if (m_intAccountIndex < 1)
    {
        lvwReportType.Clear();
        lvwReportType.SetEnabled(false);
        m_intReportType = kAllReportTypes;
    }
    else
    {
        lvwReportType.SetEnabled(true);
        LoadReportTypes(AccountShown());
        lvwReportType.SetSelectedItem(1);
    }
    ShowSetting(AccountShown(), m_intReportType, m_intHeadID);
}

void frmHeadings::lvwReportType_ItemClick(int position)
{
    if (m_blnLoading)
        return;
    m_intReportType = ParseReportTypeKey(lvwReportType.Item(position).key);
    ShowSetting(AccountShown(), m_intReportType, m_intHeadID);
}

std::int16_t frmHeadings::AccountShown() const
{
    return runtime::ToInteger(cmbAccList.ItemData(m_intAccountIndex));
}

} // namespace editor
