// Where a connection's attributes come from: the connection string, the data source, the driver's own section.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace driver
{

// The attributes of one connection, by the keywords that docs/embedded-database.md describes.
class Settings
{
public:
    using Given = std::vector<std::pair<std::string, std::string>>; // in order; the first of a name counts

    Settings() = default;
    explicit Settings(Given given) : m_given(std::move(given)) {}
    // "KEY=value;KEY={va;l}}ue};..." Pieces without "=" are passed over.
    explicit Settings(std::string_view connectString);

    // Looked for in what the client gave, then in the data source (odbc.ini) that it named with DSN, then in the
    // section of odbcinst.ini of the driver that it named with DRIVER or that the data source has. Empty when there is
    // none.
    std::string Get(std::string_view key) const;
    // Of a list separated by commas, with no regard to case.
    bool Lists(std::string_view key, std::string_view name) const;
    // The file that holds the database: a path as it is given, or a name in the folder, with or without ".db" behind
    // it.
    std::string DatabaseFile() const;

private:
    const std::string *Find(std::string_view key) const; // null: not given

    Given m_given;
};

// The variable of the environment, if it is set to something.
std::string FromEnvironment(const char *name, const std::string &otherwise);

} // namespace driver
