// A user with a real keyboard and a real mouse: keys and clicks come from outside, through the display (xdotool, on the
// Unix side of Wine).
#pragma once

#include "window_driver/driver.h"

namespace window_driver
{

// Each act returns when the keys and the button are up again; what that brings about is to be waited for. Failures are
// a std::runtime_error.
class RealInput final : public Driver
{
public:
    // `folder` is one for files of its own, by its Unix name.
    RealInput(HWND form, std::string folder);

    // Clicks beside everything: from now on the display gives the keys to this window.
    void TakeKeyboard() const;
    // Keys by their names, one after the other: "Tab", "shift+Tab", "alt+f Down Down".
    void Press(const std::string &keys) const;
    void Type(const std::string &text) const;
    void ClickAt(HWND window, POINT place) const override;
    void ClickButtonOf(HWND box, const wchar_t *caption) const;

private:
    void Act(const std::string &words) const;

    std::string m_folder;
    mutable int m_acts = 0;
};

} // namespace window_driver
