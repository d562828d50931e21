// A connection to any ODBC data source: see client.h.
#include "client.h"

#include "odbc/wide.h"
#include "runtime/error.h"

#include <algorithm>

namespace sqlbatch
{
namespace
{

odbc::EnvironmentHandle &Version3(odbc::EnvironmentHandle &environment)
{
    odbc::Check(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
                              reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(SQL_OV_ODBC3)), 0),
                environment);
    return environment;
}

std::string ColumnName(const odbc::StatementHandle &statement, SQLUSMALLINT column)
{
    SQLWCHAR name[256] = {};
    SQLSMALLINT length = 0;
    odbc::Check(SQLDescribeColW(statement.get(), column, name, 256, &length, nullptr, nullptr, nullptr, nullptr),
                statement);
    return odbc::FromWide(name, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(length, 0, 255)));
}

// The whole value, however long the driver said it was.
std::string Value(const odbc::StatementHandle &statement, SQLUSMALLINT column)
{
    std::u16string text;
    char16_t piece[1024];
    constexpr SQLLEN room = sizeof piece - sizeof piece[0];
    SQLLEN length = 0;
    while (odbc::Check(SQLGetData(statement.get(), column, SQL_C_WCHAR, piece, sizeof piece, &length), statement) !=
           SQL_NO_DATA)
    {
        if (length == SQL_NULL_DATA)
            return "NULL";
        const bool more = length == SQL_NO_TOTAL || length > room;
        text.append(piece, static_cast<std::size_t>(more ? room : length) / sizeof piece[0]);
        if (!more)
            break;
    }
    return odbc::FromWide(reinterpret_cast<const SQLWCHAR *>(text.data()), text.size());
}

} // namespace

Client::Client(const std::string &connect) : m_environment(SQL_NULL_HANDLE), m_connection(Version3(m_environment).get())
{
    odbc::WideText text(connect);
    odbc::Check(
        SQLDriverConnectW(m_connection.get(), nullptr, text.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
        m_connection);
    m_statement = std::make_unique<odbc::Statement>(m_connection.get());
}

Client::~Client()
{
    if (m_statement == nullptr)
        return;
    m_statement.reset();
    SQLDisconnect(m_connection.get());
}

int Client::Run(const std::string &batch, const std::string &place, std::ostream &out, std::ostream &errors)
{
    int failures = 0;
    const auto report = [&](const runtime::Error &error)
    {
        errors << place << ": " << error.Description() << "\n";
        ++failures;
    };
    odbc::WideText text(batch);
    m_statement->executed = true;
    const SQLRETURN code = SQLExecDirectW(m_statement->handle.get(), text.data(), text.length());
    m_statement->Drain(
        code == SQL_NO_DATA ? SQL_SUCCESS : code, // a statement without a result, or one that touched no row
        [&](SQLRETURN result)
        {
            try
            {
                if (result == SQL_SUCCESS_WITH_INFO)
                    PrintMessages(out);
                PrintResult(out);
            }
            catch (const runtime::Error &error)
            {
                report(error);
            }
        },
        report);
    m_statement->CloseCursor();
    return failures;
}

void Client::PrintResult(std::ostream &out)
{
    const odbc::StatementHandle &statement = m_statement->handle;
    SQLSMALLINT columns = 0;
    odbc::Check(SQLNumResultCols(statement.get(), &columns), statement);
    if (columns == 0)
    {
        SQLLEN count = -1;
        odbc::Check(SQLRowCount(statement.get(), &count), statement);
        if (count >= 0 && !m_quiet)
            out << "(" << count << (count == 1 ? " row" : " rows") << " affected)\n";
        return;
    }
    for (SQLSMALLINT column = 1; column <= columns; ++column)
        out << (column > 1 ? " | " : "") << ColumnName(statement, static_cast<SQLUSMALLINT>(column));
    out << "\n";
    long long rows = 0;
    for (; odbc::Check(SQLFetch(statement.get()), statement) != SQL_NO_DATA; ++rows)
    {
        for (SQLSMALLINT column = 1; column <= columns; ++column)
            out << (column > 1 ? " | " : "") << Value(statement, static_cast<SQLUSMALLINT>(column));
        out << "\n";
    }
    if (!m_quiet)
        out << "(" << rows << (rows == 1 ? " row" : " rows") << ")\n";
}

void Client::PrintMessages(std::ostream &out)
{
    SQLWCHAR state[6] = {};
    SQLWCHAR text[1024] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT number = 1; SQL_SUCCEEDED(
             SQLGetDiagRecW(SQL_HANDLE_STMT, m_statement->handle.get(), number, state, &native, text, 1024, &length));
         ++number)
        out << odbc::FromWide(text, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(length, 0, 1023))) << "\n";
}

} // namespace sqlbatch
