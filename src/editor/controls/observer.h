// The observer of a control: what shows it to the user is told here of every change.
#pragma once

#include <optional>
#include <string>

namespace editor::controls
{

// What of a control has changed. The new state is read from the control.
enum class Property
{
    Caption,
    Enabled,
    Visible,
    TabStop,
    Bounds,
    Focus,            // the control is to get the keyboard
    Items,            // list view and combo box: entries replaced, added or in another order
    ItemText,         // list view: the text of one item
    Selection,        // list view: SelectedItem; combo box: ListIndex
    Columns,          // list view: columns, or whether their headers are shown
    Sort,             // list view: sort key or order (Items follows)
    LabelEditStarted, // list view: the label of the selected item is to be edited in place
    LabelEditEnded,   // list view: the edit is over, whatever became of it; a native one still open is to be closed
    Value,            // check box: Value; tab control: Tab
};

// Told of every change, also of one that the user made through it: it compares with what it shows. It raises nothing.
class Observer
{
public:
    virtual ~Observer() = default;

    // `position` is the item's position as displayed (from 1) for ItemText and LabelEditStarted, else 0.
    virtual void Changed(Property property, int position) = 0;

    // The current text of the native label edit, requested when an edit ends because the user has turned to
    // something else. Nothing where there is no native edit.
    virtual std::optional<std::string> TypedLabel() { return std::nullopt; }
};

} // namespace editor::controls
