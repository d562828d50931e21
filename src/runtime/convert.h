// Conversions to the 16- and 32-bit integers, texts and Booleans that records hold. Out of range is the error 6, not a
// number is 13, Null is 94; halves are rounded to even.
#pragma once

#include "runtime/value.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace runtime
{

std::int16_t ToInteger(std::int32_t value);
std::int16_t ToInteger(std::int64_t value);
std::int16_t ToInteger(double value);
// A number in decimal or exponential notation, with blanks around it.
std::int16_t ToInteger(std::string_view text);
std::int16_t ToInteger(const Value &value);

std::int32_t ToLong(std::int64_t value);
std::int32_t ToLong(double value);
std::int32_t ToLong(std::string_view text);
std::int32_t ToLong(const Value &value);

// Decimal, no padding. Null is an error.
std::string ToText(const Value &value);
// As ToText, with the empty text for Null.
std::string ToTextOrEmpty(const Value &value);

// "True" or "False".
std::string ToText(bool value);

// True exactly when the value is a number that equals 1; false for every other value and for Null. A Boolean true
// counts as 1, since a bit column gives one.
bool IsOne(const Value &value);

// Nearest whole number, halves to even.
double RoundHalfToEven(double value);

} // namespace runtime
