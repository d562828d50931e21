// A value of a database column or of a host's argument, before it is converted to what a record holds.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace runtime
{

struct Null
{
    friend bool operator==(Null, Null) = default;
};

// Null, a Boolean, a whole number, a number, or a text. Dates are texts, in the server's own rendering.
using Value = std::variant<Null, bool, std::int64_t, double, std::string>;

inline bool IsNull(const Value &value)
{
    return std::holds_alternative<Null>(value);
}

} // namespace runtime
