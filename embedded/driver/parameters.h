// Parameters of prepared statements: bound values put into the text as literals, since the dialect has none.
#pragma once

#include "odbc.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace driver
{

struct Parameter
{
    SQLSMALLINT cType = SQL_C_CHAR;
    SQLSMALLINT sqlType = SQL_VARCHAR;
    const void *buffer = nullptr;
    const SQLLEN *indicator = nullptr; // SQL_NTS, SQL_NULL_DATA or octets; NULL means SQL_NTS
};

// Places of the "?" that are parameters: not in texts, names or comments.
std::vector<size_t> FindMarkers(std::string_view statement);

// The statement with each marker replaced by its parameter's value as a literal. Throws DriverError 07002 when one is
// not bound, HYC00 for data given at execution and for C types that are not supported.
std::string PutParameters(std::string_view statement, const std::map<SQLUSMALLINT, Parameter> &parameters);

} // namespace driver
