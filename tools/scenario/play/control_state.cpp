// The state of a control, and how a transcript prints it: see control_state.h.
#include "play/control_state.h"

#include "driver/escape.h"
#include "script/failure.h"

#include <algorithm>

namespace scenario
{

namespace
{

using driver::Escape;

const char *Word(bool enabled)
{
    return enabled ? "enabled" : "disabled";
}

const char *Mark(int position, int selected)
{
    return position == selected ? "* " : "  ";
}

std::string Sort(const ListState &list)
{
    if (!list.sorted)
        return "none";
    return (list.descending ? "desc:" : "asc:") + std::to_string(list.sortKey);
}

std::string ItemLine(const ListState &list, int position)
{
    const ListState::Item &item = list.items[static_cast<std::size_t>(position)];
    return Escape(item.key) + " | " + Escape(item.text) + (list.hasSecondColumn ? " | " + Escape(item.second) : "") +
           "\n";
}

std::string ItemLine(const ComboState &combo, int position)
{
    const ComboState::Entry &entry = combo.entries[static_cast<std::size_t>(position)];
    return Escape(entry.text) + " {" + std::to_string(entry.data) + "}\n";
}

template <class Items>
std::string ItemLines(const Items &state, std::size_t count)
{
    std::string lines;
    for (int i = 0; i < static_cast<int>(count); ++i)
        lines += Mark(i, state.selected) + ItemLine(state, i);
    return lines;
}

struct Printer
{
    const std::string &name;

    std::string operator()(const ListState &list) const
    {
        return name + " " + Word(list.enabled) + " sort=" + Sort(list) + "\n" + ItemLines(list, list.items.size());
    }

    std::string operator()(const ComboState &combo) const
    {
        return name + " " + Word(combo.enabled) + "\n" + ItemLines(combo, combo.entries.size());
    }

    std::string operator()(const BoxState &box) const
    {
        return name + (box.checked ? " 1 " : " 0 ") + Word(box.enabled) + "\n";
    }

    std::string operator()(const ButtonState &button) const
    {
        return name + " \"" + Escape(button.caption) + "\" " + Word(button.enabled) + "\n";
    }

    std::string operator()(const WindowState &window) const
    {
        return name + (window.topmost ? " topmost\n" : " normal\n");
    }
};

struct SelectedPrinter
{
    const std::string &name;

    template <class State>
    std::string operator()(const State &state) const
    {
        if constexpr (requires { state.selected; })
            return name + " " + (state.selected < 0 ? "-\n" : ItemLine(state, state.selected));
        throw Refusal(name + " has no selection");
    }
};

template <class Entries, class Field>
int Find(const Entries &entries, std::string_view wanted, Field field)
{
    const auto found = std::ranges::find(entries, wanted, field);
    return found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
}

} // namespace

std::string Dump(const std::string &name, const ControlState &state)
{
    return std::visit(Printer{name}, state);
}

std::string DumpSelected(const std::string &name, const ControlState &state)
{
    return std::visit(SelectedPrinter{name}, state);
}

int FindKey(const ListState &list, std::string_view key)
{
    return Find(list.items, key, &ListState::Item::key);
}

int FindText(const ListState &list, std::string_view text)
{
    return Find(list.items, text, &ListState::Item::text);
}

int FindText(const ComboState &combo, std::string_view text)
{
    return Find(combo.entries, text, &ComboState::Entry::text);
}

} // namespace scenario
