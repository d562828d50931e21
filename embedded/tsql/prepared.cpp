// A prepared statement of SQLite, with errors thrown.
#include "prepared.h"

#include "errors.h"

#include <sqlite3.h>

namespace tsql
{

Prepared::Prepared(sqlite3 *db, std::string_view sql, std::initializer_list<std::string_view> texts) : m_db(db)
{
    if (const int code = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr))
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
    if (const auto *integer = std::get_if<std::int64_t>(&value))
        sqlite3_bind_int64(m_statement, place, *integer);
    else if (const auto *real = std::get_if<double>(&value))
        sqlite3_bind_double(m_statement, place, *real);
    else if (const auto *text = std::get_if<std::string>(&value))
        sqlite3_bind_text(m_statement, place, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
    else
        sqlite3_bind_null(m_statement, place);
}

bool Prepared::Step()
{
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        RaiseSqlite(m_db, code);
    return code == SQLITE_ROW;
}

void Prepared::Reset() noexcept
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

std::string Prepared::Text(int column) const
{
    const char *const text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))) : "";
}

Value Prepared::Read(int column) const
{
    switch (sqlite3_column_type(m_statement, column))
    {
    case SQLITE_INTEGER:
        return sqlite3_column_int64(m_statement, column);
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_statement, column);
    case SQLITE_TEXT:
        return Text(column);
    default:
        return {};
    }
}

} // namespace tsql
