// What tools can ask the native window of a control, since it cannot be read off: the control's name, the keys of a
// list's items, the item data of a combo box.
#pragma once

#include "editor/controls/control.h"

#include <windows.h>

namespace window
{

// The name of the registered message. wParam is 0 for the control's name and otherwise the position from 1, as
// displayed, of an item or entry. The answer is a global atom of the text, to be deleted by whoever asks; 0 where there
// is none.
constexpr wchar_t kInspection[] = L"KVHEADERS.Inspection";

// The registered message.
UINT InspectionMessage();

LRESULT Inspect(const editor::controls::Control &control, WPARAM what);

} // namespace window
