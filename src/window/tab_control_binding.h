// A tab control's native window, and the windows of its pages.
#pragma once

#include "editor/controls/tab_control.h"
#include "window/binding.h"

#include <vector>

namespace window
{

class TabControlBinding final : public Binding
{
public:
    TabControlBinding(editor::controls::TabControl &tabs, const BindingContext &surroundings)
        : Binding(tabs, surroundings), m_tabs(tabs)
    {
    }

    Site SiteFor(int page) const override;
    LRESULT OnNotify(NMHDR &header) override;
    bool OnAccessKey(wchar_t letter) override;
    bool OnTurnPage(bool forward) override;

protected:
    Make Describe() const override;
    void Fill() override;
    std::wstring AccessibleName() const override { return L"Pages"; }
    void Move(const RECT &place) override;
    void OnChanged(editor::controls::Property aspect, int position) override;

private:
    // The area of the pages, relative to the tab control.
    RECT PageArea() const;
    void ShowPage();
    void TurnTo(int tab);

    editor::controls::TabControl &m_tabs;
    std::vector<HWND> m_pages;
};

} // namespace window
