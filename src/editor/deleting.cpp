// Deleting formats and headings: flags, with the settings that name them.
#include "editor/frmHeadings.h"

#include "editor/records.h"
#include "platform/desktop.h"

namespace editor
{

namespace
{

bool Confirmed(const std::string &question, const std::string &title)
{
    return platform::MsgBox(question, platform::kYesNoQuestion, title) == platform::Answer::Yes;
}

} // namespace

void frmHeadings::btnDelete_Click()
{
    if (Confirmed("Are you sure you want to delete the format " + lvwFormats.SelectedItem().text + "?",
                  "Confirm Format Deletion"))
    {
        const runtime::Ref<model::clsFormats> format = &SelectedFormat();
        format->RemoveFormat = true;
        format->HasChanged = true;
        m_blnChanged = true;
        // All of them are looked at, which takes a few milliseconds for a million: no index is kept for this.
        for (const auto &setting : *model::gSettings->ColSettingInfo)
            if (setting->FormatID == format->FormatID)
                FlagForRemoval(*setting);
        // Each list by itself: what one of them cannot show any more, the other must not offer.
        runtime::ErrorTrap showing;
        showing.Try([this] { FillFormatLists(false, true); });
        showing.Try([this] { SelectFirstFormat(); });
        showing.Try([this] { FillFormatLists(true, false); });
    }
    lvwFormats.SetFocus();
}

void frmHeadings::btnDeleteHead_Click()
{
    if (!Confirmed("Are you sure you want to delete the heading " + lvwHeadings.SelectedItem().text + "?",
                   "Confirm Heading Deletion"))
        return;
    model::clsHeadings &heading = SelectedHeading();
    heading.RemoveHeader = true;
    heading.HasChanged = true;
    ForSettingsOf(heading.HeadID, FlagForRemoval);
    // m_blnChanged stays as it is: a deleted heading alone does not count as an unsaved edit, intentionally.
    FillHeadingList(true);
}

} // namespace editor
