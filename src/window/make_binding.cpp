// One binding class for each kind of control.
#include "window/make_binding.h"

#include "window/button_binding.h"
#include "window/check_box_binding.h"
#include "window/combo_box_binding.h"
#include "window/container.h"
#include "window/label_binding.h"
#include "window/list_view_binding.h"
#include "window/tab_control_binding.h"

namespace window
{

using namespace editor::controls;

std::unique_ptr<Binding> MakeBinding(Control &control, const BindingContext &context)
{
    switch (control.GetKind())
    {
    case Kind::ComboBox:
        return std::make_unique<ComboBoxBinding>(dynamic_cast<ComboBox &>(control), context);
    case Kind::TabControl:
        return std::make_unique<TabControlBinding>(dynamic_cast<TabControl &>(control), context);
    case Kind::Button:
        return std::make_unique<ButtonBinding>(dynamic_cast<Button &>(control), context);
    case Kind::CheckBox:
        return std::make_unique<CheckBoxBinding>(dynamic_cast<CheckBox &>(control), context);
    case Kind::ListView:
        return std::make_unique<ListViewBinding>(dynamic_cast<ListView &>(control), context);
    case Kind::Frame:
    case Kind::Panel:
        return std::make_unique<ContainerBinding>(control, context);
    case Kind::Label:
        break;
    }
    return std::make_unique<LabelBinding>(control, context);
}

} // namespace window
