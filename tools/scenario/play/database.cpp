// The scenario's own connection to the database: see database.h.
#include "play/database.h"

#include "odbc/rdoConnection.h"
#include "odbc/rdoEnvironment.h"
#include "odbc/rdoResultset.h"
#include "runtime/convert.h"
#include "runtime/error.h"
#include "script/failure.h"
#include "sqlbatch/batches.h"

#include <fstream>
#include <iterator>

namespace scenario
{

namespace
{

template <class Act>
auto Refusing(Act &&act)
{
    try
    {
        return act();
    }
    catch (const runtime::Error &error)
    {
        throw Refusal(error.Description());
    }
}

int CountColumns(odbc::rdoResultset &row)
{
    int count = 0;
    try
    {
        for (;; ++count)
            row.rdoColumns(count);
    }
    catch (const runtime::Error &)
    {
        return count; // there is no asking for the number
    }
}

std::string Row(odbc::rdoResultset &row, int columns)
{
    std::string line;
    for (int column = 0; column < columns; ++column)
    {
        const runtime::Value value = row.rdoColumns(column).Value();
        line += (column ? " | " : "") + (runtime::IsNull(value) ? "NULL" : runtime::ToText(value));
    }
    return line;
}

std::string Read(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw Refusal("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

bool IsStatement(std::string_view line)
{
    return line.find_first_not_of(" \t") != std::string_view::npos && !line.starts_with("--") && line != "GO";
}

} // namespace

Database::Database(const std::string &connect)
{
    Refusing(
        [&]
        {
            odbc::rdoEnvironment environment;
            m_connection = environment.OpenConnection("", odbc::kNeverPrompt, false, connect);
        });
}

Database::~Database() = default;

void Database::Run(const std::string &sql)
{
    Refusing([&] { m_connection->Execute(sql); });
}

std::vector<std::string> Database::Query(const std::string &sql)
{
    return Refusing(
        [&]
        {
            std::vector<std::string> lines;
            const auto rows = m_connection->OpenResultset(sql);
            const int columns = rows->AtEnd() ? 0 : CountColumns(*rows);
            for (; !rows->AtEnd(); rows->MoveNext())
                lines.push_back(Row(*rows, columns));
            rows->Close();
            return lines;
        });
}

void Database::MakeTables(const std::filesystem::path &file)
{
    for (const sqlbatch::Batch &batch : sqlbatch::SplitBatches(Read(file)))
        Run(batch.text);
}

void Database::DropTables(const std::filesystem::path &file)
{
    constexpr std::string_view kCreate = "CREATE TABLE ";
    for (const sqlbatch::Batch &batch : sqlbatch::SplitBatches(Read(file)))
    {
        const std::size_t create = batch.text.find(kCreate);
        if (create == std::string::npos)
            continue;
        const std::size_t name = create + kCreate.size();
        try
        {
            Run("DROP TABLE " + batch.text.substr(name, batch.text.find(' ', name) - name));
        }
        catch (const Refusal &)
        {
            // It was not there.
        }
    }
}

void Database::Load(const std::filesystem::path &file)
{
    const std::string text = Read(file);
    // Many rows at once are written faster together.
    Run("BEGIN TRANSACTION");
    int number = 1;
    for (std::string_view rest = text; !rest.empty(); ++number)
    {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!IsStatement(line))
            continue;
        try
        {
            Run(std::string(line));
        }
        catch (const Refusal &refusal)
        {
            throw Refusal(file.filename().string() + ":" + std::to_string(number) + ": " + refusal.what());
        }
    }
    Run("COMMIT TRANSACTION");
}

} // namespace scenario
