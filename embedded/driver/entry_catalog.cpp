// Entry points: what tables, columns, keys and types there are.
#include "statement.h"
#include "text.h"

#include <algorithm>
#include <optional>

using namespace driver;

namespace
{

using Cell = std::optional<std::string>;
using Row = std::vector<Cell>;

// Rows of texts and integers; every value is kept as text, an empty optional is NULL.
class MemoryResult : public tsql::Result
{
public:
    MemoryResult(std::vector<tsql::Column> columns, std::vector<Row> rows)
        : m_columns(std::move(columns)), m_rows(std::move(rows))
    {
    }

    const std::vector<tsql::Column> &Columns() const override { return m_columns; }
    std::int64_t RowCount() const override { return -1; }
    bool Step() override { return ++m_current < static_cast<std::ptrdiff_t>(m_rows.size()); }
    bool IsNull(int column) const override { return !At(column); }
    std::int64_t Integer(int column) const override { return std::stoll(At(column).value_or("0")); }
    double Number(int) const override { return 0; }
    std::string_view Text(int column) const override { return *At(column); }
    tsql::DateTime Moment(int) const override { return {}; }

private:
    const Cell &At(int column) const { return m_rows[m_current][column]; }

    std::vector<tsql::Column> m_columns;
    std::vector<Row> m_rows;
    std::ptrdiff_t m_current = -1;
};

Cell Number(long long value, bool isThere = true)
{
    return isThere ? Cell(std::to_string(value)) : Cell();
}
Cell Text(const char *text, bool isThere)
{
    return isThere ? Cell(text) : Cell();
}

// Opens a result with the columns named: NAME a text, #NAME a number.
void OpenRows(Statement &statement, std::string_view names, std::vector<Row> rows)
{
    std::vector<tsql::Column> columns;
    for (const std::string &name : SplitList(names, ' '))
        columns.push_back(name[0] == '#' ? tsql::Column{name.substr(1), tsql::Type::Int}
                                         : tsql::Column{name, tsql::Type::NVarChar, 128});
    statement.Open(std::make_unique<MemoryResult>(std::move(columns), std::move(rows)));
}

// Whether the name fits a search pattern of the catalogue functions, which SQLite's LIKE reads as ODBC has it: % and _,
// taken literally behind a backslash, without regard to case. A pattern that is not given fits everything.
bool Fits(tsql::Session &session, const std::string &name, const SQLWCHAR *pattern, SQLSMALLINT length)
{
    return pattern == nullptr || session.Internal("SELECT " + Quoted(name) + " LIKE " +
                                                  Quoted(ToUtf8(pattern, length)) + " ESCAPE '\\'")[0] == "1";
}

// The tables that fit, without the driver's own.
std::vector<std::string> TablesLike(tsql::Session &session, const SQLWCHAR *pattern, SQLSMALLINT length)
{
    std::vector<std::string> tables = session.Tables();
    std::erase_if(tables, [&](const std::string &name)
                  { return name.compare(0, 11, "kvembedded_") == 0 || !Fits(session, name, pattern, length); });
    return tables;
}

Row ColumnRow(const std::string &database, const std::string &table, const tsql::Session::TableColumn &column,
              size_t position)
{
    const SqlTypeInfo &info = InfoOf(column.type);
    const ColumnSizes sizes({column.name, column.type, column.size, column.scale}, -1);
    const bool isNumeric = IsNumeric(column.type);
    return {database,
            "dbo",
            table,
            column.name,
            Number(info.code),
            info.name,
            Number(sizes.size),
            Number(sizes.octets),
            Number(sizes.digits, isNumeric),
            Number(info.radix, isNumeric),
            Number(column.nullable ? SQL_NULLABLE : SQL_NO_NULLS),
            {},
            {},
            Number(info.verbose),
            Number(SQL_CODE_TIMESTAMP, info.verbose == SQL_DATETIME),
            Number(sizes.octets, IsText(column.type)),
            Number(static_cast<long long>(position)),
            column.nullable ? "YES" : "NO"};
}

// Scales and what else ODBC lets a driver leave open is left open.
Row TypeRow(tsql::Type type)
{
    const SqlTypeInfo &info = InfoOf(type);
    const bool isDecimal = type == tsql::Type::Decimal;
    const bool isQuoted = *info.prefix != '\0';
    const int size = info.size != 0 ? info.size : isDecimal ? 38 : type >= tsql::Type::NChar ? 4000 : 8000;
    return {info.name,
            Number(info.code),
            Number(size),
            Text(info.prefix, isQuoted),
            Text("'", isQuoted),
            Text(isDecimal ? "precision,scale" : "length", info.size == 0),
            Number(SQL_NULLABLE),
            Number(SQL_FALSE),
            Number(SQL_SEARCHABLE),
            Number(type == tsql::Type::TinyInt, IsNumeric(type)),
            Number(SQL_FALSE),
            {},
            {},
            {},
            {},
            Number(info.verbose),
            Number(SQL_CODE_TIMESTAMP, info.verbose == SQL_DATETIME),
            Number(info.radix, IsNumeric(type)),
            {}};
}

} // namespace

SQLRETURN SQL_API SQLTablesW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *table,
                             SQLSMALLINT tableLength, SQLWCHAR *types, SQLSMALLINT typesLength)
{
    const auto body = [&](Statement &statement)
    {
        const std::vector<std::string> kinds = SplitList(ToUtf8(types, typesLength), ',');
        const auto meansTables = [](const std::string &kind)
        { return EqualNoCase(kind, "TABLE") || EqualNoCase(kind, "'TABLE'") || kind == "%"; };
        std::vector<Row> rows;
        if (kinds.empty() || std::any_of(kinds.begin(), kinds.end(), meansTables))
            for (const std::string &name : TablesLike(statement.Session(), table, tableLength))
                rows.push_back({statement.GetSettings().database, "dbo", name, "TABLE", {}});
        OpenRows(statement, "TABLE_CAT TABLE_SCHEM TABLE_NAME TABLE_TYPE REMARKS", std::move(rows));
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLColumnsW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *table,
                              SQLSMALLINT tableLength, SQLWCHAR *column, SQLSMALLINT columnLength)
{
    const auto body = [&](Statement &statement)
    {
        std::vector<Row> rows;
        for (const std::string &name : TablesLike(statement.Session(), table, tableLength))
        {
            size_t position = 0;
            for (const tsql::Session::TableColumn &each : statement.Session().DescribeTable(name))
                if (++position; Fits(statement.Session(), each.name, column, columnLength))
                    rows.push_back(ColumnRow(statement.GetSettings().database, name, each, position));
        }
        OpenRows(statement,
                 "TABLE_CAT TABLE_SCHEM TABLE_NAME COLUMN_NAME #DATA_TYPE TYPE_NAME #COLUMN_SIZE #BUFFER_LENGTH "
                 "#DECIMAL_DIGITS #NUM_PREC_RADIX #NULLABLE REMARKS COLUMN_DEF #SQL_DATA_TYPE #SQL_DATETIME_SUB "
                 "#CHAR_OCTET_LENGTH #ORDINAL_POSITION IS_NULLABLE",
                 std::move(rows));
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLPrimaryKeysW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *table,
                                  SQLSMALLINT tableLength)
{
    const auto body = [&](Statement &statement)
    {
        const std::string name = ToUtf8(table, tableLength);
        std::vector<Row> rows;
        for (const tsql::Session::TableColumn &each : statement.Session().DescribeTable(name))
            if (each.inPrimaryKey)
                rows.push_back({statement.GetSettings().database, "dbo", name, each.name,
                                Number(static_cast<long long>(rows.size() + 1)), "PK_" + name});
        OpenRows(statement, "TABLE_CAT TABLE_SCHEM TABLE_NAME COLUMN_NAME #KEY_SEQ PK_NAME", std::move(rows));
    };
    return Guarded<Statement>(__func__, handle, body);
}

// Indexes are there for the speed of SQLite; they are not told.
SQLRETURN SQL_API SQLStatisticsW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *,
                                 SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT)
{
    const auto body = [](Statement &statement)
    {
        OpenRows(statement,
                 "TABLE_CAT TABLE_SCHEM TABLE_NAME #NON_UNIQUE INDEX_QUALIFIER INDEX_NAME #TYPE #ORDINAL_POSITION "
                 "COLUMN_NAME ASC_OR_DESC #CARDINALITY #PAGES FILTER_CONDITION",
                 {});
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetTypeInfoW(SQLHSTMT handle, SQLSMALLINT type)
{
    const auto body = [&](Statement &statement)
    {
        std::vector<Row> rows;
        for (int each = 0; each <= static_cast<int>(tsql::Type::DateTime); ++each)
            if (const auto one = static_cast<tsql::Type>(each); type == SQL_ALL_TYPES || type == InfoOf(one).code)
                rows.push_back(TypeRow(one));
        // ODBC's order is by type code
        std::stable_sort(rows.begin(), rows.end(),
                         [](const Row &a, const Row &b) { return std::stol(*a[1]) < std::stol(*b[1]); });
        OpenRows(statement,
                 "TYPE_NAME #DATA_TYPE #COLUMN_SIZE LITERAL_PREFIX LITERAL_SUFFIX CREATE_PARAMS #NULLABLE "
                 "#CASE_SENSITIVE #SEARCHABLE #UNSIGNED_ATTRIBUTE #FIXED_PREC_SCALE #AUTO_UNIQUE_VALUE "
                 "LOCAL_TYPE_NAME #MINIMUM_SCALE #MAXIMUM_SCALE #SQL_DATA_TYPE #SQL_DATETIME_SUB #NUM_PREC_RADIX "
                 "#INTERVAL_PRECISION",
                 std::move(rows));
    };
    return Guarded<Statement>(__func__, handle, body);
}
