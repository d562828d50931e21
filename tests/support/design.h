// The design of the editor's window, written down a second time: what tests hold the layout against.
#pragma once

#include "editor/controls/control.h"

#include <string_view>

namespace support
{

using editor::controls::Kind;

struct DesignedControl
{
    std::string_view name;
    Kind kind;
    std::string_view container; // with the page behind a colon on the tab control
    editor::controls::Rectangle place;
    std::string_view caption;
    std::string_view toolTip;
    int tabIndex = -1;
};

// In twips, before the strip for the partition is opened. Labels are bold but for those named "labPartition" and
// "lblSSCheck(2)".
inline constexpr DesignedControl kDesign[] = {
    {"labPartition", Kind::Label, "", {240, 240, 1095, 255}, "Partition:", ""},
    {"cmbPartition", Kind::ComboBox, "", {1200, 200, 3255, 315}, "", "", 33},
    {"SSTab1", Kind::TabControl, "", {120, 120, 10455, 4695}, "", "", 1},
    {"btnPrint",
     Kind::Button,
     "",
     {240, 4920, 1575, 495},
     "&Print Settings",
     "Print the current heading configuration settings",
     31},
    {"btnSave",
     Kind::Button,
     "",
     {7800, 4920, 1335, 495},
     "&Save",
     "Save changes and close the Speech Recognition Headings Editor",
     21},
    {"btnCancel", Kind::Button, "", {9240, 4920, 1335, 495}, "&Cancel", "Cancel changes and exit", 22},

    {"lblOptions", Kind::Label, "SSTab1:0", {360, 720, 2775, 375}, "Heading Options", ""},
    {"chkTagKnown",
     Kind::CheckBox,
     "SSTab1:0",
     {600, 1080, 2895, 255},
     "Only tag known headings",
     "Only select recognized headings",
     2},
    {"chkTagMixed",
     Kind::CheckBox,
     "SSTab1:0",
     {600, 1560, 2775, 255},
     "Tag headings with mixed case",
     "Select headings of mixed case",
     3},

    {"lblFormat", Kind::Label, "SSTab1:1", {240, 480, 1695, 375}, "Format", ""},
    {"lvwFormats", Kind::ListView, "SSTab1:1", {240, 720, 4815, 3135}, "", "", 4},
    {"btnAdd", Kind::Button, "SSTab1:1", {2520, 3960, 1215, 495}, "&Add", "Initiate the setup of a custom format", 5},
    {"btnDelete",
     Kind::Button,
     "SSTab1:1",
     {3840, 3960, 1215, 495},
     "&Delete",
     "Delete the currently selected custom format",
     6},
    {"Frame1", Kind::Frame, "SSTab1:1", {5160, 720, 5175, 3615}, "", ""},
    {"SSCheck1(0)", Kind::CheckBox, "Frame1", {360, 360, 3615, 255}, "Insert Empty Line Before Heading", "", 7},
    {"SSCheck1(1)",
     Kind::CheckBox,
     "Frame1",
     {360, 840, 3615, 255},
     "Insert Carriage Return (CR) After Heading",
     "",
     8},
    {"SSCheck1(2)",
     Kind::CheckBox,
     "Frame1",
     {360, 1320, 3615, 255},
     "Place Colon and Two Spaces After Heading",
     "",
     9},
    {"SSCheck1(3)", Kind::CheckBox, "Frame1", {360, 1800, 3615, 255}, "Bold Heading", "", 10},
    {"SSCheck1(4)", Kind::CheckBox, "Frame1", {360, 2280, 3615, 255}, "Underline Heading", "", 11},
    {"SSCheck1(5)", Kind::CheckBox, "Frame1", {360, 2760, 3615, 255}, "Indent Heading", "", 12},
    {"lblSSCheck(2)", Kind::Label, "Frame1", {720, 1320, 3975, 375}, "", ""},

    {"lblHeading", Kind::Label, "SSTab1:2", {240, 480, 975, 255}, "Heading", ""},
    {"lvwHeadings", Kind::ListView, "SSTab1:2", {240, 720, 4335, 3135}, "", "", 13},
    {"btnAddHead",
     Kind::Button,
     "SSTab1:2",
     {2040, 3960, 1215, 495},
     "&Add",
     "Initiate the setup of a new heading",
     14},
    {"btnDeleteHead",
     Kind::Button,
     "SSTab1:2",
     {3360, 3960, 1215, 495},
     "&Delete",
     "Delete the currently selected heading",
     15},
    {"SSPanel1", Kind::Panel, "SSTab1:2", {4680, 480, 5655, 3975}, "", ""},
    {"lblAccount", Kind::Label, "SSPanel1", {240, 120, 1935, 255}, "Account", ""},
    {"cmbAccList", Kind::ComboBox, "SSPanel1", {240, 360, 2295, 315}, "", "", 16},
    {"lblReportType", Kind::Label, "SSPanel1", {240, 840, 1935, 255}, "Report Type", ""},
    {"lvwReportType", Kind::ListView, "SSPanel1", {240, 1080, 2295, 2775}, "", "", 17},
    {"lblHeadFormat", Kind::Label, "SSPanel1", {2640, 840, 1935, 255}, "Heading Format", ""},
    {"cmbFormats", Kind::ComboBox, "SSPanel1", {2640, 1080, 2895, 315}, "", "", 18},
    {"btnAllReports",
     Kind::Button,
     "SSPanel1",
     {2640, 3000, 2775, 375},
     "Use setting for all report types",
     "Apply current settings to all report types",
     19},
    {"btnAllAccounts",
     Kind::Button,
     "SSPanel1",
     {2640, 3480, 2775, 375},
     "Use setting for all accounts",
     "Apply the current settings for all accounts",
     20},
};

inline bool IsBold(const DesignedControl &control)
{
    return control.kind == Kind::Label && control.name != "labPartition" && control.name != "lblSSCheck(2)";
}

inline bool HasPicture(const DesignedControl &control)
{
    return control.kind == Kind::Button && !control.name.starts_with("btnAll");
}

} // namespace support
