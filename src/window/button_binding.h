// A command button's native window, with its picture.
#pragma once

#include "editor/controls/button.h"
#include "window/binding.h"
#include "window/pictures.h"

namespace window
{

class ButtonBinding final : public BindingOf<editor::controls::Button>
{
public:
    using BindingOf::BindingOf;

    void OnCommand(int code) override;
    void OnEnter() override;
    bool OnAccessKey(wchar_t letter) override { return ClickByAccessKey(letter); }

protected:
    Make Describe() const override;
    void Fill() override;

private:
    PictureList m_pictures;
};

} // namespace window
