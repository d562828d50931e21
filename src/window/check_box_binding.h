// A check box's native window.
#pragma once

#include "editor/controls/check_box.h"
#include "window/binding.h"

namespace window
{

class CheckBoxBinding final : public Binding
{
public:
    CheckBoxBinding(editor::controls::CheckBox &box, const BindingContext &surroundings)
        : Binding(box, surroundings), m_box(box)
    {
    }

    void OnCommand(int code) override;
    bool OnAccessKey(wchar_t letter) override;

protected:
    Make Describe() const override;
    void Fill() override;
    void OnChanged(editor::controls::Property aspect, int position) override;

private:
    editor::controls::CheckBox &m_box;
};

} // namespace window
