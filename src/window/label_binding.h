// A label's native window.
#pragma once

#include "window/binding.h"

namespace window
{

// It lies only where its text is: what the rest of its place lies over is seen. In the order of the windows it stays
// before the control that it names, as screen readers want it.
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
