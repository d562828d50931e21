// The bare limit: statements sent and rows fetched by plain ODBC calls, with nothing of the component in between.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench
{

// A connection of its own to a database of the embedded database. A call that fails ends the program with its
// diagnostics.
class BareOdbc
{
public:
    explicit BareOdbc(const std::string &databaseFile);
    ~BareOdbc();
    BareOdbc(const BareOdbc &) = delete;
    BareOdbc &operator=(const BareOdbc &) = delete;

    // Fetches all rows of each query, in blocks, into flat arrays: 32-bit numbers, texts in fixed places of their
    // declared size. Returns the number of rows.
    std::size_t Fetch(const std::vector<std::string> &queries);

    // Sends each statement and lets all its results through.
    void Execute(const std::vector<std::string> &statements);

    // Bytes of the arrays that the last Fetch filled.
    std::size_t Bytes() const { return m_bytes; }

private:
    std::size_t FetchOne(const std::string &query);

    void *m_environment = nullptr;
    void *m_connection = nullptr;
    void *m_statement = nullptr;
    std::size_t m_bytes = 0;
};

} // namespace bench
