// A label's native window.
#include "window/label_binding.h"

#include "platform/windows/wide.h"

namespace window
{

Binding::Make LabelBinding::Describe() const
{
    return {L"STATIC", SS_LEFT};
}

void LabelBinding::Fill()
{
    CoverText();
}

void LabelBinding::Move(const RECT &bounds)
{
    Binding::Move(bounds);
    CoverText();
}

void LabelBinding::OnChanged(editor::controls::Property property, int position)
{
    Binding::OnChanged(property, position);
    if (property == editor::controls::Property::Caption)
        CoverText();
}

void LabelBinding::CoverText()
{
    RECT text;
    GetClientRect(Window(), &text);
    const HDC context = GetDC(Window());
    const HGDIOBJ before = SelectObject(context, Context().fonts.Get(Entry().bold));
    DrawTextW(context, platform::ToWide(Owner().Caption()).c_str(), -1, &text, DT_LEFT | DT_WORDBREAK | DT_CALCRECT);
    SelectObject(context, before);
    ReleaseDC(Window(), context);
    if (Owner().Caption().empty())
        SetRectEmpty(&text);
    SetWindowRgn(Window(), CreateRectRgnIndirect(&text), TRUE);
}

} // namespace window
