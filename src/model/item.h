// The positional look-up that the record collections offer to hosts.
#pragma once

#include "runtime/collection.h"
#include "runtime/convert.h"
#include "runtime/value.h"

namespace model
{

// The record at a position (from 1) given as any number or numeric text; null after any error.
template <class T>
runtime::Ref<T> ItemOrNothing(const runtime::Collection<T> &collection, const runtime::Value &vntIndexKey)
{
    try
    {
        return collection.Item(runtime::ToInteger(vntIndexKey));
    }
    catch (const runtime::Error &)
    {
        return nullptr;
    }
}

} // namespace model
