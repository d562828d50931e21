// Entry points: what tables, columns, keys and types there are.
#include "guard.h"
#include "statement.h"
#include "text.h"

#include <algorithm>

using namespace driver;

namespace
{

using Rows = std::vector<MemoryResult::Row>;

tsql::Column Text(const char *name)
{
    return {name, tsql::Type::NVarChar, 128, 0};
}
tsql::Column Small(const char *name)
{
    return {name, tsql::Type::SmallInt, 0, 0};
}
tsql::Column Integer(const char *name)
{
    return {name, tsql::Type::Int, 0, 0};
}

std::string Number(long long value)
{
    return std::to_string(value);
}

// A search pattern of the catalogue functions: % and _, taken literally behind a backslash; without regard to case.
bool Matches(std::string_view pattern, std::string_view name)
{
    if (pattern.empty())
        return name.empty();
    if (pattern[0] == '%')
    {
        for (size_t skip = 0; skip <= name.size(); ++skip)
            if (Matches(pattern.substr(1), name.substr(skip)))
                return true;
        return false;
    }
    if (name.empty())
        return false;
    if (pattern[0] == '\\' && pattern.size() > 1)
        pattern.remove_prefix(1);
    else if (pattern[0] == '_')
        return Matches(pattern.substr(1), name.substr(1));
    return EqualsIgnoringCase(pattern.substr(0, 1), name.substr(0, 1)) && Matches(pattern.substr(1), name.substr(1));
}

// A pattern argument that is not given matches everything.
struct Pattern
{
    Pattern(const SQLWCHAR *text, SQLSMALLINT length) : m_all(text == nullptr), m_text(ToUtf8(text, length)) {}
    bool operator()(std::string_view name) const { return m_all || Matches(m_text, name); }

    bool m_all;
    std::string m_text;
};

bool ListsTables(const std::string &types)
{
    const std::vector<std::string> wanted = SplitList(types, ',');
    return wanted.empty() || std::any_of(wanted.begin(), wanted.end(),
                                         [](const std::string &type) {
                                             return EqualsIgnoringCase(type, "TABLE") ||
                                                    EqualsIgnoringCase(type, "'TABLE'") || type == "%";
                                         });
}

// The tables of the database without the driver's own.
std::vector<std::string> UserTables(Statement &statement)
{
    std::vector<std::string> tables = statement.Session().Tables();
    tables.erase(std::remove_if(tables.begin(), tables.end(),
                                [](const std::string &name) { return name.compare(0, 11, "kvembedded_") == 0; }),
                 tables.end());
    return tables;
}

tsql::Column AsColumn(const tsql::Session::TableColumn &column)
{
    return {column.name, column.type, column.size, column.scale};
}

MemoryResult::Row ColumnRow(const std::string &database, const std::string &table,
                            const tsql::Session::TableColumn &column, size_t position)
{
    const SqlTypeInfo &info = InfoOf(column.type);
    const SQLULEN size = ColumnSize(AsColumn(column), -1);
    const long long octets = info.octets != 0 ? info.octets
                                              : static_cast<long long>(size) *
                                                    (column.type >= tsql::Type::NChar && IsText(column.type) ? 2 : 1);
    const auto ifNumeric = [&](long long value)
    { return IsNumeric(column.type) ? std::optional(Number(value)) : std::nullopt; };
    return {database,
            "dbo",
            table,
            column.name,
            Number(info.code),
            info.name,
            Number(static_cast<long long>(size)),
            Number(octets),
            ifNumeric(DecimalDigits(AsColumn(column))),
            ifNumeric(column.type == tsql::Type::Float ? 2 : 10),
            Number(column.nullable ? SQL_NULLABLE : SQL_NO_NULLS),
            std::nullopt,
            std::nullopt,
            Number(info.verbose),
            info.verbose == SQL_DATETIME ? std::optional(Number(SQL_CODE_TIMESTAMP)) : std::nullopt,
            IsText(column.type) ? std::optional(Number(octets)) : std::nullopt,
            Number(static_cast<long long>(position)),
            column.nullable ? "YES" : "NO"};
}

MemoryResult::Row TypeRow(tsql::Type type)
{
    const SqlTypeInfo &info = InfoOf(type);
    const bool isText = IsText(type);
    const bool isNumeric = IsNumeric(type);
    const int size = info.size != 0                ? info.size
                     : type == tsql::Type::Decimal ? 38
                     : type >= tsql::Type::NChar   ? 4000
                                                   : 8000;
    const auto quote = *info.prefix != '\0' ? std::optional<std::string>("'") : std::nullopt;
    return {info.name,
            Number(info.code),
            Number(size),
            *info.prefix != '\0' ? std::optional<std::string>(info.prefix) : std::nullopt,
            quote,
            type == tsql::Type::Decimal ? std::optional<std::string>("precision,scale")
            : isText                    ? std::optional<std::string>("length")
                                        : std::nullopt,
            Number(SQL_NULLABLE),
            Number(SQL_FALSE),
            Number(SQL_SEARCHABLE),
            isNumeric ? std::optional(Number(type == tsql::Type::TinyInt)) : std::nullopt,
            Number(SQL_FALSE),
            isNumeric ? std::optional(Number(SQL_FALSE)) : std::nullopt,
            info.name,
            type == tsql::Type::DateTime ? std::optional(Number(3))
            : isNumeric                  ? std::optional(Number(0))
                                         : std::nullopt,
            type == tsql::Type::DateTime  ? std::optional(Number(3))
            : type == tsql::Type::Decimal ? std::optional(Number(38))
            : isNumeric                   ? std::optional(Number(0))
                                          : std::nullopt,
            Number(info.verbose),
            info.verbose == SQL_DATETIME ? std::optional(Number(SQL_CODE_TIMESTAMP)) : std::nullopt,
            isNumeric ? std::optional(Number(type == tsql::Type::Float ? 2 : 10)) : std::nullopt,
            std::nullopt};
}

} // namespace

SQLRETURN SQL_API SQLTablesW(SQLHSTMT handle, SQLWCHAR *catalog, SQLSMALLINT catalogLength, SQLWCHAR *schema,
                             SQLSMALLINT schemaLength, SQLWCHAR *table, SQLSMALLINT tableLength, SQLWCHAR *types,
                             SQLSMALLINT typesLength)
{
    const auto body = [&](Statement &statement)
    {
        const std::string catalogName = ToUtf8(catalog, catalogLength);
        const std::string schemaName = ToUtf8(schema, schemaLength);
        const std::string tableName = ToUtf8(table, tableLength);
        const std::string typeNames = ToUtf8(types, typesLength);
        const std::string database = statement.GetSettings().database;
        Rows rows;
        // three enumerations have a form of their own
        if (catalogName == SQL_ALL_CATALOGS && schemaName.empty() && tableName.empty())
            rows.push_back({database, std::nullopt, std::nullopt, std::nullopt, std::nullopt});
        else if (schemaName == SQL_ALL_SCHEMAS && catalogName.empty() && tableName.empty())
            rows.push_back({std::nullopt, "dbo", std::nullopt, std::nullopt, std::nullopt});
        else if (typeNames == SQL_ALL_TABLE_TYPES && catalogName.empty() && schemaName.empty() && tableName.empty())
            rows.push_back({std::nullopt, std::nullopt, std::nullopt, "TABLE", std::nullopt});
        else if (ListsTables(typeNames) && Pattern(schema, schemaLength)("dbo"))
        {
            const Pattern wanted(table, tableLength);
            for (const std::string &name : UserTables(statement))
                if (wanted(name))
                    rows.push_back({database, "dbo", name, "TABLE", std::nullopt});
        }
        statement.Open(
            {Text("TABLE_CAT"), Text("TABLE_SCHEM"), Text("TABLE_NAME"), Text("TABLE_TYPE"), Text("REMARKS")},
            std::move(rows));
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLColumnsW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *schema, SQLSMALLINT schemaLength,
                              SQLWCHAR *table, SQLSMALLINT tableLength, SQLWCHAR *column, SQLSMALLINT columnLength)
{
    const auto body = [&](Statement &statement)
    {
        const Pattern wantedSchema(schema, schemaLength);
        const Pattern wantedTable(table, tableLength);
        const Pattern wantedColumn(column, columnLength);
        Rows rows;
        for (const std::string &name : UserTables(statement))
        {
            if (!wantedTable(name) || !wantedSchema("dbo"))
                continue;
            size_t position = 0;
            for (const tsql::Session::TableColumn &each : statement.Session().DescribeTable(name))
                if (++position; wantedColumn(each.name))
                    rows.push_back(ColumnRow(statement.GetSettings().database, name, each, position));
        }
        statement.Open({Text("TABLE_CAT"), Text("TABLE_SCHEM"), Text("TABLE_NAME"), Text("COLUMN_NAME"),
                        Small("DATA_TYPE"), Text("TYPE_NAME"), Integer("COLUMN_SIZE"), Integer("BUFFER_LENGTH"),
                        Small("DECIMAL_DIGITS"), Small("NUM_PREC_RADIX"), Small("NULLABLE"), Text("REMARKS"),
                        Text("COLUMN_DEF"), Small("SQL_DATA_TYPE"), Small("SQL_DATETIME_SUB"),
                        Integer("CHAR_OCTET_LENGTH"), Integer("ORDINAL_POSITION"), Text("IS_NULLABLE")},
                       std::move(rows));
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLPrimaryKeysW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *table,
                                  SQLSMALLINT tableLength)
{
    const auto body = [&](Statement &statement)
    {
        const std::string asked = ToUtf8(table, tableLength);
        Rows rows;
        for (const std::string &name : UserTables(statement))
        {
            if (!EqualsIgnoringCase(name, asked))
                continue;
            for (const tsql::Session::TableColumn &each : statement.Session().DescribeTable(name))
                if (each.inPrimaryKey)
                    rows.push_back({statement.GetSettings().database, "dbo", name, each.name,
                                    Number(static_cast<long long>(rows.size() + 1)), "PK_" + name});
        }
        statement.Open({Text("TABLE_CAT"), Text("TABLE_SCHEM"), Text("TABLE_NAME"), Text("COLUMN_NAME"),
                        Small("KEY_SEQ"), Text("PK_NAME")},
                       std::move(rows));
    };
    return Guarded<Statement>(handle, body);
}

// Indexes are there for the speed of SQLite; they are not told.
SQLRETURN SQL_API SQLStatisticsW(SQLHSTMT handle, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *,
                                 SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT)
{
    const auto body = [](Statement &statement)
    {
        statement.Session();
        statement.Open({Text("TABLE_CAT"), Text("TABLE_SCHEM"), Text("TABLE_NAME"), Small("NON_UNIQUE"),
                        Text("INDEX_QUALIFIER"), Text("INDEX_NAME"), Small("TYPE"), Small("ORDINAL_POSITION"),
                        Text("COLUMN_NAME"), Text("ASC_OR_DESC"), Integer("CARDINALITY"), Integer("PAGES"),
                        Text("FILTER_CONDITION")},
                       {});
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLSpecialColumnsW(SQLHSTMT handle, SQLUSMALLINT, SQLWCHAR *, SQLSMALLINT, SQLWCHAR *, SQLSMALLINT,
                                     SQLWCHAR *, SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT)
{
    const auto body = [](Statement &statement)
    {
        statement.Session();
        statement.Open({Small("SCOPE"), Text("COLUMN_NAME"), Small("DATA_TYPE"), Text("TYPE_NAME"),
                        Integer("COLUMN_SIZE"), Integer("BUFFER_LENGTH"), Small("DECIMAL_DIGITS"),
                        Small("PSEUDO_COLUMN")},
                       {});
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLGetTypeInfoW(SQLHSTMT handle, SQLSMALLINT type)
{
    const auto body = [&](Statement &statement)
    {
        statement.Session();
        Rows rows;
        for (int each = 0; each <= static_cast<int>(tsql::Type::DateTime); ++each)
            if (const auto one = static_cast<tsql::Type>(each); type == SQL_ALL_TYPES || type == InfoOf(one).code)
                rows.push_back(TypeRow(one));
        // ODBC's order is by type code
        std::stable_sort(rows.begin(), rows.end(),
                         [](const auto &a, const auto &b) { return std::stol(*a[1]) < std::stol(*b[1]); });
        statement.Open({Text("TYPE_NAME"), Small("DATA_TYPE"), Integer("COLUMN_SIZE"), Text("LITERAL_PREFIX"),
                        Text("LITERAL_SUFFIX"), Text("CREATE_PARAMS"), Small("NULLABLE"), Small("CASE_SENSITIVE"),
                        Small("SEARCHABLE"), Small("UNSIGNED_ATTRIBUTE"), Small("FIXED_PREC_SCALE"),
                        Small("AUTO_UNIQUE_VALUE"), Text("LOCAL_TYPE_NAME"), Small("MINIMUM_SCALE"),
                        Small("MAXIMUM_SCALE"), Small("SQL_DATA_TYPE"), Small("SQL_DATETIME_SUB"),
                        Integer("NUM_PREC_RADIX"), Small("INTERVAL_PRECISION")},
                       std::move(rows));
        return SQL_SUCCESS;
    };
    return Guarded<Statement>(handle, body);
}
