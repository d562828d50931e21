// Names typed into the lists of formats and headings.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "editor/unique_name.h"
#include "platform/desktop.h"
#include "runtime/text.h"

#include <utility>

namespace editor
{

void frmHeadings::lvwFormats_AfterLabelEdit(bool &cancel, const std::string &text)
{
    const std::string compared = ComparedName(text);
    if (compared.empty())
    {
        cancel = true;
        platform::MsgBox("You must enter a text value to change the format name.", platform::kOkOnly, "Null Value");
        return;
    }
    // The format itself takes part: a name that is confirmed unchanged is refused.
    bool taken = false;
    for (const auto &format : *PartitionOf(SelectedFormatKey().partition).m_objcolFormats->ColFormatInfo)
        taken = taken || (!format->RemoveFormat && ComparedName(format->FormatName) == compared);
    if (taken)
    {
        cancel = true;
        platform::MsgBox("This format name is already being used. Please enter a unique name.", platform::kOkOnly,
                         "Duplicate Name");
        return;
    }
    m_blnCheckClick = false;
    const runtime::Ref<model::clsFormats> format = &SelectedFormat();
    std::string before = format->FormatName;
    ApplyFormatEdit(0, 0, text);
    try
    {
        FillFormatLists(true, false);
    }
    catch (...)
    {
        // The list will show the old name: what is shown is what is stored.
        format->FormatName = std::move(before);
        throw;
    }
}

void frmHeadings::lvwHeadings_AfterLabelEdit(bool &cancel, const std::string &text)
{
    const std::string compared = ComparedName(text);
    if (compared.empty())
    {
        cancel = true;
        platform::MsgBox("You must enter a text value to change the header name.", platform::kOkOnly, "Null Value");
        return;
    }
    // Headings of sibling partitions may have the same name.
    bool taken = false;
    ForShownPartitions(
        [&](const model::clsPartition &partition)
        {
            for (const auto &heading : *partition.m_objcolHeadings->ColHeadingInfo)
                taken = taken || (!heading->RemoveHeader && ComparedName(heading->HeadingName) == compared);
        });
    if (taken)
    {
        cancel = true;
        platform::MsgBox("This heading name is already being used. Please enter a unique name.", platform::kOkOnly,
                         "Duplicate Name");
        return;
    }
    SetSelectedHeadingName(text);
}

} // namespace editor
