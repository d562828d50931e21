// Running a statement in SQLite's language: preparing, binding, stepping, with errors thrown.
#include "statement.h"

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
    const char *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return TextValue({text, static_cast<std::size_t>(sqlite3_value_bytes(value))});
}

Running::Running(sqlite3 *db, std::string_view sql) : m_db(db)
{
    const int code = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

Running::~Running()
{
    sqlite3_finalize(m_statement);
}

void Running::Bind(int place, const Value &value)
{
    if (value.kind == Value::Integer)
        sqlite3_bind_int64(m_statement, place, value.integer);
    else if (value.kind == Value::Real)
        sqlite3_bind_double(m_statement, place, value.real);
    else if (value.kind == Value::Text)
        sqlite3_bind_text(m_statement, place, value.text.data(), static_cast<int>(value.text.size()), SQLITE_STATIC);
}

bool Running::Step()
{
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        RaiseSqlite(m_db, code);
    return code == SQLITE_ROW;
}

void Running::Reset()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

std::string Running::Text(int column) const
{
    const char *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                : std::string();
}

std::int64_t Running::Integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::unique_ptr<Running> StatementCache::Take(const std::string &sql)
{
    const auto found = m_idle.find(sql);
    if (found == m_idle.end())
        return std::make_unique<Running>(m_db, sql);
    return std::move(m_idle.extract(found).mapped());
}

void StatementCache::Give(const std::string &sql, std::unique_ptr<Running> statement)
{
    statement->Reset();
    if (m_idle.size() >= 64)
        m_idle.clear();
    if (sql.size() <= 4096)
        m_idle.emplace(sql, std::move(statement));
}

} // namespace tsql
