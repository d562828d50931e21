// What tools can ask the native window of a control.
#include "window/inspection.h"

#include "editor/controls/combo_box.h"
#include "editor/controls/list_view.h"
#include "platform/windows/wide.h"

namespace window
{

namespace
{

namespace controls = editor::controls;

std::string Hidden(const controls::Control &control, WPARAM what)
{
    const int position = static_cast<int>(what);
    if (what == 0)
        return control.Name();
    if (const auto *const list = dynamic_cast<const controls::ListView *>(&control))
        return list->Item(position).key;
    if (const auto *const combo = dynamic_cast<const controls::ComboBox *>(&control))
        return std::to_string(combo->ItemData(position - 1));
    return {};
}

} // namespace

UINT InspectionMessage()
{
    static const UINT message = RegisterWindowMessageW(kInspection);
    return message;
}

LRESULT Inspect(const controls::Control &control, WPARAM what)
{
    const std::wstring text = platform::ToWide(Hidden(control, what));
    return text.empty() ? 0 : GlobalAddAtomW(text.c_str());
}

} // namespace window
