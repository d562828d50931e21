// Access to the loaded records, of which a host may have taken some away.
#pragma once

#include "runtime/error.h"
#include "runtime/ref.h"

namespace store
{

// The object of a reference. Error 91 when there is none.
template <class T>
T &Loaded(const runtime::Ref<T> &reference)
{
    if (!reference)
        runtime::Raise(runtime::kObjectNotSet);
    return *reference;
}

} // namespace store
