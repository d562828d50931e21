// Names that are not taken yet, for records that are added.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace editor
{

// The name under which a copy of an entry is proposed: "Copy of " before the text, unless it begins with "Copy of"
// already (case counts, blanks before it do not).
std::string CopyName(std::string_view text);

// The form in which names are compared: without blanks at both ends, in upper case.
std::string ComparedName(std::string_view name);

// The proposed name if no name of `names` is the same in the compared form, else one with a number in brackets. The
// names are passed over in their order; at each that is the same as the name reached so far, the number replaces
// everything from the first "(" on, or is appended, and rises by one; passes are repeated until one finds nothing.
std::string UniqueName(std::string proposed, const std::vector<std::string_view> &names);

} // namespace editor
