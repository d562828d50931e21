// sqlbatch: runs T-SQL files, batches separated by GO, on an ODBC data source and prints their results.
#include "batches.h"
#include "client.h"

#include "runtime/error.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <vector>

namespace
{

constexpr const char *Usage =
    R"(usage: sqlbatch [--data-source NAME | --connect STRING | --database FILE] [--user U] [--password-env VAR]
                [--create] [--quiet] [--query "SQL"]... FILE...
Runs T-SQL files (UTF-8, batches separated by lines that hold GO alone; "-" is standard input) and prints results.
  --data-source NAME   a data source of odbc.ini
  --connect STRING     an ODBC connection string, given to the driver manager as it is
  --database FILE      a file of the embedded database, whose driver is registered as "SQL Server"
  --create             makes that file when there is none; a password given then becomes that of the user
  --user U             the user (of the embedded database: sa when nothing is said)
  --password-env VAR   the environment variable that holds the password
  --query "SQL"        runs a batch of its own, before the files
  --quiet              prints no row counts
Exit status: 0 when everything ran, 1 when a statement failed or the connection could not be made, 2 for bad usage.
)";

struct Options
{
    std::string dataSource; // one of these three is given
    std::string connect;
    std::string database;
    bool create = false;
    std::string user;
    std::optional<std::string> password;
    std::vector<std::string> queries;
    std::vector<std::string> files;
    bool quiet = false;
};

// In braces, so that no character of it ends the value.
std::string Braced(const std::string &value)
{
    std::string out = "{";
    for (const char c : value)
        out.append(c == '}' ? 2 : 1, c);
    return out + "}";
}

[[noreturn]] void Misuse(const std::string &reason)
{
    std::cerr << "sqlbatch: " << reason << "\n" << Usage;
    std::exit(2);
}

std::string FromEnvironment(const std::string &name)
{
    const char *value = std::getenv(name.c_str());
    if (value == nullptr)
        Misuse("the environment variable " + name + " is not set");
    return value;
}

Options Parse(const std::vector<std::string> &arguments)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string &argument = arguments[i];
        const auto value = [&]() -> const std::string &
        {
            if (i + 1 == arguments.size())
                Misuse(argument + " needs a value");
            return arguments[++i];
        };
        if (argument == "--data-source")
            options.dataSource = value();
        else if (argument == "--connect")
            options.connect = value();
        else if (argument == "--database")
            options.database = value();
        else if (argument == "--user")
            options.user = value();
        else if (argument == "--password-env")
            options.password = FromEnvironment(value());
        else if (argument == "--query")
            options.queries.push_back(value());
        else if (argument == "--create")
            options.create = true;
        else if (argument == "--quiet")
            options.quiet = true;
        else if (argument == "--help")
        {
            std::cout << Usage;
            std::exit(0);
        }
        else if (argument.size() > 1 && argument[0] == '-')
            Misuse("unknown option " + argument);
        else
            options.files.push_back(argument);
    }
    return options;
}

void CheckCombination(const Options &options)
{
    if (options.dataSource.empty() + options.connect.empty() + options.database.empty() != 2)
        Misuse("exactly one of --data-source, --connect and --database is required");
    if (options.files.empty() && options.queries.empty())
        Misuse("nothing to run");
    if (options.create && options.database.empty())
        Misuse("--create requires --database");
}

std::string ConnectString(const Options &options)
{
    std::string connect = options.connect;
    std::string user = options.user;
    if (!options.dataSource.empty())
        connect = "DSN=" + options.dataSource + ";";
    if (!options.database.empty())
    {
        if (user.empty())
            user = "sa";
        connect = "Driver={SQL Server};Database=" + Braced(std::filesystem::absolute(options.database).string()) +
                  (options.create ? ";Create=yes;" : ";");
    }
    if (connect.back() != ';')
        connect += ';';
    if (!user.empty())
        connect += "UID=" + Braced(user) + ";";
    if (options.password)
        connect += "PWD=" + Braced(*options.password) + ";";
    return connect;
}

std::optional<std::string> ReadScript(const std::string &file)
{
    if (file == "-")
        return std::string(std::istreambuf_iterator<char>(std::cin), {});
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(in), {});
}

int RunAll(const Options &options)
{
    sqlbatch::Client client(ConnectString(options));
    if (options.quiet)
        client.Quiet();
    int failures = 0;
    for (const std::string &query : options.queries)
        failures += client.Run(query, "query", std::cout, std::cerr);
    for (const std::string &file : options.files)
    {
        const std::optional<std::string> script = ReadScript(file);
        if (!script)
        {
            std::cerr << "sqlbatch: cannot read " << file << "\n";
            ++failures;
            continue;
        }
        for (const sqlbatch::Batch &batch : sqlbatch::SplitBatches(*script))
            failures += client.Run(batch.text, file + ":" + std::to_string(batch.line), std::cout, std::cerr);
    }
    return failures;
}

} // namespace

int main(int count, char **values)
{
    const Options options = Parse({values + 1, values + count});
    CheckCombination(options);
    try
    {
        return RunAll(options) == 0 ? 0 : 1;
    }
    catch (const runtime::Error &error)
    {
        std::cerr << "sqlbatch: " << error.Description() << "\n";
        return 1;
    }
}
