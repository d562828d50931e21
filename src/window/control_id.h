// The identifiers of the native controls, by which tools that automate windows find them.
#pragma once

#include "editor/layout.h"

namespace window
{

// Beyond those that dialogs give a meaning to (IDOK and so on).
constexpr int kFirstControlId = 1000;

// The places in the layout table, from kFirstControlId.
inline int ControlId(const editor::LayoutEntry &entry)
{
    return kFirstControlId + static_cast<int>(&entry - editor::Layout().data());
}

// The name of the control with an identifier; empty for any other.
inline std::string_view ControlName(int id)
{
    const int index = id - kFirstControlId;
    return index >= 0 && index < static_cast<int>(editor::Layout().size())
               ? editor::Layout()[static_cast<std::size_t>(index)].name
               : std::string_view();
}

} // namespace window
