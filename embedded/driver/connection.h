// One log-in: its session on the database, its log and faults, and who reads from it now.
#pragma once

#include "faults.h"
#include "tsql/session.h"

#include <fstream>
#include <memory>

namespace driver
{

class Statement;

// In order; the first of a name that is not empty counts.
using Attributes = std::vector<std::pair<std::string, std::string>>;

// "KEY=value;KEY={va;l}}ue};..." Pieces without "=" are passed over.
Attributes ReadConnectString(std::string_view text);

class Connection : public Handle
{
public:
    // Logs in. Throws DriverError: 08001 no such server, HYT00 a server that does not answer within the login time-out,
    // 42000 (4060) no such database, 28000 (18456) wrong user or password. `function` is the one that was called.
    void Connect(std::string_view function, const Attributes &attributes);
    // Frees the statements and gives up what is open, a transaction included. Succeeds on a dead connection too.
    void Disconnect();

    bool IsDead() const { return m_dead; } // and a call has met it
    bool IsLost();                         // as a look at the network tells
    // Throws DriverError 08003 when not connected, 08S01 when the connection was cut.
    tsql::Session &Session();

    // Around each call of an ODBC function on the connection or a statement of it: what the fault list orders for it,
    // and the loss of a connection. Both throw DriverError when the call is to fail.
    void BeforeCall(std::string_view function);
    void AfterCall();
    // Adds an exception's records to those of a handle, in front of warnings. Logs it, unless the loss was met before.
    void Record(const std::exception &error, Records &records);
    // Writes a line of the statement log, which docs/embedded-database.md describes.
    void Log(std::string_view kind, std::string_view text);

    // What is ordered for a statement that is about to run, if anything is. Throws as ordered when the connection was
    // cut while it was idle.
    std::optional<Fault> NextFault(std::string_view statement);
    // Fails as ordered, and as if the network had gone when that is ordered.
    [[noreturn]] void Fail(const Fault &fault);

    // The connection owns its statements. Throws DriverError 08003 when not connected.
    Handle *NewStatement();
    void Free(Statement &statement);
    // Makes `statement` the one whose results are read. Throws DriverError HY000 while another has rows left.
    void Claim(Statement &statement);

    Connection &connection = *this; // as a statement has it
    SQLULEN loginTimeout = 15;      // seconds; 0: wait for ever
    int claimedTextSize = -1;       // of every text column; -1: the truth

private:
    std::unique_ptr<tsql::Session> m_session; // null: not connected, or dead
    std::filebuf m_log;
    std::string m_logPrefix; // TAB ID TAB APP TAB
    FaultList m_faults;
    std::optional<Fault> m_idleCut;   // known to the network, not yet to the client
    std::optional<Fault> m_callFault; // of the call that runs
    Statement *m_active = nullptr;    // the last that ran a batch
    bool m_dead = false;
    bool m_wasDead = false; // when the call that runs began
    std::vector<std::unique_ptr<Handle>> m_statements;
};

} // namespace driver
