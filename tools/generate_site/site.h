// A made-up site of any size: what it holds, written as T-SQL.
#pragma once

#include <cstdint>
#include <string>

namespace generate_site
{

struct Size
{
    std::int64_t settings = 10000;
    int headings = 20000; // up to 32,767: identifiers have 16 bits
    int formats = 5000;   // up to 32,767
    int partitions = 200; // a tree with six children a partition
    int accounts = 2000;  // up to 32,767
    int reportTypes = 40; // of each account
    unsigned seed = 1;
    int rowsPerInsert = 500; // 1: statements that servers before 2008 take as well
};

// Receives the script piece by piece.
class Sink
{
public:
    virtual ~Sink() = default;
    virtual void Write(const std::string &text) = 0;
};

// Writes INSERT statements for the tables of the embedded database's tables.sql, batches separated by GO. The same size
// and seed always give the same text. Throws std::invalid_argument when the numbers cannot be met (too many settings
// for the headings, accounts and report types, identifiers beyond 16 bits).
void WriteSite(const Size &size, Sink &sink);

} // namespace generate_site
