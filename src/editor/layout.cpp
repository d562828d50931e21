// The table of the window's controls. Nothing else knows their names, texts and places.
#include "editor/layout.h"

#include "runtime/error.h"

#include <array>

namespace editor
{

namespace
{

using controls::Kind;

constexpr std::array kLayout = {
    // --- The window. Label and list of the partition stand in the strip that the start-up opens.
    LayoutEntry{"labPartition", Kind::Label, "", 0, "Partition:", "", {240, 240, 1095, 255}},
    LayoutEntry{"cmbPartition", Kind::ComboBox, "", 0, "", "", {1200, 200, 3255, 315}, false, 33},
    LayoutEntry{"SSTab1",
                Kind::TabControl,
                "",
                0,
                "&General Settings|Heading &Formats|&Headings",
                "",
                {120, 120, 10455, 4695},
                false,
                1},
    LayoutEntry{"btnPrint",
                Kind::Button,
                "",
                0,
                "&Print Settings",
                "Print the current heading configuration settings",
                {240, 4920, 1575, 495},
                false,
                31,
                Picture::Print},
    LayoutEntry{"btnSave",
                Kind::Button,
                "",
                0,
                "&Save",
                "Save changes and close the Speech Recognition Headings Editor",
                {7800, 4920, 1335, 495},
                false,
                21,
                Picture::Save},
    LayoutEntry{"btnCancel",
                Kind::Button,
                "",
                0,
                "&Cancel",
                "Cancel changes and exit",
                {9240, 4920, 1335, 495},
                false,
                22,
                Picture::Cancel},

    // --- General settings
    LayoutEntry{"lblOptions", Kind::Label, "SSTab1", 0, "Heading Options", "", {360, 720, 2775, 375}, true},
    LayoutEntry{"chkTagKnown",
                Kind::CheckBox,
                "SSTab1",
                0,
                "Only tag known headings",
                "Only select recognized headings",
                {600, 1080, 2895, 255},
                false,
                2},
    LayoutEntry{"chkTagMixed",
                Kind::CheckBox,
                "SSTab1",
                0,
                "Tag headings with mixed case",
                "Select headings of mixed case",
                {600, 1560, 2775, 255},
                false,
                3},

    // --- Heading formats
    LayoutEntry{"lblFormat", Kind::Label, "SSTab1", 1, "Format", "", {240, 480, 1695, 375}, true},
    LayoutEntry{"lvwFormats", Kind::ListView, "SSTab1", 1, "", "", {240, 720, 4815, 3135}, false, 4},
    LayoutEntry{"btnAdd",
                Kind::Button,
                "SSTab1",
                1,
                "&Add",
                "Initiate the setup of a custom format",
                {2520, 3960, 1215, 495},
                false,
                5,
                Picture::Add},
    LayoutEntry{"btnDelete",
                Kind::Button,
                "SSTab1",
                1,
                "&Delete",
                "Delete the currently selected custom format",
                {3840, 3960, 1215, 495},
                false,
                6,
                Picture::Delete},
    LayoutEntry{"Frame1", Kind::Frame, "SSTab1", 1, "", "", {5160, 720, 5175, 3615}},
    LayoutEntry{"SSCheck1(0)",
                Kind::CheckBox,
                "Frame1",
                0,
                "Insert Empty Line Before Heading",
                "",
                {360, 360, 3615, 255},
                false,
                7},
    LayoutEntry{"SSCheck1(1)",
                Kind::CheckBox,
                "Frame1",
                0,
                "Insert Carriage Return (CR) After Heading",
                "",
                {360, 840, 3615, 255},
                false,
                8},
    LayoutEntry{"SSCheck1(2)",
                Kind::CheckBox,
                "Frame1",
                0,
                "Place Colon and Two Spaces After Heading",
                "",
                {360, 1320, 3615, 255},
                false,
                9},
    LayoutEntry{"SSCheck1(3)", Kind::CheckBox, "Frame1", 0, "Bold Heading", "", {360, 1800, 3615, 255}, false, 10},
    LayoutEntry{"SSCheck1(4)", Kind::CheckBox, "Frame1", 0, "Underline Heading", "", {360, 2280, 3615, 255}, false, 11},
    LayoutEntry{"SSCheck1(5)", Kind::CheckBox, "Frame1", 0, "Indent Heading", "", {360, 2760, 3615, 255}, false, 12},
    // Empty, behind the third box; nothing uses it.
    LayoutEntry{"lblSSCheck(2)", Kind::Label, "Frame1", 0, "", "", {720, 1320, 3975, 375}},

    // --- Headings
    LayoutEntry{"lblHeading", Kind::Label, "SSTab1", 2, "Heading", "", {240, 480, 975, 255}, true},
    LayoutEntry{"lvwHeadings", Kind::ListView, "SSTab1", 2, "", "", {240, 720, 4335, 3135}, false, 13},
    LayoutEntry{"btnAddHead",
                Kind::Button,
                "SSTab1",
                2,
                "&Add",
                "Initiate the setup of a new heading",
                {2040, 3960, 1215, 495},
                false,
                14,
                Picture::Add},
    LayoutEntry{"btnDeleteHead",
                Kind::Button,
                "SSTab1",
                2,
                "&Delete",
                "Delete the currently selected heading",
                {3360, 3960, 1215, 495},
                false,
                15,
                Picture::Delete},
    LayoutEntry{"SSPanel1", Kind::Panel, "SSTab1", 2, "", "", {4680, 480, 5655, 3975}},
    LayoutEntry{"lblAccount", Kind::Label, "SSPanel1", 0, "Account", "", {240, 120, 1935, 255}, true},
    LayoutEntry{"cmbAccList", Kind::ComboBox, "SSPanel1", 0, "", "", {240, 360, 2295, 315}, false, 16},
    LayoutEntry{"lblReportType", Kind::Label, "SSPanel1", 0, "Report Type", "", {240, 840, 1935, 255}, true},
    LayoutEntry{"lvwReportType", Kind::ListView, "SSPanel1", 0, "", "", {240, 1080, 2295, 2775}, false, 17},
    LayoutEntry{"lblHeadFormat", Kind::Label, "SSPanel1", 0, "Heading Format", "", {2640, 840, 1935, 255}, true},
    LayoutEntry{"cmbFormats", Kind::ComboBox, "SSPanel1", 0, "", "", {2640, 1080, 2895, 315}, false, 18},
    LayoutEntry{"btnAllReports",
                Kind::Button,
                "SSPanel1",
                0,
                "Use setting for all report types",
                "Apply current settings to all report types",
                {2640, 3000, 2775, 375},
                false,
                19},
    LayoutEntry{"btnAllAccounts",
                Kind::Button,
                "SSPanel1",
                0,
                "Use setting for all accounts",
                "Apply the current settings for all accounts",
                {2640, 3480, 2775, 375},
                false,
                20},
};

} // namespace

std::span<const LayoutEntry> Layout()
{
    return kLayout;
}

const LayoutEntry &LayoutOf(std::string_view name)
{
    for (const LayoutEntry &entry : kLayout)
        if (entry.name == name)
            return entry;
    runtime::Raise(runtime::kInvalidProcedureCall);
}

} // namespace editor
