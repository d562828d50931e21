// The layout of the editor's window: one table of all its controls, in design units.
#pragma once

#include "editor/controls/control.h"

#include <span>
#include <string_view>

namespace editor
{

// The picture on a command button.
enum class Picture
{
    None,
    Print,
    Save,
    Cancel,
    Add,
    Delete,
};

struct LayoutEntry
{
    std::string_view name;
    controls::Kind kind;
    std::string_view container; // empty: directly on the window
    int page;                   // of a tab control as container
    std::string_view caption;   // of a tab control: those of its pages with "|" between them
    std::string_view toolTip;
    controls::Rectangle place; // twips, in the container
    bool bold = false;
    int tabIndex = -1; // place in the tab order; -1: takes no part
    Picture picture = Picture::None;
};

// Containers stand before what they hold.
std::span<const LayoutEntry> Layout();

// The entry of a control. Error 5 for an unknown name.
const LayoutEntry &LayoutOf(std::string_view name);

constexpr std::string_view kCaption = "Speech Recognition Headings Editor";
constexpr int kClientWidth = 10725;
constexpr int kClientHeight = 5520;
// The partition strip that the start-up opens above the tab control.
constexpr int kStripHeight = 600;

} // namespace editor
