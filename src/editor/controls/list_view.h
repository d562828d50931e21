// A list in columns: items with a key, sorting by column, and in-place editing of labels.
#pragma once

#include "editor/controls/control.h"
#include "editor/controls/sort.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace editor::controls
{

struct ListItem
{
    std::string key;
    std::string text;   // the label: the first column
    std::string second; // the second column
};

// Finds items by their keys. The keys stay with the items; here are their places alone, in one block of memory: with a
// node for each item, filling a list of 30,000 takes three times as long.
class KeyIndex
{
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    explicit KeyIndex(const std::vector<ListItem> &items) : m_items(items) {}

    // The place of the item of a key, or kNone.
    std::uint32_t Find(std::string_view key) const { return m_slots.empty() ? kNone : m_slots[SlotOf(key)]; }
    // Takes in the item at a place, whose key no other item here has. Nothing has changed when memory runs out.
    void Insert(std::uint32_t place);
    void Reserve(std::size_t count);
    void Clear();

private:
    // Where the key is, or the empty slot where it would be.
    std::size_t SlotOf(std::string_view key) const;

    const std::vector<ListItem> &m_items;
    std::vector<std::uint32_t> m_slots; // a power of two of them, at most half of them taken
    std::size_t m_count = 0;
};

struct Column
{
    std::string key;
    std::string text;
    int width = 0; // twips
};

// How a user ends a label edit.
enum class EditEnd
{
    Enter,  // AfterLabelEdit, also when the text is as before
    Leave,  // AfterLabelEdit when the text was changed
    Escape, // nothing
};

// Positions count from 1, as displayed. Items are reached in constant time by position; their order is settled when it
// is asked for, so that filling a sorted list sorts once.
class ListView : public Control
{
public:
    explicit ListView(std::string name) : Control(std::move(name)) {}
    Kind GetKind() const override { return Kind::ListView; }

    // --- Events
    std::function<void(int position)> OnItemClick;
    std::function<void(int column)> OnColumnClick; // columns count from 1
    // Setting `cancel` refuses the edit of the selected item's label; so does an error.
    std::function<void(bool &cancel)> OnBeforeLabelEdit;
    // Setting `cancel` leaves the label as it was; so does an error.
    std::function<void(bool &cancel, const std::string &text)> OnAfterLabelEdit;

    // --- Items
    int Count() const { return static_cast<int>(m_items.size()); }
    // Error 35602 when the key is taken. The first item of an empty list is selected, without an event.
    void Add(std::string key, std::string text, std::string second = {});
    // Makes room for so many items.
    void Reserve(std::size_t count);
    // Takes out all items, and with them the selection and an open edit, without an event.
    void Clear();
    // Error 35600 where there is no such position, 35601 for an unknown key.
    const ListItem &Item(int position) const;
    int Position(std::string_view key) const;
    const ListItem &Item(std::string_view key) const { return Item(Position(key)); }

    // --- Selection
    // 0 when the list is empty.
    int SelectedPosition() const;
    // Error 91 when the list is empty.
    const ListItem &SelectedItem() const;
    // Selects without an event; errors as Item's. An edit that is open ends as by Escape.
    void SetSelectedItem(int position);
    void SetSelectedItem(std::string_view key) { SetSelectedItem(Position(key)); }

    // --- Columns
    const std::vector<Column> &Columns() const { return m_columns; }
    // Inserts a column so that it gets this position (1 to their number + 1).
    void AddColumn(int position, Column column);
    bool HideColumnHeaders() const { return m_hideColumnHeaders; }
    void SetHideColumnHeaders(bool hide);

    // --- Sorting: in the order of the queries (sort.h), ties in the order of adding
    bool Sorted() const { return m_sorted; }
    void SetSorted(bool sorted);
    int SortKey() const { return m_sortKey; } // 0: label, 1: second column
    void SetSortKey(int sortKey);
    SortOrder GetSortOrder() const { return m_sortOrder; }
    void SetSortOrder(SortOrder order);
    // Redraws all items.
    void Refresh();

    // --- Label editing
    // Whether labels can be edited at all. Yes from the start.
    void SetLabelsEditable(bool editable) { m_labelsEditable = editable; }
    // True while a label is being edited: that of the selected item.
    bool Editing() const { return m_editing; }
    // Begins to edit the label of the selected item by program. An error of BeforeLabelEdit is raised; refusal is not.
    void StartLabelEdit();

    // --- A user's acts. False: the list is disabled or hidden, or there is nothing to act on.
    // A click on an item, or a step with the arrow keys: selects and raises ItemClick, on the selected item too. A
    // label edit in this list ends first, and nothing follows when the new name was refused; so for ClickColumn.
    bool Select(int position);
    bool ClickColumn(int column);
    // A click on the selected item, or F2. False also when it is refused. An edit already open continues.
    bool BeginLabelEdit();
    // Ends an open edit. False: none was open, or the new text was refused.
    bool EndLabelEdit(const std::string &text, EditEnd end);
    bool Leave() override;

    // Between these the observer is told nothing of the items, and of all changes at the end; calls nest.
    void BeginUpdate() { ++m_updates; }
    void EndUpdate();

private:
    // The item of a key. Error 35601 for an unknown one.
    std::uint32_t IndexOf(std::string_view key) const;
    void CheckPosition(int position) const;
    void SettleOrder() const;
    std::uint32_t IndexAt(int position) const;
    int PositionOf(std::uint32_t index) const;
    void ItemsChanged();
    void Resort(Property property);
    void OpenEdit();
    void CloseEdit();
    enum class EditResult
    {
        Kept, // nothing new was typed, or the item has gone
        Renamed,
        Refused,
    };
    EditResult FinishEdit(const std::string &text, EditEnd end);

    // In the order of adding; what follows refers to items by their place here.
    std::vector<ListItem> m_items;
    KeyIndex m_byKey{m_items};
    std::int64_t m_selected = -1;

    // The display order and its inverse; empty while it is the order of adding.
    mutable std::vector<std::uint32_t> m_order;
    mutable std::vector<std::uint32_t> m_offsets;
    mutable bool m_orderSettled = true;

    std::vector<Column> m_columns;
    bool m_hideColumnHeaders = false;
    bool m_sorted = false;
    int m_sortKey = 0;
    SortOrder m_sortOrder = SortOrder::Ascending;
    bool m_labelsEditable = true;
    bool m_editing = false;
    int m_updates = 0;
    bool m_itemsChanged = false;
    bool m_selectionChanged = false;
};

// BeginUpdate and EndUpdate of a list or combo box, for the length of a block.
template <class List>
class UpdateLock
{
public:
    explicit UpdateLock(List &list) : m_list(list) { m_list.BeginUpdate(); }
    ~UpdateLock() { m_list.EndUpdate(); }
    UpdateLock(const UpdateLock &) = delete;
    UpdateLock &operator=(const UpdateLock &) = delete;

private:
    List &m_list;
};

} // namespace editor::controls
