// Loading the window: everything is read and shown before the user sees it.
#include "editor/frmHeadings.h"

#include "editor/layout.h"
#include "editor/records.h"
#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "host/modMisc.h"
#include "platform/desktop.h"
#include "runtime/convert.h"
#include "store/modDataActivity.h"

namespace editor
{

namespace
{

// The formats and headings of every partition.
void LoadRecords(runtime::ErrorTrap &trap)
{
    for (runtime::Ref<model::clsPartition> partition : *model::gPartitions->m_colPartitions)
    {
        trap.Try([&] { partition->m_objcolFormats->GetFormatInfo(); });
        trap.Try([&] { partition->m_objcolHeadings->GetHeadingInfo(); });
    }
}

} // namespace

void frmHeadings::Load()
{
    m_view = MakeFormView(*this);
    m_loaded = true;
    host::LoadedForms().push_back(this);

    runtime::ErrorTrap trap;
    {
        const platform::WaitCursor wait;
        m_view->Create();
        OpenPartitionStrip();
        LoadEverything(trap);
    }
    if (trap.Number() > 0)
    {
        // The box speaks of the log file, whatever has failed; the log says what it was.
        platform::MsgBox("Error encountered while writing to error log file: " + trap.Description(),
                         platform::kExclamation, "Error");
        store::WriteLogEntry(store::kLoadingForm, "Error encountered while loading form: " + trap.Description());
    }
}

void frmHeadings::OpenPartitionStrip()
{
    for (controls::Control *const control :
         {static_cast<controls::Control *>(&SSTab1), static_cast<controls::Control *>(&btnCancel),
          static_cast<controls::Control *>(&btnSave), static_cast<controls::Control *>(&btnPrint)})
    {
        controls::Rectangle bounds = control->Bounds();
        bounds.top += kStripHeight;
        control->SetBounds(bounds);
    }
    labPartition.SetVisible(true);
    cmbPartition.SetVisible(true);
    m_clientHeight += kStripHeight;
    m_view->ClientSizeChanged();
    for (controls::ListView *const list : {&lvwFormats, &lvwHeadings})
    {
        list->SetHideColumnHeaders(false);
        list->AddColumn(2, {"C2", "Partition", 2000});
    }
}

// A step that fails is abandoned, and the load continues with the next one.
void frmHeadings::LoadEverything(runtime::ErrorTrap &trap)
{
    const host::DatabaseAction opening;
    model::gPartitions = runtime::MakeRef<model::colPartitions>();
    model::gCurrentPartition = nullptr;
    model::gFormats = runtime::MakeRef<model::colFormats>();
    model::gHeadings = runtime::MakeRef<model::colHeadings>();
    model::gSettings = runtime::MakeRef<model::colSettings>();

    trap.Try([] { platform::DoEvents(); });
    trap.Try([&] { LoadPartitions(); });
    trap.Try([&] { LoadTagOptions(); });
    trap.Try([&] { LoadRecords(trap); });
    trap.Try([&] { cmbPartition.SetListIndex(0); });
    trap.Try([] { model::gSettings->GetSettingInfo(); });
    trap.Try([&] { FillHeadingList(true); });
    trap.Try([&] { TakeOverSelectedHeading(); });
    m_intAccountIndex = 1;
    trap.Try([&] { LoadAccounts(); });
    trap.Try(
        [&]
        {
            lvwFormats.SetSortOrder(controls::SortOrder::Ascending);
            lvwFormats.SetSortKey(0);
            lvwFormats.SetSorted(true);
            lvwFormats.Refresh();
        });
    // Once more what the selection of the account has done already, and for heading 0. A partition without accounts has
    // nothing to repeat.
    if (cmbAccList.ListCount() > 1)
    {
        trap.Try([&] { LoadReportTypes(runtime::ToInteger(cmbAccList.ItemData(1))); });
        trap.Try([&] { ShowSetting(runtime::ToInteger(cmbAccList.ItemData(1)), m_intReportType, 0); });
    }
    trap.Try([&] { SSTab1.SetTab(0); });
    trap.Try(
        [&]
        {
            ResetTabStates();
            ApplyTabStates();
        });
    m_blnChanged = false;
    trap.Try([] { host::gResultset.reset(); });
    host::KeepOnTop(*this, true);
}

} // namespace editor
