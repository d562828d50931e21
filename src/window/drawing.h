// Drawing the pictures of the command buttons, at any size.
#pragma once

#include "editor/layout.h"

#include <cstdint>
#include <vector>

namespace window
{

// The pixels of a square picture, row by row from the top: alpha, red, green, blue from the highest byte. Colours are
// not multiplied by alpha. `size` is the edge in pixels.
std::vector<std::uint32_t> DrawPicture(editor::Picture picture, int size);

// The picture of a button that cannot be pressed.
std::vector<std::uint32_t> Greyed(std::vector<std::uint32_t> pixels);

} // namespace window
