// From the layout table to controls.
#include "editor/make_controls.h"

#include "editor/controls/button.h"
#include "editor/controls/check_box.h"
#include "editor/controls/combo_box.h"
#include "editor/controls/label.h"
#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"
#include "editor/layout.h"

#include <memory>
#include <string>

namespace editor
{

namespace
{

using namespace controls;

Control &Make(ControlSet &set, Kind kind, const std::string &name)
{
    switch (kind)
    {
    case Kind::ComboBox:
        return set.Add(std::make_unique<ComboBox>(name));
    case Kind::TabControl:
        return set.Add(std::make_unique<TabControl>(name));
    case Kind::Button:
        return set.Add(std::make_unique<Button>(name));
    case Kind::CheckBox:
        return set.Add(std::make_unique<CheckBox>(name));
    case Kind::ListView:
        return set.Add(std::make_unique<ListView>(name));
    case Kind::Frame:
        return set.Add(std::make_unique<Frame>(name));
    case Kind::Panel:
        return set.Add(std::make_unique<Panel>(name));
    case Kind::Label:
        break;
    }
    return set.Add(std::make_unique<Label>(name));
}

std::vector<std::string> Split(std::string_view text)
{
    std::vector<std::string> parts;
    for (auto bar = text.find('|'); bar != std::string_view::npos; bar = text.find('|'))
    {
        parts.emplace_back(text.substr(0, bar));
        text.remove_prefix(bar + 1);
    }
    parts.emplace_back(text);
    return parts;
}

// One column of names; the list of report types shows its header as it is, the other two get theirs at start-up. The
// widths leave room for the second column and a scroll bar.
void DesignLists(ControlSet &set)
{
    auto &formats = set.Get<ListView>("lvwFormats");
    formats.AddColumn(1, {"", "Format Name", 2475});
    formats.SetHideColumnHeaders(true);
    auto &headings = set.Get<ListView>("lvwHeadings");
    headings.AddColumn(1, {"", "Heading", 1995});
    headings.SetHideColumnHeaders(true);
    auto &reportTypes = set.Get<ListView>("lvwReportType");
    reportTypes.AddColumn(1, {"", "columns1", 1935});
    // A report type's name is not the editor's to change.
    reportTypes.SetLabelsEditable(false);
}

} // namespace

void MakeControls(ControlSet &set)
{
    for (const LayoutEntry &entry : Layout())
    {
        Control &control = Make(set, entry.kind, std::string(entry.name));
        if (auto *const tabs = dynamic_cast<TabControl *>(&control))
            tabs->SetTabCaptions(Split(entry.caption));
        else
            control.SetCaption(std::string(entry.caption));
        control.SetToolTip(std::string(entry.toolTip));
        control.SetBounds(entry.place);
        control.SetTabStop(entry.tabIndex >= 0);
        if (!entry.container.empty())
            control.SetContainer(set.Find(entry.container), entry.page);
    }
    set.Get<Label>("labPartition").SetVisible(false);
    set.Get<ComboBox>("cmbPartition").SetVisible(false);
    DesignLists(set);
}

} // namespace editor
