// Values between the database and the buffers of a client: see values.h.
#include "values.h"

#include "text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace driver
{
namespace
{

constexpr char NotAllowed[] = "Restricted data type attribute violation"; // 07006
constexpr char OutOfRange[] = "Numeric value out of range";               // 22003
constexpr char BadText[] = "Invalid character value for cast";            // 22018

double RealOf(const Value &value)
{
    if (value.kind == Value::Integer)
        return static_cast<double>(value.integer);
    if (value.kind == Value::Number)
        return value.number;
    if (value.kind == Value::Moment)
        throw DriverError("07006", NotAllowed);
    const std::string text(Trim(value.text));
    char *end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0')
        throw DriverError("22018", BadText);
    return number;
}

// Without its fraction, of which it warns.
std::int64_t WholeOf(const Value &value, Handle &notes)
{
    if (value.kind == Value::Integer)
        return value.integer;
    if (value.kind == Value::Text) // a double does not hold all digits of the largest
    {
        const std::string text(Trim(value.text));
        char *end = nullptr;
        errno = 0;
        const long long whole = std::strtoll(text.c_str(), &end, 10);
        if (!text.empty() && *end == '\0' && errno == 0)
            return whole;
    }
    const double number = RealOf(value);
    if (!(number >= -9223372036854775808.0 && number < 9223372036854775808.0))
        throw DriverError("22003", OutOfRange);
    if (std::trunc(number) != number)
        notes.Warn("01S07", "Fractional truncation");
    return static_cast<std::int64_t>(number);
}

// "2003-02-11", "2003-02-11 08:15:30[.123]" or with a T between.
SQL_TIMESTAMP_STRUCT MomentOf(const Value &value)
{
    if (value.kind == Value::Moment)
        return value.moment;
    if (value.kind != Value::Text)
        throw DriverError("07006", NotAllowed);
    SQL_TIMESTAMP_STRUCT m{};
    double seconds = 0;
    char between = ' ';
    const int count = std::sscanf(value.text.c_str(), " %4hd-%2hu-%2hu%c%2hu:%2hu:%lf", &m.year, &m.month, &m.day,
                                  &between, &m.hour, &m.minute, &seconds);
    if ((count != 3 && count != 7) || (between != ' ' && between != 'T') || !(seconds >= 0 && seconds < 61))
        throw DriverError("22018", BadText);
    m.second = static_cast<SQLUSMALLINT>(seconds);
    m.fraction = static_cast<SQLUINTEGER>(std::lround((seconds - m.second) * 1e6)) * 1000;
    return m;
}

// Of a fixed length; the client's buffer need not be aligned.
void Put(const Target &target, const void *value, size_t octets)
{
    if (target.buffer != nullptr)
        std::memcpy(target.buffer, value, octets);
    if (target.length != nullptr)
        *target.length = static_cast<SQLLEN>(octets);
}

// Hands out `whole` from where the pieces stand, with a terminator behind it, never half a unit.
template <class Unit>
void PutText(std::basic_string_view<Unit> whole, const Target &target, Handle &notes, Pieces &pieces)
{
    const std::basic_string_view<Unit> rest = whole.substr(pieces.given);
    if (target.length != nullptr)
        *target.length = static_cast<SQLLEN>(rest.size() * sizeof(Unit));
    if (target.buffer == nullptr)
        return;
    const size_t room = target.capacity > 0 ? static_cast<size_t>(target.capacity) / sizeof(Unit) : 0;
    const size_t count = room > 0 ? std::min(rest.size(), room - 1) : 0;
    if (room > 0)
    {
        std::memcpy(target.buffer, rest.data(), count * sizeof(Unit));
        std::memset(static_cast<char *>(target.buffer) + count * sizeof(Unit), 0, sizeof(Unit));
    }
    pieces.given += count;
    pieces.finished = room > 0 && count == rest.size();
    if (!pieces.finished)
        notes.Warn("01004", "String data, right truncation");
}

// Signed or not: the low octets stand first on every machine that this driver runs on.
void PutInteger(std::int64_t whole, const CType &type, const Target &target)
{
    const bool isSigned = type.kind == CKind::Signed;
    const int magnitude = std::min(type.bits - (isSigned ? 1 : 0), 63);
    const std::int64_t most = static_cast<std::int64_t>((std::uint64_t{1} << magnitude) - 1);
    if (whole > most || whole < (isSigned ? -most - 1 : 0))
        throw DriverError("22003", OutOfRange);
    Put(target, &whole, type.Octets());
}

} // namespace

void Value::Load(const tsql::Result &row, int column, tsql::Type type)
{
    kind = IsInteger(type) ? Integer : IsText(type) ? Text : type == tsql::Type::DateTime ? Moment : Number;
    if (kind == Integer)
        integer = row.Integer(column); // 0 for NULL, and asking once is faster
    if ((kind != Integer || integer == 0) && row.IsNull(column))
        kind = Null;
    else if (kind == Moment)
    {
        const auto part = [](int number) { return static_cast<SQLUSMALLINT>(number); };
        const tsql::DateTime m = row.Moment(column);
        moment = {static_cast<SQLSMALLINT>(m.year),
                  part(m.month),
                  part(m.day),
                  part(m.hour),
                  part(m.minute),
                  part(m.second),
                  static_cast<SQLUINTEGER>(m.nanosecond)};
    }
    else if (kind != Integer)
        text = row.Text(column);
    if (kind == Number)
        number = row.Number(column);
}

void Store(const Value &value, const CType &type, const Target &target, Handle &notes, Pieces &pieces)
{
    if (value.kind == Value::Null)
    {
        if (target.length == nullptr)
            throw DriverError("22002", "Indicator variable required but not supplied");
        *target.length = SQL_NULL_DATA;
        pieces.finished = true;
        return;
    }
    pieces.finished = type.bits != 0;
    std::string made;
    const bool isMade = type.bits == 0 && (value.kind == Value::Integer || value.kind == Value::Moment);
    const std::string &text = isMade ? made = TextOf(value) : value.text;
    switch (type.kind)
    {
    case CKind::Narrow:
        return PutText(std::string_view(text), target, notes, pieces);
    case CKind::Wide:
        if (pieces.given == 0)
            pieces.wide = runtime::ToUtf16(text);
        return PutText(std::u16string_view(pieces.wide), target, notes, pieces);
    case CKind::Signed:
    case CKind::Unsigned:
        return PutInteger(WholeOf(value, notes), type, target);
    case CKind::Real:
    {
        const double number = RealOf(value);
        return Put(target, &number, sizeof number);
    }
    case CKind::Moment:
        const SQL_TIMESTAMP_STRUCT moment = MomentOf(value);
        return Put(target, &moment, type.Octets());
    }
}

std::string TextOf(const Value &value, char between)
{
    if (value.kind == Value::Integer)
        return std::to_string(value.integer);
    if (value.kind != Value::Moment)
        return value.text;
    const SQL_TIMESTAMP_STRUCT &m = value.moment;
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d%c%02d:%02d:%02d.%03u", m.year, m.month, m.day, between, m.hour,
                  m.minute, m.second, static_cast<unsigned>(m.fraction / 1000000));
    return text;
}

} // namespace driver
