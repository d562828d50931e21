// From a value of a row to the C type and buffer of the caller: see convert.h.
#include "convert.h"

#include "text.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace driver
{
namespace
{

DriverError OutOfRange()
{
    return {"22003", "Numeric value out of range"};
}
DriverError NotAllowed()
{
    return {"07006", "Restricted data type attribute violation"};
}
DriverError NotANumber()
{
    return {"22018", "Invalid character value for cast"};
}

// An integer and whether a fraction was cut off to get it.
struct Whole
{
    std::int64_t value;
    bool cut;
};

Whole WholeOf(double number)
{
    if (!(number >= -9223372036854775808.0 && number < 9223372036854775808.0))
        throw OutOfRange();
    return {static_cast<std::int64_t>(number), std::trunc(number) != number};
}

double NumberOf(std::string_view text)
{
    const std::string copy(TrimBlanks(text));
    char *end = nullptr;
    const double number = std::strtod(copy.c_str(), &end);
    if (copy.empty() || *end != '\0')
        throw NotANumber();
    return number;
}

double DoubleOf(const Value &value)
{
    switch (KindOf(value.type))
    {
    case ValueKind::Integer:
        return static_cast<double>(value.integer);
    case ValueKind::Number:
        return value.number;
    case ValueKind::Text:
        return NumberOf(value.text);
    default:
        throw NotAllowed();
    }
}

Whole IntegerOf(const Value &value)
{
    switch (KindOf(value.type))
    {
    case ValueKind::Integer:
        return {value.integer, false};
    case ValueKind::Number:
        return WholeOf(value.number);
    case ValueKind::Text:
    {
        const std::string copy(TrimBlanks(value.text));
        char *end = nullptr;
        errno = 0;
        const long long whole = std::strtoll(copy.c_str(), &end, 10);
        if (!copy.empty() && *end == '\0' && errno == 0)
            return {whole, false};
        return WholeOf(NumberOf(copy));
    }
    default:
        throw NotAllowed();
    }
}

void SetLength(const Target &target, SQLLEN length)
{
    if (target.indicator != nullptr)
        *target.indicator = 0;
    if (target.length != nullptr)
        *target.length = length;
}

template <class T>
void Store(const Target &target, const T &value)
{
    if (target.buffer != nullptr)
        std::memcpy(target.buffer, &value, sizeof value);
    SetLength(target, sizeof value);
}

template <class T>
SQLRETURN StoreInteger(const Value &value, const Target &target, Diagnostics &notes)
{
    const Whole whole = IntegerOf(value);
    if constexpr (std::is_unsigned_v<T>)
    {
        if (whole.value < 0 || static_cast<std::uint64_t>(whole.value) > std::numeric_limits<T>::max())
            throw OutOfRange();
    }
    else if (whole.value < std::numeric_limits<T>::min() || whole.value > std::numeric_limits<T>::max())
        throw OutOfRange();
    Store(target, static_cast<T>(whole.value));
    if (!whole.cut)
        return SQL_SUCCESS;
    notes.Warn("01S07", "Fractional truncation");
    return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN StoreBit(const Value &value, const Target &target, Diagnostics &notes)
{
    const Whole whole = IntegerOf(value);
    if (whole.value < 0 || whole.value > 1)
        throw OutOfRange();
    Store(target, static_cast<unsigned char>(whole.value));
    if (!whole.cut)
        return SQL_SUCCESS;
    notes.Warn("01S07", "Fractional truncation");
    return SQL_SUCCESS_WITH_INFO;
}

// "2003-02-11", "2003-02-11 08:15:30[.123]" or with a T between.
tsql::DateTime MomentOf(const Value &value)
{
    if (KindOf(value.type) == ValueKind::Moment)
        return value.moment;
    if (!IsText(value.type))
        throw NotAllowed();
    const std::string copy(TrimBlanks(value.text));
    tsql::DateTime m{};
    double seconds = 0;
    char between = ' ';
    const int count = std::sscanf(copy.c_str(), "%4d-%2d-%2d%c%2d:%2d:%lf", &m.year, &m.month, &m.day, &between,
                                  &m.hour, &m.minute, &seconds);
    if ((count != 3 && count != 7) || (between != ' ' && between != 'T'))
        throw DriverError("22018", "Invalid character value for cast");
    m.second = static_cast<int>(seconds);
    m.nanosecond = static_cast<int>(std::lround((seconds - m.second) * 1e6)) * 1000;
    return m;
}

SQL_TIMESTAMP_STRUCT TimestampOf(const tsql::DateTime &m)
{
    SQL_TIMESTAMP_STRUCT out{};
    out.year = static_cast<SQLSMALLINT>(m.year);
    out.month = static_cast<SQLUSMALLINT>(m.month);
    out.day = static_cast<SQLUSMALLINT>(m.day);
    out.hour = static_cast<SQLUSMALLINT>(m.hour);
    out.minute = static_cast<SQLUSMALLINT>(m.minute);
    out.second = static_cast<SQLUSMALLINT>(m.second);
    out.fraction = static_cast<SQLUINTEGER>(m.nanosecond);
    return out;
}

// Hands out `whole` from where the pieces stand, with a terminator behind it, never half a unit.
template <class Unit>
SQLRETURN StoreText(std::basic_string_view<Unit> whole, const Target &target, Diagnostics &notes, Pieces *pieces)
{
    const size_t given = pieces != nullptr ? pieces->given / sizeof(Unit) : 0;
    const std::basic_string_view<Unit> rest = whole.substr(std::min(given, whole.size()));
    SetLength(target, static_cast<SQLLEN>(rest.size() * sizeof(Unit)));
    const size_t room = target.buffer != nullptr && target.capacity > 0 ? target.capacity / sizeof(Unit) : 0;
    const size_t count = room > 0 ? std::min(rest.size(), room - 1) : 0;
    if (room > 0)
    {
        // the caller's buffer need not be aligned
        std::memcpy(target.buffer, rest.data(), count * sizeof(Unit));
        std::memset(static_cast<char *>(target.buffer) + count * sizeof(Unit), 0, sizeof(Unit));
    }
    if (pieces != nullptr)
    {
        pieces->given += count * sizeof(Unit);
        pieces->finished = count == rest.size() && room > 0;
    }
    if (target.buffer == nullptr || (count == rest.size() && room > 0))
        return SQL_SUCCESS;
    notes.Warn("01004", "String data, right truncation");
    return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN ConvertToWide(const Value &value, const Target &target, Diagnostics &notes, Pieces *pieces)
{
    static thread_local std::u16string scratch;
    std::u16string &whole = pieces != nullptr ? pieces->wide : scratch;
    if (pieces == nullptr || !pieces->started)
        ToUtf16(IsText(value.type) ? value.text : std::string_view(TextOf(value)), whole);
    return StoreText(std::u16string_view(whole), target, notes, pieces);
}

SQLRETURN ConvertToNarrow(const Value &value, const Target &target, Diagnostics &notes, Pieces *pieces)
{
    if (IsText(value.type))
        return StoreText(value.text, target, notes, pieces);
    return StoreText(std::string_view(TextOf(value)), target, notes, pieces);
}

SQLRETURN ConvertValue(const Value &value, const Target &target, Diagnostics &notes, Pieces *pieces)
{
    switch (target.cType == SQL_C_DEFAULT ? InfoOf(value.type).defaultC : target.cType)
    {
    case SQL_C_CHAR:
        return ConvertToNarrow(value, target, notes, pieces);
    case SQL_C_WCHAR:
        return ConvertToWide(value, target, notes, pieces);
    case SQL_C_BIT:
        return StoreBit(value, target, notes);
    case SQL_C_TINYINT:
    case SQL_C_STINYINT:
        return StoreInteger<signed char>(value, target, notes);
    case SQL_C_UTINYINT:
        return StoreInteger<unsigned char>(value, target, notes);
    case SQL_C_SHORT:
    case SQL_C_SSHORT:
        return StoreInteger<std::int16_t>(value, target, notes);
    case SQL_C_USHORT:
        return StoreInteger<std::uint16_t>(value, target, notes);
    case SQL_C_LONG:
    case SQL_C_SLONG:
        return StoreInteger<std::int32_t>(value, target, notes);
    case SQL_C_ULONG:
        return StoreInteger<std::uint32_t>(value, target, notes);
    case SQL_C_SBIGINT:
        return StoreInteger<std::int64_t>(value, target, notes);
    case SQL_C_UBIGINT:
        return StoreInteger<std::uint64_t>(value, target, notes);
    case SQL_C_FLOAT:
        Store(target, static_cast<float>(DoubleOf(value)));
        return SQL_SUCCESS;
    case SQL_C_DOUBLE:
        Store(target, DoubleOf(value));
        return SQL_SUCCESS;
    case SQL_C_TIMESTAMP:
    case SQL_C_TYPE_TIMESTAMP:
        Store(target, TimestampOf(MomentOf(value)));
        return SQL_SUCCESS;
    case SQL_C_DATE:
    case SQL_C_TYPE_DATE:
    {
        const SQL_TIMESTAMP_STRUCT t = TimestampOf(MomentOf(value));
        Store(target, SQL_DATE_STRUCT{t.year, t.month, t.day});
        return SQL_SUCCESS;
    }
    case SQL_C_TIME:
    case SQL_C_TYPE_TIME:
    {
        const SQL_TIMESTAMP_STRUCT t = TimestampOf(MomentOf(value));
        Store(target, SQL_TIME_STRUCT{t.hour, t.minute, t.second});
        return SQL_SUCCESS;
    }
    default:
        throw NotAllowed();
    }
}

} // namespace

std::string TextOf(const Value &value)
{
    switch (KindOf(value.type))
    {
    case ValueKind::Integer:
        return std::to_string(value.integer);
    case ValueKind::Moment:
    {
        char text[64];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", value.moment.year, value.moment.month,
                      value.moment.day, value.moment.hour, value.moment.minute, value.moment.second,
                      value.moment.nanosecond / 1000000);
        return text;
    }
    default:
        return std::string(value.text);
    }
}

SQLRETURN Convert(const Value &value, const Target &target, Diagnostics &notes, Pieces *pieces)
{
    if (pieces != nullptr && pieces->finished)
        return SQL_NO_DATA;
    if (value.isNull)
    {
        if (target.indicator == nullptr)
            throw DriverError("22002", "Indicator variable required but not supplied");
        *target.indicator = SQL_NULL_DATA;
        if (pieces != nullptr)
            pieces->finished = true;
        return SQL_SUCCESS;
    }
    const SQLRETURN code = ConvertValue(value, target, notes, pieces);
    if (pieces != nullptr)
    {
        pieces->started = true;
        const SQLSMALLINT cType = target.cType == SQL_C_DEFAULT ? InfoOf(value.type).defaultC : target.cType;
        if (SizeOfC(cType) != 0)
            pieces->finished = true;
    }
    return code;
}

} // namespace driver
