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
// telling record, without the names in brackets that lead the driver's text. A warning (class 01) and the general
// "unable to connect" (08001) tell less than any other and stand in only when there is nothing better. Without records
// the description says so. The number is runtime::kDatabaseError.
runtime::Error ToError(const std::vector<Record> &records);

// The same for a failed attempt to connect, whose number is runtime::kGeneralDatabaseFailure for HY000, HYT00, HYT01
// and class 08.
runtime::Error ToConnectError(const std::vector<Record> &records);

// True when a record says that the connection is lost: a state of class 08.
bool TellOfLoss(const std::vector<Record> &records);

} // namespace odbc
