// One log-in: see connection.h.
#include "connection.h"

#include "escape.h"
#include "runtime/text.h"
#include "statement.h"

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

using tsql::SqlError;

std::string ReadProfile(const std::string &section, std::string_view key, const char *file)
{
    char value[1024] = "";
    if (!section.empty())
        SQLGetPrivateProfileString(section.c_str(), std::string(key).c_str(), "", value, sizeof value, file);
    return value;
}

// The attributes of a connection, by the keywords that docs/embedded-database.md describes.
struct Settings
{
    const Attributes &given;

    std::string Given(std::string_view key) const
    {
        for (const auto &[name, value] : given)
            if (!value.empty() && runtime::EqualNoCase(name, key))
                return value;
        return {};
    }

    // Looked for in what the client gave, then in the data source (odbc.ini) that it named with DSN, then in the
    // section of odbcinst.ini of the driver that the client or the data source named. Empty when there is none.
    std::string Get(std::string_view key) const
    {
        std::string value = Given(key);
        if (value.empty())
            value = ReadProfile(Given("DSN"), key, "odbc.ini");
        if (value.empty() && key != "Driver") // a driver that is named by its path has no section
            value = ReadProfile(Get("Driver"), key, "odbcinst.ini");
        return value;
    }

    bool Is(std::string_view key, std::string_view value) const { return runtime::EqualNoCase(Get(key), value); }
};

// A path as it is given, or a name in the folder, with or without ".db" behind it.
std::string DatabaseFile(const Settings &settings)
{
    const std::string database = settings.Get("Database");
    const std::string folder = settings.Get("Folder");
    if (database.empty() || database.find('/') != std::string::npos || folder.empty())
        return database;
    const std::string plain = folder + "/" + database;
    return access(plain.c_str(), F_OK) == 0 ? plain : plain + ".db";
}

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Settings &settings, SQLULEN timeoutSeconds)
{
    const std::string server = settings.Get("Server");
    if (!server.empty() && settings.Is("SilentServer", server))
    {
        for (SQLULEN tenths = 0; timeoutSeconds == 0 || tenths < 10 * timeoutSeconds; ++tenths)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        throw SqlError(0, "HYT00", "Login timeout expired");
    }
    if (!settings.Get("OnlyServer").empty() && !settings.Is("OnlyServer", server))
        throw SqlError(17, "08001", "SQL Server does not exist or access denied.");
}

// The user and password that a database was made with are kept in a table of the driver's own; none: everybody may log
// in. A stand-in for a server's log-in, not a protection: who can read the file needs none.
std::unique_ptr<tsql::Session> LogIn(const Settings &settings)
{
    const std::string file = DatabaseFile(settings);
    const std::string user = settings.Get("UID");
    const std::string password = settings.Get("PWD");
    const bool isNew = access(file.c_str(), F_OK) != 0;
    const bool creates = settings.Is("Create", "yes");
    if (file.empty() || (isNew && !creates)) // SQLite takes an empty name for a file of its own
        tsql::Raise(4060, {settings.Get("Database")});
    auto session = tsql::Session::Open(file, creates, 10000);
    std::ostringstream login;
    login << "SELECT " << std::quoted(user.empty() ? "sa" : user, '\'', '\'') << " AS name, "
          << std::quoted(password, '\'', '\'') << " AS password";
    if (isNew && !password.empty())
        session->Internal("CREATE TABLE kvembedded_users AS " + login.str());
    else if (!session->Internal("SELECT 1 FROM sqlite_master WHERE name = 'kvembedded_users'").empty())
    {
        const auto names = session->Internal("SELECT kept.name FROM kvembedded_users AS kept JOIN (" + login.str() +
                                             ") USING (password)");
        if (names.empty() || !runtime::EqualNoCase(names[0], user))
            throw SqlError(18456, "28000", "Login failed for user '" + user + "'.");
    }
    return session;
}

} // namespace

Attributes ReadConnectString(std::string_view text)
{
    Attributes attributes;
    for (size_t equals; (equals = text.find('=')) != std::string_view::npos;)
    {
        std::string_view name = text.substr(0, equals);
        name.remove_prefix(name.rfind(';') + 1);
        text.remove_prefix(equals + 1);
        size_t end = std::min(text.find(';'), text.size());
        std::string value(text.substr(0, end));
        if (text.starts_with('{')) // "}}" inside braces is one "}"
        {
            value.clear();
            for (end = 1; end < text.size() && (text[end] != '}' || text.substr(end, 2) == "}}"); ++end)
                value += text[text[end] == '}' ? ++end : end];
        }
        attributes.emplace_back(runtime::Trim(name), value);
        text.remove_prefix(end);
    }
    return attributes;
}

void Connection::Connect(std::string_view function, const Attributes &attributes)
{
    const Settings settings{attributes};
    m_faults = FaultList(settings.Is("APP", "KVHEADERS.DLL") ? settings.Get("FaultList") : "");
    m_callFault = m_faults.Take(FaultList::Call, function);
    if (m_callFault && m_callFault->time != Fault::After)
        AfterCall();
    try
    {
        ReachServer(settings, loginTimeout);
        session = LogIn(settings);
    }
    catch (const SqlError &)
    {
        Warn("08001", "Unable to connect to data source");
        throw;
    }
    m_isConnected = true;
    const std::string claimed = settings.Get("ClaimedTextSize");
    claimedTextSize = claimed.empty() ? -1 : std::atoi(claimed.c_str());

    static std::atomic<int> connections{0};
    const char *const log = std::getenv("KVEMBEDDED_LOG");
    m_log.pubsetbuf(nullptr, 0);
    m_log.open(log != nullptr ? log : settings.Get("StatementLog"), std::ios::app); // no name opens none
    m_logPrefix = "\t" + std::to_string(getpid()) + "." + std::to_string(++connections) + "\t" +
                  Escape(settings.Get("APP")) + "\t";
    Log("connect", settings.Get("Server") + " " + settings.Get("Database"));
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
    if (IsDead() && !function.starts_with("SQLFree") && function != "SQLDisconnect" && function != "SQLGetConnectAttr")
        throw SqlError(0, "08S01", "Communication link failure");
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
    records.insert(records.begin(), fault != nullptr   ? fault->record
                                    : known != nullptr ? MakeRecord(known->Number(), known->State(), known->what())
                                                       : MakeRecord(0, "HY000", error.what()));
    if (IsDead())
        return;
    Log("error", records[0].State() + ": " + records[0].what());
    if (fault == nullptr || (!fault->cut && fault->time != Fault::End))
        return;
    if (active != nullptr)
        active->LoseResults();
    if (fault->cut)
        session.reset();
}

} // namespace driver
