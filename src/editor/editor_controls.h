// The controls of the editor's window, each with its own type.
#pragma once

#include "editor/controls/button.h"
#include "editor/controls/check_box.h"
#include "editor/controls/combo_box.h"
#include "editor/controls/control_set.h"
#include "editor/controls/label.h"
#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace editor
{

// Made as the layout table describes them, in the table's order: partition strip not visible, column headers of formats
// and headings hidden.
class EditorControls
{
    controls::ControlSet m_controls;

public:
    EditorControls();

    controls::ControlSet &All() { return m_controls; }
    const controls::ControlSet &All() const { return m_controls; }

    controls::Label &labPartition = Add<controls::Label>("labPartition");
    controls::ComboBox &cmbPartition = Add<controls::ComboBox>("cmbPartition");
    controls::TabControl &SSTab1 = Add<controls::TabControl>("SSTab1");
    controls::Button &btnPrint = Add<controls::Button>("btnPrint");
    controls::Button &btnSave = Add<controls::Button>("btnSave");
    controls::Button &btnCancel = Add<controls::Button>("btnCancel");

    controls::Label &lblOptions = Add<controls::Label>("lblOptions");
    controls::CheckBox &chkTagKnown = Add<controls::CheckBox>("chkTagKnown");
    controls::CheckBox &chkTagMixed = Add<controls::CheckBox>("chkTagMixed");

    controls::Label &lblFormat = Add<controls::Label>("lblFormat");
    controls::ListView &lvwFormats = Add<controls::ListView>("lvwFormats");
    controls::Button &btnAdd = Add<controls::Button>("btnAdd");
    controls::Button &btnDelete = Add<controls::Button>("btnDelete");
    controls::Frame &Frame1 = Add<controls::Frame>("Frame1");
    std::array<controls::CheckBox *, 6> SSCheck1{
        &Add<controls::CheckBox>("SSCheck1(0)"), &Add<controls::CheckBox>("SSCheck1(1)"),
        &Add<controls::CheckBox>("SSCheck1(2)"), &Add<controls::CheckBox>("SSCheck1(3)"),
        &Add<controls::CheckBox>("SSCheck1(4)"), &Add<controls::CheckBox>("SSCheck1(5)")};
    controls::Label &lblSSCheck2 = Add<controls::Label>("lblSSCheck(2)");

    controls::Label &lblHeading = Add<controls::Label>("lblHeading");
    controls::ListView &lvwHeadings = Add<controls::ListView>("lvwHeadings");
    controls::Button &btnAddHead = Add<controls::Button>("btnAddHead");
    controls::Button &btnDeleteHead = Add<controls::Button>("btnDeleteHead");
    controls::Panel &SSPanel1 = Add<controls::Panel>("SSPanel1");
    controls::Label &lblAccount = Add<controls::Label>("lblAccount");
    controls::ComboBox &cmbAccList = Add<controls::ComboBox>("cmbAccList");
    controls::Label &lblReportType = Add<controls::Label>("lblReportType");
    controls::ListView &lvwReportType = Add<controls::ListView>("lvwReportType");
    controls::Label &lblHeadFormat = Add<controls::Label>("lblHeadFormat");
    controls::ComboBox &cmbFormats = Add<controls::ComboBox>("cmbFormats");
    controls::Button &btnAllReports = Add<controls::Button>("btnAllReports");
    controls::Button &btnAllAccounts = Add<controls::Button>("btnAllAccounts");

private:
    template <class T>
    T &Add(std::string_view name)
    {
        T &control = m_controls.Add(std::make_unique<T>(std::string(name)));
        ApplyLayout(control);
        return control;
    }
    // Brings a new control to what its entry of the layout table says.
    void ApplyLayout(controls::Control &control);
};

} // namespace editor
