// What the acceptance asks of the machine and of its user.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace acceptance
{

// The driver of a data source of 32-bit programs. Problem when there is none of that name, or it names no database: the
// component knows a data source by that.
std::string DriverOf(const std::string &dataSource);

// The environment variable KVHEADERS_PASSWORD, or what is typed. Problem when there is nobody to ask.
std::wstring Password(const std::string &user);

// Windows, its resolution and code page, as the report names them.
std::string Windows();

// The local time, by a format of std::strftime.
std::string Now(const char *format);

} // namespace acceptance
