// One log-in: its session on the database, its attributes, its log and faults, and who reads from it now.
#pragma once

#include "handles.h"
#include "settings.h"
#include "tsql/session.h"
#include "watching.h"

#include <map>

namespace driver
{

class Statement;

class Environment : public Handle
{
};

class Connection : public Handle
{
public:
    explicit Connection(std::shared_ptr<Handle> environment) : m_environment(std::move(environment)) {}

    // Logs in. Throws DriverError: 08001 no such server, HYT00 a server that does not answer within the login time-out,
    // 42000 (4060) no such database, 28000 (18456) wrong user or password.
    // `function` is the one that was called.
    void Connect(std::string_view function, const Settings &settings);
    // Gives up what is open, a transaction included. Succeeds on a dead connection too.
    void Disconnect();

    bool IsConnected() const { return m_log != nullptr; }
    bool IsDead() const { return m_dead; }                    // and a call has met it
    bool IsLost();                                            // as a look at the network tells
    int ClaimedTextSize() const { return m_claimedTextSize; } // -1: the truth
    // Throws DriverError 08003 when not connected, 08S01 when the connection was cut.
    tsql::Session &Session();
    void LogStatement(std::string_view text) { m_log->Write("statement", text); }
    void LogError(const Records &records); // of a call that has failed, but for those behind the loss of the connection

    void BeforeCall(std::string_view function) override;
    void AfterCall() override;

    // What is ordered for a statement that is about to run, if anything is. Throws as ordered when the connection was
    // cut while it was idle.
    std::optional<Fault> NextFault(std::string_view statement);
    // Fails as ordered, and as if the network had gone when that is ordered.
    [[noreturn]] void Fail(const Fault &fault);

    // Makes `statement` the one whose results are read. Throws DriverError HY000 while another has rows left.
    void Claim(Statement &statement);
    void Release(Statement &statement);

    // Those of SQLSetConnectAttr, by their numbers; all but the first are kept without effect.
    std::map<SQLINTEGER, SQLULEN> attributes = {
        {SQL_ATTR_LOGIN_TIMEOUT, 15}, // seconds; 0: wait for ever
        {SQL_ATTR_ACCESS_MODE, SQL_MODE_READ_WRITE},
        {SQL_ATTR_CONNECTION_TIMEOUT, 0},
    };

private:
    std::shared_ptr<Handle> m_environment; // outlives its connections
    std::unique_ptr<tsql::Session> m_session;
    std::unique_ptr<StatementLog> m_log;
    FaultList m_faults{""};
    long long m_cutsSeen = 0;         // idle cuts that were ordered before this connection was made
    std::optional<Fault> m_idleCut;   // known to the network, not yet to the client
    std::optional<Fault> m_callFault; // of the call that runs
    Statement *m_active = nullptr;
    int m_claimedTextSize = -1;
    bool m_dead = false;
    bool m_wasDead = false; // when the call that runs began
};

} // namespace driver
