// The tool tips of a form.
#include "window/tool_tips.h"

#include "platform/windows/module.h"
#include "platform/windows/wide.h"

#include <commctrl.h>

#include <utility>

namespace window
{

// The form does not own it: a form that owns a topmost window cannot be made topmost itself, and a tool tip must lie
// over a form that is.
void ToolTips::Create(HWND form)
{
    m_form = form;
    m_window =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, platform::ThisModule(), nullptr);
}

void ToolTips::Destroy()
{
    if (const HWND window = std::exchange(m_window, nullptr))
        DestroyWindow(window);
}

void ToolTips::Add(HWND control, const std::string &text)
{
    if (!m_window || text.empty())
        return;
    std::wstring wide = platform::ToWide(text);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = m_form;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = wide.data();
    SendMessageW(m_window, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace window
