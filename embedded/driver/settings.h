// Where a connection's attributes come from: the connection string, the data source, the driver's own section.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace driver
{

// Keywords and values in order; names are compared without regard to case, the first of a name counts.
using Attributes = std::vector<std::pair<std::string, std::string>>;

// "KEY=value;KEY={va;l}}ue};..." Pieces without "=" are passed over.
Attributes ParseConnectString(std::string_view text);

// The attributes of one connection, by the keywords that docs/embedded-database.md describes.
struct Settings
{
    Settings() = default;
    // Each is looked for in what the client gave, then in the data source (odbc.ini) it named with DSN, then in the
    // section of odbcinst.ini of the driver it named with DRIVER or the data source has.
    explicit Settings(const Attributes &given);

    std::string user;
    std::string password;
    std::string application;
    std::string server;
    std::string database; // as the client named it: a name or a path
    std::string file;     // the file that holds it
    bool create = false;
    int busyMilliseconds = 10000;
    std::vector<std::string> servers; // none: every name is one
    std::vector<std::string> silentServers;
    std::string statementLog;
    std::string faultList;
    std::string faultApplication; // "*": everybody's statements fail
    int claimedTextSize = -1;     // -1: the truth
};

} // namespace driver
