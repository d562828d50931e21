// The fault list: failures that a test orders for statements to come, counted across all processes that share the file.
// Its form is described in docs/embedded-database.md.
#pragma once

#include "handles.h"

#include <optional>

namespace driver
{

// What to do with a statement that a line of the list names.
struct Fault
{
    bool cut = false;   // the connection is cut as well
    bool after = false; // the statement runs first
    long long row = 0;  // above 0: the fetch of this row (from 1) fails, the statement itself succeeds
    DiagnosticRecord record;
};

// The first line of the list with a count above 0 whose text occurs in the statement; its count is lowered in the file.
// The file is read anew every time, so that lines may be added while clients run; an empty path orders nothing.
std::optional<Fault> TakeFault(const std::string &path, std::string_view statement);

} // namespace driver
