// What the settings report says, as a set of facts: of the file, and of the database.
#pragma once

#include "model.h"

#include <set>
#include <string>

namespace sessions
{

using Facts = std::multiset<std::string>;

// The facts of a report on the disk: options, formats with their attributes, headings, and settings with their account
// and report type.
Facts ReportOf(const std::string &path);

// The facts that the report of a partition must hold.
Facts ExpectedReport(const Rows &rows, int partition, const Rows::Query &query);

} // namespace sessions
