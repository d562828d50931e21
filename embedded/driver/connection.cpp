// One log-in: see connection.h.
#include "connection.h"

#include "guard.h"
#include "login.h"
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

const DiagnosticRecord &GeneralFailure()
{
    static const DiagnosticRecord record = MakeRecord("08001", 0, "Unable to connect to data source");
    return record;
}

bool Contains(const std::vector<std::string> &names, const std::string &name)
{
    return std::any_of(names.begin(), names.end(), [&](const auto &n) { return EqualsIgnoringCase(n, name); });
}

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Settings &settings, SQLUINTEGER timeoutSeconds)
{
    if (Contains(settings.silentServers, settings.server))
    {
        const auto start = std::chrono::steady_clock::now();
        while (timeoutSeconds == 0 || std::chrono::steady_clock::now() - start < std::chrono::seconds(timeoutSeconds))
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        throw DriverError({MakeRecord("HYT00", 0, "Login timeout expired"), GeneralFailure()});
    }
    if (!settings.servers.empty() && !Contains(settings.servers, settings.server))
        throw DriverError({MakeRecord("08001", 17, "SQL Server does not exist or access denied."), GeneralFailure()});
}

std::unique_ptr<tsql::Session> OpenDatabase(const Settings &settings)
{
    const std::string refused =
        "Cannot open database \"" + settings.database + "\" requested by the login. The login failed.";
    try
    {
        if (settings.file.empty())
            throw tsql::SqlError(4060, "42000", refused);
        return tsql::Session::Open(settings.file, settings.create, settings.busyMilliseconds);
    }
    catch (const tsql::SqlError &error)
    {
        const std::string text = error.Number() == 4060 ? refused : error.what();
        throw DriverError({MakeRecord(error.State(), error.Number(), text), GeneralFailure()});
    }
}

} // namespace

void Connection::Connect(Settings settings)
{
    if (IsConnected())
        throw DriverError("08002", "Connection name in use");
    ReachServer(settings, loginTimeout);
    std::error_code ignored;
    const bool isNew = !std::filesystem::exists(settings.file, ignored);
    std::unique_ptr<tsql::Session> session = OpenDatabase(settings);
    if (isNew && !settings.password.empty())
        AddUser(*session, settings.user.empty() ? "sa" : settings.user, settings.password);
    else if (!MayLogIn(*session, settings.user, settings.password))
        throw DriverError(
            {MakeRecord("28000", 18456, "Login failed for user '" + settings.user + "'."), GeneralFailure()});

    m_log = std::make_unique<StatementLog>(settings.statementLog, settings.application);
    m_faults = FaultList(settings.faultList);
    m_session = std::move(session);
    m_settings = std::move(settings);
    m_dead = m_inTransaction = false;
    m_log->Write("connect", m_settings.server + " " + m_settings.database);
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

std::optional<Fault> Connection::TakeFault(std::string_view statement) const
{
    if (m_settings.faultApplication != "*" && !EqualsIgnoringCase(m_settings.faultApplication, m_settings.application))
        return std::nullopt;
    return m_faults.Take(statement);
}

void Connection::Cut()
{
    m_dead = true;
    if (m_active != nullptr)
        m_active->LoseConnection();
    m_active = nullptr;
    m_session.reset();
    m_inTransaction = false;
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

void Connection::SetAutocommit(bool on)
{
    if (on && m_inTransaction)
        EndTransaction(true);
    m_autocommit = on;
}

void Connection::BeginIfManual()
{
    if (m_autocommit || m_inTransaction)
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
