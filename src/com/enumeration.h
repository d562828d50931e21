// For Each over a collection.
#pragma once

#include "com/kvheaders.h"

#include <cstddef>
#include <functional>

namespace com
{

// Gives the element at an offset from 0, with a reference for the caller; null after the last one.
using ElementAt = std::function<IDispatch *(std::size_t)>;

// An enumeration, with a reference for the caller. It reads the collection as it is at each step: what is appended
// meanwhile is visited too.
IEnumVARIANT *NewEnumeration(ElementAt elementAt, std::size_t offset = 0);

} // namespace com
