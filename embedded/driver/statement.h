// One statement handle: runs batches on its connection's session and hands out their results.
#pragma once

#include "connection.h"
#include "convert.h"
#include "memory_result.h"
#include "parameters.h"
#include "row_block.h"

#include <exception>

namespace driver
{

class Statement : public Handle
{
public:
    explicit Statement(std::shared_ptr<Connection> connection)
        : Handle(connection->Lock()), m_connection(std::move(connection))
    {
    }
    ~Statement() override;

    tsql::Session &Session() { return m_connection->Session(); }
    const Settings &GetSettings() const { return m_connection->GetSettings(); }

    // --- execution (statement.cpp)

    void Prepare(std::string text) { m_prepared = std::move(text); }
    const std::string &Prepared() const { return m_prepared; }
    void BindParameter(SQLUSMALLINT number, const Parameter &parameter) { m_parameters[number] = parameter; }
    void ResetParameters() { m_parameters.clear(); }

    // Runs a batch, with parameters where there are markers, up to its first result. SQL_NO_DATA when that is an
    // INSERT, UPDATE or DELETE that touched no row. When its first statement fails, the rest of the batch has run too,
    // as it does on the server: behind SQL_ERROR nobody could ask for it.
    SQLRETURN Execute(const std::string &text);
    SQLRETURN ExecutePrepared();
    // Makes a result of the driver's own the open one.
    void Open(std::vector<tsql::Column> columns, std::vector<MemoryResult::Row> rows);
    // Goes on to the batch's next result. SQL_NO_DATA at its end.
    SQLRETURN MoreResults();
    // Drops all that is left of the batch; statements of it that have not run are not run.
    void Close();
    // The session has gone; what is left of the batch with it.
    void LoseConnection();
    // True when nothing is left that a client could read: the connection is free for another statement. Looks ahead.
    bool IsDrained();

    const std::vector<tsql::Column> &Columns() const { return m_columns; }
    std::int64_t RowCount() const { return m_rowCount; }

    // --- rows (fetch.cpp)

    void BindColumn(SQLUSMALLINT column, const Target &target);
    void UnbindColumns() { m_bindings.clear(); }
    // Fetches the next block into the bound columns. A row that cannot be made ends the block; the next Fetch throws.
    SQLRETURN Fetch();
    // Column counts from 1. Throws DriverError 07009 for a column there is not, 24000 without a row.
    SQLRETURN GetData(SQLUSMALLINT column, const Target &target);
    // Row of the block, from 1, that GetData reads.
    void SetPosition(SQLULEN row);

    // Attributes of SQLSetStmtAttr that mean something here.
    SQLULEN rowArraySize = 1;
    SQLULEN rowBindType = SQL_BIND_BY_COLUMN;
    SQLLEN *rowBindOffset = nullptr;
    SQLULEN *rowsFetched = nullptr;
    SQLUSMALLINT *rowStatus = nullptr;
    std::map<SQLINTEGER, SQLULEN> otherAttributes; // accepted and kept, without effect
    SQLHANDLE descriptors[4] = {}; // 10010 to 10013: application row and parameter, implementation ditto
    std::string cursorName;

private:
    // What NextResult gave, kept until somebody asks: a result, the end (null), or an error.
    struct Outcome
    {
        tsql::Result *result = nullptr;
        std::exception_ptr error;
    };

    Outcome Next();
    void Take(const Outcome &outcome);
    void FinishBatch();
    void DrainRest();
    void ForgetResult();
    void LogFailure();
    void NoteMessages();

    size_t LoadRows(size_t wanted);
    SQLRETURN StoreColumns(size_t rows);

    std::shared_ptr<Connection> m_connection;
    std::string m_prepared;
    std::map<SQLUSMALLINT, Parameter> m_parameters;

    bool m_batchOpen = false;         // NextResult may have more to give
    std::optional<Outcome> m_pending; // looked ahead, not yet asked for
    tsql::Result *m_result = nullptr; // with rows, not yet at its end
    std::unique_ptr<MemoryResult> m_ownResult;
    std::vector<tsql::Column> m_columns;
    std::int64_t m_rowCount = -1;

    std::map<SQLUSMALLINT, Target> m_bindings; // by column, from 1
    RowBlock m_block;
    size_t m_blockRows = 0; // rows of the block that are filled
    bool m_blockPrepared = false;
    size_t m_position = 0;
    SQLUSMALLINT m_piecesColumn = 0; // what was last read in pieces, and how far
    SQLSMALLINT m_piecesType = 0;
    Pieces m_pieces;
    std::exception_ptr m_fetchError; // of the row behind the block
    std::optional<Fault> m_rowFault;
    long long m_rowNumber = 0;
};

// The application and implementation descriptors that every statement has. Nothing is kept in them here.
class Descriptor : public Handle
{
public:
    explicit Descriptor(const Statement &statement) : Handle(statement.Lock()) {}
};

} // namespace driver
