// The database that a scenario is played on: the embedded one in the play's own folder, or a data source that exists.
#pragma once

#include "play/database.h"
#include "play/statements.h"
#include "play/workplace.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scenario
{

struct Options;

class Source
{
public:
    explicit Source(const Options &options);
    ~Source();

    // Empty for the embedded database.
    const std::string &DataSource() const { return m_dataSource; }

    // What a host sets to reach it.
    std::vector<std::pair<std::string, std::string>> HostProperties() const;

    // A fresh database with the rows of the file; in a data source with tables of its own only the rows.
    void Load(const std::filesystem::path &file);

    // With tables of the play's own: makes them. Refusal when the data source cannot be used, or has tables that are
    // not those of a play that was cut short. RemoveTables is done at the end at the latest, but tells no failure then.
    void MakeOwnTables();
    void RemoveOwnTables();

    // The scenario's own connection. An embedded database that does not exist yet is made, with all tables.
    Database &Connection();

    // The component is about to connect: an embedded database that does not exist yet is made.
    void Prepare();

    // The component's statements since the last call; none from a data source.
    std::vector<Statement> TakeStatements();

    Workplace &Folder() { return m_folder; }
    // The same, for what only the embedded database does on demand; Refusal for a data source.
    Workplace &Faults();

private:
    std::string Tables() const; // the file

    std::string m_dataSource;
    std::string m_ownTables;
    bool m_madeTables = false;
    std::string m_user;
    std::string m_password;
    Workplace m_folder;
    StatementTail m_statements;
    std::unique_ptr<Database> m_connection;
};

} // namespace scenario
