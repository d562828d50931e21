// The tool tips of a form.
#pragma once

#include <windows.h>

#include <string>

namespace window
{

class ToolTips
{
public:
    // Makes the tool tip window that belongs to the form.
    void Create(HWND form);

    // Shows a text while the mouse rests on a control.
    void Add(HWND control, const std::string &text);

private:
    HWND m_form = nullptr;
    HWND m_window = nullptr;
};

} // namespace window
