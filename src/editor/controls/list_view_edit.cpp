// Editing the label of a list's selected item in place.
#include "editor/controls/list_view.h"

#include "runtime/error.h"

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
    if (!ByPerson(
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
    Notify(Aspect::LabelEditStarted, SelectedPosition());
}

void ListView::CloseEdit()
{
    if (!m_editing)
        return;
    m_editing = false;
    Notify(Aspect::LabelEditEnded);
}

bool ListView::EndLabelEdit(const std::string &text, Ending ending)
{
    if (!m_editing)
        return false;
    bool accepted = false;
    Contain([&] { accepted = FinishEdit(text, ending); });
    return accepted;
}

void ListView::Leave()
{
    if (!m_editing)
        return;
    const std::optional<std::string> typed = GetFace() ? GetFace()->TypedLabel() : std::nullopt;
    EndLabelEdit(typed ? *typed : SelectedItem().text, Ending::Leave);
}

// False when the label stays as it is.
bool ListView::FinishEdit(const std::string &text, Ending ending)
{
    const std::string key = SelectedItem().key;
    const bool changed = text != SelectedItem().text;
    CloseEdit();
    if (ending == Ending::Escape || (ending == Ending::Leave && !changed))
        return false;
    bool cancel = false;
    if (OnAfterLabelEdit)
        OnAfterLabelEdit(cancel, text);
    if (cancel)
        return false;
    // The handler may have refilled the list. The item keeps its place, also in a sorted list.
    const auto found = m_byKey.find(std::string_view(key));
    if (found == m_byKey.end())
        return false;
    SettleOrder();
    m_items[*found].text = text;
    Notify(Aspect::ItemText, PositionOf(*found));
    return true;
}

} // namespace editor::controls
