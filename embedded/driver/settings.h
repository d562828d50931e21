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
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    explicit Settings(Pairs given) : m_given(std::move(given)) {}
    // "KEY=value;KEY={va;l}}ue};..." Pieces without "=" are passed over.
    explicit Settings(std::string_view connectString);

    // Looked for in what the client gave, where the first that is not empty counts, then in the data source (odbc.ini)
    // that it named with DSN, then in the section of odbcinst.ini of the driver that it named with DRIVER or that the
    // data source has. Empty when there is none.
    std::string Get(std::string_view key) const;
    bool Is(std::string_view key, std::string_view value) const; // without regard to case
    // A path as it is given, or a name in the folder, with or without ".db" behind it.
    std::string DatabaseFile() const;

private:
    std::string Given(std::string_view key) const;

    Pairs m_given;
};

} // namespace driver
