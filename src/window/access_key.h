// Access keys in captions.
#pragma once

#include <string_view>

namespace window
{

// The letter after the "&" of a caption, in upper case; 0 without one. "&&" is an ampersand.
char32_t AccessKey(std::string_view caption);

} // namespace window
