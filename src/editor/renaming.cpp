// Names typed into the lists of formats and headings.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "editor/unique_name.h"
#include "platform/desktop.h"
#include "runtime/text.h"

#include <utility>

namespace editor
{

namespace
{

// Refuses a typed name with a message.
void Refuse(bool &cancel, const std::string &message, const std::string &title)
{
    cancel = true;
    platform::MsgBox(message, platform::kOkOnly, title);
}

} // namespace

void frmHeadings::lvwFormats_AfterLabelEdit(bool &cancel, const std::string &text)
{
    const std::string compared = ComparedName(text);
    if (compared.empty())
        return Refuse(cancel, "You must enter a text value to change the format name.", "Null Value");
    // The format itself takes part: a name that is confirmed unchanged is refused.
    bool taken = false;
    for (const auto &format : *PartitionOf(SelectedFormatKey().partition).m_objcolFormats->ColFormatInfo)
        taken = taken || (!format->RemoveFormat && ComparedName(format->FormatName) == compared);
    if (taken)
        return Refuse(cancel, "This format name is already being used. Please enter a unique name.", "Duplicate Name");
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
        return Refuse(cancel, "You must enter a text value to change the header name.", "Null Value");
    // Headings of sibling partitions may have the same name.
    bool taken = false;
    ForShownPartitions(
        [&](const model::clsPartition &partition)
        {
            for (const auto &heading : *partition.m_objcolHeadings->ColHeadingInfo)
                taken = taken || (!heading->RemoveHeader && ComparedName(heading->HeadingName) == compared);
        });
    if (taken)
        return Refuse(cancel, "This heading name is already being used. Please enter a unique name.", "Duplicate Name");
    SetSelectedHeadingName(text);
}

} // namespace editor
