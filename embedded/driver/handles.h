// The handles: a connection, and its statements, which run batches on its session and hand out their results.
#pragma once

#include "faults.h"
#include "tsql/session.h"

#include <exception>
#include <fstream>
#include <memory>

namespace driver
{

class Statement;

// In order; the first of a name that is not empty counts.
using Attributes = std::vector<std::pair<std::string, std::string>>;

// "KEY=value;KEY={va;l}}ue};..." Pieces without "=" are passed over.
Attributes ReadConnectString(const std::string &text);

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
    // What is ordered for a statement about to run. Throws what is to happen before it: the rest is the statement's.
    std::optional<Fault> NextFault(std::string_view statement);
    // Puts an exception in front of a handle's warnings and logs it, unless the connection is dead. When it is a
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

class Statement : public Handle
{
public:
    explicit Statement(Connection &owner) : connection(owner) {}

    // Runs a batch up to its first result. SQL_NO_DATA when that is an INSERT, UPDATE or DELETE that touched no row.
    // When its first statement fails, the rest of the batch has run too, as it does on the server: behind SQL_ERROR
    // nobody could ask for it. Throws SqlError 24000 on an open cursor, HY000 while another statement has rows left.
    SQLRETURN Execute(const std::string &text);
    // Goes on to the batch's next result. SQL_NO_DATA at its end.
    SQLRETURN MoreResults() { return Take(Next()) ? SQL_SUCCESS : SQL_NO_DATA; }
    // Drops all that is left of the batch; statements of it that have not run are not run.
    void Close();
    // The same for the batch that the session runs, but the columns stay and Fetch comes to their end.
    void LoseResults();
    // True when nothing is left that a client could read: the connection is free for another statement. Looks ahead.
    bool IsDrained();

    // Of the result.
    size_t ColumnCount() const { return m_columns.size(); }
    const tsql::Column &ColumnAt(SQLUSMALLINT number) const; // from 1; throws SqlError 07009
    std::int64_t RowCount() const { return m_rowCount; }

    // Fetches the next block into the bound columns. A row that cannot be made is marked and ends the result; when the
    // connection is lost with it the call fails as a whole, behind the rows that had come. 24000 without columns.
    SQLRETURN Fetch();
    // Reads a value, or its next piece, of the current row. SQL_NO_DATA behind the last piece. Throws SqlError:
    // 07009 for a column in front of the last one read, and for those that are bound or in front of a bound one; HY109
    // in a block of more than one row, 24000 without a row.
    SQLRETURN GetData(SQLUSMALLINT number, const Target &target);

    Connection &connection;
    std::string prepared;         // empty: nothing is
    std::vector<Target> bindings; // by column
    SQLULEN rowArraySize = 1;
    SQLUSMALLINT *rowStatus = nullptr;
    SQLULEN *rowsFetched = nullptr;

private:
    // What NextResult gave: a result, the end (null), or an error.
    struct Outcome
    {
        tsql::Result *result = nullptr;
        std::exception_ptr error;
    };

    Outcome Next();
    bool Take(const Outcome &outcome); // false at the end
    SQLUSMALLINT FetchRow(size_t row);

    Outcome m_pending;                // looked ahead, kept until somebody asks
    tsql::Result *m_result = nullptr; // with rows, not yet at its end
    std::vector<tsql::Column> m_columns;
    std::int64_t m_rowCount = -1;
    std::optional<Fault> m_fault; // behind the statement or of a row, whose number counts down to it

    size_t m_blockRows = 0;      // that the last fetch was asked for; 0 when it gave none
    SQLUSMALLINT m_lastRead = 0; // the column that GetData has come to
    bool m_wasReadWhole = false;
    size_t m_given = 0; // units of its text that were handed out
};

} // namespace driver
