// What the settings report must say.
#pragma once

#include "model.h"

#include <string>

namespace sessions
{

// Compares a report on the disk, text by text, with the database that it was made from. Empty when they agree; of rows
// that the report's order does not tell apart either may come first, and the time of day is not looked at.
std::string ReportDifference(const std::string &path, const Rows &rows, int partition, const World &world);

} // namespace sessions
