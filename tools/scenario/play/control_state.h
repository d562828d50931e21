// The state of a control as a user could read it off, and how a transcript prints it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace scenario
{

// Positions count from 0; -1 is none.

struct ListState
{
    struct Item
    {
        std::string key;
        std::string text;
        std::string second;
    };
    bool enabled = false;
    bool sorted = false;
    bool descending = false;
    int sortKey = 0;
    bool hasSecondColumn = false;
    std::vector<Item> items;
    int selected = -1;
};

struct ComboState
{
    struct Entry
    {
        std::string text;
        std::int32_t data = 0;
    };
    bool enabled = false;
    std::vector<Entry> entries;
    int selected = -1;
};

struct BoxState
{
    bool enabled = false;
    bool checked = false;
};

struct ButtonState
{
    bool enabled = false;
    std::string caption;
};

struct WindowState
{
    bool topmost = false;
};

using ControlState = std::variant<ListState, ComboState, BoxState, ButtonState, WindowState>;

// The lines of `dump`, each ended by a line break.
std::string Dump(const std::string &name, const ControlState &state);
// The line of `selected`: the selected item or entry as Dump prints it, "-" for none. Throws Refusal for a control that
// has no selection.
std::string DumpSelected(const std::string &name, const ControlState &state);

// The position of the first item of a key or a text, of the first entry of a text; -1 when there is none.
int FindKey(const ListState &list, std::string_view key);
int FindText(const ListState &list, std::string_view text);
int FindText(const ComboState &combo, std::string_view text);

} // namespace scenario
