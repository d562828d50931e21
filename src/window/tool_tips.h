// The tool tips of a form.
#pragma once

#include <windows.h>

#include <string>

namespace window
{

class ToolTips
{
public:
    ToolTips() = default;
    ~ToolTips() { Destroy(); }
    ToolTips(const ToolTips &) = delete;
    ToolTips &operator=(const ToolTips &) = delete;

    // Makes the tool tip window for a form.
    void Create(HWND form);
    void Destroy();

    // Shows a text while the mouse rests on a control.
    void Add(HWND control, const std::string &text);

private:
    HWND m_form = nullptr;
    HWND m_window = nullptr;
};

} // namespace window
