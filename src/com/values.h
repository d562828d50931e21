// Values on their way between a host and the records.
#pragma once

#include "com/kvheaders.h"
#include "runtime/value.h"

#include <concepts>
#include <cstdint>
#include <string>

namespace com
{

// FromHost<type of the record's value>(argument). A null BSTR is the empty text.
template <std::same_as<bool> To>
bool FromHost(VARIANT_BOOL value)
{
    return value != VARIANT_FALSE;
}
template <std::same_as<std::int16_t> To>
std::int16_t FromHost(SHORT value)
{
    return value;
}
template <std::same_as<std::int32_t> To>
std::int32_t FromHost(LONG value)
{
    return value;
}
template <std::same_as<std::string> To>
std::string FromHost(BSTR value);

// The same the other way. A BSTR belongs to the caller.
inline VARIANT_BOOL ToHost(bool value)
{
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline SHORT ToHost(std::int16_t value)
{
    return value;
}
inline LONG ToHost(std::int32_t value)
{
    return value;
}
BSTR ToHost(const std::string &value);

// A variant by value: empty is 0; what has neither a number nor a text (an object, an array, a missing argument) is the
// error 13.
runtime::Value ToValue(const VARIANT &value);

// A variant that frees what it holds.
class Variant
{
public:
    Variant() { VariantInit(&m_value); }
    // A copy of an argument, or of what the argument refers to. Raises a Failure, also for a null pointer inside.
    explicit Variant(const VARIANT &argument);
    ~Variant() { VariantClear(&m_value); }
    Variant(const Variant &) = delete;
    Variant &operator=(const Variant &) = delete;

    VARIANT *operator&() { return &m_value; }
    VARIANT *operator->() { return &m_value; }
    VARIANT &operator*() { return m_value; }

private:
    VARIANT m_value;
};

// True for an optional argument that was left out.
inline bool IsMissing(const VARIANT &value)
{
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

} // namespace com
