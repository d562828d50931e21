// One log-in: see connection.h.
#include "connection.h"

#include "statement.h"
#include "text.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

namespace driver
{
namespace
{

// What a client learns of a failed log-in: the reason, and the general failure behind it.
DriverError Refused(std::string_view state, int native, const std::string &text)
{
    return DriverError(
        Records{MakeRecord(state, native, text), MakeRecord("08001", 0, "Unable to connect to data source")});
}

bool Contains(const std::vector<std::string> &names, const std::string &name)
{
    return std::any_of(names.begin(), names.end(), [&](const auto &n) { return EqualNoCase(n, name); });
}

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Settings &settings, SQLULEN timeoutSeconds)
{
    if (Contains(settings.silentServers, settings.server))
    {
        const auto start = std::chrono::steady_clock::now();
        while (timeoutSeconds == 0 || std::chrono::steady_clock::now() - start < std::chrono::seconds(timeoutSeconds))
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        throw Refused("HYT00", 0, "Login timeout expired");
    }
    if (!settings.servers.empty() && !Contains(settings.servers, settings.server))
        throw Refused("08001", 17, "SQL Server does not exist or access denied.");
}

std::unique_ptr<tsql::Session> OpenDatabase(const Settings &settings)
{
    try
    {
        if (!settings.file.empty())
            return tsql::Session::Open(settings.file, settings.create, settings.busyMilliseconds);
    }
    catch (const tsql::SqlError &error)
    {
        if (error.Number() != 4060)
            throw Refused(error.State(), error.Number(), error.what());
    }
    throw Refused("42000", 4060,
                  "Cannot open database \"" + settings.database + "\" requested by the login. The login failed.");
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
           session.Internal("SELECT 1 FROM kvembedded_users LIMIT 1").empty() ||
           !session
                .Internal("SELECT 1 FROM kvembedded_users WHERE name = " + Quoted(user) +
                          " AND password = " + Quoted(password))
                .empty();
}

} // namespace

void Connection::Connect(std::string_view function, Settings settings)
{
    if (IsConnected())
        throw DriverError("08002", "Connection name in use");
    const bool isMeant =
        settings.faultApplication == "*" || EqualNoCase(settings.faultApplication, settings.application);
    m_faults = FaultList(isMeant ? settings.faultList : "");
    m_cutsSeen = m_faults.LastCut();
    m_idleCut.reset();
    std::optional<Fault> fault = m_faults.Take(FaultList::Call, function);
    if (fault && fault->time != Fault::After)
        throw DriverError(Records{fault->record});
    ReachServer(settings, attributes[SQL_ATTR_LOGIN_TIMEOUT]);
    std::error_code ignored;
    const bool isNew = !std::filesystem::exists(settings.file, ignored);
    std::unique_ptr<tsql::Session> session = OpenDatabase(settings);
    if (isNew && !settings.password.empty())
        AddUser(*session, settings.user.empty() ? "sa" : settings.user, settings.password);
    else if (!MayLogIn(*session, settings.user, settings.password))
        throw Refused("28000", 18456, "Login failed for user '" + settings.user + "'.");

    m_log = std::make_unique<StatementLog>(settings.statementLog, settings.application);
    m_session = std::move(session);
    m_settings = std::move(settings);
    m_dead = m_inTransaction = false;
    m_log->Write("connect", m_settings.server + " " + m_settings.database);
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
    m_dead = m_inTransaction = false;
}

tsql::Session &Connection::Session()
{
    if (!IsConnected())
        throw DriverError("08003", "Connection does not exist");
    if (m_dead)
        throw DriverError("08S01", "Communication link failure");
    return *m_session;
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
    if (!IsConnected())
        return;
    // what gives up or asks about the connection itself works without one
    static constexpr std::string_view local[] = {"SQLDisconnect", "SQLFreeHandle", "SQLFreeStmt", "SQLGetConnectAttr"};
    if (m_dead && std::find(std::begin(local), std::end(local), function) == std::end(local))
        Session();
    m_callFault = m_faults.Take(FaultList::Call, function);
    if (!m_callFault || m_callFault->time == Fault::After)
        return;
    if (m_callFault->time == Fault::AtEnd && !m_dead && m_active != nullptr)
    {
        m_active->LoseConnection();
        m_session->Cancel();
    }
    AfterCall();
}

void Connection::AfterCall()
{
    if (!m_callFault)
        return;
    const Fault fault = *std::exchange(m_callFault, std::nullopt);
    if (IsConnected())
        m_log->Write("error", Describe({fault.record}));
    Fail(fault);
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
    if (fault.cut && IsConnected())
    {
        m_dead = true;
        m_callFault.reset();
        if (m_active != nullptr)
            m_active->LoseConnection();
        m_active = nullptr;
        m_session.reset();
        m_inTransaction = false;
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

void Connection::BeginIfManual()
{
    if (attributes[SQL_ATTR_AUTOCOMMIT] != SQL_AUTOCOMMIT_OFF || m_inTransaction)
        return;
    Session().Internal("BEGIN");
    m_inTransaction = true;
}

void Connection::EndTransaction(bool commit)
{
    if (!m_inTransaction)
        return;
    if (m_active != nullptr)
        m_active->Close();
    Session().Internal(commit ? "COMMIT" : "ROLLBACK");
    m_inTransaction = false;
}

} // namespace driver
