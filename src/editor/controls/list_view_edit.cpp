// Editing the label of a list's selected item in place.
#include "editor/controls/list_view.h"

#include "runtime/error_trap.h"

#include <memory>
#include <utility>

namespace editor::controls
{

void ListView::StartLabelEdit()
{
    if (m_editing)
        return;
    SelectedItem();
    OpenEdit();
}

bool ListView::BeginLabelEdit()
{
    if (m_selected < 0 || !m_labelsEditable)
        return false;
    if (!ByUser(
            [this]
            {
                if (!m_editing)
                    OpenEdit();
            }))
        return false;
    return m_editing;
}

void ListView::OpenEdit()
{
    if (!m_labelsEditable)
        return;
    bool cancel = false;
    if (OnBeforeLabelEdit)
        OnBeforeLabelEdit(cancel);
    if (cancel || m_selected < 0)
        return;
    m_editing = true;
    Notify(Property::LabelEditStarted, SelectedPosition());
}

void ListView::CloseEdit()
{
    if (!m_editing)
        return;
    m_editing = false;
    Notify(Property::LabelEditEnded);
}

bool ListView::EndLabelEdit(const std::string &text, EditEnd end)
{
    if (!m_editing)
        return false;
    // Shared: it may have to wait for its turn.
    const auto renamed = std::make_shared<bool>(false);
    Act([=, this] { *renamed = m_editing && FinishEdit(text, end) == EditResult::Renamed; });
    return *renamed;
}

bool ListView::Leave()
{
    if (!m_editing)
        return true;
    const std::optional<std::string> typed = GetObserver() ? GetObserver()->TypedLabel() : std::nullopt;
    // An error of the handler refuses the name too.
    EditResult result = EditResult::Refused;
    runtime::ErrorTrap trap;
    trap.Try([&] { result = FinishEdit(typed ? *typed : SelectedItem().text, EditEnd::Leave); });
    return result != EditResult::Refused;
}

ListView::EditResult ListView::FinishEdit(const std::string &text, EditEnd end)
{
    const std::string key = SelectedItem().key;
    const bool changed = text != SelectedItem().text;
    CloseEdit();
    if (end == EditEnd::Escape || (end == EditEnd::Leave && !changed))
        return EditResult::Kept;
    bool cancel = false;
    std::string label = text; // copied now: after the handler, which stores the name, nothing may fail
    if (OnAfterLabelEdit)
        OnAfterLabelEdit(cancel, text);
    if (cancel)
        return EditResult::Refused;
    // The handler may have refilled the list. The item keeps its place, also in a sorted list.
    const std::uint32_t found = m_byKey.Find(key);
    if (found == KeyIndex::kNone)
        return EditResult::Kept;
    runtime::ErrorTrap settling;
    settling.Try([this] { SettleOrder(); });
    m_items[found].text = std::move(label);
    Notify(Property::ItemText, PositionOf(found));
    return EditResult::Renamed;
}

} // namespace editor::controls
