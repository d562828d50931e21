// A prepared statement of SQLite, with errors thrown.
#include "prepared.h"

#include "errors.h"

#include <sqlite3.h>

namespace tsql
{

Value ValueOf(sqlite3_value *value)
{
    switch (sqlite3_value_type(value))
    {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return IntegerValue(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
        return RealValue(sqlite3_value_double(value));
    default:
        break;
    }
    const char *const text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return TextValue({text, static_cast<std::size_t>(sqlite3_value_bytes(value))});
}

std::string Quoted(std::string_view name, char quote)
{
    std::string quoted(1, quote);
    for (const char c : name)
        quoted.append(c == quote ? 2 : 1, c);
    return quoted += quote;
}

Prepared::Prepared(sqlite3 *db, std::string_view sql, std::initializer_list<std::string_view> texts) : m_db(db)
{
    const int code = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
    int place = 0;
    for (const std::string_view text : texts)
        sqlite3_bind_text(m_statement, ++place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

Prepared::~Prepared()
{
    sqlite3_finalize(m_statement);
}

void Prepared::Bind(int place, const Value &value)
{
    if (value.kind == Value::Integer)
        sqlite3_bind_int64(m_statement, place, value.integer);
    else if (value.kind == Value::Real)
        sqlite3_bind_double(m_statement, place, value.real);
    else if (value.kind == Value::Text)
        sqlite3_bind_text(m_statement, place, value.text.data(), static_cast<int>(value.text.size()), SQLITE_STATIC);
}

bool Prepared::Step()
{
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        RaiseSqlite(m_db, code);
    return code == SQLITE_ROW;
}

void Prepared::Reset()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

std::string Prepared::Text(int column) const
{
    const char *const text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                : std::string();
}

std::int64_t Prepared::Integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

} // namespace tsql
