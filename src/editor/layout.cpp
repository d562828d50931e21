// The table of the window's controls. Nothing else knows their texts, bounds and tab order.
#include "editor/layout.h"

#include "runtime/error.h"

namespace editor
{

namespace
{

constexpr LayoutEntry kLayout[] = {
    // --- The window. Label and list of the partition are in the strip that the start-up opens.
    {.name = "labPartition", .caption = "Partition:", .bounds = {240, 240, 1095, 255}},
    {.name = "cmbPartition", .bounds = {1200, 200, 3255, 315}, .tabIndex = 33},
    {.name = "SSTab1", .bounds = {120, 120, 10455, 4695}, .tabIndex = 1},
    {.name = "btnPrint",
     .caption = "&Print Settings",
     .toolTip = "Print the current heading configuration settings",
     .bounds = {240, 4920, 1575, 495},
     .tabIndex = 31,
     .picture = Picture::Print},
    {.name = "btnSave",
     .caption = "&Save",
     .toolTip = "Save changes and close the Speech Recognition Headings Editor",
     .bounds = {7800, 4920, 1335, 495},
     .tabIndex = 21,
     .picture = Picture::Save},
    {.name = "btnCancel",
     .caption = "&Cancel",
     .toolTip = "Cancel changes and exit",
     .bounds = {9240, 4920, 1335, 495},
     .tabIndex = 22,
     .picture = Picture::Cancel},

    // --- General settings
    {.name = "lblOptions",
     .container = "SSTab1",
     .caption = "Heading Options",
     .bounds = {360, 720, 2775, 375},
     .bold = true},
    {.name = "chkTagKnown",
     .container = "SSTab1",
     .caption = "Only tag known headings",
     .toolTip = "Only select recognized headings",
     .bounds = {600, 1080, 2895, 255},
     .tabIndex = 2},
    {.name = "chkTagMixed",
     .container = "SSTab1",
     .caption = "Tag headings with mixed case",
     .toolTip = "Select headings of mixed case",
     .bounds = {600, 1560, 2775, 255},
     .tabIndex = 3},

    // --- Heading formats
    {.name = "lblFormat",
     .container = "SSTab1",
     .page = 1,
     .caption = "Format",
     .bounds = {240, 480, 1695, 375},
     .bold = true},
    {.name = "lvwFormats", .container = "SSTab1", .page = 1, .bounds = {240, 720, 4815, 3135}, .tabIndex = 4},
    {.name = "btnAdd",
     .container = "SSTab1",
     .page = 1,
     .caption = "&Add",
     .toolTip = "Initiate the setup of a custom format",
     .bounds = {2520, 3960, 1215, 495},
     .tabIndex = 5,
     .picture = Picture::Add},
    {.name = "btnDelete",
     .container = "SSTab1",
     .page = 1,
     .caption = "&Delete",
     .toolTip = "Delete the currently selected custom format",
     .bounds = {3840, 3960, 1215, 495},
     .tabIndex = 6,
     .picture = Picture::Delete},
    {.name = "Frame1", .container = "SSTab1", .page = 1, .bounds = {5160, 720, 5175, 3615}},
    {.name = "SSCheck1(0)",
     .container = "Frame1",
     .caption = "Insert Empty Line Before Heading",
     .bounds = {360, 360, 3615, 255},
     .tabIndex = 7},
    {.name = "SSCheck1(1)",
     .container = "Frame1",
     .caption = "Insert Carriage Return (CR) After Heading",
     .bounds = {360, 840, 3615, 255},
     .tabIndex = 8},
    {.name = "SSCheck1(2)",
     .container = "Frame1",
     .caption = "Place Colon and Two Spaces After Heading",
     .bounds = {360, 1320, 3615, 255},
     .tabIndex = 9},
    {.name = "SSCheck1(3)",
     .container = "Frame1",
     .caption = "Bold Heading",
     .bounds = {360, 1800, 3615, 255},
     .tabIndex = 10},
    {.name = "SSCheck1(4)",
     .container = "Frame1",
     .caption = "Underline Heading",
     .bounds = {360, 2280, 3615, 255},
     .tabIndex = 11},
    {.name = "SSCheck1(5)",
     .container = "Frame1",
     .caption = "Indent Heading",
     .bounds = {360, 2760, 3615, 255},
     .tabIndex = 12},
    // Empty, behind the third box; nothing uses it.
    {.name = "lblSSCheck(2)", .container = "Frame1", .bounds = {720, 1320, 3975, 375}},

    // --- Headings
    {.name = "lblHeading",
     .container = "SSTab1",
     .page = 2,
     .caption = "Heading",
     .bounds = {240, 480, 975, 255},
     .bold = true},
    {.name = "lvwHeadings", .container = "SSTab1", .page = 2, .bounds = {240, 720, 4335, 3135}, .tabIndex = 13},
    {.name = "btnAddHead",
     .container = "SSTab1",
     .page = 2,
     .caption = "&Add",
     .toolTip = "Initiate the setup of a new heading",
     .bounds = {2040, 3960, 1215, 495},
     .tabIndex = 14,
     .picture = Picture::Add},
    {.name = "btnDeleteHead",
     .container = "SSTab1",
     .page = 2,
     .caption = "&Delete",
     .toolTip = "Delete the currently selected heading",
     .bounds = {3360, 3960, 1215, 495},
     .tabIndex = 15,
     .picture = Picture::Delete},
    {.name = "SSPanel1", .container = "SSTab1", .page = 2, .bounds = {4680, 480, 5655, 3975}},
    {.name = "lblAccount",
     .container = "SSPanel1",
     .caption = "Account",
     .bounds = {240, 120, 1935, 255},
     .bold = true},
    {.name = "cmbAccList", .container = "SSPanel1", .bounds = {240, 360, 2295, 315}, .tabIndex = 16},
    {.name = "lblReportType",
     .container = "SSPanel1",
     .caption = "Report Type",
     .bounds = {240, 840, 1935, 255},
     .bold = true},
    {.name = "lvwReportType", .container = "SSPanel1", .bounds = {240, 1080, 2295, 2775}, .tabIndex = 17},
    {.name = "lblHeadFormat",
     .container = "SSPanel1",
     .caption = "Heading Format",
     .bounds = {2640, 840, 1935, 255},
     .bold = true},
    {.name = "cmbFormats", .container = "SSPanel1", .bounds = {2640, 1080, 2895, 315}, .tabIndex = 18},
    {.name = "btnAllReports",
     .container = "SSPanel1",
     .caption = "Use setting for all report types",
     .toolTip = "Apply current settings to all report types",
     .bounds = {2640, 3000, 2775, 375},
     .tabIndex = 19},
    {.name = "btnAllAccounts",
     .container = "SSPanel1",
     .caption = "Use setting for all accounts",
     .toolTip = "Apply the current settings for all accounts",
     .bounds = {2640, 3480, 2775, 375},
     .tabIndex = 20},
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
