// The database that a scenario is played on: see source.h.
#include "play/source.h"

#include "play/options.h"
#include "script/failure.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace scenario
{

namespace
{

// Not the component's name, so that its own statements are told apart.
constexpr const char *kApplication = "APP=scenario;";
// The component always names a user; the rest makes the driver pass over that user.
constexpr const char *kWindowsLogin = "sa;Trusted_Connection=Yes";
// A table that says: all others are those of a play.
constexpr const char *kMark = "KVHEADERS_scenario";

std::string FromEnvironment(const char *name, const char *otherwise)
{
    const char *const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

} // namespace

Source::Source(const Options &options)
    : m_dataSource(options.dataSource),
      m_ownTables(options.ownTables.empty() ? "" : std::filesystem::absolute(options.ownTables).string()),
      m_user(FromEnvironment("KVHEADERS_USER", kWindowsLogin)), m_password(FromEnvironment("KVHEADERS_PASSWORD", "")),
      m_folder(options.database, m_dataSource.empty()), m_statements(m_folder.Path("statements").string())
{
}

Source::~Source()
{
    try
    {
        RemoveOwnTables();
    }
    catch (const Refusal &)
    {
        // The play that follows finds and removes them.
    }
}

std::vector<std::pair<std::string, std::string>> Source::HostProperties() const
{
    if (!m_dataSource.empty())
        return {{"SQLDSN", m_dataSource}, {"SqlUserName", m_user}, {"Password", m_password}};
    return {{"SqlServerName", Workplace::kServer}, {"SqlDbName", m_folder.DatabaseName()}};
}

void Source::Load(const std::filesystem::path &file)
{
    // In place, since the component may keep its connection open from one window to the next.
    if (m_madeTables || (m_dataSource.empty() && std::filesystem::exists(m_folder.Database())))
    {
        Connection().DropTables(Tables());
        Connection().MakeTables(Tables());
    }
    Connection().Load(file);
}

std::string Source::Tables() const
{
    return m_ownTables.empty() ? SCENARIO_TABLES : m_ownTables;
}

void Source::MakeOwnTables()
{
    if (m_ownTables.empty())
        return;
    const auto tables = [this]
    { return Connection().Query("SELECT DISTINCT TABLE_NAME FROM INFORMATION_SCHEMA.COLUMNS ORDER BY TABLE_NAME"); };
    if (std::ranges::count(tables(), kMark) > 0)
    {
        m_madeTables = true;
        RemoveOwnTables();
    }
    if (const auto found = tables(); !found.empty())
        throw Refusal("the database behind the data source " + m_dataSource + " has tables already: " + found.front());
    Connection().Run(std::string("CREATE TABLE ") + kMark + " (made int NULL)");
    m_madeTables = true;
    Connection().MakeTables(Tables());
}

void Source::RemoveOwnTables()
{
    if (!std::exchange(m_madeTables, false))
        return;
    Connection().DropTables(Tables());
    Connection().Run(std::string("DROP TABLE ") + kMark);
}

Database &Source::Connection()
{
    if (m_connection)
        return *m_connection;
    if (!m_dataSource.empty())
    {
        m_connection = std::make_unique<Database>("DSN=" + m_dataSource + ";UID=" + m_user + ";PWD=" + m_password +
                                                  ";" + kApplication);
        return *m_connection;
    }
    const bool isNew = !std::filesystem::exists(m_folder.Database());
    m_connection =
        std::make_unique<Database>(std::string("Driver={SQL Server};UID=sa;PWD=;Create=yes;Server=") +
                                   Workplace::kServer + ";Database=" + m_folder.DatabaseName() + ";" + kApplication);
    if (isNew)
        m_connection->MakeTables(Tables());
    return *m_connection;
}

void Source::Prepare()
{
    if (m_dataSource.empty())
        Connection();
}

std::vector<Statement> Source::TakeStatements()
{
    return m_dataSource.empty() ? m_statements.Take() : std::vector<Statement>();
}

Workplace &Source::Faults()
{
    if (!m_dataSource.empty())
        throw Refusal("only the embedded database fails on demand");
    return m_folder;
}

} // namespace scenario
