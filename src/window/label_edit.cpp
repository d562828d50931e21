// The native edit field of a list in which a label is edited in place.
#include "window/label_edit.h"

#include "platform/windows/wide.h"
#include "runtime/scoped_flag.h"
#include "window/guard.h"

#include <commctrl.h>

#include <utility>

namespace window
{

using editor::controls::EditEnd;

namespace
{

std::string TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return platform::FromWide({text.data(), static_cast<std::size_t>(length)});
}

} // namespace

HWND LabelEdit::Field(HWND list)
{
    return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETEDITCONTROL, 0, 0));
}

void LabelEdit::Open(HWND list, int row)
{
    m_opening = row;
    SendMessageW(list, LVM_EDITLABELW, static_cast<WPARAM>(row), 0);
    m_opening = -1;
}

void LabelEdit::Close(HWND list)
{
    const runtime::ScopedFlag closing(m_closing);
    const HWND field = Field(list);
    if (field && GetFocus() == field)
        SetFocus(list);
    if (Field(list))
        SendMessageW(list, LVM_CANCELEDITLABEL, 0, 0);
}

bool LabelEdit::Begins(HWND list, int row)
{
    if (m_opening != row)
    {
        if (row + 1 != m_list.SelectedPosition())
            return false;
        m_beginning = row;
        const bool begun = m_list.BeginLabelEdit();
        m_beginning = -1;
        if (!begun)
            return false;
    }
    // Nothing here may fail: the edit has begun.
    m_typed.reset();
    Watch(Field(list));
    return true;
}

void LabelEdit::Watch(HWND field)
{
    if (!field)
        return;
    m_field = field;
    SetWindowSubclass(field, &Procedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

void LabelEdit::Ended(HWND list)
{
    if (!m_closing)
        PostMessageW(list, kLeft, 0, 0);
    if (m_field)
        m_typed = TextOf(m_field);
}

void LabelEdit::Leave()
{
    // Unless it has been reopened since.
    if (!m_field && m_list.Editing())
        m_list.EndLabelEdit(m_typed ? *m_typed : m_list.SelectedItem().text, EditEnd::Leave);
}

std::optional<std::string> LabelEdit::Typed() const
{
    if (!m_list.Editing())
        return std::nullopt;
    return m_field ? std::optional(TextOf(m_field)) : m_typed;
}

LRESULT CALLBACK LabelEdit::Procedure(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
{
    const std::optional<LRESULT> result = Guarded(
        std::optional<LRESULT>(), [&] { return reinterpret_cast<LabelEdit *>(self)->OnMessage(message, wParam); });
    // Not later: the native list restores the field's original procedure now, and no message would arrive here any
    // more.
    if (message == WM_DESTROY)
        RemoveWindowSubclass(field, &Procedure, 0);
    return result ? *result : DefSubclassProc(field, message, wParam, lParam);
}

std::optional<LRESULT> LabelEdit::OnMessage(UINT message, WPARAM wParam)
{
    switch (message)
    {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | DLGC_HASSETSEL;
    case WM_KEYDOWN:
        if (wParam == VK_RETURN)
        {
            m_list.EndLabelEdit(TextOf(m_field), EditEnd::Enter);
            return 0;
        }
        if (wParam == VK_ESCAPE)
        {
            m_list.EndLabelEdit({}, EditEnd::Escape);
            return 0;
        }
        return std::nullopt;
    case WM_DESTROY:
        m_typed = TextOf(std::exchange(m_field, nullptr));
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace window
