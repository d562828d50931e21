// A tab control's native window, and the windows of its pages.
#pragma once

#include "editor/controls/tab_control.h"
#include "window/binding.h"

#include <vector>

namespace window
{

class TabControlBinding final : public BindingOf<editor::controls::TabControl>
{
public:
    using BindingOf::BindingOf;

    Site SiteFor(int page) const override;
    LRESULT OnNotify(NMHDR &header) override;
    bool OnAccessKey(wchar_t letter) override;
    bool OnTurnPage(bool forward) override;

protected:
    Make Describe() const override;
    void Fill() override;
    std::wstring AccessibleName() const override { return L"Pages"; }
    void Move(const RECT &bounds) override;
    void OnChanged(editor::controls::Property property, int position) override;

private:
    // The area of the pages, relative to the tab control.
    RECT PageArea() const;
    void ShowPage();
    void TurnTo(int tab);

    std::vector<HWND> m_pages;
};

} // namespace window
