// A message box on the screen.
#pragma once

#include "play/stage.h"

#include <windows.h>

#include <string>

namespace scenario
{

// Read off the box: its text, its buttons, its icon, and whether it stands above everything.
ShownBox ReadBox(HWND box);

// Presses OK, Yes or No.
void AnswerBox(HWND box, const std::string &answer);

} // namespace scenario
