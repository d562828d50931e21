// The database that a scenario is played on: see source.h.
#include "play/source.h"

#include "play/options.h"
#include "script/failure.h"

#include <cstdlib>

namespace scenario
{

namespace
{

// Not the component's name, so that its own statements are told apart.
constexpr const char *kApplication = "APP=scenario;";

std::string FromEnvironment(const char *name)
{
    const char *const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

Source::Source(const Options &options)
    : m_dataSource(options.dataSource), m_user(FromEnvironment("KVHEADERS_USER")),
      m_password(FromEnvironment("KVHEADERS_PASSWORD")), m_folder(options.database, m_dataSource.empty()),
      m_statements(m_folder.Path("statements").string())
{
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
    if (m_dataSource.empty() && std::filesystem::exists(m_folder.Database()))
    {
        Connection().DropTables();
        Connection().MakeTables();
    }
    Connection().Load(file);
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
        m_connection->MakeTables();
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
