// The embedded database beside SQLite itself: what the driver and its dialect cost on top of the library below them.
#include "bare_odbc.h"
#include "editor_session.h"
#include "rows.h"

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace bench
{

namespace
{

constexpr int kInserts = 100000;

// A file of the embedded database, opened by SQLite's own interface with the same settings as the driver's. A call that
// fails ends the program.
class BareSqlite
{
public:
    explicit BareSqlite(const std::string &file)
    {
        Require(sqlite3_open_v2(file.c_str(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr));
        Execute({"PRAGMA journal_mode = wal", "PRAGMA synchronous = normal"});
    }
    ~BareSqlite() { sqlite3_close(m_db); }
    BareSqlite(const BareSqlite &) = delete;
    BareSqlite &operator=(const BareSqlite &) = delete;

    // Reads all rows of a query of integers, none of them NULL, into one array a column. Returns the number of rows.
    std::size_t Fetch(const std::string &query)
    {
        sqlite3_stmt *const statement = Prepare(query);
        std::vector<std::vector<std::int32_t>> columns(static_cast<std::size_t>(sqlite3_column_count(statement)));
        int code;
        while ((code = sqlite3_step(statement)) == SQLITE_ROW)
            for (std::size_t i = 0; i < columns.size(); ++i)
                columns[i].push_back(sqlite3_column_int(statement, static_cast<int>(i)));
        Require(code);
        sqlite3_finalize(statement);
        return columns[0].size();
    }

    // Prepares, runs and finalizes each statement: nothing is kept from one text to the next, as nothing of a text that
    // a client sends is known before. Each is a transaction of its own.
    void Execute(const std::vector<std::string> &statements)
    {
        for (const std::string &text : statements)
        {
            sqlite3_stmt *const statement = Prepare(text);
            int code;
            while ((code = sqlite3_step(statement)) == SQLITE_ROW)
                ;
            Require(code);
            sqlite3_finalize(statement);
        }
    }

private:
    sqlite3_stmt *Prepare(const std::string &text)
    {
        sqlite3_stmt *statement = nullptr;
        Require(sqlite3_prepare_v2(m_db, text.c_str(), static_cast<int>(text.size()), &statement, nullptr));
        return statement;
    }

    void Require(int code)
    {
        if (code == SQLITE_OK || code == SQLITE_DONE)
            return;
        std::fprintf(stderr, "bench: SQLite: %s\n", sqlite3_errmsg(m_db));
        std::exit(1);
    }

    sqlite3 *m_db = nullptr;
};

// A file that is not there yet and goes with this object.
class FreshFile
{
public:
    FreshFile() : m_path(SiteFile("inserts")) { Remove(); }
    ~FreshFile() { Remove(); }
    FreshFile(const FreshFile &) = delete;
    FreshFile &operator=(const FreshFile &) = delete;
    const std::string &Path() const { return m_path; }

private:
    void Remove() const
    {
        for (const char *const ending : {"", "-wal", "-shm"})
            std::filesystem::remove(m_path + ending);
    }
    std::string m_path;
};

// The table of the settings and its index, which both languages write alike; SQLite keeps the same values in it.
const std::vector<std::string> &Tables()
{
    static const std::vector<std::string> statements = {
        "CREATE TABLE Report_header_settings (heading_id smallint NOT NULL, hosp_acct_id smallint NOT NULL, "
        "report_type_nbr smallint NOT NULL, format_id smallint NOT NULL, flag1 int NOT NULL)",
        "CREATE INDEX Report_header_settings_place ON Report_header_settings (heading_id, hosp_acct_id, "
        "report_type_nbr, flag1)"};
    return statements;
}

// The statements of the save pass, every text another one.
const std::vector<std::string> &Inserts()
{
    static const std::vector<std::string> statements = []
    {
        std::vector<std::string> made;
        for (int i = 0; i < kInserts; ++i)
            made.push_back("INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, "
                           "flag1) Values (" +
                           std::to_string(i % 20000) + ", " + std::to_string(i / 20000) + ", " +
                           std::to_string(i % 40) + ", " + std::to_string(i % 5000) + ", 0)");
        return made;
    }();
    return statements;
}

const char kFiveIntegers[] =
    "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings";

template <class Reader, class Query>
double FetchTime(Reader &&reader, const Query &query)
{
    std::size_t rows = 0;
    const double seconds = Time([&] { rows = reader.Fetch(query); });
    if (rows != 1000000)
    {
        std::fprintf(stderr, "bench: %zu rows instead of a million\n", rows);
        std::exit(1);
    }
    return seconds;
}

template <class Writer>
double InsertTime(Writer &&writer)
{
    writer.Execute(Tables());
    return Time([&] { writer.Execute(Inserts()); });
}

} // namespace

void AddEmbeddedRows()
{
    // both read the same file and keep what they read in one array a column
    AddRow(
        "embedded database: fetch five integers", "1000000", {.ratio = 1.2},
        [] { return FetchTime(BareOdbc(SiteFile("settings-1000000")), std::vector<std::string>{kFiveIntegers}); },
        [] { return FetchTime(BareSqlite(SiteFile("settings-1000000")), std::string(kFiveIntegers)); });
    // both write into a new file, prepare each text anew and commit each statement
    AddRow(
        "embedded database: single inserts", "100000", {.ratio = 1.2},
        []
        {
            const FreshFile file;
            return InsertTime(BareOdbc(file.Path() + ";Create=yes"));
        },
        []
        {
            const FreshFile file;
            return InsertTime(BareSqlite(file.Path()));
        },
        3);
}

} // namespace bench
