// A drop-down list: entries to choose from, each with a number beside it.
#pragma once

#include "editor/controls/control.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace editor::controls
{

class ComboBox : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::ComboBox; }

    std::function<void()> OnClick;

    int ListCount() const { return static_cast<int>(m_entries.size()); }

    // Text and item data of the entry at a position, from 0. Error 381 where there is no entry.
    const std::string &List(int position) const;
    std::int32_t ItemData(int position) const;
    void SetItemData(int position, std::int32_t data);

    // Inserts an entry at a position (0 to ListCount; -1: at the end) and returns the position; its item data is 0.
    // Error 5 beyond the end.
    int AddItem(const std::string &text, int position = -1);

    // Takes out all entries. Nothing is selected then, without an event.
    void Clear();

    // Position of the selected entry, -1 without one. Setting it raises the click when the value changes; error 380 for
    // a position that does not exist.
    int ListIndex() const { return m_listIndex; }
    void SetListIndex(int position);

    // A user takes an entry; the click is raised also when it is the selected one. False: disabled, hidden, or no
    // such entry.
    bool Choose(int position);

    // Between these the observer is told nothing of the entries, and of all changes at the end; calls nest.
    void BeginUpdate() { ++m_updates; }
    void EndUpdate();

private:
    struct Entry
    {
        std::string text;
        std::int32_t data = 0;
    };
    const Entry &At(int position) const;
    void ItemsChanged();

    std::vector<Entry> m_entries;
    int m_listIndex = -1;
    int m_updates = 0;
    bool m_itemsChanged = false;
};

} // namespace editor::controls
