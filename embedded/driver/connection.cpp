// One log-in: see connection.h.
#include "connection.h"

#include "statement.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace driver
{

using runtime::EqualNoCase;

namespace
{

// What a client learns of a failed log-in: the reason, and the general failure behind it.
DriverError Refused(std::string_view state, int native, const std::string &text)
{
    return DriverError(
        Records{MakeRecord(state, native, text), MakeRecord("08001", 0, "Unable to connect to data source")});
}

std::string Quoted(std::string_view text)
{
    std::string out = "'";
    for (const char c : text)
        out.append(c == '\'' ? 2 : 1, c);
    return out + "'";
}

int NumberOr(const std::string &text, int otherwise)
{
    return text.empty() ? otherwise : std::atoi(text.c_str());
}

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Settings &settings, SQLULEN timeoutSeconds)
{
    const std::string server = settings.Get("Server");
    if (settings.Lists("SilentServers", server))
    {
        const auto start = std::chrono::steady_clock::now();
        while (timeoutSeconds == 0 || std::chrono::steady_clock::now() - start < std::chrono::seconds(timeoutSeconds))
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        throw Refused("HYT00", 0, "Login timeout expired");
    }
    if (!settings.Get("Servers").empty() && !settings.Lists("Servers", server))
        throw Refused("08001", 17, "SQL Server does not exist or access denied.");
}

std::unique_ptr<tsql::Session> OpenDatabase(const Settings &settings, const std::string &file)
{
    try
    {
        if (!file.empty())
            return tsql::Session::Open(file, EqualNoCase(settings.Get("Create"), "yes"),
                                       NumberOr(settings.Get("BusyTimeout"), 10000));
    }
    catch (const tsql::SqlError &error)
    {
        if (error.Number() != 4060)
            throw Refused(error.State(), error.Number(), error.what());
    }
    throw Refused("42000", 4060,
                  "Cannot open database \"" + settings.Get("Database") +
                      "\" requested by the login. The login failed.");
}

// Users and passwords, kept with the database in a table of the driver's own. A stand-in for a server's log-in, not a
// protection: who can read the file needs none.
void AddUser(tsql::Session &session, const std::string &user, const std::string &password)
{
    session.Internal("CREATE TABLE IF NOT EXISTS kvembedded_users "
                     "(name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, password TEXT NOT NULL)");
    session.Internal("INSERT OR REPLACE INTO kvembedded_users VALUES (" + Quoted(user) + ", " + Quoted(password) + ")");
}

// True when the database has no users at all, or has this one with this password.
bool MayLogIn(tsql::Session &session, const std::string &user, const std::string &password)
{
    return session.Internal("SELECT 1 FROM sqlite_master WHERE name = 'kvembedded_users'").empty() ||
           session.Internal("SELECT COUNT(*) = 0 OR SUM(name = " + Quoted(user) +
                            " AND password = " + Quoted(password) + ") FROM kvembedded_users")[0] == "1";
}

} // namespace

void Connection::Connect(std::string_view function, const Settings &settings)
{
    if (IsConnected())
        throw DriverError("08002", "Connection name in use");
    const std::string application = settings.Get("APP");
    const std::string meant = settings.Get("FaultApplication");
    const bool isMeant = meant == "*" || EqualNoCase(meant.empty() ? "KVHEADERS.DLL" : meant, application);
    m_faults = FaultList(isMeant ? FromEnvironment("KVEMBEDDED_FAULTS", settings.Get("FaultList")) : "");
    m_cutsSeen = m_faults.LastCut();
    m_idleCut.reset();
    const std::optional<Fault> fault = m_faults.TakeForCall(function);
    if (fault && fault->time != Fault::After)
        throw DriverError(Records{fault->record});
    ReachServer(settings, attributes[SQL_ATTR_LOGIN_TIMEOUT]);
    const std::string file = FromEnvironment("KVEMBEDDED_DATABASE", settings.DatabaseFile());
    const std::string user = settings.Get("UID");
    const std::string password = settings.Get("PWD");
    std::error_code ignored;
    const bool isNew = !std::filesystem::exists(file, ignored);
    std::unique_ptr<tsql::Session> session = OpenDatabase(settings, file);
    if (isNew && !password.empty())
        AddUser(*session, user.empty() ? "sa" : user, password);
    else if (!MayLogIn(*session, user, password))
        throw Refused("28000", 18456, "Login failed for user '" + user + "'.");

    m_log =
        std::make_unique<StatementLog>(FromEnvironment("KVEMBEDDED_LOG", settings.Get("StatementLog")), application);
    m_session = std::move(session);
    m_claimedTextSize = NumberOr(settings.Get("ClaimedTextSize"), -1);
    m_dead = false;
    m_log->Write("connect", settings.Get("Server") + " " + settings.Get("Database"));
    if (fault)
    {
        Disconnect();
        throw DriverError(Records{fault->record});
    }
}

void Connection::Disconnect()
{
    if (!IsConnected())
        throw DriverError("08003", "Connection does not exist");
    RemoveHandlesUnder(*this);
    m_active = nullptr;
    m_session.reset();
    m_log->Write("disconnect", "");
    m_log.reset();
    m_dead = false;
}

tsql::Session &Connection::Session()
{
    if (!IsConnected())
        throw DriverError("08003", "Connection does not exist");
    if (m_dead)
        throw DriverError("08S01", "Communication link failure");
    return *m_session;
}

void Connection::LogError(const Records &records)
{
    if (m_log != nullptr && !m_wasDead)
        m_log->Write("error", Describe(records));
}

bool Connection::IsLost()
{
    if (!m_dead && !m_idleCut)
        m_idleCut = m_faults.TakeCut(m_cutsSeen);
    return m_dead || m_idleCut;
}

void Connection::BeforeCall(std::string_view function)
{
    m_callFault.reset();
    m_wasDead = m_dead;
    if (!IsConnected())
        return;
    // what gives up or asks about the connection itself works without one
    static constexpr std::string_view local[] = {"SQLDisconnect", "SQLFreeHandle", "SQLFreeStmt", "SQLGetConnectAttr"};
    if (m_dead && std::find(std::begin(local), std::end(local), function) == std::end(local))
        Session();
    m_callFault = m_faults.TakeForCall(function);
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
    if (!m_callFault)
        return;
    Fail(*std::exchange(m_callFault, std::nullopt));
}

std::optional<Fault> Connection::NextFault(std::string_view statement)
{
    if (IsLost())
        Fail(*m_idleCut);
    if (m_callFault) // a statement that takes effect takes all of its effect
        return std::exchange(m_callFault, std::nullopt);
    return m_faults.TakeForStatement(statement);
}

void Connection::Fail(const Fault &fault)
{
    if (fault.cut && IsConnected())
    {
        m_dead = true;
        m_callFault.reset();
        if (m_active != nullptr)
            m_active->LoseResults();
        m_active = nullptr;
        m_session.reset();
    }
    throw DriverError(Records{fault.record});
}

void Connection::Claim(Statement &statement)
{
    if (m_active != nullptr && m_active != &statement && !m_active->IsDrained())
        throw DriverError("HY000", "Connection is busy with results for another hstmt");
    m_active = &statement;
}

void Connection::Release(Statement &statement)
{
    if (m_active == &statement)
        m_active = nullptr;
}

} // namespace driver
