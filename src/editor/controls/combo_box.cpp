// Entries and selection of a drop-down list.
#include "editor/controls/combo_box.h"

#include "runtime/error.h"

namespace editor::controls
{

const ComboBox::Entry &ComboBox::At(int position) const
{
    if (position < 0 || position >= ListCount())
        runtime::Raise(runtime::kInvalidPropertyArrayIndex);
    return m_entries[static_cast<std::size_t>(position)];
}

const std::string &ComboBox::List(int position) const
{
    return At(position).text;
}

std::int32_t ComboBox::ItemData(int position) const
{
    return At(position).data;
}

void ComboBox::SetItemData(int position, std::int32_t data)
{
    At(position);
    m_entries[static_cast<std::size_t>(position)].data = data;
    ItemsChanged();
}

int ComboBox::AddItem(const std::string &text, int position)
{
    if (position == -1)
        position = ListCount();
    if (position < 0 || position > ListCount())
        runtime::Raise(runtime::kInvalidProcedureCall);
    m_entries.insert(m_entries.begin() + position, Entry{text, 0});
    // The selection stays with its entry.
    if (m_listIndex >= position)
        ++m_listIndex;
    ItemsChanged();
    return position;
}

void ComboBox::Clear()
{
    m_entries.clear();
    m_listIndex = -1;
    ItemsChanged();
}

void ComboBox::SetListIndex(int position)
{
    if (position < -1 || position >= ListCount())
        runtime::Raise(runtime::kInvalidPropertyValue);
    if (position == m_listIndex)
        return;
    m_listIndex = position;
    // During a refill the observer is told with the entries.
    if (m_updates == 0)
        Notify(Property::Selection);
    if (OnClick)
        OnClick();
}

bool ComboBox::Choose(int position)
{
    if (!Reachable() || position < 0 || position >= ListCount())
        return false;
    return ByUser(
        [this, position]
        {
            // What happened on the way here may have refilled the list.
            if (position >= ListCount())
                return;
            m_listIndex = position;
            Notify(Property::Selection);
            if (OnClick)
                OnClick();
        });
}

void ComboBox::EndUpdate()
{
    if (--m_updates > 0 || !m_itemsChanged)
        return;
    m_itemsChanged = false;
    Notify(Property::Items);
    Notify(Property::Selection);
}

void ComboBox::ItemsChanged()
{
    if (m_updates > 0)
        m_itemsChanged = true;
    else
        Notify(Property::Items);
}

} // namespace editor::controls
