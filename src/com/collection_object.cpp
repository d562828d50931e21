// How a collection reads a host's arguments.
#include "com/collection_object.h"

#include "runtime/convert.h"

namespace com
{

Place ToPlace(const VARIANT &argument)
{
    const runtime::Value value = ToValue(argument);
    if (const std::string *key = std::get_if<std::string>(&value))
        return *key;
    return std::int64_t{runtime::ToLong(value)};
}

std::string ToKey(const VARIANT &argument)
{
    if (IsMissing(argument))
        return {};
    const runtime::Value value = ToValue(argument);
    if (const std::string *key = std::get_if<std::string>(&value))
        return *key;
    runtime::Raise(runtime::kTypeMismatch);
}

ComPtr<IUnknown> ToObject(const VARIANT &argument)
{
    Variant value(argument);
    if (value->vt != VT_DISPATCH && value->vt != VT_UNKNOWN)
        runtime::Raise(runtime::kTypeMismatch);
    return value->punkVal;
}

} // namespace com
