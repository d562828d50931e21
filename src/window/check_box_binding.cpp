// A check box's native window.
#include "window/check_box_binding.h"

namespace window
{

Binding::Make CheckBoxBinding::Describe() const
{
    return {L"BUTTON", BS_CHECKBOX};
}

void CheckBoxBinding::Fill()
{
    Send(BM_SETCHECK, m_control.Value() != 0 ? BST_CHECKED : BST_UNCHECKED);
}

void CheckBoxBinding::OnCommand(int code)
{
    if (code == BN_CLICKED)
        m_control.Toggle();
}

void CheckBoxBinding::OnChanged(editor::controls::Property property, int position)
{
    if (property == editor::controls::Property::Value)
        Fill();
    else
        Binding::OnChanged(property, position);
}

} // namespace window
