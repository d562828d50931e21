// The scenario's own connection to the database, beside the component's.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace odbc
{
class rdoConnection;
}

namespace scenario
{

class Database
{
public:
    // Connects with a complete connection string. Failures here and below are a Refusal.
    explicit Database(const std::string &connect);
    ~Database();

    void Run(const std::string &sql);

    // The rows of a query: values separated by " | ", NULL as NULL, a text as it is.
    std::vector<std::string> Query(const std::string &sql);

    // The tables of a site, empty, as a T-SQL file describes them. Taking them away passes over those that are missing.
    void MakeTables(const std::filesystem::path &file);
    void DropTables(const std::filesystem::path &file);

    // Loads a file of one INSERT a line, with "--" comments and empty lines between them.
    void Load(const std::filesystem::path &file);

private:
    std::shared_ptr<odbc::rdoConnection> m_connection;
};

} // namespace scenario
