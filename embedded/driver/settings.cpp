// Where a connection's attributes come from: see settings.h.
#include "settings.h"

#include "text.h"

#include <odbcinst.h>

#include <cstdlib>
#include <filesystem>

namespace driver
{
namespace
{

std::string ReadProfile(const std::string &section, const char *key, const char *file)
{
    char value[1024] = "";
    if (!section.empty())
        SQLGetPrivateProfileString(section.c_str(), key, "", value, sizeof value, file);
    return value;
}

const std::string *FindIn(const Attributes &given, std::string_view key)
{
    for (const auto &[name, value] : given)
        if (EqualNoCase(name, key))
            return &value;
    return nullptr;
}

std::string FromEnvironment(const char *name, std::string otherwise)
{
    const char *value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

// A path is taken as it is; a name stands for a file of the folder, with or without ".db" behind it.
std::string ResolveFile(const std::string &database, const std::string &folder)
{
    if (database.empty() || database.find('/') != std::string::npos || folder.empty())
        return database;
    const std::string plain = (std::filesystem::path(folder) / database).string();
    std::error_code ignored;
    return std::filesystem::exists(plain, ignored) ? plain : plain + ".db";
}

} // namespace

Attributes ParseConnectString(std::string_view text)
{
    Attributes found;
    while (!text.empty())
    {
        const size_t equals = text.find('=');
        size_t end = std::min(text.find(';'), text.size());
        if (equals < end)
        {
            std::string value(text.substr(equals + 1, end - equals - 1));
            if (value.substr(0, 1) == "{")
            {
                value.clear();
                // "}}" inside braces is one "}"
                for (end = equals + 2; end < text.size() && (text[end] != '}' || text.substr(end, 2) == "}}"); ++end)
                    value += text[text[end] == '}' ? ++end : end];
                end = std::min(text.find(';', end), text.size());
            }
            found.emplace_back(Trim(text.substr(0, equals)), value);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return found;
}

Settings::Settings(const Attributes &given)
{
    const auto givenOr = [&](const char *key, const std::string &otherwise)
    {
        const std::string *const value = FindIn(given, key);
        return value != nullptr ? *value : otherwise;
    };
    const bool byDriver = FindIn(given, "DRIVER") != nullptr;
    const std::string dataSource = byDriver ? "" : givenOr("DSN", "");
    // a data source names its driver by section or by path; a path has no section to fall back to
    const std::string driver = byDriver ? givenOr("DRIVER", "") : ReadProfile(dataSource, "Driver", "odbc.ini");
    const std::string section = driver.find('/') == std::string::npos ? driver : "";
    const auto find = [&](const char *key)
    {
        const std::string ofSource = ReadProfile(dataSource, key, "odbc.ini");
        return givenOr(key, !ofSource.empty() ? ofSource : ReadProfile(section, key, "odbcinst.ini"));
    };
    const auto number = [&](const char *key, int otherwise)
    {
        const std::string value = find(key);
        return value.empty() ? otherwise : std::atoi(value.c_str());
    };

    user = find("UID");
    password = find("PWD");
    application = find("APP");
    server = find("Server");
    database = find("Database");
    file = FromEnvironment("KVEMBEDDED_DATABASE", ResolveFile(database, find("Folder")));
    create = EqualNoCase(find("Create"), "yes");
    busyMilliseconds = number("BusyTimeout", busyMilliseconds);
    servers = SplitList(find("Servers"), ',');
    silentServers = SplitList(find("SilentServers"), ',');
    statementLog = FromEnvironment("KVEMBEDDED_LOG", find("StatementLog"));
    faultList = FromEnvironment("KVEMBEDDED_FAULTS", find("FaultList"));
    faultApplication = find("FaultApplication");
    if (faultApplication.empty())
        faultApplication = "KVHEADERS.DLL";
    claimedTextSize = number("ClaimedTextSize", claimedTextSize);
}

} // namespace driver
