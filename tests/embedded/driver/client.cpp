// An ODBC program in small: see client.h.
#include "client.h"

#include "odbc/wide.h"
#include "runtime/text.h"

#include <functional>
#include <map>
#include <sstream>
#include <string_view>

namespace driver_tests
{

Lines Records(SQLSMALLINT kind, SQLHANDLE handle, bool withText)
{
    Lines records;
    SQLWCHAR state[6] = {};
    SQLWCHAR text[2048] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT number = 1;
         SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, number, state, &native, text, 2048, &length)); ++number)
        records.push_back(odbc::FromWide(state, 5) + " (" + std::to_string(native) + ")" +
                          (withText ? " " + odbc::FromWide(text, static_cast<size_t>(length)) : ""));
    return records;
}

char Letter(SQLRETURN code)
{
    return code == SQL_SUCCESS             ? 'S'
           : code == SQL_SUCCESS_WITH_INFO ? 'I'
           : code == SQL_ERROR             ? 'E'
           : code == SQL_NO_DATA           ? 'N'
                                           : '?';
}

testing::AssertionResult Allowed(const char *codes, SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle)
{
    const char letter = Letter(code);
    if (std::string_view(codes).find(letter) != std::string_view::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "got " << letter << " instead of " << codes << ": "
                                       << testing::PrintToString(Records(kind, handle));
}

Link::Link()
{
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env);
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQLULEN{SQL_OV_ODBC3}), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc);
}

Link::~Link()
{
    SQLDisconnect(dbc); // refused when there is no connection
    SQLFreeHandle(SQL_HANDLE_DBC, dbc);
    SQLFreeHandle(SQL_HANDLE_ENV, env);
}

SQLRETURN Link::Connect(const std::string &text)
{
    odbc::WideText wide(text);
    return SQLDriverConnectW(dbc, nullptr, wide.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
}

SQLHSTMT Link::NewStatement()
{
    SQLHSTMT statement = nullptr;
    EXPECT_TRUE(Allowed("S", SQLAllocHandle(SQL_HANDLE_STMT, dbc, &statement), SQL_HANDLE_DBC, dbc));
    return statement;
}

bool Link::Tells(SQLINTEGER attribute) const
{
    SQLUINTEGER value = 99;
    EXPECT_EQ(SQLGetConnectAttrW(dbc, attribute, &value, 0, nullptr), SQL_SUCCESS);
    EXPECT_LE(value, 1u);
    return value == 1;
}

SQLHSTMT Open(Link &link, const std::string &text)
{
    EXPECT_TRUE(Allowed("SI", link.Connect(text), SQL_HANDLE_DBC, link.dbc)) << text;
    return link.NewStatement();
}

SQLRETURN Exec(SQLHSTMT statement, const std::string &sql)
{
    odbc::WideText wide(sql);
    return SQLExecDirectW(statement, wide.data(), wide.length());
}

Lines ReadRows(SQLHSTMT statement)
{
    SQLSMALLINT columns = 0;
    CHECK_STMT("S", SQLNumResultCols(statement, &columns), statement);
    std::vector<SQLWCHAR> buffer(20000);
    SQLLEN length = 0;
    Lines rows;
    SQLRETURN code;
    while (SQL_SUCCEEDED(code = SQLFetch(statement)))
    {
        std::string row;
        for (SQLUSMALLINT column = 1; column <= columns; ++column)
        {
            CHECK_STMT("S", SQLGetData(statement, column, SQL_C_WCHAR, buffer.data(), 40000, &length), statement);
            row += column == 1 ? "" : " | ";
            row += length == SQL_NULL_DATA ? "NULL" : odbc::FromWide(buffer.data(), static_cast<size_t>(length) / 2);
        }
        rows.push_back(row);
    }
    CHECK_STMT("N", code, statement);
    return rows;
}

Lines Query(SQLHSTMT statement, const std::string &sql)
{
    CHECK_STMT("SI", Exec(statement, sql), statement);
    Lines rows = ReadRows(statement);
    SQLFreeStmt(statement, SQL_CLOSE);
    return rows;
}

namespace
{

// The rows of `used`, which is `s` unless the call makes another, or the value that was read, stand in `out`.
SQLRETURN Call(Link &link, SQLHSTMT &s, const std::string &line, SQLHSTMT &used, std::string &out)
{
    static SQLINTEGER number; // and the next two: where calls write, rows of a bound column later
    static SQLLEN length;
    static SQLSMALLINT type;
    const std::string verb = line.substr(0, line.find(' '));
    const std::string rest = line.substr(std::min(verb.size() + 1, line.size()));
    const auto n = static_cast<SQLUSMALLINT>(std::atoi(rest.c_str()));
    const auto rows = [&](SQLRETURN code)
    {
        for (const std::string &row : SQL_SUCCEEDED(code) ? ReadRows(used) : Lines())
            out += (out.empty() ? "=" : ",") + row;
        return code;
    };
    const auto give = [&](SQLRETURN code, const auto &value)
    {
        if (code == SQL_SUCCESS)
            out = "=" + std::to_string(value);
        return code;
    };
    const std::map<std::string, std::function<SQLRETURN()>> calls = {
        {"alloc", [&] { return SQLAllocHandle(SQL_HANDLE_STMT, link.dbc, &s); }},
        {"free", [&] { return SQLFreeHandle(SQL_HANDLE_STMT, s); }},
        {"exec", [&] { return Exec(s, rest); }},
        {"execute", [&] { return SQLExecute(s); }},
        {"more", [&] { return SQLMoreResults(s); }},
        {"close", [&] { return SQLCloseCursor(s); }},
        {"cols", [&] { return give(SQLNumResultCols(s, &type), type); }},
        {"count", [&] { return give(SQLRowCount(s, &length), length); }},
        {"describe", [&] { return SQLDescribeColW(s, n, nullptr, 0, nullptr, &type, nullptr, nullptr, nullptr); }},
        {"attribute", [&] { return SQLSetStmtAttrW(s, SQL_ATTR_ROW_STATUS_PTR, nullptr, 0); }},
        {"fetch", [&] { return SQLFetch(s); }},
        {"bind", [&] { return SQLBindCol(s, n, SQL_C_SLONG, &number, 0, &length); }},
        {"unbind", [&] { return SQLFreeStmt(s, SQL_UNBIND); }},
        {"get", [&] { return give(SQLGetData(s, n, SQL_C_SLONG, &number, 0, &length), number); }},
        {"rows", [&] { return rows(SQL_SUCCESS); }},
        {"other", [&] { return used = link.NewStatement(), rows(Exec(used, rest)); }},
    };
    return calls.at(verb)();
}

} // namespace

std::string Play(Link &link, SQLHSTMT &statement, const std::string &script, bool lettersAlone)
{
    std::istringstream lines(script);
    std::string played;
    for (std::string line; (statement != nullptr || played.empty()) && std::getline(lines, line);)
    {
        std::string out;
        SQLHSTMT used = statement;
        const char letter = Letter(Call(link, statement, line, used, out));
        for (const std::string &record : letter == 'E' ? Records(SQL_HANDLE_STMT, used, false) : Lines())
            out += "[" + record + "]";
        played += played.empty() || lettersAlone ? "" : " ";
        played += letter + (lettersAlone ? "" : out);
        if (used != statement && line.starts_with("other"))
            SQLFreeHandle(SQL_HANDLE_STMT, used);
    }
    return played;
}

DriverTest::DriverTest()
{
    database.Run("CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(10) NULL)\nGO\n"
                 "INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, NULL)");
    Reconnect();
}

DriverTest::~DriverTest()
{
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

std::string DriverTest::ConnectText(const std::string &more) const
{
    return "Driver={SQL Server};Server=embedded;UID=sa;PWD=;" + more + "Database=" + database.DatabaseName() + ";";
}

void DriverTest::Reconnect()
{
    link = std::make_unique<Link>();
    statement = Open(*link, ConnectText());
}

} // namespace driver_tests
