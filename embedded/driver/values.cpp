// Columns and their values for a client: see values.h.
#include "values.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace driver
{
namespace
{

using tsql::Type;

bool IsText(Type type)
{
    return type >= Type::Char && type <= Type::NVarChar;
}

struct TypeInfo
{
    SQLSMALLINT code;
    int size;    // and the next: 0 where they depend on the column
    int display; // characters to show a value
};

const TypeInfo &InfoOf(Type type)
{
    static constexpr TypeInfo infos[] = {
        // in the order of tsql::Type
        {SQL_BIT, 1, 1},      {SQL_TINYINT, 3, 3}, {SQL_SMALLINT, 5, 6}, {SQL_INTEGER, 10, 11},
        {SQL_BIGINT, 19, 20}, {SQL_DECIMAL, 0, 0}, {SQL_FLOAT, 53, 24},  {SQL_CHAR, 0, 0},
        {SQL_VARCHAR, 0, 0},  {SQL_WCHAR, 0, 0},   {SQL_WVARCHAR, 0, 0}, {SQL_TYPE_TIMESTAMP, 23, 23},
    };
    return infos[static_cast<int>(type)];
}

// How a value lies in a client's buffer.
struct CType
{
    SQLSMALLINT code;
    enum Kind
    {
        Narrow, // UTF-8
        Wide,   // UTF-16
        Signed,
        Unsigned,
        Real,
        Moment
    } kind;
    int bits; // 0 for texts, 1 for a bit, which takes an octet

    size_t Octets() const { return static_cast<size_t>((bits + 7) / 8); }
};

const CType &FindC(SQLSMALLINT code)
{
    static constexpr CType types[] = {
        {SQL_C_SBIGINT, CType::Signed, 64},
        {SQL_C_WCHAR, CType::Wide, 0},
        {SQL_C_CHAR, CType::Narrow, 0},
        {SQL_C_LONG, CType::Signed, 32},
        {SQL_C_SLONG, CType::Signed, 32},
        {SQL_C_ULONG, CType::Unsigned, 32},
        {SQL_C_BIT, CType::Unsigned, 1},
        {SQL_C_STINYINT, CType::Signed, 8},
        {SQL_C_UTINYINT, CType::Unsigned, 8},
        {SQL_C_SHORT, CType::Signed, 16},
        {SQL_C_SSHORT, CType::Signed, 16},
        {SQL_C_USHORT, CType::Unsigned, 16},
        {SQL_C_UBIGINT, CType::Unsigned, 64},
        {SQL_C_DOUBLE, CType::Real, 64},
        {SQL_C_TYPE_TIMESTAMP, CType::Moment, 8 * sizeof(SQL_TIMESTAMP_STRUCT)},
    };
    for (const CType &type : types)
        if (type.code == code)
            return type;
    throw DriverError("HY003", "Program type out of range");
}

// Of a fixed length; the client's buffer need not be aligned.
void Put(const Target &target, const void *value, size_t octets)
{
    if (target.buffer != nullptr)
        std::memcpy(target.buffer, value, octets);
    if (target.length != nullptr)
        *target.length = static_cast<SQLLEN>(octets);
}

// Signed or not: the low octets stand first on every machine that this driver runs on.
void PutInteger(std::int64_t whole, const CType &type, const Target &target)
{
    const bool isSigned = type.kind == CType::Signed;
    const int magnitude = std::min(type.bits - (isSigned ? 1 : 0), 63);
    const auto most = static_cast<std::int64_t>((std::uint64_t{1} << magnitude) - 1);
    if (whole > most || whole < (isSigned ? -most - 1 : 0))
        throw DriverError("22003", "Numeric value out of range");
    Put(target, &whole, type.Octets());
}

void PutMoment(const tsql::DateTime &m, const Target &target)
{
    const auto part = [](int number) { return static_cast<SQLUSMALLINT>(number); };
    const SQL_TIMESTAMP_STRUCT moment{
        static_cast<SQLSMALLINT>(m.year),      part(m.month), part(m.day), part(m.hour), part(m.minute), part(m.second),
        static_cast<SQLUINTEGER>(m.nanosecond)};
    Put(target, &moment, sizeof moment);
}

// Hands out `whole` from where the last piece ended, with a terminator behind it, never half a unit.
template <class Unit>
void PutText(std::basic_string_view<Unit> whole, const Target &target, Handle &notes, Progress &progress)
{
    const std::basic_string_view<Unit> rest = whole.substr(progress.given);
    if (target.length != nullptr)
        *target.length = static_cast<SQLLEN>(rest.size() * sizeof(Unit));
    const size_t room = target.buffer != nullptr && target.capacity > 0 ? target.capacity / sizeof(Unit) : 0;
    const size_t count = room > 0 ? std::min(rest.size(), room - 1) : 0;
    if (room > 0)
    {
        std::memcpy(target.buffer, rest.data(), count * sizeof(Unit));
        std::memset(static_cast<char *>(target.buffer) + count * sizeof(Unit), 0, sizeof(Unit));
    }
    progress.given += count;
    progress.finished = room > 0 && count == rest.size();
    if (!progress.finished)
        notes.Warn("01004", "String data, right truncation");
}

// Dates with the milliseconds that the server's driver shows.
std::string MomentText(const tsql::DateTime &m)
{
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", m.year, m.month, m.day, m.hour, m.minute,
                  m.second, m.nanosecond / 1000000);
    return text;
}

} // namespace

ColumnInfo::ColumnInfo(const tsql::Column &column, int claimedTextSize)
{
    const TypeInfo &info = InfoOf(column.type);
    const bool isDecimal = column.type == Type::Decimal;
    type = info.code;
    digits = static_cast<SQLSMALLINT>(column.type == Type::DateTime ? 3 : isDecimal ? column.scale : 0);
    size = info.size != 0 ? info.size : column.size;
    if (IsText(column.type) && claimedTextSize >= 0)
        size = claimedTextSize;
    display = info.display != 0 ? info.display : size + (isDecimal ? 2 : 0); // its sign and its point
    isUnsigned = column.type <= Type::TinyInt || column.type > Type::Float;
}

size_t Target::Stride() const
{
    const CType &type = FindC(cType);
    return type.bits != 0 ? type.Octets() : static_cast<size_t>(capacity);
}

void StoreText(const std::u16string &text, const Target &target, Handle &notes, Progress &progress)
{
    PutText(std::u16string_view(text), target, notes, progress);
}

void Store(const tsql::Result &row, int column, Type type, const Target &target, Handle &notes, Progress &progress)
{
    const CType &as = FindC(target.cType);
    const bool isInteger = type <= Type::BigInt;
    const std::int64_t integer = isInteger ? row.Integer(column) : 0; // 0 for NULL, and asking once is faster
    if (integer == 0 && row.IsNull(column))
    {
        if (target.length == nullptr)
            throw DriverError("22002", "Indicator variable required but not supplied");
        *target.length = SQL_NULL_DATA;
        progress.finished = true;
        return;
    }
    const bool isNumber = isInteger || type == Type::Decimal || type == Type::Float;
    const bool isMoment = type == Type::DateTime;
    progress.finished = true;
    if (as.bits == 0)
    {
        const std::string moment = isMoment ? MomentText(row.Moment(column)) : "";
        const std::string_view text = isMoment ? moment : row.Text(column);
        if (as.kind == CType::Narrow)
            return PutText(text, target, notes, progress);
        if (progress.given == 0)
            progress.wide = runtime::ToUtf16(text);
        return PutText(std::u16string_view(progress.wide), target, notes, progress);
    }
    if (isInteger && (as.kind == CType::Signed || as.kind == CType::Unsigned))
        return PutInteger(integer, as, target);
    if (isNumber && as.kind == CType::Real)
    {
        const double number = isInteger ? static_cast<double>(integer) : row.Number(column);
        return Put(target, &number, sizeof number);
    }
    if (!isMoment || as.kind != CType::Moment)
        throw DriverError("07006", "Restricted data type attribute violation");
    PutMoment(row.Moment(column), target);
}

} // namespace driver
