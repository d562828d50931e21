// A prepared statement of SQLite, with errors thrown.
#pragma once

#include "types.h"

#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;
struct sqlite3_value;

namespace tsql
{

Value ValueOf(sqlite3_value *value);

// "name", for SQLite; with single quotes a text.
std::string Quoted(std::string_view name, char quote = '"');

class Prepared
{
public:
    // `texts` are bound to its parameters and have to live as long.
    Prepared(sqlite3 *db, std::string_view sql, std::initializer_list<std::string_view> texts = {});
    ~Prepared();
    Prepared(const Prepared &) = delete;
    Prepared &operator=(const Prepared &) = delete;

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

} // namespace tsql
