// A check box's native window.
#include "window/check_box_binding.h"

#include "window/access_key.h"

namespace window
{

Binding::Make CheckBoxBinding::Describe() const
{
    return {L"BUTTON", BS_CHECKBOX};
}

void CheckBoxBinding::Fill()
{
    Send(BM_SETCHECK, m_box.Value() != 0 ? BST_CHECKED : BST_UNCHECKED);
}

void CheckBoxBinding::OnCommand(int code)
{
    if (code == BN_CLICKED)
        m_box.Toggle();
}

bool CheckBoxBinding::OnAccessKey(wchar_t letter)
{
    if (AccessKey(m_box.Caption()) != letter || !m_box.Reachable())
        return false;
    if (Around().leave())
    {
        Around().giveFocus(Window());
        Send(BM_CLICK);
    }
    return true;
}

void CheckBoxBinding::OnChanged(editor::controls::Property aspect, int position)
{
    if (aspect == editor::controls::Property::Value)
        Fill();
    else
        Binding::OnChanged(aspect, position);
}

} // namespace window
