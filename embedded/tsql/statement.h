// Running a statement in SQLite's language: preparing, binding, stepping, with errors thrown.
#pragma once

#include "types.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;
struct sqlite3_value;

namespace tsql
{

Value ValueOf(sqlite3_value *value);

// A prepared statement. Raises what SQLite says against the text.
class Running
{
public:
    Running(sqlite3 *db, std::string_view sql);
    ~Running();
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    sqlite3_stmt *Get() const { return m_statement; }
    void Bind(int place, const Value &value); // from 1; a text is not copied
    bool Step();
    void Reset();
    std::string Text(int column) const; // of any type; empty for NULL
    std::int64_t Integer(int column) const;

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_statement = nullptr;
};

// Prepared statements that are not in use, by their text.
class StatementCache
{
public:
    explicit StatementCache(sqlite3 *db) : m_db(db) {}

    std::unique_ptr<Running> Take(const std::string &sql);
    void Give(const std::string &sql, std::unique_ptr<Running> statement);

private:
    sqlite3 *m_db;
    std::unordered_map<std::string, std::unique_ptr<Running>> m_idle;
};

} // namespace tsql
