// Entry points: columns of a result, binding and fetching.
#include "guard.h"
#include "statement.h"
#include "text.h"

using namespace driver;

namespace
{

const tsql::Column &ColumnOf(const Statement &statement, SQLUSMALLINT number)
{
    if (number == 0 || number > statement.Columns().size())
        throw DriverError("07009", "Invalid descriptor index");
    return statement.Columns()[number - 1u];
}

template <class T>
void Give(T *out, T value)
{
    if (out != nullptr)
        *out = value;
}

SQLLEN OctetLength(const tsql::Column &column, SQLULEN size)
{
    const SQLULEN wide = column.type == tsql::Type::NChar || column.type == tsql::Type::NVarChar ? 2 : 1;
    const int own = InfoOf(column.type).octets;
    return static_cast<SQLLEN>(own != 0 ? static_cast<SQLULEN>(own)
                                        : size * wide + (column.type == tsql::Type::Decimal ? 2 : 0));
}

SQLLEN DisplaySize(const tsql::Column &column, SQLULEN size)
{
    const int own = InfoOf(column.type).display;
    return own != 0 ? own : static_cast<SQLLEN>(size) + (column.type == tsql::Type::Decimal ? 2 : 0);
}

// A text field's value, or nothing when the field is a number (or unknown).
const std::string *TextField(const tsql::Column &column, SQLUSMALLINT field, std::string &scratch)
{
    switch (field)
    {
    case SQL_DESC_NAME:
    case SQL_DESC_LABEL:
    case SQL_COLUMN_NAME:
        return &column.name;
    case SQL_DESC_BASE_COLUMN_NAME:
    case SQL_DESC_BASE_TABLE_NAME:
    case SQL_DESC_TABLE_NAME:
    case SQL_DESC_SCHEMA_NAME:
    case SQL_DESC_CATALOG_NAME:
        scratch.clear();
        return &scratch;
    case SQL_DESC_TYPE_NAME:
    case SQL_DESC_LOCAL_TYPE_NAME:
        scratch = InfoOf(column.type).name;
        return &scratch;
    case SQL_DESC_LITERAL_PREFIX:
        scratch = InfoOf(column.type).prefix;
        return &scratch;
    case SQL_DESC_LITERAL_SUFFIX:
        scratch = *InfoOf(column.type).prefix != '\0' ? "'" : "";
        return &scratch;
    default:
        return nullptr;
    }
}

SQLLEN NumberField(const Statement &statement, const tsql::Column &column, SQLUSMALLINT field)
{
    const SqlTypeInfo &info = InfoOf(column.type);
    const SQLULEN size = ColumnSize(column, statement.GetSettings().claimedTextSize);
    switch (field)
    {
    case SQL_DESC_CONCISE_TYPE:
        return info.code;
    case SQL_DESC_TYPE:
        return info.verbose;
    case SQL_DESC_LENGTH:
    case SQL_DESC_PRECISION:
    case SQL_COLUMN_PRECISION:
        return static_cast<SQLLEN>(size);
    case SQL_DESC_SCALE:
    case SQL_COLUMN_SCALE:
        return DecimalDigits(column);
    case SQL_DESC_OCTET_LENGTH:
    case SQL_COLUMN_LENGTH:
        return OctetLength(column, size);
    case SQL_DESC_DISPLAY_SIZE:
        return DisplaySize(column, size);
    case SQL_DESC_NULLABLE:
    case SQL_COLUMN_NULLABLE:
        return SQL_NULLABLE;
    case SQL_DESC_UNSIGNED:
        return IsNumeric(column.type) && column.type != tsql::Type::TinyInt ? SQL_FALSE : SQL_TRUE;
    case SQL_DESC_NUM_PREC_RADIX:
        return column.type == tsql::Type::Float ? 2 : IsNumeric(column.type) ? 10 : 0;
    case SQL_DESC_SEARCHABLE:
        return SQL_SEARCHABLE;
    case SQL_DESC_UPDATABLE:
        return SQL_ATTR_READONLY;
    case SQL_DESC_UNNAMED:
        return column.name.empty() ? SQL_UNNAMED : SQL_NAMED;
    case SQL_DESC_AUTO_UNIQUE_VALUE:
    case SQL_DESC_CASE_SENSITIVE:
    case SQL_DESC_FIXED_PREC_SCALE:
    case SQL_DESC_ROWVER:
        return SQL_FALSE;
    default:
        throw DriverError("HY091", "Invalid descriptor field identifier");
    }
}

} // namespace

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT *count)
{
    const auto body = [&](Statement &statement) { Give(count, static_cast<SQLSMALLINT>(statement.Columns().size())); };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR *name, SQLSMALLINT capacity,
                                  SQLSMALLINT *nameLength, SQLSMALLINT *type, SQLULEN *size, SQLSMALLINT *digits,
                                  SQLSMALLINT *nullable)
{
    const auto body = [&](Statement &statement)
    {
        const tsql::Column &column = ColumnOf(statement, number);
        const std::u16string wide = ToUtf16(column.name);
        Give(nameLength, static_cast<SQLSMALLINT>(wide.size()));
        Give(type, InfoOf(column.type).code);
        Give(size, ColumnSize(column, statement.GetSettings().claimedTextSize));
        Give(digits, DecimalDigits(column));
        Give(nullable, SQLSMALLINT{SQL_NULLABLE});
        if (CopyOut(wide, name, capacity))
            statement.Diag().Warn("01004", "String data, right truncation");
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT field, SQLPOINTER text,
                                   SQLSMALLINT octets, SQLSMALLINT *textLength, SQLLEN *value)
{
    const auto body = [&](Statement &statement)
    {
        if (field == SQL_DESC_COUNT || field == SQL_COLUMN_COUNT)
        {
            Give(value, static_cast<SQLLEN>(statement.Columns().size()));
            return SQL_SUCCESS;
        }
        const tsql::Column &column = ColumnOf(statement, number);
        std::string scratch;
        if (const std::string *found = TextField(column, field, scratch))
        {
            const std::u16string wide = ToUtf16(*found);
            Give(textLength, static_cast<SQLSMALLINT>(wide.size() * sizeof(SQLWCHAR)));
            if (CopyOut(wide, static_cast<SQLWCHAR *>(text), octets / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR))))
                statement.Diag().Warn("01004", "String data, right truncation");
        }
        else
            Give(value, NumberField(statement, column, field));
        return SQL_SUCCESS;
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer,
                             SQLLEN capacity, SQLLEN *length)
{
    const auto body = [&](Statement &statement) {
        statement.BindColumn(number, {cType, buffer, capacity, length, length});
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle)
{
    return Guarded<Statement>(handle, [](Statement &statement) { return statement.Fetch(); });
}

SQLRETURN SQL_API SQLFetchScroll(SQLHSTMT handle, SQLSMALLINT orientation, SQLLEN)
{
    const auto body = [&](Statement &statement)
    {
        if (orientation != SQL_FETCH_NEXT)
            throw DriverError("HY106", "Fetch type out of range");
        return statement.Fetch();
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer,
                             SQLLEN capacity, SQLLEN *length)
{
    return Guarded<Statement>(handle,
                              [&](Statement &statement) {
                                  return statement.GetData(number, {cType, buffer, capacity, length, length});
                              });
}

SQLRETURN SQL_API SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW row, SQLUSMALLINT operation, SQLUSMALLINT)
{
    const auto body = [&](Statement &statement)
    {
        if (operation != SQL_POSITION)
            throw DriverError("HYC00", "Optional feature not implemented");
        statement.SetPosition(row);
    };
    return Guarded<Statement>(handle, body);
}
