// The folder that one play works in: the embedded database with its statement log and fault list, what ODBC reads to
// find it, and the site INI file.
#pragma once

#include <filesystem>
#include <string>

namespace scenario
{

// Each file has two names under Wine: the one that this program opens, and the one that the driver opens, which lives
// on the Unix side.
class Workplace
{
public:
    // Makes the folder; for the embedded database under Wine it is the one that the environment names (see play-window
    // beside this program), since the driver reads its environment from outside. An empty `database` stands for a file
    // in the folder; without `embedded` ODBC is left alone. Throws Refusal.
    Workplace(const std::string &database, bool embedded);
    ~Workplace();
    Workplace(const Workplace &) = delete;
    Workplace &operator=(const Workplace &) = delete;

    // As this program opens it.
    std::filesystem::path Path(const std::string &name) const { return m_folder / name; }
    std::filesystem::path Database() const { return m_database; }
    // As a host names it.
    std::string DatabaseName() const;

    static constexpr const char *kServer = "embedded";
    static constexpr const char *kDataSource = "scenario"; // in odbc.ini: the same database

    // The next `count` statements of the component that contain `text` fail. A message that starts with an SQLSTATE, a
    // colon and a blank fails with that state, any other with 42000.
    void Fail(int count, const std::string &text, const std::string &message) const;
    // The component's connection is cut by its next statement that contains `text`, which fails with that state; with
    // an empty `text` at once, while it is idle.
    void Cut(const std::string &state, const std::string &text);
    // The next `count` attempts to connect fail, until AllowConnects.
    void RefuseConnects(int count) const;
    void AllowConnects() const;

private:
    void Order(const std::string &count, const std::string &when, const std::string &text, const std::string &state,
               const std::string &message) const;
    void WriteOdbcFiles() const;

    std::filesystem::path m_folder;
    bool m_temporary = true; // the folder is this program's own
    std::filesystem::path m_database;
    int m_idleCuts = 0;
};

// A Unix path as this program opens it, and back.
std::filesystem::path FromUnix(const std::string &path);
std::string ToUnix(const std::filesystem::path &path);

} // namespace scenario
