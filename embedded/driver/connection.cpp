// A connection: see handles.h.
#include "handles.h"

#include "escape.h"
#include "runtime/text.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <thread>
#include <utility>

#include <odbcinst.h>
#include <unistd.h>

namespace driver
{
namespace
{

std::string ReadProfile(const std::string &section, std::string_view key, const char *file)
{
    char value[1024] = "";
    if (!section.empty())
        SQLGetPrivateProfileString(section.c_str(), std::string(key).c_str(), "", value, sizeof value, file);
    return value;
}

// An attribute, by a keyword that docs/embedded-database.md describes. Looked for in what the client gave, then in the
// data source (odbc.ini) that it named with DSN, then in the section of odbcinst.ini of the driver that the client or
// the data source named. Empty when there is none.
std::string Get(const Attributes &given, std::string_view key)
{
    for (const auto &[name, value] : given)
        if (!value.empty() && runtime::EqualNoCase(name, key))
            return value;
    if (key == "DSN")
        return {};
    const std::string value = ReadProfile(Get(given, "DSN"), key, "odbc.ini");
    // a driver that is named by its path has no section
    return value.empty() && key != "Driver" ? ReadProfile(Get(given, "Driver"), key, "odbcinst.ini") : value;
}

// A path as it is given, or a name in the folder, with or without ".db" behind it.
std::string DatabaseFile(const Attributes &attributes)
{
    const std::string database = Get(attributes, "Database");
    const std::string folder = Get(attributes, "Folder");
    if (database.empty() || database.find('/') != std::string::npos || folder.empty())
        return database;
    const std::string plain = folder + "/" + database;
    return access(plain.c_str(), F_OK) == 0 ? plain : plain + ".db";
}

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Attributes &attributes, SQLULEN timeoutSeconds)
{
    const std::string server = Get(attributes, "Server");
    const std::string only = Get(attributes, "OnlyServer");
    if (!server.empty() && runtime::EqualNoCase(server, Get(attributes, "SilentServer")))
    {
        std::this_thread::sleep_for(std::chrono::seconds(timeoutSeconds != 0 ? timeoutSeconds : 1'000'000'000));
        throw SqlError(0, "HYT00", "Login timeout expired");
    }
    if (!only.empty() && !runtime::EqualNoCase(server, only))
        throw SqlError(17, "08001", "SQL Server does not exist or access denied.");
}

// The user and password that a database was made with are kept in a table of the driver's own; none: everybody may log
// in. A stand-in for a server's log-in, not a protection: who can read the file needs none.
std::unique_ptr<tsql::Session> LogIn(const Attributes &attributes)
{
    const std::string file = DatabaseFile(attributes);
    const std::string user = Get(attributes, "UID");
    const std::string password = Get(attributes, "PWD");
    const bool isNew = access(file.c_str(), F_OK) != 0;
    const bool creates = runtime::EqualNoCase(Get(attributes, "Create"), "yes");
    if (file.empty() || (isNew && !creates)) // SQLite takes an empty name for a file of its own
        tsql::Raise(4060, {Get(attributes, "Database")});
    auto session = tsql::Session::Open(file, creates, 10000);
    std::ostringstream login;
    login << "SELECT " << std::quoted(user.empty() ? "sa" : user, '\'', '\'') << " COLLATE nocase AS name, "
          << std::quoted(password, '\'', '\'') << " AS password";
    if (isNew && !password.empty())
        session->Internal("CREATE TABLE kvembedded_users AS " + login.str());
    else if (!session->Internal("SELECT 1 FROM sqlite_master WHERE name = 'kvembedded_users'").empty() &&
             session->Internal(login.str() + " INTERSECT SELECT name, password FROM kvembedded_users").empty())
        throw SqlError(18456, "28000", "Login failed for user '" + user + "'.");
    return session;
}

} // namespace

Attributes ReadConnectString(const std::string &text)
{
    Attributes attributes;
    std::istringstream rest(text);
    for (std::string name; std::getline(rest, name, '=');)
    {
        const bool isBraced = rest.peek() == '{';
        std::string value;
        std::getline(rest, value, isBraced ? '}' : ';');
        for (std::string more; isBraced && rest.peek() == '}' && std::getline(rest.ignore(), more, '}');)
            value += "}" + more; // "}}" inside braces is one "}"
        attributes.emplace_back(runtime::Trim(std::string_view(name).substr(name.rfind(';') + 1)),
                                value.substr(isBraced ? 1 : 0));
    }
    return attributes;
}

void Connection::Connect(std::string_view function, const Attributes &attributes)
{
    const std::string application = Get(attributes, "APP");
    m_faults = FaultList(runtime::EqualNoCase(application, "KVHEADERS.DLL") ? Get(attributes, "FaultList") : "");
    m_callFault = m_faults.Take(FaultList::Call, function);
    if (m_callFault && m_callFault->time != Fault::After)
        AfterCall();
    Warn("08001", "Unable to connect to data source"); // behind the error, until there is none
    ReachServer(attributes, loginTimeout);
    session = LogIn(attributes);
    records.clear();
    m_isConnected = true;
    const std::string claimed = Get(attributes, "ClaimedTextSize");
    claimedTextSize = claimed.empty() ? -1 : std::atoi(claimed.c_str());

    static std::atomic<int> connections{0};
    const char *const log = std::getenv("KVEMBEDDED_LOG");
    m_log.pubsetbuf(nullptr, 0);
    m_log.open(log != nullptr ? log : Get(attributes, "StatementLog"), std::ios::app); // no name opens none
    m_logPrefix =
        "\t" + std::to_string(getpid()) + "." + std::to_string(++connections) + "\t" + Escape(application) + "\t";
    Log("connect", Get(attributes, "Server") + " " + Get(attributes, "Database"));
    if (m_callFault)
        Disconnect();
}

void Connection::Disconnect()
{
    Log("disconnect", "");
    m_log.close();
    active = nullptr;
    statements.clear();
    session.reset();
    m_isConnected = false;
}

// A line is written whole with one call: several processes may share the file.
void Connection::Log(std::string_view kind, std::string_view text)
{
    if (!m_log.is_open())
        return;
    const std::string line = std::string(kind) + m_logPrefix + Escape(text) + "\n";
    m_log.sputn(line.data(), static_cast<std::streamsize>(line.size())); // a full disk must not fail the statement
}

void Connection::BeforeCall(std::string_view function)
{
    m_callFault.reset();
    if (!m_isConnected)
        return;
    if (IsDead() && function.starts_with("SQLExec"))
        Log("lost", "");
    // what gives up or asks about the connection itself works without one
    Require(!IsDead() || function.starts_with("SQLFree") || function == "SQLDisconnect" ||
                function == "SQLGetConnectAttr",
            "08S01", "Communication link failure");
    m_callFault = m_faults.Take(FaultList::Call, function);
    if (m_callFault && m_callFault->time != Fault::After)
        AfterCall();
}

void Connection::AfterCall() const
{
    if (m_callFault)
        throw Fault(*m_callFault);
}

std::optional<Fault> Connection::NextFault(std::string_view statement)
{
    std::optional<Fault> fault = m_faults.Take(FaultList::Idling);
    if (!fault)
        fault = std::exchange(m_callFault, std::nullopt); // a statement that takes effect takes all of its effect
    if (!fault)
        fault = m_faults.Take(FaultList::Statement, statement);
    if (fault && fault->time != Fault::After && fault->time != Fault::Row)
        throw Fault(*fault);
    return fault;
}

void Connection::Record(const std::exception &error, std::vector<SqlError> &records)
{
    const auto *const fault = dynamic_cast<const Fault *>(&error);
    const auto *const known = dynamic_cast<const SqlError *>(&error);
    const auto isLess = [](const SqlError &one) { return one.state < "1"; }; // a warning, or what a log-in adds
    const SqlError record = fault != nullptr   ? fault->record
                            : known != nullptr ? MakeRecord(known->number, known->state, known->what())
                                               : MakeRecord(0, "HY000", error.what());
    records.insert(std::ranges::find_if(records, isLess), record); // the errors of rows stay in their order
    if (IsDead())
        return;
    Log("error", record.state + ": " + record.what());
    if (fault != nullptr && (fault->cut || fault->time == Fault::End) && active != nullptr)
        active->LoseResults();
    if (fault != nullptr && fault->cut)
        session.reset();
}

} // namespace driver
