// One log-in: see connection.h.
#include "connection.h"

#include "runtime/text.h"
#include "statement.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <sstream>
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

// Plays the part of the network: a server that is not there, or one that takes the connection and keeps silent.
void ReachServer(const Settings &settings, SQLULEN timeoutSeconds)
{
    const std::string server = settings.Get("Server");
    if (!server.empty() && settings.Is("SilentServer", server))
    {
        for (SQLULEN tenths = 0; timeoutSeconds == 0 || tenths < 10 * timeoutSeconds; ++tenths)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        throw Refused("HYT00", 0, "Login timeout expired");
    }
    if (!settings.Get("OnlyServer").empty() && !settings.Is("OnlyServer", server))
        throw Refused("08001", 17, "SQL Server does not exist or access denied.");
}

std::unique_ptr<tsql::Session> OpenDatabase(const Settings &settings, const std::string &file)
{
    try
    {
        if (!file.empty())
            return tsql::Session::Open(file, settings.Is("Create", "yes"), 10000);
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

// The user and password that a database was made with, kept in a table of the driver's own; none: everybody may log in.
// A stand-in for a server's log-in, not a protection: who can read the file needs none.
void KeepLogin(tsql::Session &session, const std::string &user, const std::string &password)
{
    session.Internal("CREATE TABLE kvembedded_users (name TEXT NOT NULL, password TEXT NOT NULL)");
    std::ostringstream insert;
    insert << "INSERT INTO kvembedded_users VALUES (" << std::quoted(user, '\'', '\'') << ", "
           << std::quoted(password, '\'', '\'') << ")";
    session.Internal(insert.str());
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
    std::unique_ptr<tsql::Session> session = OpenDatabase(settings, file);
    if (isNew && !password.empty())
        KeepLogin(*session, user.empty() ? "sa" : user, password);
    else if (!MayLogIn(*session, user, password))
        throw Refused("28000", 18456, "Login failed for user '" + user + "'.");
    return session;
}

} // namespace

Connection::~Connection() = default;

void Connection::Connect(std::string_view function, const Settings &settings)
{
    m_faults = FaultList(settings.Is("APP", "KVHEADERS.DLL") ? settings.Get("FaultList") : "");
    m_idleCut.reset();
    const std::optional<Fault> fault = m_faults.Take(FaultList::Call, function);
    if (fault && fault->time != Fault::After)
        Fail(*fault);
    ReachServer(settings, loginTimeout);
    m_session = LogIn(settings);
    const char *const log = std::getenv("KVEMBEDDED_LOG");
    m_log = std::make_unique<StatementLog>(log != nullptr ? log : settings.Get("StatementLog"), settings.Get("APP"));
    const std::string claimed = settings.Get("ClaimedTextSize");
    claimedTextSize = claimed.empty() ? -1 : std::atoi(claimed.c_str());
    m_log->Write("connect", settings.Get("Server") + " " + settings.Get("Database"));
    if (fault)
    {
        Disconnect();
        Fail(*fault);
    }
}

void Connection::Disconnect()
{
    m_active = nullptr;
    m_statements.clear();
    m_session.reset();
    if (m_log != nullptr)
        m_log->Write("disconnect", "");
    m_log.reset();
    m_dead = false;
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
    if (m_log == nullptr)
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

void Connection::NoteFailure(const Records &thrown)
{
    if (m_log != nullptr && !m_wasDead)
        m_log->Write("error", Describe(thrown));
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
    if (fault.cut && m_log != nullptr)
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
