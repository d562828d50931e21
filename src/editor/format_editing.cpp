// The formats tab: showing a format in the six boxes, switching its attributes, who may be edited, and sorting.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "runtime/scoped_flag.h"

namespace editor
{

namespace
{

// The attributes in the order of the boxes.
constexpr bool model::clsFormats::*kAttributes[] = {&model::clsFormats::InsertBefore, &model::clsFormats::InsertAfter,
                                                    &model::clsFormats::InsertColon,  &model::clsFormats::Bold,
                                                    &model::clsFormats::Underline,    &model::clsFormats::Indent};

} // namespace

void frmHeadings::SelectFormat()
{
    const runtime::ScopedFlag loading(m_blnLoading);
    const model::clsFormats *format = nullptr;
    if (lvwFormats.Count() > 0)
    {
        const RecordKey key = SelectedFormatKey();
        m_intFormatID = key.id;
        m_lngFormatPartitionID = key.partition;
        format = &FormatOf(key);
        m_blnReadOnly = IsReadOnlyFormat(key);
    }
    else
    {
        m_intFormatID = -1;
        m_lngFormatPartitionID = 0;
        m_blnReadOnly = true;
    }
    for (controls::CheckBox *const box : SSCheck1)
        box->SetEnabled(!m_blnReadOnly);
    btnDelete.SetEnabled(!m_blnReadOnly);
    for (std::size_t i = 0; i < SSCheck1.size(); ++i)
        SSCheck1[i]->SetValue(format && format->*kAttributes[i] ? 1 : 0);
    m_blnCheckClick = false;
}

void frmHeadings::SelectFirstFormat()
{
    if (lvwFormats.Count() > 0)
        lvwFormats.SetSelectedItem(1);
    SelectFormat();
}

void frmHeadings::SSCheck1_Click(std::int16_t index, std::int16_t value)
{
    if (m_blnLoading)
        return;
    m_blnCheckClick = true;
    ApplyFormatEdit(index, value, "");
}

void frmHeadings::ApplyFormatEdit(std::int16_t index, std::int16_t value, const std::string &name)
{
    model::clsFormats &format = SelectedFormat();
    if (!m_blnCheckClick)
        format.FormatName = name.empty() ? lvwFormats.SelectedItem().text : name;
    else if (index >= 0 && index < static_cast<std::int16_t>(SSCheck1.size()))
        format.*kAttributes[index] = value == -1;
    format.HasChanged = true;
    m_blnChanged = true;
    m_blnCheckClick = false;
}

void frmHeadings::lvwFormats_BeforeLabelEdit(bool &cancel)
{
    m_blnReadOnly = IsReadOnlyFormat(SelectedFormatKey());
    cancel = m_blnReadOnly;
}

void frmHeadings::lvwHeadings_BeforeLabelEdit(bool &cancel)
{
    m_blnReadOnly = IsReadOnlyHeading(SelectedHeadingKey());
    cancel = m_blnReadOnly;
}

void frmHeadings::SortByColumn(controls::ListView &list, int column)
{
    using controls::SortOrder;
    const controls::UpdateLock lock(list);
    list.SetSortOrder(list.GetSortOrder() == SortOrder::Ascending ? SortOrder::Descending : SortOrder::Ascending);
    list.SetSortKey(column - 1);
    list.SetSorted(true);
    list.Refresh();
}

} // namespace editor
