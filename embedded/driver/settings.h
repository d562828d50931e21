// Where a connection's attributes come from: the connection string, the data source, the driver's own section.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace driver
{

// The keywords of a connection string in order; names are compared without regard to case, the first of a name counts.
class ConnectString
{
public:
    // "KEY=value;KEY={va;lue};..." Pieces without "=" are passed over.
    explicit ConnectString(std::string_view text);

    std::optional<std::string> Find(std::string_view key) const;

private:
    std::vector<std::pair<std::string, std::string>> m_pairs;
};

// The attributes of one connection. Each is looked for in the connection string first (unless noted), then in the data
// source (odbc.ini), then in the driver's section of odbcinst.ini.
struct Settings
{
    std::string user;                               // UID
    std::string password;                           // PWD
    std::string application;                        // APP
    std::string server;                             // Server, as the client named it
    std::string database;                           // Database, as the client named it: a name or a path
    std::string file;                               // the file that holds it; KVEMBEDDED_DATABASE overrides
    bool create = false;                            // Create=yes: make the file when it does not exist
    int busyMilliseconds = 10000;                   // BusyTimeout: how long to wait for another process that writes
    std::vector<std::string> servers;               // Servers: the names that exist; none: every name does
    std::vector<std::string> silentServers;         // SilentServers: names that accept a connection and never answer
    std::string statementLog;                       // StatementLog; KVEMBEDDED_LOG overrides
    std::string faultList;                          // FaultList; KVEMBEDDED_FAULTS overrides
    std::string faultApplication = "KVHEADERS.DLL"; // FaultApplication: whose statements fail; "*": everybody's
    int claimedTextSize = -1; // ClaimedTextSize: what every text column claims as its size; -1: the truth
};

// Of a data source by name, as SQLConnect gives it.
Settings SettingsOfDataSource(const std::string &name, const std::string &user, const std::string &password);

// Of a connection string with DSN= or DRIVER=, whichever comes with a name.
Settings SettingsOfConnectString(std::string_view text);

} // namespace driver
