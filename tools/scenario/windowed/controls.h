// The controls of the editor's window, found by their names and read off.
#pragma once

#include "play/control_state.h"

#include <windows.h>

#include <map>
#include <string>

namespace scenario
{

class Controls
{
public:
    // Of an open window. A form that is null has none.
    explicit Controls(HWND form);

    HWND Form() const { return m_form; }

    // Refusal for an unknown name.
    HWND Find(const std::string &name) const;
    // The same, for one of a kind that a user can act on now; also a Refusal where it is hidden or disabled.
    HWND Reachable(const std::string &name, const wchar_t *className, const char *kind) const;

    ControlState Read(const std::string &name) const;

private:
    static BOOL CALLBACK Visit(HWND control, LPARAM self);

    HWND m_form;
    std::map<std::string, HWND> m_windows;
};

} // namespace scenario
