// One log-in: its session on the database, its attributes, its log and faults, and who reads from it now.
#pragma once

#include "faults.h"
#include "handles.h"
#include "settings.h"
#include "statement_log.h"
#include "tsql/session.h"

#include <map>

namespace driver
{

class Statement;

class Environment : public Handle
{
public:
    Environment() : Handle(std::make_shared<std::recursive_mutex>()) {}

    SQLINTEGER odbcVersion = SQL_OV_ODBC3;
};

class Connection : public Handle
{
public:
    explicit Connection(std::shared_ptr<Handle> environment)
        : Handle(std::make_shared<std::recursive_mutex>()), m_environment(std::move(environment))
    {
    }

    // Logs in. Throws DriverError: 08001 no such server, HYT00 a server that does not answer within the login time-out,
    // 42000 (4060) no such database, 28000 (18456) wrong user or password.
    void Connect(Settings settings);
    // Gives up what is open, a transaction included. Succeeds on a dead connection too.
    void Disconnect();

    bool IsConnected() const { return m_log != nullptr; }
    bool IsDead() const { return m_dead; }
    const Settings &GetSettings() const { return m_settings; }
    // Throws DriverError 08003 when not connected, 08S01 when the connection was cut.
    tsql::Session &Session();
    StatementLog &Log() { return *m_log; }

    // The next fault ordered for this statement of this connection, if any.
    std::optional<Fault> TakeFault(std::string_view statement) const;
    // As if the network had gone.
    void Cut();

    // Makes `statement` the one whose results are read. Throws DriverError HY000 while another has rows left.
    void Claim(Statement &statement);
    void Release(Statement &statement);

    void SetAutocommit(bool on);
    bool Autocommit() const { return m_autocommit; }
    // Opens a transaction when autocommit is off and none is open.
    void BeginIfManual();
    void EndTransaction(bool commit);

    SQLUINTEGER loginTimeout = 15;                 // seconds; 0: wait for ever
    std::map<SQLINTEGER, SQLULEN> otherAttributes; // accepted and kept, without effect

private:
    std::shared_ptr<Handle> m_environment; // outlives its connections
    Settings m_settings;
    std::unique_ptr<tsql::Session> m_session;
    std::unique_ptr<StatementLog> m_log;
    FaultList m_faults{""};
    Statement *m_active = nullptr;
    bool m_dead = false;
    bool m_autocommit = true;
    bool m_inTransaction = false;
};

} // namespace driver
