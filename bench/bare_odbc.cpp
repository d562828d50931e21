// Plain ODBC.
#include "bare_odbc.h"

#include "odbc/wide.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench
{

namespace
{

constexpr SQLULEN kBlock = 256;

void Require(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle)
{
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA)
        return;
    SQLCHAR state[6] = {};
    SQLCHAR text[512] = {};
    SQLGetDiagRec(kind, handle, 1, state, nullptr, text, sizeof text, nullptr);
    std::fprintf(stderr, "bench: %s: %s\n", state, text);
    std::exit(1);
}

struct Column
{
    bool isText;
    std::size_t width; // bytes a row
    std::vector<char> block;
    std::vector<SQLLEN> indicators;
    std::vector<char> all; // the flat array
};

} // namespace

BareOdbc::BareOdbc(const std::string &databaseFile)
{
    Require(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &m_environment), SQL_HANDLE_ENV, m_environment);
    SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    Require(SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection), SQL_HANDLE_ENV, m_environment);
    odbc::WideText connect("UID=sa;PWD=;Server=embedded;Driver={SQL Server};APP=bench;Database=" + databaseFile);
    Require(SQLDriverConnectW(m_connection, nullptr, connect.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
            SQL_HANDLE_DBC, m_connection);
    Require(SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &m_statement), SQL_HANDLE_DBC, m_connection);
}

BareOdbc::~BareOdbc()
{
    SQLFreeHandle(SQL_HANDLE_STMT, m_statement);
    SQLDisconnect(m_connection);
    SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
}

std::size_t BareOdbc::Fetch(const std::vector<std::string> &queries)
{
    m_bytes = 0;
    std::size_t rows = 0;
    for (const std::string &query : queries)
        rows += FetchOne(query);
    return rows;
}

std::size_t BareOdbc::FetchOne(const std::string &query)
{
    odbc::WideText text(query);
    Require(SQLExecDirectW(m_statement, text.data(), text.length()), SQL_HANDLE_STMT, m_statement);
    SQLSMALLINT count = 0;
    SQLNumResultCols(m_statement, &count);
    std::vector<Column> columns(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        SQLSMALLINT type = 0;
        SQLULEN size = 0;
        const auto number = static_cast<SQLUSMALLINT>(i + 1);
        SQLDescribeColW(m_statement, number, nullptr, 0, nullptr, &type, &size, nullptr, nullptr);
        Column &column = columns[i];
        column.isText = type != SQL_BIT && type != SQL_TINYINT && type != SQL_SMALLINT && type != SQL_INTEGER;
        column.width = column.isText ? (size + 1) * sizeof(SQLWCHAR) : sizeof(std::int32_t);
        column.block.resize(column.width * kBlock);
        column.indicators.resize(kBlock);
        SQLBindCol(m_statement, number, column.isText ? SQL_C_WCHAR : SQL_C_SLONG, column.block.data(),
                   static_cast<SQLLEN>(column.width), column.indicators.data());
    }
    SQLULEN fetched = 0;
    SQLSetStmtAttr(m_statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(kBlock), 0);
    SQLSetStmtAttr(m_statement, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
    std::size_t rows = 0;
    for (;;)
    {
        const SQLRETURN code = SQLFetch(m_statement);
        if (code == SQL_NO_DATA)
            break;
        Require(code, SQL_HANDLE_STMT, m_statement);
        rows += fetched;
        for (Column &column : columns)
            column.all.insert(column.all.end(), column.block.begin(),
                              column.block.begin() + static_cast<std::ptrdiff_t>(fetched * column.width));
    }
    SQLFreeStmt(m_statement, SQL_CLOSE);
    SQLFreeStmt(m_statement, SQL_UNBIND);
    SQLSetStmtAttr(m_statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(SQLULEN{1}), 0);
    SQLSetStmtAttr(m_statement, SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
    for (const Column &column : columns)
        m_bytes += column.all.size();
    return rows;
}

void BareOdbc::Execute(const std::vector<std::string> &statements)
{
    for (const std::string &statement : statements)
    {
        odbc::WideText text(statement);
        Require(SQLExecDirectW(m_statement, text.data(), text.length()), SQL_HANDLE_STMT, m_statement);
        SQLRETURN code;
        while ((code = SQLMoreResults(m_statement)) != SQL_NO_DATA)
            Require(code, SQL_HANDLE_STMT, m_statement);
        SQLFreeStmt(m_statement, SQL_CLOSE);
    }
}

} // namespace bench
