// Saving, cancelling and closing; the report; the two tagging options.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "host/modMain.h"
#include "host/modMisc.h"
#include "platform/desktop.h"
#include "report/settings_report.h"
#include "store/modDataActivity.h"

namespace editor
{

void frmHeadings::btnSave_Click()
{
    const platform::WaitCursor wait;
    // Without a connection nothing was written: the window stays with every edit.
    if (m_blnChanged && !store::SaveAll())
        return;
    m_blnChanged = false;
    ReleaseEdits();
    UnloadWindow();
}

void frmHeadings::btnCancel_Click()
{
    UnloadWindow();
}

void frmHeadings::btnPrint_Click()
{
    const platform::WaitCursor wait;
    // From the database: what has not been saved is not in it.
    report::PrintSettings(Handle());
}

void frmHeadings::chkTagKnown_Click()
{
    CurrentPartition().m_blnTagKnownHeadings = chkTagKnown.Value() != 0;
    m_blnChanged = true;
}

void frmHeadings::chkTagMixed_Click()
{
    CurrentPartition().m_blnAllowMixedCaseHeadings = chkTagMixed.Value() != 0;
    m_blnChanged = true;
}

void frmHeadings::Unload(bool &cancel)
{
    if (!m_blnChanged)
    {
        // The collections stay, and so does the connection, for the next time.
        host::KeepOnTop(*this, false);
        return;
    }
    if (platform::MsgBox("Are you sure you want to cancel all changes?", platform::kYesNoQuestion, "Cancel Changes") ==
        platform::Answer::Yes)
    {
        ReleaseEdits();
        return;
    }
    cancel = true;
    // It stays open, but no longer in front of other windows; this order is intentional.
    host::KeepOnTop(*this, false);
}

bool frmHeadings::UnloadWindow()
{
    if (!m_loaded)
        return true;
    bool cancel = false;
    Unload(cancel);
    if (cancel)
        return false;
    LeaveLoadedForms();
    return true;
}

bool frmHeadings::CloseByUser()
{
    if (Controls().Open())
        Controls().Act(
            [this]
            {
                if (Controls().Leave(nullptr))
                    UnloadWindow();
            });
    return !m_loaded;
}

void frmHeadings::ReleaseEdits()
{
    model::gFormats = nullptr;
    model::gHeadings = nullptr;
    model::gSettings = nullptr;
    host::Disconnect();
}

} // namespace editor
