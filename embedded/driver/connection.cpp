// One log-in: see connection.h.
#include "connection.h"

#include "escape.h"
#include "runtime/text.h"
#include "statement.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <thread>

#include <unistd.h>

namespace driver
{
namespace
{

using tsql::SqlError;

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

// The user and password that a database was made with, kept in a table of the driver's own; none: everybody may log in.
// A stand-in for a server's log-in, not a protection: who can read the file needs none.
void KeepLogin(tsql::Session &session, const std::string &user, const std::string &password)
{
    std::ostringstream table;
    table << "CREATE TABLE kvembedded_users AS SELECT " << std::quoted(user, '\'', '\'') << " AS name, "
          << std::quoted(password, '\'', '\'') << " AS password";
    session.Internal(table.str());
}

bool MayLogIn(tsql::Session &session, const std::string &user, const std::string &password)
{
    if (session.Internal("SELECT 1 FROM sqlite_master WHERE name = 'kvembedded_users'").empty())
        return true;
    const std::vector<std::string> kept =
        session.Internal("SELECT name FROM kvembedded_users UNION ALL SELECT password FROM kvembedded_users");
    return runtime::EqualNoCase(kept.at(0), user) && kept.at(1) == password;
}

std::unique_ptr<tsql::Session> LogIn(const Settings &settings)
{
    const std::string file = settings.DatabaseFile();
    const std::string user = settings.Get("UID");
    const std::string password = settings.Get("PWD");
    std::error_code ignored;
    const bool isNew = !std::filesystem::exists(file, ignored);
    if (file.empty()) // which SQLite takes for one of its own
        throw SqlError(4060, "42000", "");
    std::unique_ptr<tsql::Session> session = tsql::Session::Open(file, settings.Is("Create", "yes"), 10000);
    if (isNew && !password.empty())
        KeepLogin(*session, user.empty() ? "sa" : user, password);
    else if (!MayLogIn(*session, user, password))
        throw SqlError(18456, "28000", "Login failed for user '" + user + "'.");
    return session;
}

// What a client learns of a failed log-in: the reason, and the general failure behind it.
DriverError Refused(const SqlError &error, const std::string &database)
{
    const std::string text =
        error.Number() != 4060 ? error.what()
                               : "Cannot open database \"" + database + "\" requested by the login. The login failed.";
    return DriverError(Records{MakeRecord(error.State(), error.Number(), text),
                               MakeRecord("08001", 0, "Unable to connect to data source")});
}

bool IsWarning(const DiagnosticRecord &record)
{
    return record.state.starts_with("01");
}

} // namespace

Connection::~Connection() = default;

void Connection::Connect(std::string_view function, const Settings &settings)
{
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
        throw Refused(error, settings.Get("Database"));
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
    // what gives up or asks about the connection itself works without one
    static constexpr std::string_view local[] = {"SQLDisconnect", "SQLFreeHandle", "SQLFreeStmt", "SQLGetConnectAttr"};
    if (m_dead && std::find(std::begin(local), std::end(local), function) == std::end(local))
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

void Connection::RecordException(Records &records)
{
    Records thrown;
    try
    {
        throw;
    }
    catch (const DriverError &error)
    {
        thrown = error.records;
    }
    catch (const SqlError &error)
    {
        thrown = {MakeRecord(error.State(), error.Number(), error.what())};
    }
    catch (const std::exception &error)
    {
        thrown = {MakeRecord("HY000", 0, error.what())};
    }
    if (!m_wasDead)
        Log("error", thrown[0].state + ": " + thrown[0].text);
    records.insert(std::find_if(records.begin(), records.end(), IsWarning), thrown.begin(), thrown.end());
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

Statement *Connection::NewStatement()
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
