// One statement handle: runs batches on its connection's session and hands out their results.
#pragma once

#include "connection.h"
#include "values.h"

#include <exception>

namespace driver
{

class Statement : public Handle
{
public:
    explicit Statement(std::shared_ptr<Connection> connection);
    ~Statement() override;

    void BeforeCall(std::string_view function) override { m_connection->BeforeCall(function); }
    void AfterCall() override { m_connection->AfterCall(); }
    void NoteFailure(const Records &thrown) override { m_connection->LogError(thrown); }

    // Runs a batch up to its first result. SQL_NO_DATA when that is an INSERT, UPDATE or DELETE that touched no row.
    // When its first statement fails, the rest of the batch has run too, as it does on the server: behind SQL_ERROR
    // nobody could ask for it. Throws DriverError 24000 on an open cursor, HY000 while another statement has rows left.
    SQLRETURN Execute(const std::string &text);
    // Goes on to the batch's next result. SQL_NO_DATA at its end.
    SQLRETURN MoreResults();
    // Drops all that is left of the batch; statements of it that have not run are not run.
    void Close();
    // The session has gone, or what it had to give; what is left of the batch with it.
    void LoseResults();
    // True when nothing is left that a client could read: the connection is free for another statement. Looks ahead.
    bool IsDrained();

    // Of the result. All throw DriverError: HY010 when nothing was executed, 07005 without columns, 07009 for a column
    // there is not.
    SQLSMALLINT ColumnCount() const;
    const tsql::Column &ColumnAt(SQLUSMALLINT number) const; // from 1
    ColumnInfo Describe(SQLUSMALLINT number) const;
    std::int64_t RowCount() const;

    // Fetches the next block into the bound columns. A row that cannot be made ends the block; the next Fetch throws.
    // Throws DriverError: HY010 when nothing was executed, 24000 without columns.
    SQLRETURN Fetch();
    // Reads a value, or its next piece, of the current row. SQL_NO_DATA behind the last piece. Columns that are bound,
    // or in front of a bound one, are 07009. Throws DriverError also HY109 in a block of more than one row, 24000
    // without a row.
    SQLRETURN GetData(SQLUSMALLINT number, const Target &target);
    // Chooses a row (from 1) of a block, of which GetData gives the wide texts that were cut; nothing else is kept.
    void SetPosition(SQLULEN row);

    std::string prepared;                    // empty: nothing is
    std::map<SQLUSMALLINT, Target> bindings; // by column, from 1

    // Those of SQLSetStmtAttr. Throw DriverError: HY092 for one that there is not, HY024 for a value that cannot be.
    void SetAttribute(SQLINTEGER attribute, SQLULEN value);
    SQLULEN GetAttribute(SQLINTEGER attribute) const;

private:
    // What NextResult gave, kept until somebody asks: a result, the end (null), or an error.
    struct Outcome
    {
        tsql::Result *result = nullptr;
        std::exception_ptr error;
    };

    struct Bound // a column of the block that is being fetched
    {
        int column;
        tsql::Type type;
        Target target; // its place of the row that comes next
        size_t stride;
    };

    void RequireExecuted() const;
    void Start(const std::string &text);
    Outcome Next();
    void Take(const Outcome &outcome);
    void FinishBatch();
    void ForgetResult();
    void NoteMessages();
    void FindBound();
    bool StepRow();
    SQLUSMALLINT StoreRow(size_t row);

    std::shared_ptr<Connection> m_connection;
    // The first three may be set. There is one kind of cursor: another is changed to it, which the client is told.
    std::map<SQLINTEGER, SQLULEN> m_attributes = {
        {SQL_ATTR_ROW_ARRAY_SIZE, 1},
        {SQL_ATTR_ROWS_FETCHED_PTR, 0},
        {SQL_ATTR_ROW_STATUS_PTR, 0},
        {SQL_ATTR_QUERY_TIMEOUT, 0},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_FORWARD_ONLY},
        {SQL_ATTR_CONCURRENCY, SQL_CONCUR_READ_ONLY},
        {SQL_ATTR_USE_BOOKMARKS, SQL_UB_OFF},
        {SQL_ATTR_MAX_ROWS, 0},
        {SQL_ATTR_MAX_LENGTH, 0},
    };

    bool m_isExecuted = false;
    bool m_batchOpen = false;         // NextResult may have more to give
    std::optional<Outcome> m_pending; // looked ahead, not yet asked for
    tsql::Result *m_result = nullptr; // with rows, not yet at its end
    std::vector<tsql::Column> m_columns;
    std::int64_t m_rowCount = -1;

    std::vector<Bound> m_bound;
    size_t m_blockRows = 0;      // that the last fetch was asked for; 0 when it gave none
    SQLUSMALLINT m_lastRead = 0; // the column that GetData has come to
    Progress m_progress;         // in it
    std::map<std::pair<size_t, int>, std::u16string> m_cutTexts; // of the block, by row and column
    size_t m_position = 0;
    std::exception_ptr m_fetchError; // of the row behind the block
    std::optional<Fault> m_rowFault;
    long long m_rowNumber = 0;
};

} // namespace driver
