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
    // Logs in. Throws SqlError: 08001 no such server, HYT00 a server that does not answer within the login time-out,
    // 42000 (4060) no such database, 28000 (18456) wrong user or password. `function` is the one that was called.
    void Connect(std::string_view function, const Attributes &attributes);
    // Frees the statements and gives up what is open, a transaction included. Succeeds on a dead connection too.
    void Disconnect();

    bool IsDead() const { return m_isConnected && session == nullptr; }          // and a call has met it
    bool IsLost() const { return IsDead() || m_faults.Take(FaultList::Idling); } // as a look at the network tells

    // Around each call of an ODBC function on the connection or a statement of it: what the fault list orders for it,
    // and the loss of a connection. Both throw when the call is to fail.
    void BeforeCall(std::string_view function);
    void AfterCall() const;
    // What is ordered for a statement that is about to run: a fault behind it, or of one of its rows. Throws the
    // others.
    std::optional<Fault> NextFault(std::string_view statement);
    // Puts an exception in front of the records of a handle and logs it, unless the connection is dead. When it is a
    // fault that cuts the connection or ends its rows, that happens now.
    void Record(const std::exception &error, std::vector<SqlError> &records);
    // Writes a line of the statement log, which docs/embedded-database.md describes.
    void Log(std::string_view kind, std::string_view text);

    Connection &connection = *this;                  // as a statement has it
    SQLULEN loginTimeout = 15;                       // seconds; 0: wait for ever
    int claimedTextSize = -1;                        // of every text column; -1: the truth
    std::unique_ptr<tsql::Session> session;          // null: not connected, or dead
    Statement *active = nullptr;                     // whose batch the session runs; null: it has come to its end
    std::vector<std::unique_ptr<Handle>> statements; // go with the connection

private:
    std::filebuf m_log;
    std::string m_logPrefix; // TAB ID TAB APP TAB
    FaultList m_faults;
    std::optional<Fault> m_callFault; // what fails the call that runs when it has taken effect
    bool m_isConnected = false;       // as far as the client knows
};

} // namespace driver
