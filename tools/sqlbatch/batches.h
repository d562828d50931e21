// Cuts a T-SQL script into its batches.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sqlbatch
{

struct Batch
{
    std::string text; // without its GO line, line breaks as in the file
    int line;         // of its first line that is not blank, from 1
};

// Batches end at lines that hold GO and nothing else but blanks, in any case. Blank batches are left out. A byte order
// mark at the start is passed over.
std::vector<Batch> SplitBatches(std::string_view script);

} // namespace sqlbatch
