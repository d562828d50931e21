// A drop-down list's native window.
#pragma once

#include "editor/controls/combo_box.h"
#include "window/binding.h"

namespace window
{

class ComboBoxBinding final : public BindingOf<editor::controls::ComboBox>
{
public:
    using BindingOf::BindingOf;

    void OnCommand(int code) override;
    bool WantsKey(WPARAM key) const override;

protected:
    Make Describe() const override;
    void Fill() override;
    std::wstring AccessibleName() const override { return LabelText(); }
    void Move(const RECT &bounds) override;
    void OnChanged(editor::controls::Property property, int position) override;
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool Dropped() const { return Send(CB_GETDROPPEDSTATE) != 0; }
    int NativeIndex() const { return static_cast<int>(Send(CB_GETCURSEL)); }
    void ShowIndex();
    // As wide as the widest entry: nothing is cut off in the open list.
    void WidenList();
    void Choose();

    bool m_dropped = false;  // between drop-down and closing
    bool m_accepted = false; // the user has taken an entry of the open list
};

} // namespace window
