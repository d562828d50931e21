// Parameters of prepared statements: see parameters.h.
#include "parameters.h"

#include "diagnostics.h"
#include "text.h"
#include "types.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace driver
{
namespace
{

template <class T>
T Read(const void *buffer)
{
    T value;
    std::memcpy(&value, buffer, sizeof value);
    return value;
}

std::string Quoted(std::string_view text)
{
    std::string out = "N'";
    for (const char c : text)
        out.append(c == '\'' ? 2 : 1, c);
    return out + "'";
}

std::string Print(const char *format, auto... values)
{
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

bool IsNumericSqlType(SQLSMALLINT type)
{
    switch (type)
    {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
    case SQL_DECIMAL:
    case SQL_NUMERIC:
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE:
        return true;
    default:
        return false;
    }
}

// Text bound for a number goes in bare, when it is one.
std::string TextLiteral(const std::string &text, SQLSMALLINT sqlType)
{
    if (!IsNumericSqlType(sqlType))
        return Quoted(text);
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string::npos)
        throw DriverError("22018", "Invalid character value for cast");
    return "(" + text + ")"; // brackets: "- -1" would be a comment without a blank
}

std::string Literal(const Parameter &parameter)
{
    const SQLLEN length = parameter.indicator != nullptr ? *parameter.indicator : SQL_NTS;
    if (length == SQL_NULL_DATA || parameter.buffer == nullptr)
        return "NULL";
    if (length == SQL_DATA_AT_EXEC || length <= SQL_LEN_DATA_AT_EXEC_OFFSET)
        throw DriverError("HYC00", "Data at execution is not supported");
    const void *at = parameter.buffer;
    switch (parameter.cType)
    {
    case SQL_C_CHAR:
        return TextLiteral(length == SQL_NTS ? std::string(static_cast<const char *>(at))
                                             : std::string(static_cast<const char *>(at), static_cast<size_t>(length)),
                           parameter.sqlType);
    case SQL_C_WCHAR:
        return TextLiteral(ToUtf8(static_cast<const SQLWCHAR *>(at), length == SQL_NTS ? SQL_NTS : length / 2),
                           parameter.sqlType);
    case SQL_C_BIT:
    case SQL_C_UTINYINT:
        return Print("%d", Read<unsigned char>(at));
    case SQL_C_TINYINT:
    case SQL_C_STINYINT:
        return Print("(%d)", Read<signed char>(at));
    case SQL_C_SHORT:
    case SQL_C_SSHORT:
        return Print("(%d)", Read<std::int16_t>(at));
    case SQL_C_USHORT:
        return Print("%d", Read<std::uint16_t>(at));
    case SQL_C_LONG:
    case SQL_C_SLONG:
        return Print("(%d)", Read<std::int32_t>(at));
    case SQL_C_ULONG:
        return Print("%u", Read<std::uint32_t>(at));
    case SQL_C_SBIGINT:
        return Print("(%lld)", static_cast<long long>(Read<std::int64_t>(at)));
    case SQL_C_UBIGINT:
        return Print("%llu", static_cast<unsigned long long>(Read<std::uint64_t>(at)));
    case SQL_C_FLOAT:
        return Print("(%.9e)", static_cast<double>(Read<float>(at)));
    case SQL_C_DOUBLE:
        return Print("(%.17e)", Read<double>(at));
    case SQL_C_DATE:
    case SQL_C_TYPE_DATE:
    {
        const auto d = Read<SQL_DATE_STRUCT>(at);
        return Print("'%04d-%02d-%02dT00:00:00'", d.year, d.month, d.day);
    }
    case SQL_C_TIMESTAMP:
    case SQL_C_TYPE_TIMESTAMP:
    {
        const auto t = Read<SQL_TIMESTAMP_STRUCT>(at);
        return Print("'%04d-%02d-%02dT%02d:%02d:%02d.%03d'", t.year, t.month, t.day, t.hour, t.minute, t.second,
                     static_cast<int>(t.fraction / 1000000));
    }
    default:
        throw DriverError("HYC00", "Optional feature not implemented: the C type of a parameter");
    }
}

} // namespace

std::vector<size_t> FindMarkers(std::string_view statement)
{
    std::vector<size_t> places;
    for (size_t i = 0; i < statement.size(); ++i)
    {
        const char c = statement[i];
        const std::string_view rest = statement.substr(i);
        size_t end = i;
        if (c == '?')
            places.push_back(i);
        else if (c == '\'' || c == '"')
            end = statement.find(c, i + 1);
        else if (c == '[')
            end = statement.find(']', i + 1);
        else if (rest.substr(0, 2) == "--")
            end = statement.find('\n', i);
        else if (rest.substr(0, 2) == "/*")
            end = statement.find("*/", i + 2);
        if (end == std::string_view::npos)
            break;
        i = end;
    }
    return places;
}

std::string PutParameters(std::string_view statement, const std::map<SQLUSMALLINT, Parameter> &parameters)
{
    std::string out;
    size_t copied = 0;
    SQLUSMALLINT number = 0;
    for (const size_t place : FindMarkers(statement))
    {
        const auto bound = parameters.find(++number);
        if (bound == parameters.end())
            throw DriverError("07002", "COUNT field incorrect");
        out += statement.substr(copied, place - copied);
        out += Literal(bound->second);
        copied = place + 1;
    }
    out += statement.substr(copied);
    return out;
}

} // namespace driver
