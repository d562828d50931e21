// The window as a whole: its controls and their events, being shown, being destroyed.
#include "editor/frmHeadings.h"

#include "editor/layout.h"
#include "platform/desktop.h"
#include "runtime/error.h"
#include "runtime/handler.h"
#include "store/modDataActivity.h"

#include <algorithm>

namespace editor
{

namespace
{

// The default instance: it can be released by a nested call while its window is still unwinding.
class DefaultInstance final : public host::Form
{
public:
    std::string Name() const override { return m_form->Name(); }
    platform::WindowHandle Handle() const override { return m_form->Handle(); }
    host::Rectangle Bounds() const override { return m_form->Bounds(); }
    void ShowModal() override
    {
        const std::shared_ptr<frmHeadings> form = m_form;
        form->ShowModal();
    }

private:
    std::shared_ptr<frmHeadings> m_form = std::make_shared<frmHeadings>();
};

} // namespace

void RegisterForms()
{
    host::SetFormFactory("frmHeadings", [] { return std::make_unique<DefaultInstance>(); });
}

frmHeadings::frmHeadings() : m_caption(kCaption), m_clientWidth(kClientWidth), m_clientHeight(kClientHeight)
{
    ConnectEvents();
}

void frmHeadings::ConnectEvents()
{
    using controls::ListView;
    cmbPartition.OnClick = [this] { cmbPartition_Click(); };
    SSTab1.OnClick = [this](int) { SSTab1_Click(); };
    btnPrint.OnClick = [this] { btnPrint_Click(); };
    btnSave.OnClick = [this] { btnSave_Click(); };
    btnCancel.OnClick = [this] { btnCancel_Click(); };
    chkTagKnown.OnClick = [this](std::int16_t) { chkTagKnown_Click(); };
    chkTagMixed.OnClick = [this](std::int16_t) { chkTagMixed_Click(); };

    lvwFormats.OnItemClick = [this](int) { SelectFormat(); };
    lvwFormats.OnColumnClick = [this](int column) { SortByColumn(lvwFormats, column); };
    lvwFormats.OnBeforeLabelEdit = [this](bool &cancel) { lvwFormats_BeforeLabelEdit(cancel); };
    lvwFormats.OnAfterLabelEdit = [this](bool &cancel, const std::string &text)
    { lvwFormats_AfterLabelEdit(cancel, text); };
    btnAdd.OnClick = [this] { btnAdd_Click(); };
    btnDelete.OnClick = [this] { btnDelete_Click(); };
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(SSCheck1.size()); ++i)
        SSCheck1[static_cast<std::size_t>(i)]->OnClick = [this, i](std::int16_t value) { SSCheck1_Click(i, value); };

    lvwHeadings.OnItemClick = [this](int position) { lvwHeadings_ItemClick(position); };
    lvwHeadings.OnColumnClick = [this](int column) { SortByColumn(lvwHeadings, column); };
    lvwHeadings.OnBeforeLabelEdit = [this](bool &cancel) { lvwHeadings_BeforeLabelEdit(cancel); };
    lvwHeadings.OnAfterLabelEdit = [this](bool &cancel, const std::string &text)
    { lvwHeadings_AfterLabelEdit(cancel, text); };
    btnAddHead.OnClick = [this] { btnAddHead_Click(); };
    btnDeleteHead.OnClick = [this] { btnDeleteHead_Click(); };
    cmbAccList.OnClick = [this] { cmbAccList_Click(); };
    lvwReportType.OnItemClick = [this](int position) { lvwReportType_ItemClick(position); };
    cmbFormats.OnClick = [this] { cmbFormats_Click(); };
    btnAllReports.OnClick = [this] { btnAllReports_Click(); };
    btnAllAccounts.OnClick = [this] { btnAllAccounts_Click(); };
}

platform::WindowHandle frmHeadings::Handle() const
{
    return m_view ? m_view->Handle() : nullptr;
}

host::Rectangle frmHeadings::Bounds() const
{
    return m_view ? m_view->Bounds() : host::Rectangle();
}

void frmHeadings::ShowModal()
{
    if (m_shown)
    {
        if (m_view && m_loaded)
        {
            m_view->BringToFront();
            m_view->RunModal();
        }
        return;
    }
    m_shown = true;
    // Nobody can act on it yet.
    Controls().SetOpen(false);
    try
    {
        {
            const runtime::HandlerScope loading;
            Load();
        }
        if (m_loaded)
        {
            Controls().SetOpen(true);
            m_view->Show();
            m_view->RunModal();
        }
    }
    catch (const runtime::HandlerCancelled &)
    {
        // The host has destroyed the window during the load.
    }
    catch (...)
    {
        // There is no window to carry on with.
        runtime::ErrorTrap telling; // the window is destroyed even without memory for the message
        telling.Try(
            []
            {
                const runtime::Error error = runtime::CurrentError();
                platform::MsgBox("Error encountered while loading form: " + error.Description(), platform::kExclamation,
                                 "Error");
            });
    }
    HostDestroyed();
    if (m_view)
        m_view->Destroy();
    m_view.reset();
}

void frmHeadings::HostDestroyed()
{
    if (!m_loaded)
        return;
    if (m_blnChanged)
        ReleaseEdits();
    LeaveLoadedForms();
    runtime::CancelHandler();
}

void frmHeadings::LeaveLoadedForms()
{
    m_loaded = false;
    Controls().SetOpen(false);
    std::erase(host::LoadedForms(), this);
    if (m_view)
        m_view->EndModal();
}

void frmHeadings::ReportAboveZero(const runtime::ErrorTrap &trap, const char *activity, std::int32_t code)
{
    if (trap.Number() > 0)
        store::ReportError(trap, std::string("Error encountered while ") + activity + ": ", code);
}

void frmHeadings::RunReported(void (frmHeadings::*handler)(), const char *activity, std::int32_t code)
{
    runtime::ErrorTrap trap;
    trap.Try([&] { (this->*handler)(); });
    ReportAboveZero(trap, activity, code);
}

} // namespace editor
