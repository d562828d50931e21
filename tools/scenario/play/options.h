// The command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace scenario
{

struct Options
{
    std::string dataSource; // empty: the embedded database
    std::string database;   // its file; empty: one of the play's own
    std::string ownTables;  // T-SQL file of the tables to make in the data source; empty: it has them
    bool showSql = true;
    bool headers = false;
    bool help = false;
    std::vector<std::string> files;
    std::vector<std::string> given; // those of them that hold for each scenario, as they were given
};

extern const char *const kUsage;

// Nothing, and the reason in `problem`, for bad usage.
std::optional<Options> ParseOptions(const std::vector<std::string> &arguments, std::string &problem);

} // namespace scenario
