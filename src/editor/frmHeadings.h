// The Speech Recognition Headings Editor: the window's state, and everything that its controls bring about.
#pragma once

#include "editor/editor_controls.h"
#include "editor/form_view.h"
#include "editor/records.h"
#include "host/forms.h"
#include "runtime/error_trap.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace editor
{

// Makes the editor's window known to the host side under its name. To be called once, at start.
void RegisterForms();

// An instance is shown once.
class frmHeadings : public host::Form, public StagedForm, public EditorControls
{
public:
    frmHeadings();

    // --- host::Form
    std::string Name() const override { return "frmHeadings"; }
    platform::WindowHandle Handle() const override;
    host::Rectangle Bounds() const override;
    void ShowModal() override;

    // --- StagedForm
    const std::string &Caption() const override { return m_caption; }
    int ClientWidth() const override { return m_clientWidth; }
    int ClientHeight() const override { return m_clientHeight; }
    controls::ControlSet &Controls() override { return All(); }
    bool CloseByUser() override;
    // Not while it loads, which sets the flag and clears it.
    bool HasUnsavedEdits() const override { return m_blnChanged && All().Open(); }
    void HostDestroyed() override;

    // --- Start-up and partitions (startup.cpp, partitions.cpp)
    void Load();
    void LoadPartitions();
    void LoadTagOptions();
    bool PartitionExists(std::int32_t partitionId) const;
    void cmbPartition_Click();

    // --- Accounts and report types (accounts.cpp), the setting that applies (showing.cpp)
    void LoadAccounts();
    void LoadReportTypes(std::int16_t accountId);
    void cmbAccList_Click();
    // Selects in cmbFormats the format that a heading gets for an account and a report type.
    void ShowSetting(std::int16_t accountId, std::int16_t reportType, std::int16_t headingId);
    void lvwHeadings_ItemClick(int position);
    void lvwReportType_ItemClick(int position);

    // --- Lists (lists.cpp), choosing a format for a heading (choosing.cpp)
    void FillFormatLists(bool refillDropDown, bool refillList);
    void FillHeadingList(bool selectFirst);
    void TakeOverSelectedHeading();
    void cmbFormats_Click();
    void ApplyFormatChoice();
    void SetSelectedHeadingName(const std::string &name);

    // --- Editing a format (format_editing.cpp)
    void SelectFormat();
    void SelectFirstFormat();
    void SSCheck1_Click(std::int16_t index, std::int16_t value);
    void ApplyFormatEdit(std::int16_t index, std::int16_t value, const std::string &name);
    void lvwFormats_BeforeLabelEdit(bool &cancel);
    void lvwHeadings_BeforeLabelEdit(bool &cancel);
    static void SortByColumn(controls::ListView &list, int column);

    // --- Adding (adding.cpp), deleting (deleting.cpp), renaming (renaming.cpp)
    void btnAdd_Click();
    void btnAddHead_Click();
    void btnDelete_Click();
    void btnDeleteHead_Click();
    void lvwFormats_AfterLabelEdit(bool &cancel, const std::string &text);
    void lvwHeadings_AfterLabelEdit(bool &cancel, const std::string &text);

    // --- One format for all (applying.cpp)
    void btnAllAccounts_Click();
    void btnAllReports_Click();

    // --- Saving and closing (closing.cpp)
    void btnSave_Click();
    void btnCancel_Click();
    void btnPrint_Click();
    void chkTagKnown_Click();
    void chkTagMixed_Click();
    // The handling of an unload; `cancel` is set when the window is to stay.
    void Unload(bool &cancel);
    // Unloads the window. False when it stays.
    bool UnloadWindow();

    // --- Tabs (tabs.cpp)
    void ResetTabStates();
    void ApplyTabStates();
    void SSTab1_Click();

protected:
    // m_intFormatIndex after a heading has been picked: the next choice in cmbFormats counts, whichever it is.
    static constexpr int kHeadingPicked = -5;

    bool m_blnChanged = false;    // unsaved edits exist
    bool m_blnLoading = false;    // lists or boxes are being set by the program: their clicks are ignored
    bool m_blnReadOnly = false;   // the selected format or heading may not be edited
    bool m_blnCheckClick = false; // an attribute is being applied, not a name
    std::int16_t m_intFormatID = -1;
    std::int32_t m_lngFormatPartitionID = 0;
    std::int16_t m_intHeadID = 0;
    std::int32_t m_lngHeadPartitionID = 0;
    int m_intHeadingIndex = 0;
    int m_intAccountIndex = 0;
    std::int16_t m_intReportType = 0;
    int m_intFormatIndex = -1;          // position in cmbFormats; -1 none; kHeadingPicked
    std::int64_t m_intSettingIndex = 0; // position in gSettings of the shown account's own setting; else 0
    std::vector<std::string> m_strFormatKeys;

private:
    void ConnectEvents();
    void OpenPartitionStrip();
    void LoadEverything(runtime::ErrorTrap &trap);
    void ReleaseEdits();
    void LeaveLoadedForms();
    void AddFormat();
    void AddHeading();
    void ShowAddedHeading(std::int16_t id);
    void ApplyToAllAccounts();
    void ApplyToAllReports();
    // Shows and logs the pending error, if its number is above 0: connections that fail have negative ones.
    static void ReportAboveZero(const runtime::ErrorTrap &trap, const char *activity, std::int32_t code);
    // Runs a handler and reports its error in this way.
    void RunReported(void (frmHeadings::*handler)(), const char *activity, std::int32_t code);

    // Empties cmbFormats. Gives the format that was selected.
    std::optional<std::int16_t> ClearFormatEntries();
    void AddFormatEntry(const model::clsFormats &format, const model::clsPartition &partition, bool select);
    // Selects the entry of a format in cmbFormats. False when it has none.
    bool ShowFormat(std::int16_t formatId);

    RecordKey KeyOfFormatEntry(int position) const;
    std::int16_t AccountShown() const;
    // What Add, Delete, renaming, the boxes and a choice of format act on: the record of the selected item's key, also
    // when the click on that item has ended with an error. Error 91 while no item is selected, else those of the key
    // and the look-up.
    RecordKey SelectedHeadingKey() const;
    RecordKey SelectedFormatKey() const;
    model::clsHeadings &SelectedHeading() const { return HeadingOf(SelectedHeadingKey()); }
    model::clsFormats &SelectedFormat() const { return FormatOf(SelectedFormatKey()); }

    std::string m_caption;
    int m_clientWidth;
    int m_clientHeight;
    std::unique_ptr<FormView> m_view;
    bool m_shown = false;
    bool m_loaded = false;
    bool m_refillingFormats = false;
    // The first entry of cmbFormats for each format id.
    std::unordered_map<std::int16_t, int> m_formatEntries;
};

} // namespace editor
