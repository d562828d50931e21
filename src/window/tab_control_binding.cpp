// A tab control's native window, and the windows of its pages.
#include "window/tab_control_binding.h"

#include "platform/windows/module.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"
#include "window/access_key.h"
#include "window/container.h"

#include <commctrl.h>

#include <cstddef>
#include <string>

namespace window
{

using editor::controls::Property;

Binding::Make TabControlBinding::Describe() const
{
    return {WC_TABCONTROLW, TCS_FOCUSONBUTTONDOWN};
}

void TabControlBinding::Fill()
{
    ShowAccessibleName();
    int index = 0;
    for (const std::string &caption : m_control.TabCaptions())
    {
        std::wstring text = platform::ToWide(caption);
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        Send(TCM_INSERTITEMW, static_cast<WPARAM>(index++), &item);

        // The pages are the tab control's siblings, above it. Their text, which screen readers hear, is seen on the
        // tabs alone.
        std::erase(text, L'&');
        const HWND page = CreateWindowExW(WS_EX_CONTROLPARENT, kContainerClass, text.c_str(),
                                          WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0, 0, 0, GetSite().window,
                                          nullptr, platform::ThisModule(), nullptr);
        if (!page)
            runtime::Raise(runtime::kOutOfMemory);
        const HWND above = GetWindow(Window(), GW_HWNDPREV);
        SetWindowPos(page, above ? above : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        m_pages.push_back(page);
    }
}

RECT TabControlBinding::PageArea() const
{
    RECT area;
    GetClientRect(Window(), &area);
    SendMessageW(Window(), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    return area;
}

void TabControlBinding::Move(const RECT &bounds)
{
    Binding::Move(bounds);
    RECT area = PageArea();
    OffsetRect(&area, bounds.left, bounds.top);
    for (const HWND page : m_pages)
        SetWindowPos(page, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    ShowPage();
}

void TabControlBinding::ShowPage()
{
    const auto shown = static_cast<std::size_t>(m_control.Tab());
    if (static_cast<int>(Send(TCM_GETCURSEL)) != m_control.Tab())
        Send(TCM_SETCURSEL, shown);
    if (shown < m_pages.size())
        ShowWindow(m_pages[shown], SW_SHOWNA);
    for (std::size_t i = 0; i < m_pages.size(); ++i)
        if (i != shown)
            ShowWindow(m_pages[i], SW_HIDE);
}

Site TabControlBinding::SiteFor(int page) const
{
    const RECT area = PageArea();
    return {m_pages.at(static_cast<std::size_t>(page)), {area.left, area.top}};
}

LRESULT TabControlBinding::OnNotify(NMHDR &header)
{
    if (header.code == TCN_SELCHANGE)
    {
        m_control.ClickTab(static_cast<int>(Send(TCM_GETCURSEL)));
        // If the click was refused, the previous tab is selected again.
        if (Window())
            ShowPage();
    }
    return 0;
}

bool TabControlBinding::OnAccessKey(wchar_t letter)
{
    const std::vector<std::string> &captions = m_control.TabCaptions();
    for (std::size_t i = 0; i < captions.size(); ++i)
    {
        if (AccessKey(captions[i]) != letter || !m_control.Reachable())
            continue;
        TurnTo(static_cast<int>(i));
        return true;
    }
    return false;
}

bool TabControlBinding::OnTurnPage(bool forward)
{
    const int count = static_cast<int>(m_control.TabCaptions().size());
    if (count == 0 || !m_control.Reachable())
        return false;
    TurnTo((m_control.Tab() + (forward ? 1 : count - 1)) % count);
    return true;
}

// As by a click on the tab, which also gets the keyboard focus.
void TabControlBinding::TurnTo(int tab)
{
    if (!Context().leave())
        return;
    Context().giveFocus(Window());
    m_control.ClickTab(tab);
}

void TabControlBinding::OnChanged(Property property, int position)
{
    if (property == Property::Value)
        ShowPage();
    else
        Binding::OnChanged(property, position);
}

} // namespace window
