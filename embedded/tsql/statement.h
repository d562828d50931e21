// Running a statement in SQLite's language: preparing, binding, stepping, with errors thrown.
#pragma once

#include "types.h"

#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace tsql
{

// Raises what SQLite says against the text.
sqlite3_stmt *Prepare(sqlite3 *db, std::string_view sql);

// Binds parameter `place` (from 1) of a statement that has been reset. A text is not copied.
void BindValue(sqlite3_stmt *statement, int place, const Value &value);

// Column `column` (from 0) of the current row.
Value ReadValue(sqlite3_stmt *statement, int column);

// A statement that lives in one block.
class Running
{
public:
    Running(sqlite3 *db, std::string_view sql) : m_db(db), m_statement(Prepare(db, sql)) {}
    ~Running();
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    void Bind(int place, std::string_view text);
    bool Step();
    std::string Text(int column) const; // of any type; empty for NULL
    std::int64_t Integer(int column) const;

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_statement;
};

// Prepared statements that are not in use, by their text.
class StatementCache
{
public:
    explicit StatementCache(sqlite3 *db) : m_db(db) {}
    ~StatementCache() { Clear(); }
    StatementCache(const StatementCache &) = delete;
    StatementCache &operator=(const StatementCache &) = delete;

    sqlite3_stmt *Take(const std::string &sql);
    void Give(const std::string &sql, sqlite3_stmt *statement);
    void Clear();

private:
    sqlite3 *m_db;
    std::unordered_map<std::string, sqlite3_stmt *> m_idle;
};

} // namespace tsql
