// An ODBC program in small: see client.h.
#include "client.h"

#include "runtime/text.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace driver_tests
{
namespace
{

std::string DriverFile()
{
    const char *file = std::getenv("KVEMBEDDED_DRIVER");
    return file != nullptr ? file : "KVEMBEDDED_DRIVER is not set";
}

std::string Record(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, bool withText)
{
    SQLWCHAR state[6] = {};
    SQLWCHAR text[2048] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, number, state, &native, text, 2048, &length)))
        return {};
    const std::string start = Narrow(reinterpret_cast<char16_t *>(state)) + " (" + std::to_string(native) + ")";
    return withText ? start + " " + Narrow(reinterpret_cast<char16_t *>(text)) : start;
}

std::vector<std::string> AllRecords(SQLSMALLINT kind, SQLHANDLE handle, bool withText)
{
    std::vector<std::string> records;
    for (SQLSMALLINT number = 1;; ++number)
    {
        std::string record = Record(kind, handle, number, withText);
        if (record.empty())
            return records;
        records.push_back(std::move(record));
    }
}

void Append(const std::string &file, const std::string &section, const std::string &driverKey,
            const std::vector<std::string> &attributes)
{
    std::ofstream out(file, std::ios::app);
    out << "[" << section << "]\nDriver=" << driverKey << "\n";
    for (const std::string &attribute : attributes)
        out << attribute << "\n";
    out << "\n";
}

// Where this process's driver manager looks; removed when the process ends.
const std::string &OdbcFolder()
{
    struct Folder
    {
        Folder()
        {
            char pattern[] = "/tmp/kvembedded-odbc-XXXXXX";
            path = mkdtemp(pattern);
            std::ofstream(path + "/odbc.ini");
            Append(path + "/odbcinst.ini", "SQL Server", DriverFile(), {});
            setenv("ODBCSYSINI", path.c_str(), 1);
            setenv("ODBCINI", (path + "/odbc.ini").c_str(), 1);
        }
        ~Folder()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        std::string path;
    };
    static const Folder folder;
    return folder.path;
}

} // namespace

std::vector<std::string> Records(SQLSMALLINT kind, SQLHANDLE handle)
{
    return AllRecords(kind, handle, true);
}
std::vector<std::string> States(SQLSMALLINT kind, SQLHANDLE handle)
{
    return AllRecords(kind, handle, false);
}

char Letter(SQLRETURN code)
{
    switch (code)
    {
    case SQL_SUCCESS:
        return 'S';
    case SQL_SUCCESS_WITH_INFO:
        return 'I';
    case SQL_ERROR:
        return 'E';
    case SQL_NO_DATA:
        return 'N';
    case SQL_INVALID_HANDLE:
        return 'H';
    default:
        return '?';
    }
}

testing::AssertionResult Allowed(const char *codes, SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle)
{
    const char letter = Letter(code);
    if (std::string_view(codes).find(letter) != std::string_view::npos)
        return testing::AssertionSuccess();
    testing::AssertionResult failure = testing::AssertionFailure();
    failure << "got " << letter << " instead of " << codes << ":";
    for (const std::string &record : Records(kind, handle))
        failure << "\n  " << record;
    return failure;
}

OdbcSettings::OdbcSettings()
{
    char pattern[] = "/tmp/kvembedded-test-XXXXXX";
    m_folder = mkdtemp(pattern);
    OdbcFolder();
}

OdbcSettings::~OdbcSettings()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

void OdbcSettings::AddDriver(const std::string &name, const std::vector<std::string> &attributes)
{
    Append(OdbcFolder() + "/odbcinst.ini", name, DriverFile(), attributes);
}

void OdbcSettings::AddDataSource(const std::string &name, const std::string &driver,
                                 const std::vector<std::string> &attributes)
{
    Append(OdbcFolder() + "/odbc.ini", name, driver, attributes);
}

std::string FreshName(const std::string &start)
{
    static std::atomic<int> last{0};
    return start + std::to_string(++last);
}

Link::Link()
{
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
    std::u16string wide = Wide(text);
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

bool Link::IsDead() const
{
    SQLUINTEGER dead = 99;
    SQLGetConnectAttrW(dbc, SQL_ATTR_CONNECTION_DEAD, &dead, 0, nullptr);
    EXPECT_TRUE(dead == SQL_CD_TRUE || dead == SQL_CD_FALSE);
    return dead == SQL_CD_TRUE;
}

std::u16string Wide(std::string_view text)
{
    return runtime::ToUtf16(text);
}
std::string Narrow(std::u16string_view text)
{
    return runtime::FromUtf16(text);
}

SQLRETURN Exec(SQLHSTMT statement, const std::string &sql)
{
    std::u16string wide = Wide(sql);
    return SQLExecDirectW(statement, reinterpret_cast<SQLWCHAR *>(wide.data()), static_cast<SQLINTEGER>(wide.size()));
}

std::vector<std::string> ReadRow(SQLHSTMT statement)
{
    SQLSMALLINT columns = 0;
    CHECK_STMT("S", SQLNumResultCols(statement, &columns), statement);
    std::vector<std::string> row;
    for (SQLUSMALLINT column = 1; column <= columns; ++column)
    {
        std::vector<char16_t> buffer(20000);
        SQLLEN length = 0;
        CHECK_STMT("S",
                   SQLGetData(statement, column, SQL_C_WCHAR, buffer.data(),
                              static_cast<SQLLEN>(buffer.size() * sizeof(char16_t)), &length),
                   statement);
        row.push_back(
            length == SQL_NULL_DATA ? "NULL" : Narrow({buffer.data(), static_cast<size_t>(length) / sizeof(char16_t)}));
    }
    return row;
}

std::vector<std::vector<std::string>> ReadRows(SQLHSTMT statement)
{
    std::vector<std::vector<std::string>> rows;
    for (;;)
    {
        const SQLRETURN code = SQLFetch(statement);
        if (!SQL_SUCCEEDED(code))
        {
            CHECK_STMT("N", code, statement);
            return rows;
        }
        rows.push_back(ReadRow(statement));
    }
}

std::vector<std::string> Query(SQLHSTMT statement, const std::string &sql)
{
    CHECK_STMT("SI", Exec(statement, sql), statement);
    std::vector<std::string> lines;
    for (const std::vector<std::string> &row : ReadRows(statement))
    {
        std::string line;
        for (const std::string &value : row)
            line += (line.empty() && &value == &row.front() ? "" : " | ") + value;
        lines.push_back(line);
    }
    SQLFreeStmt(statement, SQL_CLOSE);
    return lines;
}

void DriverTest::SetUp()
{
    ASSERT_TRUE(Allowed("SI", link.Connect(ConnectText("Create=yes;")), SQL_HANDLE_DBC, link.dbc));
    statement = link.NewStatement();
}

void DriverTest::TearDown()
{
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

std::string DriverTest::ConnectText(const std::string &more) const
{
    return "Driver={SQL Server};Database=" + settings.Path("test.db") + ";UID=sa;PWD=;" + more;
}

void DriverTest::Run(const std::string &sql)
{
    CHECK_STMT("SIN", Exec(statement, sql), statement);
    for (SQLRETURN code; (code = SQLMoreResults(statement)) != SQL_NO_DATA;)
        if (!Allowed("SI", code, SQL_HANDLE_STMT, statement))
        {
            CHECK_STMT("SI", code, statement);
            break;
        }
    SQLFreeStmt(statement, SQL_CLOSE);
}

} // namespace driver_tests
