// Parameters of statements: bound values put into the text as literals, since the dialect has none.
#pragma once

#include "values.h"

#include <map>

namespace driver
{

struct Parameter
{
    Target source;
    SQLSMALLINT sqlType = SQL_VARCHAR;
};

// Places of the "?" that are parameters: not in texts, names or comments.
std::vector<size_t> FindMarkers(std::string_view statement);

// The statement with each marker replaced by its parameter's value as a literal. Throws DriverError 07002 when one is
// not bound, and what Read throws.
std::string PutParameters(std::string_view statement, const std::map<SQLUSMALLINT, Parameter> &parameters);

} // namespace driver
