// A form as a real window.
#pragma once

#include "editor/form_view.h"
#include "window/binding.h"
#include "window/caption_icon.h"
#include "window/container.h"
#include "window/keyboard.h"
#include "window/tool_tips.h"
#include "window/window_class.h"

#include <windows.h>

#include <memory>
#include <optional>
#include <vector>

namespace window
{

class FormWindow final : public editor::FormView
{
public:
    explicit FormWindow(editor::StagedForm &form);
    ~FormWindow() override;

    void Create() override;
    void ClientSizeChanged() override;
    void Show() override;
    void RunModal() override;
    void EndModal() override;
    void Destroy() override;
    void BringToFront() override;
    platform::WindowHandle Handle() const override { return m_window; }
    host::Rectangle Bounds() const override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    void CreateFrame(HWND owner);
    void CreateControls();
    Site SiteOf(const editor::controls::Control &control) const;
    void SetIcons(HWND owner);
    void Centre();
    void Hide();
    void HostDestroyed();
    bool SessionMayEnd();
    void RefreshColours(UINT message, WPARAM wParam, LPARAM lParam);

    editor::StagedForm &m_form;
    WindowClass m_formClass;
    WindowClass m_containerClass;
    BindingContext m_context;
    Keyboard::Bindings m_bindings; // in the order of the controls
    Keyboard m_keyboard;
    ToolTips m_toolTips;
    CaptionIcon m_smallIcon;
    CaptionIcon m_largeIcon;
    HWND m_window = nullptr;
    DWORD m_thread = GetCurrentThreadId();
    bool m_ended = false;
    bool m_destroying = false;
};

} // namespace window
