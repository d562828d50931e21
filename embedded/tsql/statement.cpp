// Running a statement in SQLite's language: preparing, binding, stepping, with errors thrown.
#include "statement.h"

#include "errors.h"

#include <sqlite3.h>

namespace tsql
{

sqlite3_stmt *Prepare(sqlite3 *db, std::string_view sql)
{
    sqlite3_stmt *statement = nullptr;
    const int code = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
    return statement;
}

void BindValue(sqlite3_stmt *statement, int place, const Value &value)
{
    switch (value.kind)
    {
    case Value::Integer:
        sqlite3_bind_int64(statement, place, value.integer);
        break;
    case Value::Real:
        sqlite3_bind_double(statement, place, value.real);
        break;
    case Value::Text:
        sqlite3_bind_text(statement, place, value.text.data(), static_cast<int>(value.text.size()), SQLITE_STATIC);
        break;
    default:
        sqlite3_bind_null(statement, place);
        break;
    }
}

Value ReadValue(sqlite3_stmt *statement, int column)
{
    switch (sqlite3_column_type(statement, column))
    {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return IntegerValue(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return RealValue(sqlite3_column_double(statement, column));
    default:
    {
        const unsigned char *text = sqlite3_column_text(statement, column);
        return TextValue(
            {reinterpret_cast<const char *>(text), static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
    }
    }
}

Running::~Running()
{
    sqlite3_finalize(m_statement);
}

void Running::Bind(int place, std::string_view text)
{
    sqlite3_bind_text(m_statement, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

bool Running::Step()
{
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        RaiseSqlite(m_db, code);
    return code == SQLITE_ROW;
}

std::string Running::Text(int column) const
{
    const unsigned char *text = sqlite3_column_text(m_statement, column);
    return text ? std::string(reinterpret_cast<const char *>(text),
                              static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                : std::string();
}

std::int64_t Running::Integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

sqlite3_stmt *StatementCache::Take(const std::string &sql)
{
    const auto found = m_idle.find(sql);
    if (found == m_idle.end())
        return Prepare(m_db, sql);
    sqlite3_stmt *statement = found->second;
    m_idle.erase(found);
    return statement;
}

void StatementCache::Give(const std::string &sql, sqlite3_stmt *statement)
{
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    if (m_idle.size() >= 64)
        Clear();
    if (sql.size() > 4096 || !m_idle.emplace(sql, statement).second)
        sqlite3_finalize(statement);
}

void StatementCache::Clear()
{
    for (const auto &[sql, statement] : m_idle)
        sqlite3_finalize(statement);
    m_idle.clear();
}

} // namespace tsql
