// Makes the window's controls from its layout table.
#pragma once

#include "editor/controls/control_set.h"

namespace editor
{

// Adds the controls in the table's order, as the design has them: partition strip not visible, column headers of
// formats and headings hidden.
void MakeControls(controls::ControlSet &set);

} // namespace editor
