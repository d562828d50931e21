// From the diagnostic records of a failed call to the one error that is shown.
#pragma once

#include "runtime/error.h"

#include <string>
#include <vector>

namespace odbc
{

// A diagnostic record.
struct Record
{
    std::string state; // SQLSTATE, five characters
    std::string text;  // in UTF-8
};

// The error of a failed call, from its records in the driver's order: the description is "STATE: text" of the first
// telling record. A warning (class 01) and the general "unable to connect" (08001) tell less than any other and stand
// in only when there is nothing better. The number is runtime::kGeneralDatabaseFailure for HY000, HYT00, HYT01 and
// class 08, and runtime::kDatabaseError otherwise.
runtime::Error ToError(const std::vector<Record> &records);

} // namespace odbc
