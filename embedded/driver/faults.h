// The fault list: failures that a test orders for statements to come, counted across all processes that share the file.
#pragma once

#include "diagnostics.h"

#include <optional>
#include <string>
#include <string_view>

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

// A file of lines COUNT, WHEN, TEXT, SQLSTATE, NATIVE, MESSAGE, separated by tabs, escaped as in the statement log;
// empty lines and lines that start with # are passed over. WHEN is before, after, cut-before, cut-after, row:N or
// cut-row:N. MESSAGE is given as it stands, without the driver's prefix. A cut without an SQLSTATE is 08S01.
class FaultList
{
public:
    // An empty path orders nothing.
    explicit FaultList(std::string path) : m_path(std::move(path)) {}

    // The first line with a count above 0 whose text occurs in the statement; its count is lowered in the file. Reads
    // the file anew every time, so that lines may be added while clients run.
    std::optional<Fault> Take(std::string_view statement) const;

private:
    std::string m_path;
};

} // namespace driver
