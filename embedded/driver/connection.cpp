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

    // Looked for in what the client gave, where the first that is not empty counts, then in the data source (odbc.ini)
    // that it named with DSN, then in the section of odbcinst.ini of the driver that it named with DRIVER or that the
    // data source has. Empty when there is none.
    std::string Get(std::string_view key) const
    {
        std::string value = Given(key);
        std::string driver = Given("DRIVER");
        if (const std::string source = Given("DSN"); value.empty() && driver.empty())
        {
            value = ReadProfile(source, key, "odbc.ini");
            driver = ReadProfile(source, "Driver", "odbc.ini");
        }
        // a data source names its driver by section or by path; a path has no section to fall back to
        const bool isSection = driver.find('/') == std::string::npos;
        return value.empty() && isSection ? ReadProfile(driver, key, "odbcinst.ini") : value;
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
    if (file.empty()) // which SQLite takes for one of its own
        throw SqlError(4060, "42000", "");
    auto session = tsql::Session::Open(file, settings.Is("Create", "yes"), 10000);
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
        m_session = LogIn(settings);
    }
    catch (const SqlError &error)
    {
        const std::string text = error.Number() != 4060 ? error.what()
                                                        : "Cannot open database \"" + settings.Get("Database") +
                                                              "\" requested by the login. The login failed.";
        throw DriverError(Records{MakeRecord(error.State(), error.Number(), text),
                                  MakeRecord("08001", 0, "Unable to connect to data source")});
    }
    const std::string claimed = settings.Get("ClaimedTextSize");
    claimedTextSize = claimed.empty() ? -1 : std::atoi(claimed.c_str());

    static std::atomic<int> connections{0};
    const char *const log = std::getenv("KVEMBEDDED_LOG");
    m_log.pubsetbuf(nullptr, 0);
    if (const std::string path = log != nullptr ? log : settings.Get("StatementLog"); !path.empty())
        m_log.open(path, std::ios::out | std::ios::app | std::ios::binary);
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
    m_active = nullptr;
    m_statements.clear();
    m_session.reset();
    m_idleCut.reset();
    m_dead = false;
}

// A line is written whole with one call: several processes may share the file.
void Connection::Log(std::string_view kind, std::string_view text)
{
    if (!m_log.is_open())
        return;
    const std::string line = std::string(kind) + m_logPrefix + Escape(text) + "\n";
    m_log.sputn(line.data(), static_cast<std::streamsize>(line.size())); // a full disk must not fail the statement
}

tsql::Session &Connection::Session()
{
    if (m_session == nullptr)
        throw m_dead ? DriverError("08S01", "Communication link failure")
                     : DriverError("08003", "Connection does not exist");
    return *m_session;
}

bool Connection::IsLost()
{
    if (!m_dead && !m_idleCut)
        m_idleCut = m_faults.Take(FaultList::Idling);
    return m_dead || m_idleCut;
}

void Connection::BeforeCall(std::string_view function)
{
    m_callFault.reset();
    m_wasDead = m_dead;
    if (m_session == nullptr && !m_dead)
        return;
    if (m_dead && function.starts_with("SQLExec"))
        Log("lost", "");
    // what gives up or asks about the connection itself works without one
    if (m_dead && !function.starts_with("SQLFree") && function != "SQLDisconnect" && function != "SQLGetConnectAttr")
        Session();
    m_callFault = m_faults.Take(FaultList::Call, function);
    if (!m_callFault || m_callFault->time == Fault::After)
        return;
    if (m_callFault->time == Fault::End && !m_dead && m_active != nullptr)
    {
        m_active->LoseResults();
        m_session->Cancel();
    }
    AfterCall();
}

void Connection::AfterCall()
{
    if (m_callFault)
        Fail(*std::exchange(m_callFault, std::nullopt));
}

void Connection::Record(const std::exception &error, Records &records)
{
    const auto isWarning = [](const DiagnosticRecord &record) { return record.state.starts_with("01"); };
    Records thrown{MakeRecord("HY000", 0, error.what())};
    if (const auto *const own = dynamic_cast<const DriverError *>(&error))
        thrown = own->records;
    else if (const auto *const server = dynamic_cast<const SqlError *>(&error))
        thrown = {MakeRecord(server->State(), server->Number(), server->what())};
    if (!m_wasDead)
        Log("error", thrown[0].state + ": " + thrown[0].text);
    records.insert(std::find_if(records.begin(), records.end(), isWarning), thrown.begin(), thrown.end());
}

std::optional<Fault> Connection::NextFault(std::string_view statement)
{
    if (IsLost())
        Fail(*m_idleCut);
    if (m_callFault) // a statement that takes effect takes all of its effect
        return std::exchange(m_callFault, std::nullopt);
    return m_faults.Take(FaultList::Statement, statement);
}

void Connection::Fail(const Fault &fault)
{
    if (fault.cut && m_session != nullptr)
    {
        m_dead = true;
        m_callFault.reset();
        if (m_active != nullptr)
            m_active->LoseResults();
        m_session.reset();
    }
    throw DriverError(Records{fault.record});
}

Handle *Connection::NewStatement()
{
    Session(); // there must be one
    return m_statements.emplace_back(std::make_unique<Statement>(*this)).get();
}

void Connection::Free(Statement &statement)
{
    if (m_active == &statement)
        m_active = nullptr;
    std::erase_if(m_statements, [&](const auto &each) { return each.get() == &statement; });
}

void Connection::Claim(Statement &statement)
{
    if (m_active != nullptr && m_active != &statement && !m_active->IsDrained())
        throw DriverError("HY000", "Connection is busy with results for another hstmt");
    m_active = &statement;
}

} // namespace driver
