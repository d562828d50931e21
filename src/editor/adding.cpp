// Adding formats and headings: new ones, or copies of the selected one.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "editor/unique_name.h"
#include "runtime/convert.h"
#include "store/modDataActivity.h"

#include <optional>
#include <utility>

namespace editor
{

namespace
{

std::string UniqueFormatName(const std::string &proposed)
{
    std::vector<std::string_view> names;
    for (const auto &format : *CurrentPartition().m_objcolFormats->ColFormatInfo)
        if (!format->RemoveFormat)
            names.push_back(format->FormatName);
    return UniqueName(proposed, names);
}

// Headings are compared across all partitions, unlike formats.
std::string UniqueHeadingName(const std::string &proposed)
{
    std::vector<std::string_view> names;
    for (const auto &partition : *model::gPartitions->m_colPartitions)
        for (const auto &heading : *partition->m_objcolHeadings->ColHeadingInfo)
            if (!heading->RemoveHeader)
                names.push_back(heading->HeadingName);
    return UniqueName(proposed, names);
}

// The settings of one heading for another one, with partition 0 whatever they carried; this is intentional.
void CopySettings(std::int16_t from, std::int16_t to)
{
    ForSettingsOf(from,
                  [&](const model::clsSettings &setting)
                  {
                      if (setting.FormatID != 0 && !setting.RemoveSetting)
                          AddSetting(to, setting.HospitalID, setting.ReportType, setting.FormatID, 0);
                  });
}

// Takes out what was appended to a collection since it had this length.
template <class T>
void Shorten(runtime::Collection<T> &collection, std::size_t length)
{
    while (collection.Count() > length)
        collection.Remove(static_cast<std::int64_t>(collection.Count()));
}

} // namespace

void frmHeadings::btnAdd_Click()
{
    RunReported(&frmHeadings::AddFormat, "adding format", store::kAddingFormat);
}

void frmHeadings::AddFormat()
{
    const std::int16_t id = runtime::ToInteger(store::NextFormatID());
    std::string name = "New Format";
    const auto format = runtime::MakeRef<model::clsFormats>();
    std::string selected;
    if (lvwFormats.Count() > 0)
    {
        selected = lvwFormats.SelectedItem().key;
        name = CopyName(lvwFormats.SelectedItem().text);
        const model::clsFormats &source = SelectedFormat();
        format->FillFields(id, UniqueFormatName(name), source.InsertBefore, source.InsertAfter, source.InsertColon,
                           source.Bold, source.Underline, source.Indent, false, true, true);
    }
    else
        format->FillFields(id, UniqueFormatName(name), false, false, false, false, false, false, false, true, true);
    const auto formats = CurrentPartition().m_objcolFormats->ColFormatInfo;
    formats->Add(format, std::to_string(id));
    const bool changedBefore = std::exchange(m_blnChanged, true);
    try
    {
        FillFormatLists(false, true);
        lvwFormats.SetSelectedItem(ListKey(id, CurrentPartition().m_lngPartitionID));
        SelectFormat();
        lvwFormats.SetFocus();
        lvwFormats.StartLabelEdit();
        FillFormatLists(true, false);
    }
    catch (const runtime::HandlerCancelled &)
    {
        throw;
    }
    catch (...)
    {
        // Nothing of it stays.
        formats->Remove(std::to_string(id));
        m_blnChanged = changedBefore;
        runtime::ErrorTrap trap;
        trap.Try([&] { FillFormatLists(true, true); });
        trap.Try([&] { lvwFormats.SetSelectedItem(selected); });
        trap.Try([&] { SelectFormat(); });
        throw;
    }
}

void frmHeadings::btnAddHead_Click()
{
    RunReported(&frmHeadings::AddHeading, "adding heading", store::kAddingHeading);
}

void frmHeadings::AddHeading()
{
    const std::int16_t id = runtime::ToInteger(store::NextHeaderID());
    std::string name = "New Header";
    std::string selected;
    std::optional<std::int16_t> copied;
    if (lvwHeadings.Count() > 0)
    {
        selected = lvwHeadings.SelectedItem().key;
        if (lvwHeadings.SelectedItem().text != "<Default>")
        {
            name = CopyName(lvwHeadings.SelectedItem().text);
            copied = SelectedHeading().HeadID;
        }
    }
    const auto heading = runtime::MakeRef<model::clsHeadings>();
    heading->FillHeadings(id, UniqueHeadingName(name), true, false, true);
    const auto headings = CurrentPartition().m_objcolHeadings->ColHeadingInfo;
    const auto settings = model::gSettings->ColSettingInfo;
    const std::size_t settingsBefore = settings->Count();
    headings->Add(heading, std::to_string(id));
    const bool changedBefore = std::exchange(m_blnChanged, true);
    const bool deletableBefore = btnDeleteHead.Enabled();
    try
    {
        if (copied)
            CopySettings(*copied, id);
        ShowAddedHeading(id);
    }
    catch (const runtime::HandlerCancelled &)
    {
        throw;
    }
    catch (...)
    {
        // Nothing of it stays.
        headings->Remove(std::to_string(id));
        Shorten(*settings, settingsBefore);
        m_blnChanged = changedBefore;
        runtime::ErrorTrap trap;
        trap.Try([&] { FillHeadingList(false); });
        trap.Try([&] { lvwHeadings.SetSelectedItem(selected); });
        trap.Try([&] { TakeOverSelectedHeading(); });
        btnDeleteHead.SetEnabled(deletableBefore);
        throw;
    }
}

void frmHeadings::ShowAddedHeading(std::int16_t id)
{
    FillHeadingList(false);
    lvwHeadings.SetSelectedItem(ListKey(id, CurrentPartition().m_lngPartitionID));
    btnDeleteHead.SetEnabled(true);
    TakeOverSelectedHeading();
    lvwHeadings.SetFocus();
    ShowSetting(runtime::ToInteger(cmbAccList.ItemData(cmbAccList.ListIndex())), m_intReportType, id);
    lvwHeadings.StartLabelEdit();
}

} // namespace editor
