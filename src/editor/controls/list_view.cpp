// Items, selection, columns and order of a list.
#include "editor/controls/list_view.h"

#include "runtime/error.h"

namespace editor::controls
{

void ListView::Add(std::string key, std::string text, std::string second)
{
    if (!key.empty() && m_byKey.Find(key) != KeyIndex::kNone)
        runtime::Raise(runtime::kKeyNotUnique);
    const auto index = static_cast<std::uint32_t>(m_items.size());
    m_items.push_back({std::move(key), std::move(text), std::move(second)});
    m_orderSettled = false;
    try
    {
        if (!m_items.back().key.empty())
            m_byKey.Insert(index);
    }
    catch (...)
    {
        m_items.pop_back(); // an item that its key does not find is none
        throw;
    }
    if (m_selected < 0)
    {
        m_selected = index;
        m_selectionChanged = true;
    }
    ItemsChanged();
}

void ListView::Reserve(std::size_t count)
{
    m_items.reserve(count);
    m_byKey.Reserve(count);
}

void ListView::Clear()
{
    CloseEdit();
    m_byKey.Clear();
    m_items.clear();
    m_order.clear();
    m_offsets.clear();
    m_orderSettled = true;
    m_selected = -1;
    m_selectionChanged = true;
    ItemsChanged();
}

void ListView::CheckPosition(int position) const
{
    if (position < 1 || position > Count())
        runtime::Raise(runtime::kIndexOutOfBounds);
}

const ListItem &ListView::Item(int position) const
{
    CheckPosition(position);
    return m_items[IndexAt(position)];
}

std::uint32_t ListView::IndexOf(std::string_view key) const
{
    const std::uint32_t found = m_byKey.Find(key);
    if (found == KeyIndex::kNone)
        runtime::Raise(runtime::kElementNotFound);
    return found;
}

int ListView::Position(std::string_view key) const
{
    return PositionOf(IndexOf(key));
}

int ListView::SelectedPosition() const
{
    return m_selected < 0 ? 0 : PositionOf(static_cast<std::uint32_t>(m_selected));
}

const ListItem &ListView::SelectedItem() const
{
    if (m_selected < 0)
        runtime::Raise(runtime::kObjectNotSet);
    return m_items[static_cast<std::size_t>(m_selected)];
}

void ListView::SetSelectedItem(int position)
{
    CheckPosition(position);
    CloseEdit();
    m_selected = IndexAt(position);
    // During a refill the observer is told with the items.
    if (m_updates > 0)
        m_selectionChanged = true;
    else
        Notify(Property::Selection);
}

void ListView::AddColumn(int position, Column column)
{
    if (position < 1 || position > static_cast<int>(m_columns.size()) + 1)
        runtime::Raise(runtime::kIndexOutOfBounds);
    m_columns.insert(m_columns.begin() + (position - 1), std::move(column));
    Notify(Property::Columns);
}

void ListView::SetHideColumnHeaders(bool hide)
{
    if (hide == m_hideColumnHeaders)
        return;
    m_hideColumnHeaders = hide;
    Notify(Property::Columns);
}

void ListView::SetSorted(bool sorted)
{
    if (sorted == m_sorted)
        return;
    // Without sorting the items keep their positions.
    SettleOrder();
    m_sorted = sorted;
    Resort(Property::Sort);
}

void ListView::SetSortKey(int sortKey)
{
    if (sortKey < 0)
        runtime::Raise(runtime::kInvalidPropertyValue);
    if (sortKey == m_sortKey)
        return;
    SettleOrder();
    m_sortKey = sortKey;
    Resort(Property::Sort);
}

void ListView::SetSortOrder(SortOrder order)
{
    if (order == m_sortOrder)
        return;
    SettleOrder();
    m_sortOrder = order;
    Resort(Property::Sort);
}

void ListView::Refresh()
{
    ItemsChanged();
}

bool ListView::Select(int position)
{
    if (!Reachable() || position < 1 || position > Count())
        return false;
    return ByUser(
        [this, position]
        {
            // What ran on the way here may have refilled the list.
            if (!Leave() || position > Count())
                return;
            m_selected = IndexAt(position);
            Notify(Property::Selection);
            if (OnItemClick)
                OnItemClick(position);
        });
}

bool ListView::ClickColumn(int column)
{
    if (m_hideColumnHeaders || column < 1 || column > static_cast<int>(m_columns.size()))
        return false;
    return ByUser(
        [this, column]
        {
            if (Leave() && OnColumnClick)
                OnColumnClick(column);
        });
}

void ListView::EndUpdate()
{
    if (--m_updates > 0 || !m_itemsChanged)
        return;
    ItemsChanged();
}

void ListView::ItemsChanged()
{
    if (m_updates > 0)
    {
        m_itemsChanged = true;
        return;
    }
    m_itemsChanged = false;
    Notify(Property::Items);
    if (m_selectionChanged)
    {
        m_selectionChanged = false;
        Notify(Property::Selection);
    }
}

void ListView::Resort(Property property)
{
    if (m_sorted)
        m_orderSettled = false;
    Notify(property);
    ItemsChanged();
}

void ListView::SettleOrder() const
{
    if (m_orderSettled)
        return;
    if (m_sorted)
    {
        std::vector<std::string_view> texts;
        texts.reserve(m_items.size());
        for (const ListItem &item : m_items)
            texts.push_back(m_sortKey == 0   ? std::string_view(item.text)
                            : m_sortKey == 1 ? std::string_view(item.second)
                                             : std::string_view());
        m_order = SortedOrder(texts, m_sortOrder);
    }
    else if (m_order.empty())
    {
        m_orderSettled = true; // the order of adding
        return;
    }
    else
    {
        // Added after sorting was switched off: at the end.
        for (std::size_t i = m_order.size(); i < m_items.size(); ++i)
            m_order.push_back(static_cast<std::uint32_t>(i));
    }
    m_offsets.resize(m_order.size());
    for (std::uint32_t i = 0; i < m_order.size(); ++i)
        m_offsets[m_order[i]] = i;
    m_orderSettled = true;
}

std::uint32_t ListView::IndexAt(int position) const
{
    SettleOrder();
    const auto offset = static_cast<std::uint32_t>(position - 1);
    return m_order.empty() ? offset : m_order[offset];
}

int ListView::PositionOf(std::uint32_t index) const
{
    SettleOrder();
    return static_cast<int>(m_offsets.empty() ? index : m_offsets[index]) + 1;
}

} // namespace editor::controls
