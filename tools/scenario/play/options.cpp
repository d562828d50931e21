// The command line: see options.h.
#include "play/options.h"

namespace scenario
{

const char *const kUsage =
    R"(usage: scenario [--data-source NAME [--own-tables TABLES] | --database FILE] [--no-sql] [--headers] FILE...
Plays scenarios, each a session of a host and of the user at the editor, and prints what happens.
  --data-source NAME   on an ODBC data source that holds the tables already; "data" adds its rows there. User and
                       password are in the environment: KVHEADERS_USER, KVHEADERS_PASSWORD; without a user, the login
                       is that of Windows. No statements are printed, and "fail" cannot be carried out
  --own-tables TABLES  makes the tables of that T-SQL file in the data source for each scenario, and removes them
                       afterwards. Refuses a database that has tables, unless a play that was cut short left them.
                       Without FILE: only checks this, and prints the version of the server
  --database FILE      on the embedded database in FILE, which is kept; "data" makes it anew
  --no-sql             prints no statements
  --headers            a line "# FILE" before each transcript, and "# STATUS MILLISECONDS" behind it
Exit status: 0 when every command could be carried out, 1 when one could not, 2 for bad usage, 3 when the data source
cannot be used with --own-tables.
)";

std::optional<Options> ParseOptions(const std::vector<std::string> &arguments, std::string &problem)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string &argument = arguments[i];
        if (argument == "--data-source" || argument == "--database" || argument == "--own-tables")
        {
            if (++i == arguments.size() || arguments[i].empty())
            {
                problem = argument + " needs a value";
                return std::nullopt;
            }
            (argument == "--database"      ? options.database
             : argument == "--data-source" ? options.dataSource
                                           : options.ownTables) = arguments[i];
            options.given.insert(options.given.end(), {argument, arguments[i]});
        }
        else if (argument == "--no-sql")
        {
            options.showSql = false;
            options.given.push_back(argument);
        }
        else if (argument == "--headers")
            options.headers = true;
        else if (argument == "--help")
            options.help = true;
        else if (argument.starts_with("-"))
        {
            problem = "unknown option " + argument;
            return std::nullopt;
        }
        else
            options.files.push_back(argument);
    }
    if (!options.dataSource.empty() && !options.database.empty())
        problem = "--data-source cannot be combined with --database";
    else if (!options.ownTables.empty() && options.dataSource.empty())
        problem = "--own-tables needs --data-source";
    else if (options.files.empty() && options.ownTables.empty() && !options.help)
        problem = "no scenario to play";
    else
        return options;
    return std::nullopt;
}

} // namespace scenario
