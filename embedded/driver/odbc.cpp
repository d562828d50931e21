// What goes between the driver and a client: see odbc.h.
#include "odbc.h"

#include "runtime/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace driver
{

using tsql::Type;

namespace
{

// Of a fixed length; the client's buffer need not be aligned.
template <class Value>
void Put(const Target &target, const Value &value)
{
    const size_t octets = target.type->octets;
    if (target.buffer != nullptr) // most are of eight, which need no call
        octets == 8 ? std::memcpy(target.buffer, &value, 8) : std::memcpy(target.buffer, &value, octets);
    Give(target.length, octets);
}

// Hands out what fits of `whole` behind the `given` units, and a terminator. True when nothing is left.
template <class Unit>
bool PutText(std::basic_string_view<Unit> whole, const Target &target, Handle &notes, size_t &given)
{
    const std::basic_string_view<Unit> rest = whole.substr(given);
    Give(target.length, rest.size() * sizeof(Unit));
    const size_t room = target.buffer != nullptr && target.capacity > 0 ? target.capacity / sizeof(Unit) : 0;
    const size_t count = std::min(rest.size(), std::max<size_t>(room, 1) - 1);
    if (room > 0)
        std::memset(mempcpy(target.buffer, rest.data(), count * sizeof(Unit)), 0, sizeof(Unit));
    given += count;
    if (count < rest.size() && target.buffer != nullptr)
        notes.Warn("01004", "String data, right truncation");
    return count == rest.size();
}

} // namespace

std::string ToUtf8(const SQLWCHAR *text, SQLLEN length)
{
    const auto *const units = reinterpret_cast<const char16_t *>(text);
    if (units == nullptr)
        return {};
    return runtime::FromUtf16(length == SQL_NTS ? units : std::u16string_view(units, static_cast<size_t>(length)));
}

SQLLEN CopyOut(Handle &notes, std::string_view text, SQLPOINTER out, SQLLEN capacity)
{
    const std::u16string wide = runtime::ToUtf16(text);
    size_t given = 0;
    PutText<char16_t>(wide, {nullptr, static_cast<char *>(out), 2 * capacity}, notes, given);
    return static_cast<SQLLEN>(wide.size());
}

const CType &FindCType(SQLSMALLINT code)
{
    static constexpr CType types[] = {
        {SQL_C_SBIGINT, 8, INT64_MIN, INT64_MAX},
        {SQL_C_WCHAR, 0},
        {SQL_C_CHAR, 0},
        {SQL_C_LONG, 4, INT32_MIN, INT32_MAX},
        {SQL_C_SLONG, 4, INT32_MIN, INT32_MAX},
        {SQL_C_ULONG, 4, 0, UINT32_MAX},
        {SQL_C_BIT, 1, 0, 1},
        {SQL_C_DOUBLE, sizeof(double)},
        {SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT)},
    };
    const CType *const type = std::ranges::find(types, code, &CType::code);
    Require(type != std::end(types), "HY003", "Program type out of range");
    return *type;
}

ColumnInfo InfoOf(const tsql::Column &column)
{
    const int size = column.size;
    const ColumnInfo infos[] = {
        // in the order of tsql::Type
        {SQL_BIT, 1, 1, true},
        {SQL_TINYINT, 3, 3, true},
        {SQL_SMALLINT, 5, 6, false},
        {SQL_INTEGER, 10, 11, false},
        {SQL_BIGINT, 19, 20, false},
        {SQL_FLOAT, 53, 24, false},
        {SQL_CHAR, size, size, true},
        {SQL_VARCHAR, size, size, true},
        {SQL_WCHAR, size, size, true},
        {SQL_WVARCHAR, size, size, true},
        {SQL_TYPE_TIMESTAMP, 23, 23, true},
    };
    return infos[static_cast<int>(column.type)];
}

bool Store(const tsql::Result &row, int column, Type type, const Target &target, Handle &notes, size_t &given)
{
    const CType &as = *target.type;
    const bool isInteger = type <= Type::BigInt;
    const std::int64_t integer = isInteger ? row.Integer(column) : 0; // 0 for NULL, and asking once is faster
    if (integer == 0 && row.IsNull(column))
    {
        Require(target.length != nullptr, "22002", "Indicator variable required but not supplied");
        *target.length = SQL_NULL_DATA;
        return true;
    }
    if (isInteger && as.most > 0)
    {
        Require(integer >= as.least && integer <= as.most, "22003", "Numeric value out of range");
        Put(target, integer); // the low octets stand first on every machine that this driver runs on
    }
    else if (as.code == SQL_C_CHAR)
        return PutText(row.Text(column), target, notes, given);
    else if (as.code == SQL_C_WCHAR)
        return PutText<char16_t>(runtime::ToUtf16(row.Text(column)), target, notes, given);
    else if (as.code == SQL_C_DOUBLE && (isInteger || type == Type::Float))
        Put(target, isInteger ? static_cast<double>(integer) : row.Number(column));
    else if (as.code == SQL_C_TYPE_TIMESTAMP && type == Type::DateTime)
    {
        SQL_TIMESTAMP_STRUCT at{};
        unsigned milliseconds = 0;
        std::sscanf(row.Text(column).data(), "%hd-%hu-%hu %hu:%hu:%hu.%u", // SQLite ends its texts with a NUL
                    &at.year, &at.month, &at.day, &at.hour, &at.minute, &at.second, &milliseconds);
        at.fraction = milliseconds * 1'000'000;
        Put(target, at);
    }
    else
        throw SqlError(0, "07006", "Restricted data type attribute violation");
    return true;
}

} // namespace driver
