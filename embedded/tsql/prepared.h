// A prepared statement of SQLite, with errors thrown.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace tsql
{

using Value = std::variant<std::monostate, std::int64_t, double, std::string>; // monostate: NULL

class Prepared
{
public:
    // Binds the texts, which must live as long as this.
    Prepared(sqlite3 *db, std::string_view sql, std::initializer_list<std::string_view> texts = {});
    ~Prepared();
    Prepared(const Prepared &) = delete;
    Prepared &operator=(const Prepared &) = delete;

    sqlite3_stmt *Get() const { return m_statement; }
    // The value must live until Reset. Places count from 1.
    void Bind(int place, const Value &value);
    bool Step(); // false behind the last row
    void Reset() noexcept;
    std::string Text(int column) const; // empty for NULL
    Value Read(int column) const;

private:
    sqlite3 *m_db;
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace tsql
