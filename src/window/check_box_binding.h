// A check box's native window.
#pragma once

#include "editor/controls/check_box.h"
#include "window/binding.h"

namespace window
{

class CheckBoxBinding final : public BindingOf<editor::controls::CheckBox>
{
public:
    using BindingOf::BindingOf;

    void OnCommand(int code) override;
    bool OnAccessKey(wchar_t letter) override { return ClickByAccessKey(letter); }

protected:
    Make Describe() const override;
    void Fill() override;
    void OnChanged(editor::controls::Property property, int position) override;
};

} // namespace window
