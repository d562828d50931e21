// Parameters of statements: see values.h.
#include "values.h"

#include "text.h"

namespace driver
{
namespace
{

bool IsNumericSqlType(SQLSMALLINT type)
{
    return (type >= SQL_BIT && type <= SQL_BIGINT) || (type >= SQL_NUMERIC && type <= SQL_DOUBLE);
}

std::string Literal(const Parameter &parameter)
{
    const Value value = Read(parameter.source);
    if (value.kind == Value::Null)
        return "NULL";
    if (value.kind == Value::Moment)
        return Quoted(TextOf(value, 'T'));
    if (value.kind == Value::Text && !IsNumericSqlType(parameter.sqlType))
        return "N" + Quoted(value.text);
    // a text bound for a number goes in bare, when it is one
    const std::string text = TextOf(value);
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string::npos)
        throw DriverError("22018", "Invalid character value for cast");
    return "(" + text + ")"; // brackets: "- -1" would be a comment without a blank
}

} // namespace

std::vector<size_t> FindMarkers(std::string_view statement)
{
    std::vector<size_t> places;
    for (size_t i = 0; i < statement.size(); ++i)
    {
        const char c = statement[i];
        const std::string_view two = statement.substr(i, 2);
        size_t end = i;
        if (c == '?')
            places.push_back(i);
        else if (c == '\'' || c == '"')
            end = statement.find(c, i + 1);
        else if (c == '[')
            end = statement.find(']', i + 1);
        else if (two == "--")
            end = statement.find('\n', i);
        else if (two == "/*")
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
        out.append(statement, copied, place - copied) += Literal(bound->second);
        copied = place + 1;
    }
    return out.append(statement, copied);
}

} // namespace driver
