// A command button's native window, with its picture.
#include "window/button_binding.h"

namespace window
{

Binding::Make ButtonBinding::Describe() const
{
    return {L"BUTTON", BS_PUSHBUTTON};
}

void ButtonBinding::Fill()
{
    if (Entry().picture == editor::Picture::None)
        return;
    m_pictures = MakePictureList(Entry().picture, Context().scale.Pixels(kPictureSize));
    BUTTON_IMAGELIST list{};
    list.himl = m_pictures.get();
    list.uAlign = BUTTON_IMAGELIST_ALIGN_LEFT;
    Send(BCM_SETIMAGELIST, 0, &list);
}

void ButtonBinding::OnCommand(int code)
{
    if (code == BN_CLICKED)
        m_control.Click();
}

void ButtonBinding::OnEnter()
{
    Send(BM_CLICK);
}

} // namespace window
