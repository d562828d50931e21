// A label's native window.
#pragma once

#include "window/binding.h"

namespace window
{

// It covers only its text, so that what is below the rest of its bounds stays visible. In the order of the windows it
// stays before the control that it names, as screen readers want it.
class LabelBinding final : public Binding
{
public:
    using Binding::Binding;

protected:
    Make Describe() const override;
    void Fill() override;
    void Move(const RECT &bounds) override;
    void OnChanged(editor::controls::Property property, int position) override;

private:
    void CoverText();
};

} // namespace window
