// A list's native window: a virtual list, which asks for the texts of the rows that it shows.
#pragma once

#include "editor/controls/list_view.h"
#include "window/binding.h"
#include "window/label_edit.h"

#include <commctrl.h>

#include <string>

namespace window
{

class ListViewBinding final : public BindingOf<editor::controls::ListView>
{
public:
    using BindingOf::BindingOf;

    LRESULT OnNotify(NMHDR &header) override;
    bool WantsKey(WPARAM key) const override;
    bool Editing() const override { return LabelEdit::Field(Window()) != nullptr; }
    std::optional<std::string> TypedLabel() override { return m_edit.Typed(); }

protected:
    Make Describe() const override;
    void Fill() override;
    std::wstring AccessibleName() const override { return LabelText(); }
    void OnChanged(editor::controls::Property property, int position) override;
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void ShowColumns();
    void ShowSort() const;
    void ShowItems();
    void ShowSelection(bool bringIntoView);

    void ShowColours() const;
    void GiveItem(LVITEMW &item) const;
    LRESULT Draw(NMLVCUSTOMDRAW &drawing) const;
    LRESULT FindItem(const NMLVFINDITEMW &sought) const;
    void StateChanged(const NMLISTVIEW &change);
    void Clicked(int row);

    LabelEdit m_edit{m_control};
    bool m_showing = false;   // the native list is being set by the program
    bool m_clicking = false;  // between a button's going down and the click
    bool m_clickDone = false; // the click under way has selected its item already
};

} // namespace window
