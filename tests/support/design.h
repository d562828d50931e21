// The design of the editor's window, written down a second time: what tests hold the layout against.
#pragma once

#include "editor/controls/control.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support
{

using editor::controls::Kind;

struct DesignedControl
{
    std::string_view name;
    Kind kind = Kind::Label;
    std::string_view container; // with the page behind a colon on the tab control
    editor::controls::Rectangle place = {};
    std::string_view caption;
    std::string_view toolTip;
    int tabIndex = -1;
};

inline std::vector<DesignedControl> ReadDesign(std::string_view table)
{
    const auto next = [](std::string_view &text, char end)
    {
        const std::string_view field = text.substr(0, text.find(end));
        text.remove_prefix(std::min(field.size() + 1, text.size()));
        return field;
    };
    const auto number = [](std::string_view text) { return text.empty() ? -1 : std::stoi(std::string(text)); };
    static constexpr std::pair<std::string_view, Kind> kKinds[] = {
        {"Label", Kind::Label},   {"ComboBox", Kind::ComboBox}, {"TabControl", Kind::TabControl},
        {"Button", Kind::Button}, {"CheckBox", Kind::CheckBox}, {"ListView", Kind::ListView},
        {"Frame", Kind::Frame},   {"Panel", Kind::Panel}};
    std::vector<DesignedControl> controls;
    next(table, '\n');
    while (!table.empty())
    {
        std::string_view row = next(table, '\n');
        DesignedControl &control = controls.emplace_back();
        control.name = next(row, '|');
        control.kind = std::ranges::find(kKinds, next(row, '|'), &std::pair<std::string_view, Kind>::first)->second;
        control.container = next(row, '|');
        std::string_view bounds = next(row, '|');
        for (int *edge : {&control.place.left, &control.place.top, &control.place.width, &control.place.height})
            *edge = number(next(bounds, ' '));
        control.tabIndex = number(next(row, '|'));
        control.caption = next(row, '|');
        control.toolTip = row;
    }
    return controls;
}

// Name, kind, container (with the page of the tab control), bounds in twips before the strip for the partition is
// opened, position in the tab order, caption and tool tip. Labels are bold but for those named "labPartition" and
// "lblSSCheck(2)".
inline const std::vector<DesignedControl> kDesign = ReadDesign(R"(
labPartition|Label||240 240 1095 255||Partition:|
cmbPartition|ComboBox||1200 200 3255 315|33||
SSTab1|TabControl||120 120 10455 4695|1||
btnPrint|Button||240 4920 1575 495|31|&Print Settings|Print the current heading configuration settings
btnSave|Button||7800 4920 1335 495|21|&Save|Save changes and close the Speech Recognition Headings Editor
btnCancel|Button||9240 4920 1335 495|22|&Cancel|Cancel changes and exit
lblOptions|Label|SSTab1:0|360 720 2775 375||Heading Options|
chkTagKnown|CheckBox|SSTab1:0|600 1080 2895 255|2|Only tag known headings|Only select recognized headings
chkTagMixed|CheckBox|SSTab1:0|600 1560 2775 255|3|Tag headings with mixed case|Select headings of mixed case
lblFormat|Label|SSTab1:1|240 480 1695 375||Format|
lvwFormats|ListView|SSTab1:1|240 720 4815 3135|4||
btnAdd|Button|SSTab1:1|2520 3960 1215 495|5|&Add|Initiate the setup of a custom format
btnDelete|Button|SSTab1:1|3840 3960 1215 495|6|&Delete|Delete the currently selected custom format
Frame1|Frame|SSTab1:1|5160 720 5175 3615|||
SSCheck1(0)|CheckBox|Frame1|360 360 3615 255|7|Insert Empty Line Before Heading|
SSCheck1(1)|CheckBox|Frame1|360 840 3615 255|8|Insert Carriage Return (CR) After Heading|
SSCheck1(2)|CheckBox|Frame1|360 1320 3615 255|9|Place Colon and Two Spaces After Heading|
SSCheck1(3)|CheckBox|Frame1|360 1800 3615 255|10|Bold Heading|
SSCheck1(4)|CheckBox|Frame1|360 2280 3615 255|11|Underline Heading|
SSCheck1(5)|CheckBox|Frame1|360 2760 3615 255|12|Indent Heading|
lblSSCheck(2)|Label|Frame1|720 1320 3975 375|||
lblHeading|Label|SSTab1:2|240 480 975 255||Heading|
lvwHeadings|ListView|SSTab1:2|240 720 4335 3135|13||
btnAddHead|Button|SSTab1:2|2040 3960 1215 495|14|&Add|Initiate the setup of a new heading
btnDeleteHead|Button|SSTab1:2|3360 3960 1215 495|15|&Delete|Delete the currently selected heading
SSPanel1|Panel|SSTab1:2|4680 480 5655 3975|||
lblAccount|Label|SSPanel1|240 120 1935 255||Account|
cmbAccList|ComboBox|SSPanel1|240 360 2295 315|16||
lblReportType|Label|SSPanel1|240 840 1935 255||Report Type|
lvwReportType|ListView|SSPanel1|240 1080 2295 2775|17||
lblHeadFormat|Label|SSPanel1|2640 840 1935 255||Heading Format|
cmbFormats|ComboBox|SSPanel1|2640 1080 2895 315|18||
btnAllReports|Button|SSPanel1|2640 3000 2775 375|19|Use setting for all report types|Apply current settings to all report types
btnAllAccounts|Button|SSPanel1|2640 3480 2775 375|20|Use setting for all accounts|Apply the current settings for all accounts
)");

inline bool IsBold(const DesignedControl &control)
{
    return control.kind == Kind::Label && control.name != "labPartition" && control.name != "lblSSCheck(2)";
}

inline bool HasPicture(const DesignedControl &control)
{
    return control.kind == Kind::Button && !control.name.starts_with("btnAll");
}

} // namespace support
