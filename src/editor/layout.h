// The layout of the editor's window: one table of all its controls, in design units.
#pragma once

#include "editor/controls/control.h"

#include <array>
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
    std::string_view container = {}; // empty: directly on the window
    int page = 0;                    // of a tab control as container
    std::string_view caption = {};
    std::string_view toolTip = {};
    controls::Rectangle bounds = {}; // twips, in the container
    bool bold = false;
    int tabIndex = -1; // position in the tab order; -1: not in it
    Picture picture = Picture::None;
};

// In the order in which the controls are made; a container comes before what it holds.
std::span<const LayoutEntry> Layout();

// The entry of a control. Error 5 for an unknown name.
const LayoutEntry &LayoutOf(std::string_view name);

// Of the pages of SSTab1.
inline constexpr std::array kPageCaptions{"&General Settings", "Heading &Formats", "&Headings"};

constexpr std::string_view kCaption = "Speech Recognition Headings Editor";
constexpr int kClientWidth = 10725;
constexpr int kClientHeight = 5520;
// The partition strip that the start-up opens above the tab control.
constexpr int kStripHeight = 600;

} // namespace editor
