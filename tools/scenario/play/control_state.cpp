// The state of a control, and how a transcript prints it: see control_state.h.
#include "play/control_state.h"

#include "driver/escape.h"

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

struct Printer
{
    const std::string &name;

    std::string operator()(const ListState &list) const
    {
        std::string lines = name + " " + Word(list.enabled) + " sort=" + Sort(list) + "\n";
        for (int i = 0; const ListState::Item &item : list.items)
        {
            lines += Mark(i++, list.selected) + Escape(item.key) + " | " + Escape(item.text);
            if (list.hasSecondColumn)
                lines += " | " + Escape(item.second);
            lines += "\n";
        }
        return lines;
    }

    std::string operator()(const ComboState &combo) const
    {
        std::string lines = name + " " + Word(combo.enabled) + "\n";
        for (int i = 0; const ComboState::Entry &entry : combo.entries)
            lines += Mark(i++, combo.selected) + Escape(entry.text) + " {" + std::to_string(entry.data) + "}\n";
        return lines;
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
