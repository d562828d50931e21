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
    void Connect(std::string_view function, Settings settings);
    // Gives up what is open, a transaction included. Succeeds on a dead connection too.
    void Disconnect();

    bool IsConnected() const { return m_log != nullptr; }
    bool IsDead() const { return m_dead; } // and a call has met it
    bool IsLost();                         // as a look at the network tells
    const Settings &GetSettings() const { return m_settings; }
    // Throws DriverError 08003 when not connected, 08S01 when the connection was cut.
    tsql::Session &Session();
    StatementLog &Log() { return *m_log; }

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

    // Opens a transaction when autocommit is off and none is open.
    void BeginIfManual();
    void EndTransaction(bool commit);

    // Those of SQLSetConnectAttr, by their numbers; all but the first two are kept without effect.
    std::map<SQLINTEGER, SQLULEN> attributes = {
        {SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_ON},
        {SQL_ATTR_LOGIN_TIMEOUT, 15}, // seconds; 0: wait for ever
        {SQL_ATTR_TXN_ISOLATION, SQL_TXN_SERIALIZABLE},
        {SQL_ATTR_ACCESS_MODE, SQL_MODE_READ_WRITE},
        {SQL_ATTR_CONNECTION_TIMEOUT, 0},
        {SQL_ATTR_PACKET_SIZE, 0},
        {SQL_ATTR_QUIET_MODE, 0},
        {SQL_ATTR_METADATA_ID, SQL_FALSE},
        {SQL_ATTR_ASYNC_ENABLE, SQL_ASYNC_ENABLE_OFF},
        {SQL_ATTR_ANSI_APP, SQL_AA_FALSE},
        {SQL_ATTR_ODBC_CURSORS, SQL_CUR_USE_DRIVER},
        {SQL_ATTR_AUTO_IPD, SQL_FALSE},
    };

private:
    std::shared_ptr<Handle> m_environment; // outlives its connections
    Settings m_settings;
    std::unique_ptr<tsql::Session> m_session;
    std::unique_ptr<StatementLog> m_log;
    FaultList m_faults{""};
    long long m_cutsSeen = 0;         // idle cuts that were ordered before this connection was made
    std::optional<Fault> m_idleCut;   // known to the network, not yet to the client
    std::optional<Fault> m_callFault; // of the call that runs
    Statement *m_active = nullptr;
    bool m_dead = false;
    bool m_inTransaction = false;
};

} // namespace driver
