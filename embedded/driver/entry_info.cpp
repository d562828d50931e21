// Entry points: what this driver is and can do.
#include "guard.h"
#include "statement.h"
#include "text.h"

#include <map>

using namespace driver;

namespace
{

const std::map<SQLUSMALLINT, std::string> &Texts()
{
    static const std::map<SQLUSMALLINT, std::string> texts = {
        {SQL_DRIVER_NAME, "libkvembedded.so"},
        {SQL_DRIVER_VER, "01.00.0000"},
        {SQL_DRIVER_ODBC_VER, "03.52"},
        {SQL_ODBC_VER, "03.52"},
        {SQL_DBMS_NAME, "Microsoft SQL Server"}, // the dialect a client has to speak
        {SQL_DBMS_VER, "08.00.0000"},
        {SQL_IDENTIFIER_QUOTE_CHAR, "\""},
        {SQL_CATALOG_NAME_SEPARATOR, "."},
        {SQL_CATALOG_TERM, "database"},
        {SQL_SCHEMA_TERM, "owner"},
        {SQL_TABLE_TERM, "table"},
        {SQL_PROCEDURE_TERM, "stored procedure"},
        {SQL_SEARCH_PATTERN_ESCAPE, "\\"},
        {SQL_SPECIAL_CHARACTERS, "#$@"},
        {SQL_KEYWORDS, ""},
        {SQL_ACCESSIBLE_TABLES, "Y"},
        {SQL_ACCESSIBLE_PROCEDURES, "N"},
        {SQL_CATALOG_NAME, "N"},
        {SQL_COLUMN_ALIAS, "Y"},
        {SQL_DATA_SOURCE_READ_ONLY, "N"},
        {SQL_DESCRIBE_PARAMETER, "N"},
        {SQL_EXPRESSIONS_IN_ORDERBY, "Y"},
        {SQL_INTEGRITY, "N"},
        {SQL_LIKE_ESCAPE_CLAUSE, "Y"},
        {SQL_MAX_ROW_SIZE_INCLUDES_LONG, "N"},
        {SQL_MULT_RESULT_SETS, "Y"},
        {SQL_MULTIPLE_ACTIVE_TXN, "Y"},
        {SQL_NEED_LONG_DATA_LEN, "N"},
        {SQL_ORDER_BY_COLUMNS_IN_SELECT, "N"},
        {SQL_OUTER_JOINS, "Y"},
        {SQL_PROCEDURES, "N"},
        {SQL_ROW_UPDATES, "N"},
        {SQL_XOPEN_CLI_YEAR, "1995"},
        {SQL_COLLATION_SEQ, ""},
    };
    return texts;
}

const std::map<SQLUSMALLINT, SQLUSMALLINT> &Shorts()
{
    static const std::map<SQLUSMALLINT, SQLUSMALLINT> shorts = {
        {SQL_ACTIVE_ENVIRONMENTS, 0},
        {SQL_CATALOG_LOCATION, SQL_CL_START},
        {SQL_CONCAT_NULL_BEHAVIOR, SQL_CB_NULL},
        {SQL_CORRELATION_NAME, SQL_CN_ANY},
        {SQL_CURSOR_COMMIT_BEHAVIOR, SQL_CB_CLOSE},
        {SQL_CURSOR_ROLLBACK_BEHAVIOR, SQL_CB_CLOSE},
        {SQL_FILE_USAGE, SQL_FILE_NOT_SUPPORTED},
        {SQL_GROUP_BY, SQL_GB_GROUP_BY_CONTAINS_SELECT},
        {SQL_IDENTIFIER_CASE, SQL_IC_MIXED},
        {SQL_QUOTED_IDENTIFIER_CASE, SQL_IC_MIXED},
        {SQL_MAX_CATALOG_NAME_LEN, 128},
        {SQL_MAX_COLUMN_NAME_LEN, 128},
        {SQL_MAX_COLUMNS_IN_GROUP_BY, 0},
        {SQL_MAX_COLUMNS_IN_INDEX, 16},
        {SQL_MAX_COLUMNS_IN_ORDER_BY, 0},
        {SQL_MAX_COLUMNS_IN_SELECT, 0},
        {SQL_MAX_COLUMNS_IN_TABLE, 1024},
        {SQL_MAX_CONCURRENT_ACTIVITIES, 1},
        {SQL_MAX_CURSOR_NAME_LEN, 128},
        {SQL_MAX_DRIVER_CONNECTIONS, 0},
        {SQL_MAX_IDENTIFIER_LEN, 128},
        {SQL_MAX_PROCEDURE_NAME_LEN, 128},
        {SQL_MAX_SCHEMA_NAME_LEN, 128},
        {SQL_MAX_TABLE_NAME_LEN, 128},
        {SQL_MAX_TABLES_IN_SELECT, 0},
        {SQL_MAX_USER_NAME_LEN, 128},
        {SQL_NON_NULLABLE_COLUMNS, SQL_NNC_NON_NULL},
        {SQL_NULL_COLLATION, SQL_NC_LOW},
        {SQL_ODBC_API_CONFORMANCE, SQL_OAC_LEVEL1},
        {SQL_ODBC_SQL_CONFORMANCE, SQL_OSC_MINIMUM},
        {SQL_TXN_CAPABLE, SQL_TC_ALL},
    };
    return shorts;
}

// Every other information is a bit mask or a number; where it is not here, it is 0: not supported.
const std::map<SQLUSMALLINT, SQLUINTEGER> &Numbers()
{
    static const std::map<SQLUSMALLINT, SQLUINTEGER> numbers = {
        {SQL_ASYNC_MODE, SQL_AM_NONE},
        {SQL_BATCH_ROW_COUNT, SQL_BRC_EXPLICIT},
        {SQL_BATCH_SUPPORT, SQL_BS_SELECT_EXPLICIT | SQL_BS_ROW_COUNT_EXPLICIT},
        {SQL_CURSOR_SENSITIVITY, SQL_INSENSITIVE},
        {SQL_DEFAULT_TXN_ISOLATION, SQL_TXN_SERIALIZABLE},
        {SQL_TXN_ISOLATION_OPTION, SQL_TXN_SERIALIZABLE},
        {SQL_FETCH_DIRECTION, SQL_FD_FETCH_NEXT},
        {SQL_FORWARD_ONLY_CURSOR_ATTRIBUTES1, SQL_CA1_NEXT | SQL_CA1_POS_POSITION},
        {SQL_GETDATA_EXTENSIONS, SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER | SQL_GD_BLOCK | SQL_GD_BOUND},
        {SQL_ODBC_INTERFACE_CONFORMANCE, SQL_OIC_CORE},
        {SQL_PARAM_ARRAY_ROW_COUNTS, SQL_PARC_NO_BATCH},
        {SQL_SCHEMA_USAGE, SQL_SU_DML_STATEMENTS | SQL_SU_TABLE_DEFINITION},
        {SQL_SCROLL_OPTIONS, SQL_SO_FORWARD_ONLY},
        {SQL_SQL_CONFORMANCE, SQL_SC_SQL92_ENTRY},
        {SQL_SUBQUERIES, SQL_SQ_COMPARISON | SQL_SQ_EXISTS | SQL_SQ_IN | SQL_SQ_CORRELATED_SUBQUERIES},
        {SQL_UNION, SQL_U_UNION | SQL_U_UNION_ALL},
    };
    return numbers;
}

std::string LiveText(const Connection &connection, SQLUSMALLINT what, bool &found)
{
    found = true;
    switch (what)
    {
    case SQL_DATA_SOURCE_NAME:
        return "";
    case SQL_SERVER_NAME:
        return connection.GetSettings().server;
    case SQL_DATABASE_NAME:
        return connection.GetSettings().database;
    case SQL_USER_NAME:
        return connection.GetSettings().user;
    default:
        found = false;
        return {};
    }
}

constexpr SQLUSMALLINT Functions[] = {
    SQL_API_SQLALLOCHANDLE,    SQL_API_SQLBINDCOL,        SQL_API_SQLBINDPARAMETER, SQL_API_SQLCANCEL,
    SQL_API_SQLCLOSECURSOR,    SQL_API_SQLCOLATTRIBUTE,   SQL_API_SQLCOLUMNS,       SQL_API_SQLCONNECT,
    SQL_API_SQLDESCRIBECOL,    SQL_API_SQLDESCRIBEPARAM,  SQL_API_SQLDISCONNECT,    SQL_API_SQLDRIVERCONNECT,
    SQL_API_SQLENDTRAN,        SQL_API_SQLEXECDIRECT,     SQL_API_SQLEXECUTE,       SQL_API_SQLFETCH,
    SQL_API_SQLFETCHSCROLL,    SQL_API_SQLFREEHANDLE,     SQL_API_SQLFREESTMT,      SQL_API_SQLGETCONNECTATTR,
    SQL_API_SQLGETCURSORNAME,  SQL_API_SQLGETDATA,        SQL_API_SQLGETDIAGFIELD,  SQL_API_SQLGETDIAGREC,
    SQL_API_SQLGETENVATTR,     SQL_API_SQLGETFUNCTIONS,   SQL_API_SQLGETINFO,       SQL_API_SQLGETSTMTATTR,
    SQL_API_SQLGETTYPEINFO,    SQL_API_SQLMORERESULTS,    SQL_API_SQLNATIVESQL,     SQL_API_SQLNUMPARAMS,
    SQL_API_SQLNUMRESULTCOLS,  SQL_API_SQLPREPARE,        SQL_API_SQLPRIMARYKEYS,   SQL_API_SQLROWCOUNT,
    SQL_API_SQLSETCONNECTATTR, SQL_API_SQLSETCURSORNAME,  SQL_API_SQLSETENVATTR,    SQL_API_SQLSETPOS,
    SQL_API_SQLSETSTMTATTR,    SQL_API_SQLSPECIALCOLUMNS, SQL_API_SQLSTATISTICS,    SQL_API_SQLTABLES,
};

} // namespace

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER out, SQLSMALLINT octets,
                              SQLSMALLINT *length)
{
    const auto body = [&](Connection &connection)
    {
        bool isText = false;
        std::string text = LiveText(connection, what, isText);
        if (const auto found = Texts().find(what); found != Texts().end())
        {
            isText = true;
            text = found->second;
        }
        if (isText)
        {
            const std::u16string wide = ToUtf16(text);
            if (length != nullptr)
                *length = static_cast<SQLSMALLINT>(wide.size() * sizeof(SQLWCHAR));
            if (CopyOut(wide, static_cast<SQLWCHAR *>(out), octets / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR))))
                connection.Diag().Warn("01004", "String data, right truncation");
            return SQL_SUCCESS;
        }
        if (const auto found = Shorts().find(what); found != Shorts().end())
        {
            if (out != nullptr)
                *static_cast<SQLUSMALLINT *>(out) = found->second;
            if (length != nullptr)
                *length = sizeof(SQLUSMALLINT);
            return SQL_SUCCESS;
        }
        const auto found = Numbers().find(what);
        if (out != nullptr)
            *static_cast<SQLUINTEGER *>(out) = found == Numbers().end() ? 0 : found->second;
        if (length != nullptr)
            *length = sizeof(SQLUINTEGER);
        return SQL_SUCCESS;
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLGetFunctions(SQLHDBC handle, SQLUSMALLINT which, SQLUSMALLINT *supported)
{
    const auto body = [&](Connection &)
    {
        if (which == SQL_API_ODBC3_ALL_FUNCTIONS)
        {
            std::fill_n(supported, SQL_API_ODBC3_ALL_FUNCTIONS_SIZE, SQLUSMALLINT{0});
            for (const SQLUSMALLINT function : Functions)
                supported[function >> 4] |= static_cast<SQLUSMALLINT>(1 << (function & 15));
            return SQL_SUCCESS;
        }
        if (which == SQL_API_ALL_FUNCTIONS)
        {
            std::fill_n(supported, 100, SQLUSMALLINT{SQL_FALSE});
            for (const SQLUSMALLINT function : Functions)
                if (function < 100)
                    supported[function] = SQL_TRUE;
            return SQL_SUCCESS;
        }
        *supported = SQL_FALSE;
        for (const SQLUSMALLINT function : Functions)
            if (function == which)
                *supported = SQL_TRUE;
        return SQL_SUCCESS;
    };
    return Guarded<Connection>(handle, body);
}
