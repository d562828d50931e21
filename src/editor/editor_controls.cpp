// From the layout table to controls.
#include "editor/editor_controls.h"

#include "editor/layout.h"

namespace editor
{

// The list of report types shows its column header as it is; the other two lists get theirs, and a second column, at
// start-up. The widths leave room for that column and a scroll bar.
EditorControls::EditorControls()
{
    SSTab1.SetTabCaptions({kPageCaptions.begin(), kPageCaptions.end()});
    labPartition.SetVisible(false);
    cmbPartition.SetVisible(false);
    lvwFormats.AddColumn(1, {"", "Format Name", 2475});
    lvwFormats.SetHideColumnHeaders(true);
    lvwHeadings.AddColumn(1, {"", "Heading", 1995});
    lvwHeadings.SetHideColumnHeaders(true);
    lvwReportType.AddColumn(1, {"", "columns1", 1935});
    // The editor does not change the name of a report type.
    lvwReportType.SetLabelsEditable(false);
}

void EditorControls::ApplyLayout(controls::Control &control)
{
    const LayoutEntry &entry = LayoutOf(control.Name());
    control.SetCaption(std::string(entry.caption));
    control.SetToolTip(std::string(entry.toolTip));
    control.SetBounds(entry.bounds);
    control.SetTabStop(entry.tabIndex >= 0);
    if (!entry.container.empty())
        control.SetContainer(m_controls.Find(entry.container), entry.page);
}

} // namespace editor
