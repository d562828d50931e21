// The lists of formats and headings: those of the current partition, then those of its ancestors.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "runtime/scoped_flag.h"

#include <optional>

namespace editor
{

void frmHeadings::FillFormatLists(bool refillDropDown, bool refillList)
{
    const controls::UpdateLock lockDropDown(cmbFormats);
    const controls::UpdateLock lockList(lvwFormats);
    const runtime::ScopedFlag refilling(m_refillingFormats);
    const std::optional<std::int16_t> remembered = refillDropDown ? ClearFormatEntries() : std::nullopt;
    if (refillList)
        lvwFormats.Clear();
    ForShownPartitions(
        [&](const model::clsPartition &partition)
        {
            const bool current = &partition == model::gCurrentPartition.get();
            const auto &formats = current ? model::gFormats : partition.m_objcolFormats;
            for (const auto &format : *formats->ColFormatInfo)
            {
                if (format->RemoveFormat)
                    continue;
                if (refillList)
                    lvwFormats.Add(ListKey(format->FormatID, partition.m_lngPartitionID), format->FormatName,
                                   partition.m_strPartitionName);
                if (refillDropDown)
                    AddFormatEntry(*format, partition, format->FormatID == remembered);
            }
        });
}

std::optional<std::int16_t> frmHeadings::ClearFormatEntries()
{
    std::optional<std::int16_t> selected;
    if (cmbFormats.ListCount() > 0 && cmbFormats.ListIndex() >= 0)
        selected = KeyOfFormatEntry(cmbFormats.ListIndex()).id;
    m_strFormatKeys.assign(1, "");
    m_formatEntries.clear();
    cmbFormats.Clear();
    // Nothing is selected now. The mark of a picked heading outlives a refill.
    if (m_intFormatIndex != kHeadingPicked)
        m_intFormatIndex = -1;
    return selected;
}

void frmHeadings::AddFormatEntry(const model::clsFormats &format, const model::clsPartition &partition, bool select)
{
    const int position = cmbFormats.ListCount();
    cmbFormats.AddItem(format.FormatName + " \\ " + partition.m_strPartitionName, position);
    cmbFormats.SetItemData(position, position);
    m_strFormatKeys.resize(static_cast<std::size_t>(position) + 1);
    m_strFormatKeys.back() = PlainKey(format.FormatID, partition.m_lngPartitionID);
    m_formatEntries.emplace(format.FormatID, position);
    if (!select)
        return;
    // The index moves along, so that the click finds nothing changed.
    if (m_intFormatIndex != kHeadingPicked)
        m_intFormatIndex = position;
    cmbFormats.SetListIndex(position);
}

void frmHeadings::FillHeadingList(bool selectFirst)
{
    {
        const controls::UpdateLock lock(lvwHeadings);
        lvwHeadings.Clear();
        // Before the walk: also when that fails there is nothing to delete.
        if (selectFirst)
            btnDeleteHead.SetEnabled(false);
        ForShownPartitions(
            [&](const model::clsPartition &partition)
            {
                const bool current = &partition == model::gCurrentPartition.get();
                const auto &headings = current ? model::gHeadings : partition.m_objcolHeadings;
                lvwHeadings.Reserve(static_cast<std::size_t>(lvwHeadings.Count()) + headings->ColHeadingInfo->Count());
                for (const auto &heading : *headings->ColHeadingInfo)
                    if (!heading->RemoveHeader)
                        lvwHeadings.Add(ListKey(heading->HeadID, partition.m_lngPartitionID), heading->HeadingName,
                                        partition.m_strPartitionName);
            });
        if (selectFirst && lvwHeadings.Count() > 0)
            lvwHeadings.SetSelectedItem(1);
    }
    if (selectFirst)
        TakeOverSelectedHeading();
}

void frmHeadings::TakeOverSelectedHeading()
{
    const RecordKey key = lvwHeadings.Count() > 0 ? SelectedHeadingKey() : RecordKey();
    m_intHeadID = key.id;
    m_lngHeadPartitionID = key.partition;
}

RecordKey frmHeadings::SelectedHeadingKey() const
{
    return ParseListKey(runtime::Trim(lvwHeadings.SelectedItem().key));
}

RecordKey frmHeadings::SelectedFormatKey() const
{
    return ParseListKey(lvwFormats.SelectedItem().key);
}

RecordKey frmHeadings::KeyOfFormatEntry(int position) const
{
    const auto index = static_cast<std::size_t>(cmbFormats.ItemData(position));
    if (index >= m_strFormatKeys.size())
        runtime::Raise(runtime::kSubscriptOutOfRange);
    return ParsePlainKey(m_strFormatKeys[index]);
}

void frmHeadings::SetSelectedHeadingName(const std::string &name)
{
    model::clsHeadings &heading = SelectedHeading();
    heading.HeadingName = name;
    heading.HasChanged = true;
    m_blnChanged = true;
}

} // namespace editor
