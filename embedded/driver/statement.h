// One statement handle: runs batches on its connection's session and hands out their results.
#pragma once

#include "connection.h"

#include <exception>

namespace driver
{

class Statement : public Handle
{
public:
    explicit Statement(Connection &owner) : connection(owner) {}

    // Runs a batch up to its first result. SQL_NO_DATA when that is an INSERT, UPDATE or DELETE that touched no row.
    // When its first statement fails, the rest of the batch has run too, as it does on the server: behind SQL_ERROR
    // nobody could ask for it. Throws SqlError 24000 on an open cursor, HY000 while another statement has rows left.
    SQLRETURN Execute(const std::string &text);
    // Goes on to the batch's next result. SQL_NO_DATA at its end.
    SQLRETURN MoreResults();
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
    void Take(const Outcome &outcome);
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
