// An ODBC program in small: see client.h.
#include "client.h"

#include "runtime/text.h"

#include <cstdlib>
#include <fstream>

namespace driver_tests
{
namespace
{

// Where this process's driver manager looks: a folder of its own, since tests add to its files.
const std::string &OdbcFolder()
{
    static const support::TestFolder folder;
    static const std::string path = [&]
    {
        const char *driver = std::getenv("KVEMBEDDED_DRIVER");
        support::WriteFile(folder.Path("odbc.ini"), "");
        support::WriteFile(folder.Path("odbcinst.ini"),
                           std::string("[SQL Server]\nDriver=") + (driver != nullptr ? driver : "not set") + "\n");
        setenv("ODBCSYSINI", folder.Path().c_str(), 1);
        setenv("ODBCINI", folder.Path("odbc.ini").c_str(), 1);
        return folder.Path();
    }();
    return path;
}

void AddSection(const std::string &file, const std::string &name, const std::string &driver, const Lines &attributes)
{
    std::ofstream out(OdbcFolder() + file, std::ios::app);
    out << "[" << name << "]\nDriver=" << driver << "\n";
    for (const std::string &attribute : attributes)
        out << attribute << "\n";
}

std::u16string_view Units(const SQLWCHAR *text)
{
    return reinterpret_cast<const char16_t *>(text);
}

} // namespace

Lines Records(SQLSMALLINT kind, SQLHANDLE handle, bool withText)
{
    Lines records;
    SQLWCHAR state[6] = {};
    SQLWCHAR text[2048] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT number = 1;
         SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, number, state, &native, text, 2048, &length)); ++number)
        records.push_back(runtime::FromUtf16(Units(state)) + " (" + std::to_string(native) + ")" +
                          (withText ? " " + runtime::FromUtf16(Units(text)) : ""));
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

void AddDriver(const std::string &name, const Lines &attributes)
{
    AddSection("/odbcinst.ini", name, std::getenv("KVEMBEDDED_DRIVER"), attributes);
}
void AddDataSource(const std::string &name, const Lines &attributes)
{
    AddSection("/odbc.ini", name, "SQL Server", attributes);
}

Link::Link()
{
    OdbcFolder();
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env);
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQLULEN{SQL_OV_ODBC3}), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc);
}

Link::~Link()
{
    if (m_connected)
        SQLDisconnect(dbc);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc);
    SQLFreeHandle(SQL_HANDLE_ENV, env);
}

SQLRETURN Link::Connect(const std::string &text)
{
    std::u16string wide = runtime::ToUtf16(text);
    const SQLRETURN code = SQLDriverConnectW(dbc, nullptr, reinterpret_cast<SQLWCHAR *>(wide.data()), SQL_NTS, nullptr,
                                             0, nullptr, SQL_DRIVER_NOPROMPT);
    m_connected = SQL_SUCCEEDED(code);
    return code;
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
    std::u16string wide = runtime::ToUtf16(sql);
    return SQLExecDirectW(statement, reinterpret_cast<SQLWCHAR *>(wide.data()), static_cast<SQLINTEGER>(wide.size()));
}

Lines ReadRows(SQLHSTMT statement)
{
    SQLSMALLINT columns = 0;
    CHECK_STMT("S", SQLNumResultCols(statement, &columns), statement);
    std::vector<char16_t> buffer(20000);
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
            row +=
                length == SQL_NULL_DATA ? "NULL" : runtime::FromUtf16({buffer.data(), static_cast<size_t>(length) / 2});
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

DriverTest::DriverTest()
{
    statement = Open(link, ConnectText("Create=yes;"));
}

DriverTest::~DriverTest()
{
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

std::string DriverTest::ConnectText(const std::string &more) const
{
    return "Driver={SQL Server};Database=" + folder.Path("test.db") + ";UID=sa;PWD=;" + more;
}

void DriverTest::Run(const std::string &sql)
{
    CHECK_STMT("SIN", Exec(statement, sql), statement);
    CHECK_STMT("N", SQLMoreResults(statement), statement) << "one result alone: " << sql;
    SQLFreeStmt(statement, SQL_CLOSE);
}

} // namespace driver_tests
