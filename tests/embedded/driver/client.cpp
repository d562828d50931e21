// An ODBC program in small: see client.h.
#include "client.h"

#include "odbc/wide.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

namespace driver_tests
{
namespace
{

char Letter(SQLRETURN code)
{
    static const std::map<SQLRETURN, char> letters = {
        {SQL_SUCCESS, 'S'}, {SQL_SUCCESS_WITH_INFO, 'I'}, {SQL_ERROR, 'E'}, {SQL_NO_DATA, 'N'}};
    return letters.at(code);
}

std::string Joined(const Lines &rows)
{
    std::string joined;
    for (const std::string &row : rows)
        joined += (joined.empty() ? "" : ",") + row;
    return joined;
}

} // namespace

struct Client::Type
{
    const char *name;
    SQLSMALLINT code;
    size_t octets; // 0: a text
};
const Client::Type Client::types[] = {
    {"long", SQL_C_SLONG, 4},  {"ulong", SQL_C_ULONG, 4},   {"bigint", SQL_C_SBIGINT, 8},
    {"bit", SQL_C_BIT, 1},     {"double", SQL_C_DOUBLE, 8}, {"time", SQL_C_TYPE_TIMESTAMP, 16},
    {"narrow", SQL_C_CHAR, 0}, {"wide", SQL_C_WCHAR, 0},    {"binary", SQL_C_BINARY, 0}};

Client::Client(const std::string &connectText, SQLULEN loginTimeout)
{
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_env);
    SQLSetEnvAttr(m_env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQLULEN{SQL_OV_ODBC3}), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, m_env, &m_dbc);
    SQLSetConnectAttrW(m_dbc, SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(loginTimeout), 0);
    odbc::WideText text(connectText);
    if (SQLDriverConnectW(m_dbc, nullptr, text.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT) ==
        SQL_SUCCESS)
        made = Letter(SQLAllocHandle(SQL_HANDLE_STMT, m_dbc, &m_statement));
    if (made != "S")
        refused = Records(false);
}

Client::~Client()
{
    SQLDisconnect(m_dbc); // refused when there is no connection; frees the statement
    SQLFreeHandle(SQL_HANDLE_DBC, m_dbc);
    SQLFreeHandle(SQL_HANDLE_ENV, m_env);
}

SQLRETURN Client::Exec(const std::string &sql)
{
    odbc::WideText wide(sql);
    return SQLExecDirectW(m_statement, wide.data(), wide.length());
}

Lines Client::Rows()
{
    SQLSMALLINT columns = 0;
    EXPECT_EQ(SQLNumResultCols(m_statement, &columns), SQL_SUCCESS);
    Lines rows;
    SQLRETURN code;
    while (SQL_SUCCEEDED(code = SQLFetch(m_statement)))
    {
        std::string row;
        for (SQLUSMALLINT column = 1; column <= columns; ++column)
        {
            EXPECT_EQ(SQLGetData(m_statement, column, SQL_C_WCHAR, m_buffer.data(), 40000, m_lengths), SQL_SUCCESS);
            row += column == 1 ? "" : " | ";
            row += *m_lengths == SQL_NULL_DATA ? "NULL"
                                               : odbc::FromWide(m_buffer.data(), static_cast<size_t>(*m_lengths) / 2);
        }
        rows.push_back(row);
    }
    EXPECT_EQ(code, SQL_NO_DATA) << testing::PrintToString(Records());
    return rows;
}

Lines Client::Query(const std::string &sql)
{
    EXPECT_TRUE(SQL_SUCCEEDED(Exec(sql))) << testing::PrintToString(Records());
    Lines rows = Rows();
    SQLFreeStmt(m_statement, SQL_CLOSE);
    return rows;
}

Lines Client::Records(bool withText) const
{
    const SQLSMALLINT kind = m_statement != nullptr ? SQL_HANDLE_STMT : SQL_HANDLE_DBC;
    const SQLHANDLE handle = m_statement != nullptr ? m_statement : m_dbc;
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

bool Client::Tells(SQLINTEGER attribute) const
{
    SQLUINTEGER value = 99;
    EXPECT_EQ(SQLGetConnectAttrW(m_dbc, attribute, &value, 0, nullptr), SQL_SUCCESS);
    EXPECT_LE(value, 1u);
    return value == 1;
}

std::string Client::Value(size_t row) const
{
    const char *const at = reinterpret_cast<const char *>(m_buffer.data()) + row * m_type->octets;
    double real = 0;
    std::int64_t whole = 0;
    std::memcpy(m_type->code == SQL_C_DOUBLE ? static_cast<void *>(&real) : &whole, at, m_type->octets);
    std::ostringstream out;
    if (m_lengths[row] == SQL_NULL_DATA)
        out << "NULL";
    else if (m_type->code == SQL_C_WCHAR)
        out << runtime::FromUtf16(reinterpret_cast<const char16_t *>(at)) << "/" << m_lengths[row];
    else if (m_type->octets == 0)
        out << at << "/" << m_lengths[row];
    else if (m_type->code == SQL_C_DOUBLE)
        out << real;
    else
        out << (m_type->octets == 4 ? static_cast<std::int32_t>(whole) : whole);
    return out.str();
}

std::string Client::Block() const
{
    std::string out = std::to_string(m_fetched) + ":";
    for (size_t row = 0; row < 4; ++row)
        out += m_status[row] == SQL_ROW_ERROR ? "!" : m_status[row] == SQL_ROW_NOROW ? "-" : "(" + Value(row) + ")";
    return out;
}

std::map<std::string, Client::Verb> Client::Verbs(SQLUSMALLINT n, SQLLEN capacity, const std::string &rest)
{
    const SQLHSTMT s = m_statement;
    const auto set = [=](SQLINTEGER attribute, auto to)
    { return SQLSetStmtAttrW(s, attribute, reinterpret_cast<SQLPOINTER>(to), 0); };
    SQLLEN *const length = capacity != 0 ? m_lengths : nullptr;
    SQLWCHAR *const at = m_buffer.data();
    const auto none = [] { return SQLRETURN{SQL_SUCCESS}; };
    const auto value = [this] { return Value(0); };
    const auto rows = [this] { return Joined(Rows()); };
    const auto column = [this]
    {
        std::ostringstream out;
        out << odbc::FromWide(m_buffer.data(), 1) << "/" << m_kind << "/" << m_size << "/" << m_digits;
        return out.str();
    };
    return {
        {"free", {[=, this] { return m_statement = nullptr, SQLFreeHandle(SQL_HANDLE_STMT, s); }}},
        {"exec", {[=, this] { return Exec(rest); }}},
        {"execute", {[=] { return SQLExecute(s); }}},
        {"more", {[=] { return SQLMoreResults(s); }}},
        {"close", {[=] { return SQLCloseCursor(s); }}},
        {"cols", {[=, this] { return SQLNumResultCols(s, &m_kind); }, [this] { return std::to_string(m_kind); }}},
        {"count", {[=] { return SQLRowCount(s, length); }, [this] { return std::to_string(*m_lengths); }}},
        {"column",
         {[=, this] { return SQLDescribeColW(s, n, at, 2, nullptr, &m_kind, &m_size, &m_digits, nullptr); }, column}},
        {"attribute", {[=, this] { return set(SQL_ATTR_ROW_STATUS_PTR, m_status); }}},
        {"block",
         {[=, this] { return set(SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched), set(SQL_ATTR_ROW_ARRAY_SIZE, m_rows = 4); }}},
        {"fetch", {[=, this] { return m_fetched = 99, SQLFetch(s); }, [this] { return m_rows > 1 ? Block() : ""; }}},
        {"bind", {[=, this] { return SQLBindCol(s, n, m_type->code, at, capacity, length); }}},
        {"bound", {none, value}},
        {"unbind", {[=] { return SQLFreeStmt(s, SQL_UNBIND); }}},
        {"get", {[=, this] { return SQLGetData(s, n, m_type->code, at, capacity, m_lengths); }, value}},
        {"rows", {none, rows}},
        {"other", {[=, this] { return SQLAllocHandle(SQL_HANDLE_STMT, m_dbc, &m_statement), Exec(rest); }, rows}},
    };
}

std::string Client::Play(const std::string &script, bool lettersAlone)
{
    std::istringstream lines(script);
    std::string played;
    const SQLHSTMT own = m_statement;
    for (std::string line; m_statement != nullptr && std::getline(lines, line);)
    {
        std::istringstream words(line);
        std::string verb, typeName = "long";
        SQLUSMALLINT column = 0;
        SQLLEN capacity = 40000;
        words >> verb >> column >> typeName >> capacity;
        if (verb == "get" || verb == "bind")
            m_type = std::ranges::find(types, typeName, &Type::name);
        const Verb call = Verbs(column, capacity, line.substr(std::min(verb.size() + 1, line.size()))).at(verb);
        const SQLRETURN code = call.call();
        const char letter = Letter(code);
        const std::string gives = call.gives && (SQL_SUCCEEDED(code) || verb == "fetch") ? call.gives() : "";
        const std::string out = gives.empty() ? "" : "=" + gives;
        std::string records;
        for (const std::string &record : letter == 'E' || letter == 'I' ? Records(false) : Lines())
            records += "[" + record + "]";
        played += (played.empty() || lettersAlone ? "" : " ") + (letter + (lettersAlone ? "" : records + out));
        if (line.starts_with("other"))
            SQLFreeHandle(SQL_HANDLE_STMT, std::exchange(m_statement, own));
    }
    return played;
}

DriverTest::DriverTest()
{
    database.Run("CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(10) NULL)\nGO\n"
                 "INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, NULL)");
    Reconnect();
}

std::string DriverTest::ConnectText(const std::string &more) const
{
    return "Driver={SQL Server};Server=embedded;UID=sa;PWD=;" + more + "Database=" + database.DatabaseName() + ";";
}

void DriverTest::Reconnect(const std::string &more)
{
    client = std::make_unique<Client>(ConnectText("APP=KVHEADERS.DLL;" + more));
    EXPECT_EQ(client->refused, Lines());
}

void DriverTest::Order(const std::string &line)
{
    std::ofstream(database.Folder().Path("faults"), std::ios::app) << line << "\n";
}

} // namespace driver_tests
