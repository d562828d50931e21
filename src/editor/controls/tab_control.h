// A tab control: pages of which one is shown.
#pragma once

#include "editor/controls/control.h"

#include <functional>
#include <string>
#include <vector>

namespace editor::controls
{

class TabControl : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::TabControl; }

    // Gets the page shown before.
    std::function<void(int previous)> OnClick;

    // Captions of the pages; "&" marks the access key.
    const std::vector<std::string> &TabCaptions() const { return m_captions; }
    void SetTabCaptions(std::vector<std::string> captions) { m_captions = std::move(captions); }

    // The page shown, from 0. Setting it raises the click when the value changes; error 380 for no such page.
    int Tab() const { return m_tab; }
    void SetTab(int tab);

    // A user clicks a tab; on the one shown already nothing happens. False: disabled, hidden, or no such tab.
    bool ClickTab(int tab);

private:
    void Change(int tab);
    std::vector<std::string> m_captions;
    int m_tab = 0;
};

} // namespace editor::controls
