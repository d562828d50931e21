// A command button's native window, with its picture.
#pragma once

#include "editor/controls/button.h"
#include "window/binding.h"
#include "window/pictures.h"

namespace window
{

class ButtonBinding final : public Binding
{
public:
    ButtonBinding(editor::controls::Button &button, const BindingContext &surroundings)
        : Binding(button, surroundings), m_button(button)
    {
    }

    void OnCommand(int code) override;
    void OnEnter() override;
    bool OnAccessKey(wchar_t letter) override;

protected:
    Make Describe() const override;
    void Fill() override;

private:
    editor::controls::Button &m_button;
    PictureList m_pictures;
};

} // namespace window
