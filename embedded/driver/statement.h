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

    tsql::Session &Session() { return m_connection->Session(); }
    const Settings &GetSettings() const { return m_connection->GetSettings(); }

    void BeforeCall(std::string_view function) override { m_connection->BeforeCall(function); }
    void AfterCall() override { m_connection->AfterCall(); }

    // --- execution (statement.cpp)

    // Runs a batch up to its first result. SQL_NO_DATA when that is an
    // INSERT, UPDATE or DELETE that touched no row. When its first statement fails, the rest of the batch has run too,
    // as it does on the server: behind SQL_ERROR nobody could ask for it.
    SQLRETURN Execute(const std::string &text);
    // Goes on to the batch's next result. SQL_NO_DATA at its end.
    SQLRETURN MoreResults();
    // Drops all that is left of the batch; statements of it that have not run are not run.
    void Close();
    // The session has gone; what is left of the batch with it.
    void LoseConnection();
    // True when nothing is left that a client could read: the connection is free for another statement. Looks ahead.
    bool IsDrained();

    const std::vector<tsql::Column> &Columns() const { return m_columns; }
    // Counted from 1. Throws DriverError 07009 for a column there is not.
    const tsql::Column &ColumnAt(SQLUSMALLINT number) const;
    std::int64_t RowCount() const { return m_rowCount; }

    // --- rows (fetch.cpp)

    // Fetches the next block into the bound columns. A row that cannot be made ends the block; the next Fetch throws.
    SQLRETURN Fetch();
    // Reads a value, or its next piece, of the row of the block that SetPosition chose. SQL_NO_DATA behind the last
    // piece. Throws DriverError 07009 for a column there is not, 24000 without a row.
    SQLRETURN GetData(SQLUSMALLINT number, const Target &target);
    // From 1.
    void SetPosition(SQLULEN row);

    std::string prepared;                    // empty: nothing is
    std::map<SQLUSMALLINT, Target> bindings; // by column, from 1

    // Those of SQLSetStmtAttr, by their numbers; most are kept without effect (entry_statement.cpp).
    std::map<SQLINTEGER, SQLULEN> attributes;

private:
    // What NextResult gave, kept until somebody asks: a result, the end (null), or an error.
    struct Outcome
    {
        tsql::Result *result = nullptr;
        std::exception_ptr error;
    };

    void Start(const std::string &text);
    Outcome Next();
    void Take(const Outcome &outcome);
    void FinishBatch();
    void DrainRest();
    void ForgetResult();
    void NoteMessages();
    // Runs `act`; what it throws goes into the log as well.
    template <class Act>
    void Logged(Act &&act);

    // An attribute that is a place of the client's; may be NULL.
    template <class T>
    T *AttributePointer(SQLINTEGER attribute) const
    {
        return reinterpret_cast<T *>(attributes.at(attribute));
    }
    void LoadRows();
    SQLRETURN StoreRows();

    std::shared_ptr<Connection> m_connection;

    bool m_batchOpen = false;         // NextResult may have more to give
    std::optional<Outcome> m_pending; // looked ahead, not yet asked for
    tsql::Result *m_result = nullptr; // with rows, not yet at its end
    std::vector<tsql::Column> m_columns;
    std::int64_t m_rowCount = -1;

    std::vector<Value> m_block; // row by row; its memory is used again
    size_t m_blockRows = 0;     // rows of the block that are filled
    size_t m_position = 0;
    SQLUSMALLINT m_piecesColumn = 0; // what was last read in pieces, and how far
    SQLSMALLINT m_piecesType = 0;
    Pieces m_pieces;
    std::exception_ptr m_fetchError; // of the row behind the block
    std::optional<Fault> m_rowFault;
    long long m_rowNumber = 0;
};

template <class Act>
void Statement::Logged(Act &&act)
{
    try
    {
        act();
    }
    catch (...)
    {
        m_connection->Log().Write("error", Describe(RecordsOfCurrentException()));
        throw;
    }
}

} // namespace driver
